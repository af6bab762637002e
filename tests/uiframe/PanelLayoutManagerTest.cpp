// The layout manager: built-in catalogue selection and loading, user layouts, changes and their
// signals, the delete set, guarded asynchronous loads and start-up.

#include "tests/common/TestSupport.h"
#include "tests/uiframe/PanelLayoutTestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QThreadPool>

using namespace layout_test;

namespace {

using Manager = CVXPanelLayoutManager;

QJsonObject CatalogueEntry(const QString& file, int nameId, int remarksId)
{
    QJsonObject object;
    object.insert(QStringLiteral("File"), file);
    object.insert(QStringLiteral("Image"), QString(file + QStringLiteral(".png")));
    if (nameId != -1)
        object.insert(QStringLiteral("NameLangID"), nameId);
    if (remarksId != -1)
        object.insert(QStringLiteral("RemarksLangID"), remarksId);
    return object;
}

class PanelLayoutManagerTest : public LayoutFixture
{
protected:
    QString TemplatePath(const QString& name) const { return QDir(TemplatesFolder()).filePath(name); }

    void WriteCatalogue(const QString& name, const QJsonArray& entries)
    {
        ASSERT_TRUE(QDir().mkpath(TemplatesFolder()));
        ASSERT_TRUE(WriteBytes(TemplatePath(name), QJsonDocument(entries).toJson()));
    }

    void WriteBuiltIn(const QString& file, const QString& title)
    {
        ASSERT_TRUE(QDir().mkpath(TemplatesFolder()));
        ASSERT_TRUE(Manager::SavePanelLayoutToFile(MakeLayout(999, title, false), TemplatePath(file)));
    }

    void WriteUser(const CVXPanelLayoutTemplate& layout)
    {
        ASSERT_TRUE(Manager::SavePanelLayoutToFile(layout, UserFile(layout.layoutKey())));
    }

    static void LoadBuiltIns()
    {
        bool done = false;
        Manager::Instance().AsyncLoadAllDefaultPanelLayoutEntriesAndLayouts([&] { done = true; });
        ASSERT_TRUE(WaitFor([&] { return done; }));
    }

    static void LoadUsers()
    {
        bool done = false;
        Manager::Instance().AsyncLoadCustomizedPanelLayouts([&] { done = true; });
        ASSERT_TRUE(WaitFor([&] { return done; }));
    }
};

} // namespace

TEST_F(PanelLayoutManagerTest, ConstantsAndKeys)
{
    EXPECT_EQ(Manager::GetPanelLayoutExtension(), QStringLiteral(".vxl"));
    EXPECT_EQ(Manager::MaximumLayoutCount(), 50);
    // Built-in keys count from 0 in the order they are asked for.
    EXPECT_EQ(Manager::GenerateDefaultLayoutKey(), 0u);
    EXPECT_EQ(Manager::GenerateDefaultLayoutKey(), 1u);
    EXPECT_EQ(Manager::GenerateDefaultLayoutKey(), 2u);
    // User keys are server milliseconds: far above any built-in key.
    const unsigned long long key = Manager::GenerateLayoutKey();
    EXPECT_GT(key, 1600000000000ull);
}

struct CatalogueRow
{
    bool bank;
    int broker;
    const char* expectedTitle;
};

class PanelLayoutCatalogueSelection : public PanelLayoutManagerTest,
                                      public ::testing::WithParamInterface<CatalogueRow>
{
};

TEST_P(PanelLayoutCatalogueSelection, BankEditionWinsOverTheBrokerTest)
{
    WriteBuiltIn(QStringLiteral("plain.vxl"), QStringLiteral("Plain"));
    WriteBuiltIn(QStringLiteral("bank.vxl"), QStringLiteral("Bank"));
    WriteBuiltIn(QStringLiteral("jp.vxl"), QStringLiteral("JP"));
    WriteCatalogue(QStringLiteral("DefaultPanelLayout.json"),
                   {CatalogueEntry(QStringLiteral("plain.vxl"), 990001, 990002)});
    WriteCatalogue(QStringLiteral("DefaultPanelLayoutEleBank.json"),
                   {CatalogueEntry(QStringLiteral("bank.vxl"), 990003, 990004)});
    WriteCatalogue(QStringLiteral("DefaultPanelLayoutJP.json"),
                   {CatalogueEntry(QStringLiteral("jp.vxl"), 990005, 990006)});

    core::environment::SetBankEdition(GetParam().bank);
    core::environment::SetFirstMainBrokerId(GetParam().broker);
    LoadBuiltIns();
    EXPECT_EQ(Titles(), QStringList{QString::fromLatin1(GetParam().expectedTitle)});
}

