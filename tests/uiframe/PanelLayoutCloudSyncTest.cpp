// The layout cloud sync with the real layout manager, the real default configuration client on a
// database file in a temporary folder, and a second client on the same file standing for another
// device of the same user. Each merge rule is walked once; expected cloud contents are written
// out by hand.

#include "UIFrame/Canvas/PanelLayoutCloudSync.h"
#include "Platform/Core/ConfigCloud.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/Core/message_body.pb.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/VariantMapTreeAccess.h"
#include "tests/common/TestSupport.h"
#include "tests/core/ConfigCloudTestSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using core::config_cloud::CConfigCloudClient;
using core::config_cloud::kMsgDownloadFailed;
using core::config_cloud::kMsgDownloadSucceeded;
using core::config_cloud::kMsgUploadFailed;
using core::config_cloud::kMsgUploadSucceeded;

constexpr unsigned int kType = 3000095;
constexpr unsigned long long kUser = 880011;

CVXPanelLayoutTemplate MakeLayout(unsigned long long key, const QString& title, unsigned long long stamp,
                                  bool uploaded = false)
{
    CVXPanelLayoutTemplate layout;
    layout.setLayoutKey(key);
    layout.setTitle(title);
    layout.setRemarks(QStringLiteral("备注 ") + title);
    CVXVariantMapTree canvas;
    canvas.Set<int>(QStringLiteral("BoxCount"), 2);
    canvas.Set<QString>(QStringLiteral("ShortcutId"), QStringLiteral("sc-") + QString::number(key));
    layout.setRestoreData(canvas);
    layout.setUpdateTimestamp(stamp);
    layout.setIsCustomized(true);
    layout.setIsUploaded(uploaded);
    return layout;
}

class PanelLayoutCloudSyncTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(root.isValid());
        core::product_path::SetRootOverride(root.path());
        dbPath = root.filePath(QStringLiteral("cloud.db"));
        client = std::make_unique<CConfigCloudClient>(dbPath);
        client->SetChangePollInterval(0);
        client->SetUserID(kUser);
        core::config_cloud::SetDefaultClient(client.get());
        otherDevice = std::make_unique<CConfigCloudClient>(dbPath);
        otherDevice->SetChangePollInterval(0);
        otherDevice->SetUserID(kUser);
        // Both clients follow changes from the point they started following: reach it before
        // the test writes anything.
        for (CConfigCloudClient* c : {client.get(), otherDevice.get()})
            ASSERT_NE(recorder.WaitResult(c->DownloadPartConfigFromServer({{kType, 1}})), nullptr);
        recorder.messages.clear();

        manager().SetUserID(static_cast<unsigned long>(kUser));
        sync = manager().CloudSync();
        ASSERT_NE(sync, nullptr);
    }

    void TearDown() override
    {
        CVXPanelLayoutManager::ResetForTest();
        // Let the manager's pending file work finish before the folder goes.
        QCoreApplication::processEvents();
        core::config_cloud::SetDefaultClient(nullptr);
        otherDevice.reset();
        client.reset();
        core::product_path::ResetForTest();
    }

    static CVXPanelLayoutManager& manager() { return CVXPanelLayoutManager::Instance(); }

    // What another device puts into an item: the layout marked uploaded, or raw bytes.
    void SeedItem(unsigned int itemId, CVXPanelLayoutTemplate layout)
    {
        layout.setIsUploaded(true);
        std::string payload;
        ASSERT_TRUE(CVXPanelLayoutCloudSync::SerializeCustomPanelLayout(layout, payload));
        SeedBytes(itemId, QByteArray::fromStdString(payload));
    }
    void SeedBytes(unsigned int itemId, const QByteArray& bytes)
    {
        const auto id = otherDevice->UploadConfigToServer({kType, itemId}, bytes);
        const vxtest::CloudMessage* result = recorder.WaitResult(id);
        ASSERT_NE(result, nullptr);
        ASSERT_EQ(result->msgId, kMsgUploadSucceeded);
    }
    // The item as the other device reads it now.
    QByteArray ItemBytes(unsigned int itemId)
    {
        const auto id = otherDevice->DownloadPartConfigFromServer({{kType, itemId}});
        EXPECT_NE(recorder.WaitResult(id), nullptr);
        return otherDevice->GetConfig(kType, itemId);
    }
    CVXPanelLayoutTemplate CloudItem(unsigned int itemId)
    {
        return CVXPanelLayoutCloudSync::DeserializeCustomPanelLayout(ItemBytes(itemId).toStdString());
    }

    // Waits for the pass under way (or starts one): its download result, the merge inside it,
    // and every upload and deletion it sent.
    void FinishPass()
    {
        const auto key = sync->DownloadRequest().RequestKey();
        ASSERT_NE(recorder.WaitResult(key), nullptr);
        ASSERT_TRUE(QTest::qWaitFor(
            [&] {
                return sync->PendingUploadCount() == 0 && sync->PendingDeleteCount() == 0 &&
                       sync->DownloadRequest().State() != CVXPanelLayoutCloudSyncRequest::Requesting;
            },
            10000));
    }
    void RunPass()
    {
        sync->SyncPanelLayouts();
        FinishPass();
    }

    int UploadsSent() const { return recorder.Count(kMsgUploadSucceeded) + recorder.Count(kMsgUploadFailed); }

    CVXPanelLayoutTemplate FileLayout(unsigned long long key)
    {
        CVXPanelLayoutTemplate layout;
        CVXPanelLayoutManager::LoadPanelLayoutFromFile(&layout, manager().GetPanelLayoutFilePath(key), false);
        return layout;
    }
    bool WaitFileStamp(unsigned long long key, unsigned long long stamp)
    {
        return QTest::qWaitFor([&] { return FileLayout(key).updateTimestamp() == stamp; }, 10000);
    }

    QTemporaryDir root;
    QString dbPath;
    vxtest::CloudBusRecorder recorder; // bound before the sync: it sees each result first
    std::unique_ptr<CConfigCloudClient> client;
    std::unique_ptr<CConfigCloudClient> otherDevice;
    CVXPanelLayoutCloudSync* sync = nullptr;
};

TEST(PanelLayoutCloudSyncRequestTest, MovesThroughItsStatesAndCountsTries)
{
    CVXPanelLayoutCloudSyncRequest request;
    EXPECT_EQ(request.State(), CVXPanelLayoutCloudSyncRequest::Idle);
    EXPECT_EQ(request.TryTimes(), 0);

    int sends = 0;
    request.TryRequest([&] {
        ++sends;
        return 41ul;
    });
    EXPECT_EQ(sends, 1);
    EXPECT_EQ(request.State(), CVXPanelLayoutCloudSyncRequest::Requesting);
    EXPECT_EQ(request.RequestKey(), 41u);
    EXPECT_EQ(request.TryTimes(), 1);

    request.OnFailed();
    EXPECT_EQ(request.State(), CVXPanelLayoutCloudSyncRequest::Failed);
    request.OnSucceeded(); // only a requesting request succeeds
    EXPECT_EQ(request.State(), CVXPanelLayoutCloudSyncRequest::Failed);
    EXPECT_EQ(request.TryTimes(), 1);

    request.TryRequest([] { return 42ul; });
    EXPECT_EQ(request.TryTimes(), 2);
    EXPECT_EQ(request.RequestKey(), 42u);
    request.OnSucceeded();
    EXPECT_EQ(request.State(), CVXPanelLayoutCloudSyncRequest::Succeeded);
    EXPECT_EQ(request.TryTimes(), 0);
    request.OnFailed(); // a settled request stays settled
    EXPECT_EQ(request.State(), CVXPanelLayoutCloudSyncRequest::Succeeded);
}

