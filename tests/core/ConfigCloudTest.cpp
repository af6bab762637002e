// The configuration cloud over its embedded store: clients on one database file behave as the
// devices of one user; results always come later as bus messages; a broken file fails requests
// without harming the file.

#include "Platform/Core/ConfigCloud.h"
#include "tests/common/TestSupport.h"
#include "tests/core/ConfigCloudTestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>

namespace {

using core::config_cloud::CConfigCloudClient;
using core::config_cloud::ConfigKey;
using core::config_cloud::kMsgConfigChanged;
using core::config_cloud::kMsgDownloadFailed;
using core::config_cloud::kMsgDownloadSucceeded;
using core::config_cloud::kMsgUploadFailed;
using core::config_cloud::kMsgUploadSucceeded;
using vxtest::CloudMessage;

constexpr unsigned int kType = 4000001;
constexpr unsigned long long kUser = 7001;
constexpr unsigned long long kOtherUser = 7002;

class ConfigCloudTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        path = dir.filePath(QStringLiteral("cloud.db"));
    }
    void TearDown() override { core::config_cloud::SetDefaultClient(nullptr); }

    std::unique_ptr<CConfigCloudClient> MakeClient(unsigned long long user)
    {
        auto client = std::make_unique<CConfigCloudClient>(path);
        // Polls are asked for explicitly, so each test decides when a device looks.
        client->SetChangePollInterval(0);
        client->SetUserID(user);
        // A client follows the changes written after it started following: wait for that point
        // so a write made next by another client counts as a change.
        if (user != 0) {
            Settle(*client);
            recorder.messages.clear();
        }
        return client;
    }

    // Uploads and waits for the result; returns the message (null on time-out).
    CloudMessage Upload(CConfigCloudClient& client, unsigned int item, const QByteArray& bytes)
    {
        const auto id = client.UploadConfigToServer({kType, item}, bytes);
        const CloudMessage* m = recorder.WaitResult(id);
        return m ? *m : CloudMessage{};
    }
    CloudMessage Download(CConfigCloudClient& client, std::vector<ConfigKey> keys)
    {
        const auto id = client.DownloadPartConfigFromServer(keys);
        const CloudMessage* m = recorder.WaitResult(id);
        return m ? *m : CloudMessage{};
    }
    // A client's requests and polls run in order: once a later download of it reported, every
    // announcement of its earlier polls has been delivered.
    void Settle(CConfigCloudClient& client) { Download(client, {{kType, 99}}); }

    QTemporaryDir dir;
    QString path;
    vxtest::CloudBusRecorder recorder;
};

TEST_F(ConfigCloudTest, AnUploadOfOneDeviceIsAnnouncedToTheOtherAndADeletionFollows)
{
    auto phone = MakeClient(kUser);
    auto desk = MakeClient(kUser);
    auto tablet = MakeClient(kUser);

    // The desk reads its cache while the announcement is being delivered.
    QByteArray seenDuringAnnouncement = "unset";
    recorder.onMessage = [&](const CloudMessage& m) {
        if (m.msgId == kMsgConfigChanged)
            seenDuringAnnouncement =
                desk->GetConfig(static_cast<unsigned int>(m.p1), static_cast<unsigned int>(m.p2));
    };

    EXPECT_EQ(Upload(*phone, 3, "layout-v1").msgId, kMsgUploadSucceeded);
    EXPECT_EQ(phone->GetConfig(kType, 3), QByteArray("layout-v1"));
    EXPECT_TRUE(desk->GetConfig(kType, 3).isEmpty());

    desk->PollChangesNow();
    ASSERT_TRUE(recorder.WaitFor(kMsgConfigChanged, kType));
    const CloudMessage* changed = recorder.Find(kMsgConfigChanged, kType);
    EXPECT_EQ(changed->p2, 3u);
    EXPECT_EQ(seenDuringAnnouncement, QByteArray("layout-v1"));

    // A third device that never polled reads the item by downloading it.
    EXPECT_TRUE(tablet->GetConfig(kType, 3).isEmpty());
    EXPECT_EQ(Download(*tablet, {{kType, 3}, {kType, 4}}).msgId, kMsgDownloadSucceeded);
    EXPECT_EQ(tablet->GetConfig(kType, 3), QByteArray("layout-v1"));
    EXPECT_TRUE(tablet->GetConfig(kType, 4).isEmpty());

    // The writer does not announce its own write to itself; a second poll of the desk finds
    // nothing new.
    phone->PollChangesNow();
    desk->PollChangesNow();
    Settle(*phone);
    Settle(*desk);
    EXPECT_EQ(recorder.Count(kMsgConfigChanged), 1);

    // Deleting is uploading empty bytes; the desk is told and its cache empties.
    EXPECT_EQ(Upload(*phone, 3, QByteArray()).msgId, kMsgUploadSucceeded);
    desk->PollChangesNow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return recorder.Count(kMsgConfigChanged) == 2; }, 10000));
    EXPECT_TRUE(seenDuringAnnouncement.isEmpty());
    EXPECT_TRUE(desk->GetConfig(kType, 3).isEmpty());
    EXPECT_EQ(Download(*tablet, {{kType, 3}}).msgId, kMsgDownloadSucceeded);
    EXPECT_TRUE(tablet->GetConfig(kType, 3).isEmpty());
}