INSTANTIATE_TEST_SUITE_P(Rows, PanelLayoutCatalogueSelection,
                         ::testing::Values(CatalogueRow{false, 0, "Plain"},
                                           CatalogueRow{false, 1001, "Plain"}, CatalogueRow{true, 0, "Bank"},
                                           CatalogueRow{false, 1012, "JP"},
                                           CatalogueRow{true, 1012, "Bank"}));

TEST_F(PanelLayoutManagerTest, BuiltInLayoutsGetKeysShortcutIdsAndTranslatedTitles)
{
    WriteBuiltIn(QStringLiteral("quotes.vxl"), QStringLiteral("行情"));
    WriteBuiltIn(QStringLiteral("skipped.vxl"), QStringLiteral("Skipped"));
    WriteBuiltIn(QStringLiteral("trade.vxl"), QStringLiteral("交易"));
    // An old-format built-in file is converted (and rewritten) like a user file.
    OldFields old;
    old.key = 5;
    old.title = QStringLiteral("期权");
    old.restore = CanvasRecord(1);
    ASSERT_TRUE(WriteBytes(TemplatePath(QStringLiteral("options.vxl")), OldFormatBytes(old, false)));
    WriteCatalogue(QStringLiteral("DefaultPanelLayout.json"),
                   {CatalogueEntry(QStringLiteral("quotes.vxl"), 990011, 990012),
                    CatalogueEntry(QStringLiteral("skipped.vxl"), -1, 990014),
                    CatalogueEntry(QStringLiteral("trade.vxl"), 990015, -1),
                    CatalogueEntry(QStringLiteral("options.vxl"), 990017, 990018)});
    // English texts for one name id; the others fall back to the file's own title.
    const QString lang = QDir(root.path()).filePath(QStringLiteral("en.json"));
    ASSERT_TRUE(WriteBytes(lang, R"({"990011": "Quotes"})"));
    ASSERT_TRUE(core::langx::LoadCatalogue(QStringLiteral("en"), lang));
    ASSERT_EQ(core::langx::GetLanguage(), QStringLiteral("en"));

    LoadBuiltIns();
    const Manager& manager = Manager::Instance();
    EXPECT_EQ(Titles(),
              (QStringList{QStringLiteral("Quotes"), QStringLiteral("交易"), QStringLiteral("期权")}));
    const auto& layouts = manager.GetPanelLayoutDataListRef();
    ASSERT_EQ(layouts.size(), 3);
    const int nameIds[] = {990011, 990015, 990017};
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(layouts[i].layoutKey(), unsigned(i));
        EXPECT_EQ(layouts[i].restoreData().Get<QString>(QStringLiteral("ShortcutId")),
                  QStringLiteral("Default_Panel_ShortcutId_%1").arg(nameIds[i]));
        EXPECT_FALSE(layouts[i].isCustomized());
    }
    EXPECT_TRUE(vxtest::HasLog("加载的系统面板" + TemplatePath(QStringLiteral("trade.vxl")).toStdString() +
                               "没有标注"));
    EXPECT_TRUE(vxtest::HasLog("将旧格式的模板文件保存为新格式: file = " +
                               TemplatePath(QStringLiteral("options.vxl")).toStdString()));

    const Manager::DefaultLayoutEntry* entry = manager.GetDefaultLayoutEntry(1);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->strLayoutFilePath, TemplatePath(QStringLiteral("trade.vxl")));
    EXPECT_EQ(entry->strPreviewImagePath, TemplatePath(QStringLiteral("trade.vxl.png")));
    EXPECT_EQ(entry->nNameLangID, 990015);
    EXPECT_EQ(entry->nRemarksLangID, -1);
    EXPECT_EQ(manager.GetDefaultLayoutEntry(3), nullptr);
    EXPECT_EQ(manager.GetCustomPanelLayoutCount(), 0);

    long long found = -1;
    EXPECT_TRUE(manager.SearchTemplateOfShortcutId(QStringLiteral("Default_Panel_ShortcutId_990015"), found));
    EXPECT_EQ(found, 1);
    EXPECT_TRUE(
        vxtest::HasLog("[CVXPanelLayoutManager] Search template, restoreShortcutId = "
                       "Default_Panel_ShortcutId_990011, shortcutId = Default_Panel_ShortcutId_990015"));
    found = -1;
    EXPECT_FALSE(manager.SearchTemplateOfShortcutId(QStringLiteral("nothing"), found));
    EXPECT_EQ(found, -1);
}