TEST(PanelLayoutCloudSyncPayloadTest, RoundTripsEveryFieldAndRefusesBrokenPayloads)
{
    QPixmap preview(6, 4);
    preview.fill(QColor(10, 20, 30));
    CVXPanelLayoutTemplate layout =
        MakeLayout(1700000000123ull, QStringLiteral("两屏盯盘"), 1700000000456ull, true);
    layout.setPreviewPixmap(preview);

    std::string payload;
    ASSERT_TRUE(CVXPanelLayoutCloudSync::SerializeCustomPanelLayout(layout, payload));
    const CVXPanelLayoutTemplate back = CVXPanelLayoutCloudSync::DeserializeCustomPanelLayout(payload);
    EXPECT_EQ(back.layoutKey(), 1700000000123ull);
    EXPECT_EQ(back.title(), QStringLiteral("两屏盯盘"));
    EXPECT_EQ(back.remarks(), QStringLiteral("备注 两屏盯盘"));
    EXPECT_EQ(back.updateTimestamp(), 1700000000456ull);
    EXPECT_TRUE(back.isCustomized());
    EXPECT_TRUE(back.isUploaded());
    EXPECT_EQ(back.restoreData().Get<int>(QStringLiteral("BoxCount")), 2);
    EXPECT_EQ(back.previewPixmap().size(), QSize(6, 4));
    EXPECT_EQ(back.previewPixmap().toImage().pixelColor(2, 2), QColor(10, 20, 30));

    std::string none = "left over";
    EXPECT_FALSE(CVXPanelLayoutCloudSync::SerializeCustomPanelLayout(CVXPanelLayoutTemplate(), none));
    EXPECT_TRUE(none.empty());

    const std::vector<std::pair<const char*, std::string>> broken = {
        {"empty", std::string()},
        {"first half", payload.substr(0, payload.size() / 2)},
        {"text", std::string("PanelLayoutKey=12;PanelLayoutTitle=abc")},
        {"all ones", std::string(300, '\xff')},
    };
    for (const auto& [name, bytes] : broken)
        EXPECT_TRUE(CVXPanelLayoutCloudSync::DeserializeCustomPanelLayout(bytes).isEmpty()) << name;
}

TEST_F(PanelLayoutCloudSyncTest, ItDownloadsTheFiftyItemsOfTheLayoutTypeAndDropsASecondPassMeanwhile)
{
    const auto keys = CVXPanelLayoutCloudSync::GetAllConfigKeys();
    ASSERT_EQ(keys.size(), 50u);
    EXPECT_EQ(keys.front().id, kType);
    EXPECT_EQ(keys.front().subItem, 1u);
    EXPECT_EQ(keys[24].subItem, 25u);
    EXPECT_EQ(keys.back().id, kType);
    EXPECT_EQ(keys.back().subItem, 50u);

    SeedItem(50, MakeLayout(9050, QStringLiteral("last item"), 100));
    sync->SyncPanelLayouts();
    const auto first = sync->DownloadRequest().RequestKey();
    sync->SyncPanelLayouts();
    EXPECT_EQ(sync->DownloadRequest().RequestKey(), first);
    EXPECT_EQ(sync->DownloadRequest().TryTimes(), 1);
    FinishPass();
    EXPECT_EQ(recorder.Count(kMsgDownloadSucceeded), 1);
    EXPECT_EQ(sync->DownloadRequest().State(), CVXPanelLayoutCloudSyncRequest::Succeeded);
    // Item 50 was part of the download: its layout reached the manager.
    EXPECT_EQ(manager().GetPanelLayoutData(9050ull).title(), QStringLiteral("last item"));
    EXPECT_TRUE(vxtest::HasLog("云模板数据下载成功"));
}