TEST_F(ConfigCloudTest, ChangesAreFoundByThePollTimerAlone)
{
    auto phone = MakeClient(kUser);
    auto desk = std::make_unique<CConfigCloudClient>(path);
    desk->SetUserID(kUser); // the default interval stays on
    Settle(*desk);
    recorder.messages.clear();

    EXPECT_EQ(Upload(*phone, 12, "pushed").msgId, kMsgUploadSucceeded);
    ASSERT_TRUE(recorder.WaitFor(kMsgConfigChanged, kType));
    EXPECT_EQ(recorder.Find(kMsgConfigChanged, kType)->p2, 12u);
    EXPECT_EQ(desk->GetConfig(kType, 12), QByteArray("pushed"));
}

TEST_F(ConfigCloudTest, EachUserSeesOnlyTheirOwnRows)
{
    auto mine = MakeClient(kUser);
    auto theirs = MakeClient(kOtherUser);

    EXPECT_EQ(Upload(*mine, 1, "mine").msgId, kMsgUploadSucceeded);
    EXPECT_EQ(Upload(*theirs, 1, "theirs").msgId, kMsgUploadSucceeded);

    theirs->PollChangesNow();
    mine->PollChangesNow();
    Settle(*theirs);
    Settle(*mine);
    EXPECT_EQ(recorder.Count(kMsgConfigChanged), 0);

    auto mineAgain = MakeClient(kUser);
    auto theirsAgain = MakeClient(kOtherUser);
    Download(*mineAgain, {{kType, 1}});
    Download(*theirsAgain, {{kType, 1}});
    EXPECT_EQ(mineAgain->GetConfig(kType, 1), QByteArray("mine"));
    EXPECT_EQ(theirsAgain->GetConfig(kType, 1), QByteArray("theirs"));

    // Switching a client to another user forgets the first user's cache.
    mineAgain->SetUserID(kOtherUser);
    EXPECT_TRUE(mineAgain->GetConfig(kType, 1).isEmpty());
    Download(*mineAgain, {{kType, 1}});
    EXPECT_EQ(mineAgain->GetConfig(kType, 1), QByteArray("theirs"));
}

TEST_F(ConfigCloudTest, RequestIdsAreNonZeroUniqueAndResultsComeLater)
{
    auto a = MakeClient(kUser);
    auto b = MakeClient(kUser);
    auto nobody = MakeClient(0);

    std::vector<unsigned long long> ids;
    ids.push_back(a->UploadConfigToServer({kType, 1}, "x"));
    ids.push_back(b->DownloadPartConfigFromServer({{kType, 1}}));
    ids.push_back(nobody->UploadConfigToServer({kType, 1}, "x"));
    ids.push_back(nobody->DownloadPartConfigFromServer({{kType, 1}}));
    ids.push_back(core::config_cloud::UploadConfigToServer({kType, 1}, "x")); // no default client
    ids.push_back(core::config_cloud::DownloadPartConfigFromServer({{kType, 1}}));
    core::config_cloud::SetDefaultClient(a.get());
    ids.push_back(core::config_cloud::DownloadPartConfigFromServer({{kType, 1}}));
    ids.push_back(a->UploadConfigToServer({kType, 2}, "y"));

    // Nothing was announced from inside the calls, not even the failures known at once.
    EXPECT_TRUE(recorder.messages.empty());
    EXPECT_EQ(std::set<unsigned long long>(ids.begin(), ids.end()).size(), ids.size());
    for (unsigned long long id : ids)
        EXPECT_NE(id, 0u);

    for (unsigned long long id : ids)
        ASSERT_NE(recorder.WaitResult(id), nullptr) << id;
    EXPECT_EQ(recorder.Result(ids[0])->msgId, kMsgUploadSucceeded);
    EXPECT_EQ(recorder.Result(ids[1])->msgId, kMsgDownloadSucceeded);
    EXPECT_EQ(recorder.Result(ids[6])->msgId, kMsgDownloadSucceeded);
    EXPECT_EQ(core::config_cloud::GetConfig(kType, 1), QByteArray("x"));

    // Without a user or without a default client, requests fail with a reason and a non-zero
    // result code.
    const std::vector<std::pair<size_t, unsigned int>> failures = {
        {2, kMsgUploadFailed}, {3, kMsgDownloadFailed}, {4, kMsgUploadFailed}, {5, kMsgDownloadFailed}};
    for (const auto& [index, msgId] : failures) {
        const CloudMessage* m = recorder.Result(ids[index]);
        EXPECT_EQ(m->msgId, msgId) << index;
        EXPECT_NE(m->p2, 0u) << index;
        EXPECT_FALSE(m->exparam.empty()) << index;
    }
    EXPECT_NE(recorder.Result(ids[2])->exparam.find("no user"), std::string::npos);
    EXPECT_NE(recorder.Result(ids[4])->exparam.find("no configuration client"), std::string::npos);
}