TEST_F(PanelLayoutManagerTest, CatalogueFailuresAreLoggedWithTheirTexts)
{
    struct Row
    {
        const char* name;
        std::function<void()> prepare;
        std::function<QString()> message;
    };
    const QString folder = TemplatesFolder() + QStringLiteral("/");
    const QString catalogue = QDir(TemplatesFolder()).filePath(QStringLiteral("DefaultPanelLayout.json"));
    const QByteArray badJson = "[{\"File\": \"a.vxl\",]";
    QJsonParseError reference;
    QJsonDocument::fromJson(badJson, &reference);
    const std::vector<Row> rows = {
        {"no templates folder", [] {},
         [&]() -> QString { return QStringLiteral("程序数据文件夹不存在: ") + folder; }},
        {"no catalogue", [&] { ASSERT_TRUE(QDir().mkpath(TemplatesFolder())); },
         [&]() -> QString {
             return QStringLiteral("系统模板配置文件不存在：") +
                    QDir(folder).filePath(QStringLiteral("DefaultPanelLayout.json"));
         }},
        {"catalogue cannot be opened", [&] { ASSERT_TRUE(QDir().mkpath(catalogue)); },
         [&]() -> QString {
             return QStringLiteral("系统模板文件打开失败：") +
                    QDir(folder).filePath(QStringLiteral("DefaultPanelLayout.json"));
         }},
        {"catalogue cannot be parsed",
         [&] {
             ASSERT_TRUE(QDir(catalogue).removeRecursively());
             ASSERT_TRUE(WriteBytes(catalogue, badJson));
         },
         [&]() -> QString { return QStringLiteral("系统模板文件解析失败：") + reference.errorString(); }},
    };
    vxtest::ExpectError("读取系统模板失败: ");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        row.prepare();
        LoadBuiltIns();
        EXPECT_TRUE(vxtest::HasLog("读取系统模板失败: " + row.message().toStdString()));
        EXPECT_TRUE(Manager::Instance().GetPanelLayoutDataListRef().isEmpty());
    }
    EXPECT_NE(reference.error, QJsonParseError::NoError);
}

TEST_F(PanelLayoutManagerTest, AddingReplacingAndRefusingSignalOnce)
{
    Manager& manager = Manager::Instance();
    QSignalSpy added(&manager, &Manager::LayoutDataAdded);
    QSignalSpy updated(&manager, &Manager::LayoutDataUpdated);
    QSignalSpy removed(&manager, &Manager::LayoutDataRemoved);

    manager.AddOrUpdatePanelLayoutData(MakeLayout(101, QStringLiteral("One"), true), Manager::ObjectData);
    ASSERT_EQ(added.count(), 1);
    EXPECT_EQ(added.at(0).at(0).toULongLong(), 101u);
    EXPECT_EQ(updated.count(), 0);

    // Same key: replaced in place, only Updated.
    manager.AddOrUpdatePanelLayoutData(MakeLayout(202, QStringLiteral("Two"), true), Manager::ObjectData);
    manager.AddOrUpdatePanelLayoutData(MakeLayout(101, QStringLiteral("One again"), true),
                                       Manager::ObjectData);
    EXPECT_EQ(added.count(), 2);
    ASSERT_EQ(updated.count(), 1);
    EXPECT_EQ(updated.at(0).at(0).toULongLong(), 101u);
    EXPECT_EQ(Titles(), (QStringList{QStringLiteral("One again"), QStringLiteral("Two")}));

    // An empty template changes nothing.
    manager.AddOrUpdatePanelLayoutData(CVXPanelLayoutTemplate(), Manager::AllData);
    EXPECT_EQ(added.count(), 2);
    EXPECT_EQ(updated.count(), 1);
    EXPECT_TRUE(vxtest::HasLog("[自定义面板] AddOrUpdatePanelLayoutData = 保存或更新无效数据"));
    EXPECT_EQ(removed.count(), 0);
    EXPECT_EQ(manager.PendingFileWorkCount(), 0) << "ObjectData writes no file";
    EXPECT_FALSE(QFile::exists(UserFile(101)));
}