TEST_F(PanelLayoutCloudSyncTest, StampsDecideWhichSideWins)
{
    // Equal stamps: nothing moves.
    manager().AddOrUpdatePanelLayoutData(MakeLayout(1001, QStringLiteral("same"), 500, true),
                                         CVXPanelLayoutManager::ObjectData);
    SeedItem(1, MakeLayout(1001, QStringLiteral("same"), 500));
    // Local newer: uploaded over the same item.
    manager().AddOrUpdatePanelLayoutData(MakeLayout(1002, QStringLiteral("local wins"), 900, true),
                                         CVXPanelLayoutManager::ObjectData);
    SeedItem(7, MakeLayout(1002, QStringLiteral("cloud loses"), 600));
    // Cloud newer: replaces the local layout and its file.
    manager().AddOrUpdatePanelLayoutData(MakeLayout(1003, QStringLiteral("local loses"), 300, true),
                                         CVXPanelLayoutManager::LocalData);
    ASSERT_TRUE(WaitFileStamp(1003, 300));
    SeedItem(3, MakeLayout(1003, QStringLiteral("cloud wins"), 800));
    const QByteArray item1Before = ItemBytes(1);
    const int uploadsBefore = UploadsSent();

    RunPass();

    EXPECT_EQ(UploadsSent() - uploadsBefore, 1); // only 1002
    EXPECT_EQ(ItemBytes(1), item1Before);
    const CVXPanelLayoutTemplate item7 = CloudItem(7);
    EXPECT_EQ(item7.layoutKey(), 1002u);
    EXPECT_EQ(item7.title(), QStringLiteral("local wins"));
    EXPECT_EQ(item7.updateTimestamp(), 900u);
    EXPECT_TRUE(item7.isUploaded());
    EXPECT_TRUE(CloudItem(2).isEmpty()); // the layout kept its item
    EXPECT_TRUE(vxtest::HasLog("开始上传自定义模板: layoutKey = 1002, name = local wins, itemId = 7"));

    const CVXPanelLayoutTemplate replaced = manager().GetPanelLayoutData(1003ull);
    EXPECT_EQ(replaced.title(), QStringLiteral("cloud wins"));
    EXPECT_EQ(replaced.updateTimestamp(), 800u);
    EXPECT_TRUE(replaced.isUploaded());
    EXPECT_TRUE(WaitFileStamp(1003, 800));
    EXPECT_EQ(FileLayout(1003).title(), QStringLiteral("cloud wins"));
    EXPECT_TRUE(vxtest::HasLog("从云端更新模板到本地: layoutKey = 1003, name = cloud wins"));
    EXPECT_EQ(manager().GetPanelLayoutData(1001ull).title(), QStringLiteral("same"));
    EXPECT_EQ(manager().GetCustomPanelLayoutCount(), 3);
}

TEST_F(PanelLayoutCloudSyncTest, DeletedElsewhereIsDeletedHereAndNewLayoutsTakeTheFirstFreeItem)
{
    // Item 1 holds a layout only the cloud knows; item 2 is free.
    SeedItem(1, MakeLayout(2001, QStringLiteral("from the phone"), 100));
    manager().AddOrUpdatePanelLayoutData(MakeLayout(2002, QStringLiteral("gone on the phone"), 100, true),
                                         CVXPanelLayoutManager::LocalData);
    manager().AddOrUpdatePanelLayoutData(MakeLayout(2003, QStringLiteral("brand new"), 100, false),
                                         CVXPanelLayoutManager::LocalData);
    ASSERT_TRUE(WaitFileStamp(2002, 100));
    ASSERT_TRUE(WaitFileStamp(2003, 100));
    QSignalSpy removed(&manager(), &CVXPanelLayoutManager::LayoutDataRemoved);

    RunPass();
    // The local deletion asked for another pass; it finds nothing more to do.
    FinishPass();

    EXPECT_FALSE(manager().HasPanelLayoutData(2002ull));
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0).at(0).toULongLong(), 2002u);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return !QFile::exists(manager().GetPanelLayoutFilePath(2002)); }, 10000));
    EXPECT_TRUE(vxtest::HasLog("云端同步删除本地模板: layoutKey = 2002"));

    const CVXPanelLayoutTemplate item2 = CloudItem(2);
    EXPECT_EQ(item2.layoutKey(), 2003u);
    EXPECT_TRUE(item2.isUploaded());
    EXPECT_TRUE(CloudItem(3).isEmpty());
    // The upload result marks the local layout uploaded and rewrites its file.
    EXPECT_TRUE(manager().GetPanelLayoutData(2003ull).isUploaded());
    EXPECT_TRUE(QTest::qWaitFor([&] { return FileLayout(2003).isUploaded(); }, 10000));
    EXPECT_TRUE(vxtest::HasLog("上传自定义模板到云端成功并更新 isUploaded 标记: layoutKey = 2003"));

    // The cloud-only layout came down, with its file.
    EXPECT_EQ(manager().GetPanelLayoutData(2001ull).title(), QStringLiteral("from the phone"));
    EXPECT_TRUE(WaitFileStamp(2001, 100));
    EXPECT_TRUE(vxtest::HasLog("从云端同步模板到本地: layoutKey = 2001, name = from the phone"));
}

