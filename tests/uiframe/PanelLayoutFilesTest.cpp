// Layout files: reading both formats, converting and rewriting old files, refusing corrupt ones,
// atomic saves that a failure cannot half-finish, and the recently exported folder's file.

#include "tests/common/TestSupport.h"
#include "tests/uiframe/PanelLayoutTestSupport.h"

#include <QRandomGenerator>

#include <csignal>
#include <sys/resource.h>

using namespace layout_test;

namespace {

using Manager = CVXPanelLayoutManager;

int CountLogs(const std::string& fragment)
{
    int count = 0;
    for (const vxtest::CapturedLog& log : vxtest::Logs())
        count += log.message.find(fragment) != std::string::npos ? 1 : 0;
    return count;
}

std::string Utf8(const QString& text)
{
    return text.toStdString();
}

QByteArray CurrentFormatBytes(const CVXVariantMapTree& tree)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << tree.SerializeAsQByteArray(); // the state tree's stream form: its bytes, length first
    return bytes;
}

// A preview of noise, which PNG cannot compress: makes a layout file of a few hundred KB.
QPixmap NoisePreview(int side)
{
    QImage image(side, side, QImage::Format_ARGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            image.setPixel(x, y, random.generate() | 0xFF000000u);
    return QPixmap::fromImage(image);
}

class PanelLayoutFiles : public LayoutFixture
{
};

} // namespace

TEST_F(PanelLayoutFiles, CurrentFormatRoundTripAndArgumentChecks)
{
    const QString path = QDir(root.path()).filePath(QStringLiteral("a.vxl"));
    const CVXPanelLayoutTemplate layout = MakeLayout(1700000000001ull, QStringLiteral("Round"), true);
    ASSERT_TRUE(Manager::SavePanelLayoutToFile(layout, path));
    // The file holds the template tree in the state tree's stream form and nothing else.
    EXPECT_EQ(ReadBytes(path), CurrentFormatBytes(layout));

    CVXPanelLayoutTemplate read;
    ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&read, path, true));
    EXPECT_TRUE(read == layout);
    EXPECT_EQ(CountLogs("尝试按照旧格式"), 0) << "a current file is read once";

    EXPECT_FALSE(Manager::LoadPanelLayoutFromFile(nullptr, path, false));
    EXPECT_FALSE(Manager::LoadPanelLayoutFromFile(&read, QString(), false));
    EXPECT_FALSE(Manager::LoadPanelLayoutFromFile(&read, path + QStringLiteral(".missing"), false));
    EXPECT_FALSE(Manager::SavePanelLayoutToFile(layout, QString()));
    EXPECT_FALSE(Manager::SavePanelLayoutToFile(CVXPanelLayoutTemplate(), path))
        << "an empty template is refused";
    EXPECT_EQ(ReadBytes(path), CurrentFormatBytes(layout)) << "the refused save left the file alone";
}

TEST_F(PanelLayoutFiles, OldFormatIsConvertedAndRewrittenOnlyWhenAsked)
{
    OldFields f;
    f.key = 1600000000042ull;
    f.title = QStringLiteral("早盘");
    f.remarks = QStringLiteral("old");
    f.restore = CanvasRecord(2, QStringLiteral("sc_old"));
    f.preview = SmallPreview();
    f.stamp = 1600000000100ull;
    f.customized = true;
    const QByteArray oldBytes = OldFormatBytes(f, false);
    const QString path = QDir(root.path()).filePath(QStringLiteral("old.vxl"));
    ASSERT_TRUE(WriteBytes(path, oldBytes));

    // Without the rewrite flag the file is read and left as it is.
    CVXPanelLayoutTemplate read;
    ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&read, path, false));
    EXPECT_EQ(read.title(), f.title);
    EXPECT_FALSE(read.isUploaded()) << "no trailing flag: not uploaded";
    EXPECT_EQ(ReadBytes(path), oldBytes);
    const std::string tryOld =
        "[自定义面板] LoadPanelLayoutFromFile - 尝试按照旧格式的模版文件来读取: file = " + Utf8(path);
    const std::string rewrite =
        "[自定义面板] LoadPanelLayoutFromFile - 将旧格式的模板文件保存为新格式: file = " + Utf8(path);
    EXPECT_EQ(CountLogs(tryOld), 1);
    EXPECT_EQ(CountLogs(rewrite), 0);

    // With it, the file is written again in the current format.
    CVXPanelLayoutTemplate converted;
    ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&converted, path, true));
    EXPECT_EQ(CountLogs(tryOld), 2);
    EXPECT_EQ(CountLogs(rewrite), 1);
    const QByteArray newBytes = ReadBytes(path);
    EXPECT_NE(newBytes, oldBytes);
    EXPECT_EQ(newBytes, CurrentFormatBytes(converted));

    // The next load reads the current format directly and gives the same template.
    CVXPanelLayoutTemplate again;
    ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&again, path, true));
    EXPECT_EQ(CountLogs(tryOld), 2);
    EXPECT_EQ(CountLogs(rewrite), 1);
    EXPECT_TRUE(again == converted);
    EXPECT_EQ(again.layoutKey(), f.key);
    EXPECT_EQ(again.remarks(), f.remarks);
    EXPECT_EQ(again.updateTimestamp(), f.stamp);
    EXPECT_TRUE(again.restoreData() == f.restore);
    EXPECT_TRUE(again.isCustomized());
}