TEST_F(ConfigCloudTest, RequestsPendingAtDestructionStillReport)
{
    auto client = MakeClient(kUser);
    const auto upload = client->UploadConfigToServer({kType, 5}, "last words");
    const auto download = client->DownloadPartConfigFromServer({{kType, 5}});
    client.reset();

    ASSERT_NE(recorder.WaitResult(upload), nullptr);
    ASSERT_NE(recorder.WaitResult(download), nullptr);
    EXPECT_EQ(recorder.Result(upload)->msgId, kMsgUploadSucceeded);
    EXPECT_EQ(recorder.Result(download)->msgId, kMsgDownloadSucceeded);

    auto later = MakeClient(kUser);
    Download(*later, {{kType, 5}});
    EXPECT_EQ(later->GetConfig(kType, 5), QByteArray("last words"));
}

// A file that is not a store: every request fails with the reason, logged, and the file stays.
TEST_F(ConfigCloudTest, ABrokenDatabaseFileFailsRequestsAndIsLeftAlone)
{
    struct Row
    {
        const char* name;
        std::function<void(const QString& path)> make;
        const char* expectedReason;
    };
    auto writeFile = [](const QByteArray& content) {
        return [content](const QString& path) {
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(content);
        };
    };
    QByteArray sqliteHeaderThenJunk("SQLite format 3");
    sqliteHeaderThenJunk.append('\0');
    sqliteHeaderThenJunk.append(QByteArray(4080, '\x5a'));
    // A real store with a row, whose pages after the first are overwritten.
    auto damagedStore = [this](const QString& path) {
        {
            CConfigCloudClient writer(path);
            writer.SetChangePollInterval(0);
            writer.SetUserID(kUser);
            ASSERT_EQ(Upload(writer, 1, QByteArray(3000, 'r')).msgId, kMsgUploadSucceeded);
        }
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_GT(file.size(), 4096);
        file.seek(4096);
        file.write(QByteArray(static_cast<int>(file.size()) - 4096, '\x13'));
    };
    const std::vector<Row> rows = {
        {"garbage", writeFile(QByteArray(8192, '\x7f')), "file is not a database"},
        {"header then junk", writeFile(sqliteHeaderThenJunk), "file is not a database"},
        {"damaged pages", damagedStore, "malformed"},
        {"folder", [](const QString& path) { ASSERT_TRUE(QDir().mkdir(path)); },
         "unable to open database file"},
    };
    vxtest::ExpectError("failed for the store");

    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const QString rowPath = dir.filePath(QString::fromUtf8(row.name));
        row.make(rowPath);
        QFile before(rowPath);
        const QByteArray content = before.open(QIODevice::ReadOnly) ? before.readAll() : QByteArray();
        before.close();

        CConfigCloudClient client(rowPath);
        client.SetChangePollInterval(0);
        client.SetUserID(kUser);
        const CloudMessage download = Download(client, {{kType, 1}});
        const CloudMessage upload = Upload(client, 1, "x");
        client.PollChangesNow();

        EXPECT_EQ(download.msgId, kMsgDownloadFailed);
        EXPECT_EQ(upload.msgId, kMsgUploadFailed);
        EXPECT_NE(download.p2, 0u);
        EXPECT_NE(upload.p2, 0u);
        EXPECT_NE(download.exparam.find(row.expectedReason), std::string::npos) << download.exparam;
        EXPECT_NE(download.exparam.find(rowPath.toStdString()), std::string::npos) << download.exparam;
        EXPECT_TRUE(client.GetConfig(kType, 1).isEmpty());
        EXPECT_TRUE(vxtest::HasLog("CConfigCloudClient::UploadConfigToServer"));

        QFile after(rowPath);
        EXPECT_TRUE(after.exists());
        EXPECT_EQ(after.open(QIODevice::ReadOnly) ? after.readAll() : QByteArray(), content);
    }
}

} // namespace