TEST_F(PanelLayoutCloudSyncTest, TheFiftyFirstLayoutStaysLocal)
{
    for (unsigned long long i = 1; i <= 51; ++i)
        manager().AddOrUpdatePanelLayoutData(MakeLayout(3000 + i, QStringLiteral("L%1").arg(i), 10 + i),
                                             CVXPanelLayoutManager::ObjectData);

    RunPass();

    EXPECT_EQ(recorder.Count(kMsgUploadSucceeded), 50);
    // In the manager's order: layout i went to item i.
    EXPECT_EQ(CloudItem(1).layoutKey(), 3001u);
    EXPECT_EQ(CloudItem(37).layoutKey(), 3037u);
    EXPECT_EQ(CloudItem(50).layoutKey(), 3050u);
    EXPECT_TRUE(vxtest::HasLog("云端最多只能上传 50 个模板数据, 模板上传失败: layoutKey = 3051, name = L51"));
    EXPECT_TRUE(manager().HasPanelLayoutData(3051ull));
    EXPECT_FALSE(manager().GetPanelLayoutData(3051ull).isUploaded());
    EXPECT_TRUE(manager().GetPanelLayoutData(3050ull).isUploaded());
}

TEST_F(PanelLayoutCloudSyncTest, ALocallyDeletedLayoutIsDeletedInTheCloudAndLeavesTheDeleteSet)
{
    SeedItem(4, MakeLayout(4001, QStringLiteral("to delete"), 100));
    SeedItem(5, MakeLayout(4002, QStringLiteral("to keep"), 100));
    RunPass();
    ASSERT_TRUE(manager().HasPanelLayoutData(4001ull));

    // Removing starts a pass by itself.
    manager().RemovePanelLayoutData(4001);
    EXPECT_TRUE(manager().GetDeleteLayoutKeySet().contains(4001ull));
    ASSERT_EQ(sync->DownloadRequest().State(), CVXPanelLayoutCloudSyncRequest::Requesting);
    FinishPass();

    EXPECT_TRUE(ItemBytes(4).isEmpty());
    EXPECT_EQ(CloudItem(5).layoutKey(), 4002u);
    EXPECT_FALSE(manager().GetDeleteLayoutKeySet().contains(4001ull));
    EXPECT_TRUE(vxtest::HasLog("开始删除云端自定义模板数据: layoutKey = 4001, name = to delete, itemId = 4"));
    EXPECT_TRUE(vxtest::HasLog("删除云端自定义模板成功: layoutKey = 4001"));
    EXPECT_FALSE(manager().HasPanelLayoutData(4001ull));

    // The emptied item is free again for the next new layout.
    manager().AddOrUpdatePanelLayoutData(MakeLayout(4003, QStringLiteral("next"), 100),
                                         CVXPanelLayoutManager::ObjectData);
    RunPass();
    EXPECT_EQ(CloudItem(1).layoutKey(), 4003u);
}