TEST_F(PanelLayoutManagerTest, QueriesSeparateUserLayoutsFromBuiltIns)
{
    WriteBuiltIn(QStringLiteral("quotes.vxl"), QStringLiteral("Quotes"));
    WriteCatalogue(QStringLiteral("DefaultPanelLayout.json"),
                   {CatalogueEntry(QStringLiteral("quotes.vxl"), 990021, 990022)});
    LoadBuiltIns();
    Manager& manager = Manager::Instance();
    manager.AddOrUpdatePanelLayoutData(MakeLayout(1700000000500ull, QStringLiteral("Mine"), true),
                                       Manager::ObjectData);

    EXPECT_TRUE(manager.HasPanelLayoutData(QStringLiteral("Quotes")))
        << "names are looked up among all layouts";
    EXPECT_TRUE(manager.HasPanelLayoutData(QStringLiteral("Mine")));
    EXPECT_FALSE(manager.HasPanelLayoutData(QStringLiteral("Nobody")));
    EXPECT_TRUE(manager.GetPanelLayoutData(QStringLiteral("Quotes")).isEmpty())
        << "title lookup: user layouts only";
    EXPECT_EQ(manager.GetPanelLayoutData(QStringLiteral("Mine")).layoutKey(), 1700000000500ull);
    EXPECT_EQ(manager.GetPanelLayoutData(0ull).title(), QStringLiteral("Quotes"));
    EXPECT_TRUE(manager.GetPanelLayoutData(12345ull).isEmpty());
    EXPECT_TRUE(manager.HasPanelLayoutData(0ull));
    EXPECT_FALSE(manager.HasPanelLayoutData(12345ull));
    EXPECT_EQ(manager.GetCustomPanelLayoutCount(), 1);
    EXPECT_EQ(manager.GetPanelLayoutDataList().size(), 2);
}

TEST_F(PanelLayoutManagerTest, RemovingTouchesOnlyUserLayouts)
{
    WriteBuiltIn(QStringLiteral("quotes.vxl"), QStringLiteral("Quotes"));
    WriteCatalogue(QStringLiteral("DefaultPanelLayout.json"),
                   {CatalogueEntry(QStringLiteral("quotes.vxl"), 990031, 990032)});
    LoadBuiltIns();
    Manager& manager = Manager::Instance();
    const unsigned long long key = 1700000000777ull;
    manager.AddOrUpdatePanelLayoutData(MakeLayout(key, QStringLiteral("Mine"), true), Manager::LocalData);
    ASSERT_TRUE(WaitForFileWork());
    ASSERT_TRUE(QFile::exists(UserFile(key)));

    QSignalSpy removed(&manager, &Manager::LayoutDataRemoved);
    manager.RemovePanelLayoutData(0);      // the built-in layout
    manager.RemovePanelLayoutData(424242); // unknown
    EXPECT_EQ(removed.count(), 0);
    EXPECT_EQ(manager.GetPanelLayoutDataListRef().size(), 2);
    EXPECT_TRUE(manager.GetDeleteLayoutKeySet().isEmpty());

    manager.RemovePanelLayoutData(key);
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0).at(0).toULongLong(), key);
    EXPECT_EQ(Titles(), QStringList{QStringLiteral("Quotes")});
    EXPECT_EQ(manager.GetDeleteLayoutKeySet(), QSet<unsigned long long>{key});
    ASSERT_TRUE(WaitForFileWork());
    EXPECT_FALSE(QFile::exists(UserFile(key)));
    manager.RemovePanelLayoutData(key);
    EXPECT_EQ(removed.count(), 1) << "a second removal finds nothing";

    // The sync takes keys out once the cloud deleted them; another user starts afresh.
    manager.SetUserID(static_cast<unsigned long>(manager.GetUserID()));
    EXPECT_EQ(manager.GetDeleteLayoutKeySet().size(), 1) << "the same user keeps the set";
    manager.RemoveDeleteLayoutKey(key);
    EXPECT_TRUE(manager.GetDeleteLayoutKeySet().isEmpty());
    manager.AddOrUpdatePanelLayoutData(MakeLayout(key + 1, QStringLiteral("Other"), true),
                                       Manager::ObjectData);
    manager.RemovePanelLayoutData(key + 1);
    manager.SetUserID(777);
    EXPECT_EQ(manager.GetUserID(), 777u);
    EXPECT_TRUE(manager.GetDeleteLayoutKeySet().isEmpty());
}