namespace {

struct CorruptRow
{
    const char* name;
    std::function<QByteArray()> bytes;
};

QByteArray Truncated()
{
    const QByteArray full = CurrentFormatBytes(MakeLayout(5, QStringLiteral("T"), true));
    return full.left(full.size() / 2);
}

QByteArray HostileLength()
{
    // Claims a 2 GB tree and then ends: must fail without allocating the claim.
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << quint32(0x7FFFFFF0u);
    bytes.append("abcdefgh");
    return bytes;
}

QByteArray HostileOldString()
{
    // An old record whose title claims 2 GB.
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << quint64(1) << quint32(0x7FFFFFFEu);
    bytes.append("xy");
    return bytes;
}

QByteArray GarbageTree()
{
    // A well-formed length with bytes that are no tree.
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << QByteArray(64, '\xEE');
    return bytes;
}

QByteArray EmptyTree()
{
    return CurrentFormatBytes(CVXVariantMapTree());
}

} // namespace

TEST_F(PanelLayoutFiles, CorruptFilesAreRefusedNamingTheFileAndLeaveOtherLayoutsAlone)
{
    const std::vector<CorruptRow> rows = {
        {"empty", [] { return QByteArray(); }},
        {"text", [] { return QByteArray("this is not a layout file at all, just some text\n"); }},
        {"truncated", &Truncated},
        {"hostile_length", &HostileLength},
        {"hostile_old_string", &HostileOldString},
        {"garbage_tree", &GarbageTree},
        {"empty_tree", &EmptyTree},
    };
    const QDir users(UserFolder());
    const CVXPanelLayoutTemplate first = MakeLayout(1700000000001ull, QStringLiteral("First"), true);
    const CVXPanelLayoutTemplate second = MakeLayout(1700000000003ull, QStringLiteral("Second"), true);
    ASSERT_TRUE(Manager::SavePanelLayoutToFile(first, users.filePath(QStringLiteral("1700000000001.vxl"))));
    ASSERT_TRUE(Manager::SavePanelLayoutToFile(second, users.filePath(QStringLiteral("1700000000003.vxl"))));

    for (const CorruptRow& row : rows) {
        SCOPED_TRACE(row.name);
        // Sorted between the two good files, so a reader that stops at it would lose "Second".
        const QString path = users.filePath(QStringLiteral("1700000000002.vxl"));
        const QByteArray bytes = row.bytes();
        ASSERT_TRUE(WriteBytes(path, bytes));

        CVXPanelLayoutTemplate target = MakeLayout(3, QStringLiteral("untouched"), true);
        EXPECT_FALSE(Manager::LoadPanelLayoutFromFile(&target, path, true));
        EXPECT_EQ(target.title(), QStringLiteral("untouched"));
        EXPECT_TRUE(vxtest::HasLog("not a layout file (neither format could be read), file = " + Utf8(path)));

        CVXPanelLayoutManager::ResetForTest();
        Manager& manager = Manager::Instance();
        bool loaded = false;
        manager.AsyncLoadCustomizedPanelLayouts([&] { loaded = true; });
        ASSERT_TRUE(WaitFor([&] { return loaded; }));
        EXPECT_EQ(Titles(), (QStringList{QStringLiteral("First"), QStringLiteral("Second")}));
        EXPECT_EQ(ReadBytes(path), bytes) << "a refused file is neither rewritten nor deleted";
    }
}