TEST_F(PanelLayoutCloudSyncTest, DownloadFailuresMergeOnlyWithResultZero)
{
    manager().AddOrUpdatePanelLayoutData(MakeLayout(5001, QStringLiteral("waiting"), 100),
                                         CVXPanelLayoutManager::ObjectData);

    // Result 0 on the failure message: the merge runs (and uploads the new layout).
    sync->SyncPanelLayouts();
    const auto key = sync->DownloadRequest().RequestKey();
    core::CMessageBody body;
    body.set_p1(key);
    body.set_p2(0);
    body.set_exparam("no error");
    core::__CMessageDispatch::Instance().Send(kMsgDownloadFailed, key, body, true);
    EXPECT_EQ(sync->DownloadRequest().State(), CVXPanelLayoutCloudSyncRequest::Succeeded);
    EXPECT_EQ(sync->PendingUploadCount(), 1);
    FinishPass();
    EXPECT_EQ(CloudItem(1).layoutKey(), 5001u);
    // The request's own result came later and counted no second time.
    ASSERT_NE(recorder.Find(kMsgDownloadSucceeded, key), nullptr);
    int successes = 0;
    for (const auto& log : vxtest::Logs())
        successes += log.message.find("云模板数据下载成功") != std::string::npos ? 1 : 0;
    EXPECT_EQ(successes, 1);

    // A real failure (the client has no user): failed, logged, nothing merged.
    manager().AddOrUpdatePanelLayoutData(MakeLayout(5002, QStringLiteral("stays"), 100),
                                         CVXPanelLayoutManager::ObjectData);
    client->SetUserID(0);
    const int uploadsBefore = UploadsSent();
    RunPass();
    EXPECT_EQ(sync->DownloadRequest().State(), CVXPanelLayoutCloudSyncRequest::Failed);
    EXPECT_TRUE(vxtest::HasLog("下载自定义面板的模板数据失败：error = no user"));
    EXPECT_EQ(UploadsSent(), uploadsBefore);
    EXPECT_FALSE(manager().GetPanelLayoutData(5002ull).isUploaded());

    // Results of other requests are not the sync's business.
    body.set_p1(key + 1000);
    body.set_p2(0);
    core::__CMessageDispatch::Instance().Send(kMsgDownloadFailed, key + 1000, body, true);
    EXPECT_EQ(sync->DownloadRequest().State(), CVXPanelLayoutCloudSyncRequest::Failed);
}

TEST_F(PanelLayoutCloudSyncTest, AGarbageItemIsSkippedAndHarmsNoLocalLayout)
{
    vxtest::ExpectError("云端模板数据无法解析");
    const QByteArray garbage(257, '\x9c');
    SeedBytes(1, garbage);
    SeedItem(3, MakeLayout(6003, QStringLiteral("readable"), 100));
    // Uploaded earlier, and its item may be the unreadable one: it must not be deleted.
    manager().AddOrUpdatePanelLayoutData(MakeLayout(6001, QStringLiteral("maybe in item 1"), 100, true),
                                         CVXPanelLayoutManager::LocalData);
    manager().AddOrUpdatePanelLayoutData(MakeLayout(6002, QStringLiteral("new"), 100),
                                         CVXPanelLayoutManager::ObjectData);
    ASSERT_TRUE(WaitFileStamp(6001, 100));

    RunPass();

    EXPECT_TRUE(vxtest::HasLog("云端模板数据无法解析, 已跳过: itemId = 1, size = 257"));
    EXPECT_EQ(ItemBytes(1), garbage);           // not taken as free
    EXPECT_EQ(CloudItem(2).layoutKey(), 6002u); // the first free item is 2
    EXPECT_TRUE(manager().HasPanelLayoutData(6001ull));
    EXPECT_TRUE(QFile::exists(manager().GetPanelLayoutFilePath(6001)));
    EXPECT_EQ(manager().GetPanelLayoutData(6003ull).title(), QStringLiteral("readable"));

    // Pushed garbage replaces nothing either.
    const QByteArray before = manager().GetPanelLayoutData(6003ull).SerializeAsQByteArray();
    SeedBytes(3, garbage);
    client->PollChangesNow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return vxtest::HasLog("itemId = 3, size = 257"); }, 10000));
    EXPECT_EQ(manager().GetPanelLayoutData(6003ull).SerializeAsQByteArray(), before);
}