TEST_F(PanelLayoutManagerTest, TheLastRequestForAUserFileWinsWhateverThePoolOrder)
{
    Manager& manager = Manager::Instance();
    for (int round = 0; round < 20; ++round) {
        SCOPED_TRACE(round);
        const unsigned long long key = 1700000001000ull + round;
        // Save, save again, then remove: nothing may be left.
        manager.AddOrUpdatePanelLayoutData(MakeLayout(key, QStringLiteral("v1"), true), Manager::LocalData);
        manager.AddOrUpdatePanelLayoutData(MakeLayout(key, QStringLiteral("v2"), true), Manager::LocalData);
        manager.RemovePanelLayoutData(key);
        // Save twice: the file holds the second.
        const unsigned long long kept = key + 100;
        manager.AddOrUpdatePanelLayoutData(MakeLayout(kept, QStringLiteral("first"), true),
                                           Manager::LocalData);
        manager.AddOrUpdatePanelLayoutData(MakeLayout(kept, QStringLiteral("second"), true),
                                           Manager::LocalData);
        ASSERT_TRUE(WaitForFileWork());
        EXPECT_FALSE(QFile::exists(UserFile(key)));
        CVXPanelLayoutTemplate read;
        ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&read, UserFile(kept), false));
        EXPECT_EQ(read.title(), QStringLiteral("second"));
    }
}

TEST_F(PanelLayoutManagerTest, ClearingAnnouncesEveryLayoutInListOrder)
{
    Manager& manager = Manager::Instance();
    for (unsigned long long key : {30ull, 10ull, 20ull})
        manager.AddOrUpdatePanelLayoutData(MakeLayout(key, QString::number(key), true), Manager::ObjectData);
    QSignalSpy removed(&manager, &Manager::LayoutDataRemoved);
    manager.ClearAllPanelLayouts();
    ASSERT_EQ(removed.count(), 3);
    EXPECT_EQ(removed.at(0).at(0).toULongLong(), 30u);
    EXPECT_EQ(removed.at(1).at(0).toULongLong(), 10u);
    EXPECT_EQ(removed.at(2).at(0).toULongLong(), 20u);
    EXPECT_TRUE(manager.GetPanelLayoutDataListRef().isEmpty());
}

TEST_F(PanelLayoutManagerTest, UserLoadKeepsCustomizedLayoutsAndConvertsOldFiles)
{
    WriteUser(MakeLayout(1700000000001ull, QStringLiteral("A"), true));
    WriteUser(MakeLayout(1700000000002ull, QStringLiteral("not mine"), false));
    OldFields old;
    old.key = 1700000000003ull;
    old.title = QStringLiteral("Old");
    old.restore = CanvasRecord(1);
    old.customized = true;
    const QString oldPath = UserFile(old.key);
    ASSERT_TRUE(WriteBytes(oldPath, OldFormatBytes(old, true)));
    ASSERT_TRUE(WriteBytes(QDir(UserFolder()).filePath(QStringLiteral("notes.txt")), "other file"));
    ASSERT_TRUE(QDir().mkpath(QDir(UserFolder()).filePath(QStringLiteral("folder.vxl"))));

    Manager& manager = Manager::Instance();
    QSignalSpy added(&manager, &Manager::LayoutDataAdded);
    LoadUsers();
    EXPECT_EQ(Titles(), (QStringList{QStringLiteral("A"), QStringLiteral("Old")}));
    EXPECT_EQ(added.count(), 2);
    EXPECT_EQ(manager.GetCustomPanelLayoutCount(), 2);
    // The old file now reads in the current format.
    CVXPanelLayoutTemplate read;
    ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&read, oldPath, false));
    EXPECT_EQ(vxtest::Logs().back().message.find("尝试按照旧格式"), std::string::npos);

    // A user folder that cannot exist (a file stands in its place) fails the whole load.
    vxtest::ExpectError("product_path::GetUserFolder: cannot create");
    vxtest::ExpectError("加载自定义面板数据失败: 用户文件夹不存在: ");
    const QString folder = UserFolder();
    ASSERT_TRUE(QDir(folder).removeRecursively());
    ASSERT_TRUE(WriteBytes(folder, "in the way"));
    Manager::ResetForTest();
    LoadUsers();
    EXPECT_TRUE(vxtest::HasLog("加载自定义面板数据失败: 用户文件夹不存在: " + folder.toStdString()));
    EXPECT_TRUE(Manager::Instance().GetPanelLayoutDataListRef().isEmpty());
    ASSERT_TRUE(QFile::remove(folder));
}