TEST_F(PanelLayoutFiles, SaveThatFailsHalfWayKeepsThePreviousFile)
{
    const QString path = QDir(root.path()).filePath(QStringLiteral("keep.vxl"));
    const CVXPanelLayoutTemplate previous = MakeLayout(11, QStringLiteral("Previous"), true);
    ASSERT_TRUE(Manager::SavePanelLayoutToFile(previous, path));
    const QByteArray previousBytes = ReadBytes(path);
    ASSERT_LT(previousBytes.size(), 16 * 1024);

    CVXPanelLayoutTemplate big = MakeLayout(11, QStringLiteral("Big"), true);
    big.setPreviewPixmap(NoisePreview(256)); // ~256 KB of PNG
    // The disk is "full" after 64 KB: every write past it fails with EFBIG (the signal the
    // kernel would send instead is ignored), so the save breaks off in the middle.
    struct rlimit saved;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    struct rlimit limited = saved;
    limited.rlim_cur = 64 * 1024;
    auto* previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
    vxtest::ExpectError("SavePanelLayoutToFile");
    const bool saved64 = Manager::SavePanelLayoutToFile(big, path);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previousHandler);

    EXPECT_FALSE(saved64);
    EXPECT_EQ(ReadBytes(path), previousBytes) << "the previous file is intact";
    EXPECT_EQ(QDir(root.path()).entryList(QDir::Files), QStringList{QStringLiteral("keep.vxl")})
        << "no temporary file is left behind";
    CVXPanelLayoutTemplate read;
    ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&read, path, false));
    EXPECT_EQ(read.title(), QStringLiteral("Previous"));

    // Without the limit the same save goes through.
    EXPECT_TRUE(Manager::SavePanelLayoutToFile(big, path));
    ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&read, path, false));
    EXPECT_EQ(read.title(), QStringLiteral("Big"));
}

TEST_F(PanelLayoutFiles, SaveToUserFolderNamesTheFileByKey)
{
    Manager& manager = Manager::Instance();
    const CVXPanelLayoutTemplate layout = MakeLayout(1712345678901ull, QStringLiteral("Keyed"), true);
    const auto result = manager.SavePanelLayoutToUserFolder(layout);
    ASSERT_TRUE(result.HasValue()) << Utf8(result.Error().message);
    const QString expected = QDir(UserFolder()).filePath(QStringLiteral("1712345678901.vxl"));
    EXPECT_TRUE(QFile::exists(expected));
    QList<QString> names;
    ASSERT_TRUE(manager.GetAllCustomizedPanelLayoutFileNames(&names).HasValue());
    EXPECT_EQ(names, QList<QString>{expected});

    // A user folder that cannot exist (a file stands in its place) fails with its text and path.
    vxtest::ExpectError("product_path::GetUserFolder: cannot create");
    const QString folder = UserFolder();
    ASSERT_TRUE(QDir(folder).removeRecursively());
    ASSERT_TRUE(WriteBytes(folder, "in the way"));
    const auto missing = manager.SavePanelLayoutToUserFolder(layout);
    ASSERT_TRUE(missing.HasError());
    EXPECT_EQ(missing.Error().message, QStringLiteral("用户文件夹不存在: ") + folder);
    ASSERT_TRUE(QFile::remove(folder));
}