TEST_F(PanelLayoutCloudSyncTest, PushedChangesComeDownUnlessDeletedHere)
{
    auto pushed = [&](unsigned int item) {
        const int before = recorder.Count(core::config_cloud::kMsgConfigChanged);
        client->PollChangesNow();
        return QTest::qWaitFor([&] { return recorder.Count(core::config_cloud::kMsgConfigChanged) > before; },
                               10000) &&
               recorder.messages.back().p2 == item;
    };

    SeedItem(6, MakeLayout(7001, QStringLiteral("pushed"), 100));
    ASSERT_TRUE(pushed(6));
    EXPECT_EQ(manager().GetPanelLayoutData(7001ull).title(), QStringLiteral("pushed"));
    EXPECT_TRUE(manager().GetPanelLayoutData(7001ull).isUploaded());
    EXPECT_TRUE(WaitFileStamp(7001, 100));
    EXPECT_TRUE(vxtest::HasLog("云端模板数据同步到本地: layoutKey = 7001, name = pushed"));

    SeedItem(6, MakeLayout(7001, QStringLiteral("pushed again"), 200));
    ASSERT_TRUE(pushed(6));
    EXPECT_EQ(manager().GetPanelLayoutData(7001ull).title(), QStringLiteral("pushed again"));
    EXPECT_TRUE(WaitFileStamp(7001, 200));
    EXPECT_TRUE(vxtest::HasLog("云端模板数据更新，同步到本地: layoutKey = 7001, name = pushed again"));

    // Deleted here, still in the delete set: a push of it is ignored.
    manager().AddOrUpdatePanelLayoutData(MakeLayout(7002, QStringLiteral("deleted here"), 100),
                                         CVXPanelLayoutManager::ObjectData);
    manager().RemovePanelLayoutData(7002);
    FinishPass();
    ASSERT_TRUE(manager().GetDeleteLayoutKeySet().contains(7002ull));
    SeedItem(8, MakeLayout(7002, QStringLiteral("deleted here"), 150));
    ASSERT_TRUE(pushed(8));
    EXPECT_FALSE(manager().HasPanelLayoutData(7002ull));

    // Another configuration type is not a layout.
    std::string payload;
    CVXPanelLayoutCloudSync::SerializeCustomPanelLayout(MakeLayout(7003, QStringLiteral("other type"), 1),
                                                        payload);
    const auto id = otherDevice->UploadConfigToServer({kType + 1, 6}, QByteArray::fromStdString(payload));
    ASSERT_NE(recorder.WaitResult(id), nullptr);
    ASSERT_TRUE(pushed(6));
    EXPECT_FALSE(manager().HasPanelLayoutData(7003ull));
}