TEST_F(PanelLayoutManagerTest, LoadsDeliverOnlyWhileTheManagerLives)
{
    WriteUser(MakeLayout(1700000000011ull, QStringLiteral("Only once"), true));
    bool firstDone = false;
    Manager::Instance().AsyncLoadCustomizedPanelLayouts([&] { firstDone = true; });
    Manager::ResetForTest(); // the manager that asked is gone before its result arrives
    bool secondDone = false;
    Manager::Instance().AsyncLoadCustomizedPanelLayouts([&] { secondDone = true; });
    ASSERT_TRUE(WaitFor([&] { return secondDone; }));
    // Let every pooled task finish and every posted completion run.
    QThreadPool::globalInstance()->waitForDone(10000);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_FALSE(firstDone);
    EXPECT_EQ(Titles(), QStringList{QStringLiteral("Only once")});

    // A clear between request and result drops the stale result too.
    bool thirdDone = false;
    Manager::Instance().AsyncLoadCustomizedPanelLayouts([&] { thirdDone = true; });
    Manager::Instance().ClearAllPanelLayouts();
    ASSERT_TRUE(WaitFor([&] { return thirdDone; }));
    EXPECT_TRUE(Titles().isEmpty());
}

TEST_F(PanelLayoutManagerTest, StartUpLoadsBuiltInsFirstThenUserLayouts)
{
    ASSERT_TRUE(core::CLoginState::Instance().Login(8801));
    WriteBuiltIn(QStringLiteral("quotes.vxl"), QStringLiteral("Quotes"));
    WriteBuiltIn(QStringLiteral("trade.vxl"), QStringLiteral("Trade"));
    WriteCatalogue(QStringLiteral("DefaultPanelLayout.json"),
                   {CatalogueEntry(QStringLiteral("quotes.vxl"), 990041, 990042),
                    CatalogueEntry(QStringLiteral("trade.vxl"), 990043, 990044)});
    const QString userFolder = core::product_path::GetUserFolder(8801);
    ASSERT_TRUE(
        Manager::SavePanelLayoutToFile(MakeLayout(1700000000021ull, QStringLiteral("U1"), true),
                                       QDir(userFolder).filePath(QStringLiteral("1700000000021.vxl"))));
    ASSERT_TRUE(
        Manager::SavePanelLayoutToFile(MakeLayout(1700000000022ull, QStringLiteral("U2"), true),
                                       QDir(userFolder).filePath(QStringLiteral("1700000000022.vxl"))));
    const QString exports = QDir(root.path()).filePath(QStringLiteral("exports"));
    ASSERT_TRUE(QDir().mkpath(exports));

    Manager::Instance().SetUserID(8801);
    ASSERT_TRUE(Manager::Instance().WriteRecentlyExportedLayoutFolder(exports).HasValue());
    Manager::ResetForTest();

    Manager& manager = Manager::Instance();
    manager.AddOrUpdatePanelLayoutData(MakeLayout(5, QStringLiteral("stale"), true), Manager::ObjectData);
    QSignalSpy removed(&manager, &Manager::LayoutDataRemoved);
    manager.InitData();
    EXPECT_EQ(manager.GetUserID(), 8801u);
    ASSERT_EQ(removed.count(), 1) << "start-up clears what was held";
    EXPECT_EQ(removed.at(0).at(0).toULongLong(), 5u);
    EXPECT_EQ(manager.GetRecentlyExportedPanelLayoutFolder(), exports) << "read before InitData returns";
    EXPECT_TRUE(vxtest::HasLog("[StartupCost] Panel Layout Manager Init Data, Cost Time =  "));
    ASSERT_TRUE(WaitForFileWork());
    EXPECT_EQ(Titles(), (QStringList{QStringLiteral("Quotes"), QStringLiteral("Trade"), QStringLiteral("U1"),
                                     QStringLiteral("U2")}));

    // Built-ins stay in front even when the user layouts arrive first.
    manager.ClearAllPanelLayouts();
    LoadUsers();
    LoadBuiltIns();
    EXPECT_EQ(Titles(), (QStringList{QStringLiteral("Quotes"), QStringLiteral("Trade"), QStringLiteral("U1"),
                                     QStringLiteral("U2")}));
    EXPECT_EQ(manager.GetPanelLayoutDataListRef().at(0).layoutKey(), 2u) << "keys keep counting";

    // Without the configuration file start-up goes on and says why.
    ASSERT_TRUE(QFile::remove(manager.GetRecentlyExportedConfigFilePath()));
    manager.InitData();
    EXPECT_TRUE(vxtest::HasLog("读取最近的模板导出路径失败: 文件不存在：" +
                               manager.GetRecentlyExportedConfigFilePath().toStdString()));
    ASSERT_TRUE(WaitForFileWork());
    EXPECT_EQ(Titles().size(), 4);
}