TEST_F(PanelLayoutFiles, RecentlyExportedFolderIsKeptInTheUserFolder)
{
    Manager& manager = Manager::Instance();
    const QString config = manager.GetRecentlyExportedConfigFilePath();
    EXPECT_EQ(QFileInfo(config).absolutePath(), QFileInfo(UserFolder()).absoluteFilePath());

    // Reading before anything was written.
    auto read = manager.ReadRecentlyExportedLayoutFolder();
    ASSERT_TRUE(read.HasError());
    EXPECT_EQ(read.Error().message, QStringLiteral("文件不存在：") + config);

    const QString exports = QDir(root.path()).filePath(QStringLiteral("exports"));
    ASSERT_TRUE(QDir().mkpath(exports));
    ASSERT_TRUE(manager.WriteRecentlyExportedLayoutFolder(exports).HasValue());
    read = manager.ReadRecentlyExportedLayoutFolder();
    ASSERT_TRUE(read.HasValue());
    EXPECT_EQ(read.Value(), exports);

    // Write failures, each with its text and path; the file keeps the last good folder.
    auto written = manager.WriteRecentlyExportedLayoutFolder(QString());
    ASSERT_TRUE(written.HasError());
    EXPECT_EQ(written.Error().message, QStringLiteral("保存的为空文件夹，请确保文件夹存在: "));
    const QString gone = QDir(root.path()).filePath(QStringLiteral("gone"));
    written = manager.WriteRecentlyExportedLayoutFolder(gone);
    ASSERT_TRUE(written.HasError());
    EXPECT_EQ(written.Error().message, QStringLiteral("保存的为空文件夹，请确保文件夹存在: ") + gone);
    EXPECT_EQ(manager.ReadRecentlyExportedLayoutFolder().Value(), exports);

    // Unreadable contents.
    ASSERT_TRUE(WriteBytes(config, "{not json"));
    read = manager.ReadRecentlyExportedLayoutFolder();
    ASSERT_TRUE(read.HasError());
    EXPECT_EQ(read.Error().message, QStringLiteral("文件无法读取: ") + config);

    // A configuration path that cannot be opened (a folder stands in its place).
    ASSERT_TRUE(QFile::remove(config));
    ASSERT_TRUE(QDir().mkpath(config));
    read = manager.ReadRecentlyExportedLayoutFolder();
    ASSERT_TRUE(read.HasError());
    EXPECT_EQ(read.Error().message, QStringLiteral("文件无法打开：") + config);
    written = manager.WriteRecentlyExportedLayoutFolder(exports);
    ASSERT_TRUE(written.HasError());
    EXPECT_EQ(written.Error().message, QStringLiteral("配置文件打开失败: ") + config);

    // The user folder cannot exist (a file stands in its place).
    vxtest::ExpectError("product_path::GetUserFolder: cannot create");
    const QString folder = UserFolder();
    ASSERT_TRUE(QDir(folder).removeRecursively());
    ASSERT_TRUE(WriteBytes(folder, "in the way"));
    written = manager.WriteRecentlyExportedLayoutFolder(exports);
    ASSERT_TRUE(written.HasError());
    EXPECT_EQ(written.Error().message, QStringLiteral("保存的配置文件路径不存在: ") + config);
    ASSERT_TRUE(QFile::remove(folder));
}

TEST_F(PanelLayoutFiles, AsynchronousRecentFolderFormsLogTheirFailures)
{
    Manager& manager = Manager::Instance();
    const QString exports = QDir(root.path()).filePath(QStringLiteral("out"));
    ASSERT_TRUE(QDir().mkpath(exports));
    bool ok = false;
    bool done = false;
    manager.AsyncWriteRecentlyExportedLayoutFolder(exports, [&](bool result) {
        ok = result;
        done = true;
    });
    EXPECT_FALSE(done) << "completions never run inside the call";
    ASSERT_TRUE(WaitFor([&] { return done; }));
    EXPECT_TRUE(ok);

    done = false;
    manager.AsyncReadRecentlyExportedLayoutFolder([&] { done = true; });
    ASSERT_TRUE(WaitFor([&] { return done; }));
    EXPECT_EQ(manager.GetRecentlyExportedPanelLayoutFolder(), exports);

    vxtest::ExpectError("写入最近导出模板位置失败: 保存的为空文件夹，请确保文件夹存在: ");
    done = false;
    manager.AsyncWriteRecentlyExportedLayoutFolder(QString(), [&](bool result) {
        ok = result;
        done = true;
    });
    ASSERT_TRUE(WaitFor([&] { return done; }));
    EXPECT_FALSE(ok);
    EXPECT_TRUE(vxtest::HasLog("写入最近导出模板位置失败: 保存的为空文件夹，请确保文件夹存在: "));
}