TEST_F(PanelLayoutCloudSyncTest, ItemIdsOutsideOneToFiftyAreRefused)
{
    const CVXPanelLayoutTemplate layout = MakeLayout(8001, QStringLiteral("nowhere"), 1);
    struct Row
    {
        unsigned int itemId;
        bool deletion;
        const char* log;
    };
    const std::vector<Row> rows = {
        {0, false,
         "自定义模板数据上传失败，ItemId 错误：ItemId = 0, layoutKey = 8001, name = nowhere, itemId = 0"},
        {51, false, "自定义模板数据上传失败，ItemId 错误：ItemId = 51, layoutKey = 8001"},
        {0, true, "删除云端自定义模板数据失败，ItemId 错误：ItemId = 0, layoutKey = 8001"},
        {51, true, "删除云端自定义模板数据失败，ItemId 错误：ItemId = 51, layoutKey = 8001"},
    };
    for (const Row& row : rows) {
        if (row.deletion)
            sync->DeletePanelLayout(row.itemId, layout);
        else
            sync->UploadPanelLayout(row.itemId, layout);
        EXPECT_TRUE(vxtest::HasLog(row.log)) << row.log;
        EXPECT_EQ(sync->PendingUploadCount() + sync->PendingDeleteCount(), 0);
    }
    // Items 1 and 50 are accepted.
    sync->UploadPanelLayout(1, layout);
    sync->DeletePanelLayout(50, layout);
    EXPECT_EQ(sync->PendingUploadCount(), 1);
    EXPECT_EQ(sync->PendingDeleteCount(), 1);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return sync->PendingUploadCount() + sync->PendingDeleteCount() == 0; }, 10000));
    EXPECT_EQ(CloudItem(1).layoutKey(), 8001u);
    EXPECT_TRUE(vxtest::HasLog("上传自定义模板到云端成功: layoutKey = 8001"));
}

TEST_F(PanelLayoutCloudSyncTest, TwoItemsWithOneKeyBreakTheMergeRule)
{
    vxtest::ExpectAssertion("m_cloudLayouts.count() == m_layoutItemKey.count()");
    SeedItem(1, MakeLayout(9001, QStringLiteral("twice"), 100));
    SeedItem(2, MakeLayout(9001, QStringLiteral("twice"), 100));
    RunPass();
    EXPECT_EQ(vxtest::CountAssertions("m_cloudLayouts.count() == m_layoutItemKey.count()"), 1);
    EXPECT_TRUE(manager().HasPanelLayoutData(9001ull));
}

// Another running program of the same user, on the same store: its saves and deletions reach this
// program through the store's change announcements and this program's own sync.
TEST_F(PanelLayoutCloudSyncTest, AnotherProcessSavesAndDeletesALayout)
{
    const QString peer = QCoreApplication::applicationDirPath() + QStringLiteral("/cloudpeer");
    ASSERT_TRUE(QFile::exists(peer)) << peer.toStdString();
    const QString peerRoot = root.filePath(QStringLiteral("peer"));
    ASSERT_TRUE(QDir().mkpath(peerRoot));
    auto runPeer = [&](const QStringList& action) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(peer, QStringList{QStringLiteral("--root"), peerRoot, QStringLiteral("--db"), dbPath,
                                        QStringLiteral("--user"), QString::number(kUser)} +
                                action);
        const bool finished = process.waitForFinished(60000);
        if (!finished)
            process.kill();
        const QByteArray output = process.readAll();
        EXPECT_TRUE(finished) << output.toStdString();
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0) << output.toStdString();
    };
    client->SetChangePollInterval(50);

    runPeer({QStringLiteral("--save"), QStringLiteral("12345"), QStringLiteral("来自另一台电脑"),
             QStringLiteral("777")});
    ASSERT_TRUE(QTest::qWaitFor([&] { return manager().HasPanelLayoutData(12345ull); }, 10000));
    const CVXPanelLayoutTemplate arrived = manager().GetPanelLayoutData(12345ull);
    EXPECT_EQ(arrived.title(), QStringLiteral("来自另一台电脑"));
    EXPECT_EQ(arrived.updateTimestamp(), 777u);
    EXPECT_TRUE(arrived.isUploaded());
    EXPECT_TRUE(WaitFileStamp(12345, 777));

    runPeer({QStringLiteral("--delete"), QStringLiteral("12345")});
    RunPass();
    FinishPass();
    EXPECT_FALSE(manager().HasPanelLayoutData(12345ull));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return !QFile::exists(manager().GetPanelLayoutFilePath(12345)); }, 10000));
}

} // namespace
