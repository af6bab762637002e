// The program's command line and its window-state file, without widgets: good and bad command
// lines, the state's JSON form (round trip, then corrupt, truncated, newer and hostile files)
// and the file functions (atomic save, unreadable files set aside and never overwritten).

#include "apps/Workspace/App/WorkspaceOptions.h"
#include "apps/Workspace/App/WorkspaceWindowState.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "tests/common/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using vx_ws::CVXWorkspaceOptions;
using vx_ws::CVXWorkspaceWindowState;

namespace {

QStringList Args(const char* line)
{
    return QString::fromUtf8(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QByteArray ReadAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool WriteAll(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

CVXVariantMapTree SampleCanvasRecord()
{
    CVXVariantMapTree record;
    CVXVariantMapTree box;
    box.Set<int>(QStringLiteral("BoxType"), 0);
    box.Set<QRect>(QStringLiteral("Geometry"), QRect(4, 4, 300, 200));
    record.Set<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData"), {box});
    record.Set<qulonglong>(QStringLiteral("LayoutKey"), 1700000000123ULL);
    return record;
}

CVXWorkspaceWindowState SampleState()
{
    CVXWorkspaceWindowState state;
    state.geometry = QRect(-20, 30, 1280, 800);
    state.maximized = true;
    state.currentFrame = TabFrameKey_WatchList;
    state.watchListStockId = 1007;
    CVXWorkspaceWindowState::Page gallery;
    gallery.title = QStringLiteral("新页面");
    gallery.galleryTab = 2;
    CVXWorkspaceWindowState::Page canvas;
    canvas.kind = CVXWorkspaceWindowState::PageKind::Canvas;
    canvas.title = QStringLiteral("My desk");
    // Beyond a double's exact integers: the key must survive as it is.
    canvas.layoutKey = 18446744073709551557ULL;
    canvas.canvas = SampleCanvasRecord();
    canvas.unsaved = true;
    state.pages = {gallery, canvas};
    state.currentPage = 1;
    state.shortcuts = QStringList{QStringLiteral("My desk_1700000000000_42")};
    return state;
}

// The sample's JSON object with one change applied.
QByteArray Tampered(const std::function<void(QJsonObject&)>& change)
{
    QJsonObject root = QJsonDocument::fromJson(SampleState().ToJson()).object();
    change(root);
    return QJsonDocument(root).toJson();
}

QJsonObject PageAt(const QJsonObject& root, int i)
{
    return root.value(QStringLiteral("pages")).toArray().at(i).toObject();
}

void SetPage(QJsonObject& root, int i, const QJsonObject& page)
{
    QJsonArray pages = root.value(QStringLiteral("pages")).toArray();
    pages[i] = page;
    root.insert(QStringLiteral("pages"), pages);
}

} // namespace

TEST(ProgramOptions, GoodCommandLines)
{
    CVXWorkspaceOptions none;
    QString error;
    ASSERT_TRUE(CVXWorkspaceOptions::Parse({}, &none, &error)) << error.toStdString();
    EXPECT_EQ(none.userId, 0u);
    EXPECT_EQ(none.seed, CVXWorkspaceOptions::kDefaultSeed);
    EXPECT_FALSE(none.size.isValid());
    EXPECT_FALSE(none.IsScreenshot());
    EXPECT_EQ(none.EffectiveScreenshotSize(), QSize(1280, 800));
    EXPECT_EQ(none.frame, 0u);

    CVXWorkspaceOptions all;
    ASSERT_TRUE(CVXWorkspaceOptions::Parse(Args("--user 7 --data-dir /tmp/d --store /tmp/s.db --seed 99 "
                                                "--lang en --theme dark --size 1024x700 "
                                                "--screenshot /tmp/a.png --layout Grid --frame 20001"),
                                           &all, &error))
        << error.toStdString();
    EXPECT_EQ(all.userId, 7u);
    EXPECT_EQ(all.dataDir, QStringLiteral("/tmp/d"));
    EXPECT_EQ(all.storeFile, QStringLiteral("/tmp/s.db"));
    EXPECT_EQ(all.seed, 99u);
    EXPECT_EQ(all.language, QStringLiteral("en"));
    EXPECT_EQ(all.theme, QStringLiteral("dark"));
    EXPECT_EQ(all.size, QSize(1024, 700));
    EXPECT_EQ(all.EffectiveScreenshotSize(), QSize(1024, 700));
    EXPECT_EQ(all.screenshotFile, QStringLiteral("/tmp/a.png"));
    EXPECT_EQ(all.layoutName, QStringLiteral("Grid"));
    EXPECT_EQ(all.frame, static_cast<unsigned int>(TabFrameKey_WatchList));

    // "=" forms, "zh" meaning the Chinese catalogue, the largest seed, the environment flags.
    CVXWorkspaceOptions eq;
    ASSERT_TRUE(
        CVXWorkspaceOptions::Parse(Args("--user=9223372036854775807 --lang=zh --seed=18446744073709551615 "
                                        "--release --brand=zandor --help --frame=20003"),
                                   &eq, &error))
        << error.toStdString();
    EXPECT_EQ(eq.userId, 9223372036854775807ULL);
    EXPECT_EQ(eq.language, QStringLiteral("zh_CN"));
    EXPECT_EQ(eq.seed, 18446744073709551615ULL);
    EXPECT_TRUE(eq.help);
    // A frame without a screenshot: the window starts on it.
    EXPECT_EQ(eq.frame, static_cast<unsigned int>(TabFrameKey_Account));
}

TEST(ProgramOptions, BadCommandLinesAreRefusedWithAReasonAndLeaveTheOptionsAlone)
{
    struct Row
    {
        const char* line;
        const char* reason; // a fragment of the message
    };
    const Row rows[] = {
        {"--bogus", "unknown option '--bogus'"},
        {"user 7", "unknown option 'user'"},
        {"--user", "--user needs a value"},
        {"--user --seed 3", "--user needs a value"},
        {"--user 0", "--user needs a positive number"},
        {"--user -3", "--user needs a positive number"},
        {"--user 12ab", "--user needs a positive number"},
        {"--user 9223372036854775808", "--user needs a positive number"},
        {"--user 1 --user 2", "given twice"},
        {"--seed 1.5", "--seed needs a number"},
        {"--seed 18446744073709551616", "--seed needs a number"},
        {"--lang fr", "--lang is zh or en"},
        {"--theme blue", "--theme is light or dark"},
        {"--size 1280", "--size is WIDTHxHEIGHT"},
        {"--size 100x100", "--size is WIDTHxHEIGHT"},
        {"--size 9000x800", "--size is WIDTHxHEIGHT"},
        {"--size 800x-1", "--size is WIDTHxHEIGHT"},
        {"--data-dir=", "--data-dir needs a non-empty value"},
        {"--layout Grid", "--layout is only used with --screenshot"},
        {"--frame 20002", "--frame is 20004 (workspace), 20001 (watch list) or 20003 (account)"},
        {"--frame 0", "--frame is"},
        {"--frame watchlist", "--frame is"},
        {"--frame 4294987300", "--frame is"},
        {"--frame", "--frame needs a value"},
        {"--frame 20001 --frame 20003", "given twice"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.line);
        CVXWorkspaceOptions options;
        options.userId = 42;
        QString error;
        EXPECT_FALSE(CVXWorkspaceOptions::Parse(Args(row.line), &options, &error));
        EXPECT_TRUE(error.contains(QString::fromUtf8(row.reason))) << error.toStdString();
        EXPECT_EQ(options.userId, 42u);
    }
}

TEST(ProgramWindowState, RoundTripKeepsEveryField)
{
    const CVXWorkspaceWindowState state = SampleState();
    CVXWorkspaceWindowState back;
    QString error;
    ASSERT_TRUE(CVXWorkspaceWindowState::FromJson(state.ToJson(), &back, &error)) << error.toStdString();
    EXPECT_TRUE(back == state);
    EXPECT_EQ(back.pages.at(1).layoutKey, 18446744073709551557ULL);
    EXPECT_EQ(back.pages.at(1).canvas.Get<qulonglong>(QStringLiteral("LayoutKey")), 1700000000123ULL);
    EXPECT_EQ(back.pages.at(1)
                  .canvas.Get<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData"))
                  .at(0)
                  .Get<QRect>(QStringLiteral("Geometry")),
              QRect(4, 4, 300, 200));

    // The smallest state a fresh window has: one gallery, no geometry.
    CVXWorkspaceWindowState fresh;
    fresh.pages.append(CVXWorkspaceWindowState::Page());
    ASSERT_TRUE(CVXWorkspaceWindowState::FromJson(fresh.ToJson(), &back, &error)) << error.toStdString();
    EXPECT_TRUE(back == fresh);
    EXPECT_TRUE(back.geometry.isNull());
}

TEST(ProgramWindowState, MalformedAndHostileFilesAreRefusedWhole)
{
    const QByteArray good = SampleState().ToJson();
    struct Row
    {
        const char* what;
        QByteArray bytes;
        const char* reason;
    };
    const QByteArray notBase64 = Tampered([](QJsonObject& r) {
        QJsonObject p = PageAt(r, 1);
        p.insert(QStringLiteral("canvas"), QStringLiteral("@@@not base64@@@"));
        SetPage(r, 1, p);
    });
    const QByteArray badRecord = Tampered([](QJsonObject& r) {
        QJsonObject p = PageAt(r, 1);
        p.insert(QStringLiteral("canvas"),
                 QString::fromLatin1(QByteArray("\xff\xff\xff\xff garbage").toBase64()));
        SetPage(r, 1, p);
    });
    QJsonArray manyPages;
    for (int i = 0; i <= CVXWorkspaceWindowState::kMaxPages; ++i)
        manyPages.append(QJsonObject{{QStringLiteral("kind"), QStringLiteral("gallery")},
                                     {QStringLiteral("title"), QStringLiteral("p")},
                                     {QStringLiteral("galleryTab"), 0}});
    const Row rows[] = {
        {"empty file", QByteArray(), "not JSON"},
        {"truncated", good.left(good.size() / 2), "not JSON"},
        {"binary junk", QByteArray("\x00\x01\x02\x03", 4), "not JSON"},
        {"array instead of object", "[1, 2, 3]", "not a JSON object"},
        {"no version", Tampered([](QJsonObject& r) { r.remove(QStringLiteral("version")); }), "no version"},
        {"newer version", Tampered([](QJsonObject& r) { r.insert(QStringLiteral("version"), 2); }),
         "newer version"},
        {"fractional version", Tampered([](QJsonObject& r) { r.insert(QStringLiteral("version"), 1.5); }),
         "no version"},
        {"geometry of three numbers", Tampered([](QJsonObject& r) {
             r.insert(QStringLiteral("geometry"), QJsonArray{1, 2, 3});
         }),
         "geometry"},
        {"huge geometry", Tampered([](QJsonObject& r) {
             r.insert(QStringLiteral("geometry"), QJsonArray{0, 0, 1e12, 800});
         }),
         "geometry out of range"},
        {"tiny geometry", Tampered([](QJsonObject& r) {
             r.insert(QStringLiteral("geometry"), QJsonArray{0, 0, 10, 10});
         }),
         "geometry out of range"},
        {"unknown frame", Tampered([](QJsonObject& r) { r.insert(QStringLiteral("currentFrame"), 20002); }),
         "unknown current frame"},
        {"maximized as text",
         Tampered([](QJsonObject& r) { r.insert(QStringLiteral("maximized"), QStringLiteral("yes")); }),
         "maximized"},
        {"stock id as number",
         Tampered([](QJsonObject& r) { r.insert(QStringLiteral("watchListStock"), 1007); }),
         "watch-list security"},
        {"no page list", Tampered([](QJsonObject& r) { r.remove(QStringLiteral("pages")); }), "no page list"},
        {"too many pages",
         Tampered([&manyPages](QJsonObject& r) { r.insert(QStringLiteral("pages"), manyPages); }),
         "too many pages"},
        {"current page past the end",
         Tampered([](QJsonObject& r) { r.insert(QStringLiteral("currentPage"), 2); }),
         "current page out of range"},
        {"negative current page",
         Tampered([](QJsonObject& r) { r.insert(QStringLiteral("currentPage"), -1); }),
         "current page out of range"},
        {"unknown page kind", Tampered([](QJsonObject& r) {
             QJsonObject p = PageAt(r, 0);
             p.insert(QStringLiteral("kind"), QStringLiteral("browser"));
             SetPage(r, 0, p);
         }),
         "unknown kind"},
        {"gallery tab out of range", Tampered([](QJsonObject& r) {
             QJsonObject p = PageAt(r, 0);
             p.insert(QStringLiteral("galleryTab"), 7);
             SetPage(r, 0, p);
         }),
         "bad gallery tab"},
        {"overlong title", Tampered([](QJsonObject& r) {
             QJsonObject p = PageAt(r, 0);
             p.insert(QStringLiteral("title"),
                      QString(CVXWorkspaceWindowState::kMaxTitleLength + 1, QLatin1Char('x')));
             SetPage(r, 0, p);
         }),
         "bad title"},
        {"layout key with letters", Tampered([](QJsonObject& r) {
             QJsonObject p = PageAt(r, 1);
             p.insert(QStringLiteral("layoutKey"), QStringLiteral("12x"));
             SetPage(r, 1, p);
         }),
         "bad layout key"},
        {"canvas record not base64", notBase64, "not base64"},
        {"canvas record not a state tree", badRecord, "does not parse"},
        {"shortcut of a number",
         Tampered([](QJsonObject& r) { r.insert(QStringLiteral("shortcuts"), QJsonArray{5}); }),
         "bad shortcut id"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        CVXWorkspaceWindowState out;
        out.currentPage = 99; // untouched on failure
        QString error;
        EXPECT_FALSE(CVXWorkspaceWindowState::FromJson(row.bytes, &out, &error));
        EXPECT_TRUE(error.contains(QString::fromLatin1(row.reason))) << error.toStdString();
        EXPECT_EQ(out.currentPage, 99);
    }
}

TEST(ProgramWindowState, UnreadableFilesAreSetAsideWithoutOverwritingEarlierOnes)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("state.json"));
    CVXWorkspaceWindowState out;
    EXPECT_EQ(CVXWorkspaceWindowState::Load(path, &out), CVXWorkspaceWindowState::LoadResult::Missing);

    ASSERT_TRUE(CVXWorkspaceWindowState::Save(SampleState(), path));
    EXPECT_EQ(CVXWorkspaceWindowState::Load(path, &out), CVXWorkspaceWindowState::LoadResult::Loaded);
    EXPECT_TRUE(out == SampleState());

    const QByteArray first("{ \"version\": 1, ");
    const QByteArray second("not json at all");
    ASSERT_TRUE(WriteAll(path, first));
    EXPECT_EQ(CVXWorkspaceWindowState::Load(path, &out), CVXWorkspaceWindowState::LoadResult::SetAside);
    EXPECT_TRUE(vxtest::HasLog(path.toStdString()));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(ReadAll(path + QStringLiteral(".corrupt")), first);

    ASSERT_TRUE(WriteAll(path, second));
    EXPECT_EQ(CVXWorkspaceWindowState::Load(path, &out), CVXWorkspaceWindowState::LoadResult::SetAside);
    EXPECT_EQ(ReadAll(path + QStringLiteral(".corrupt")), first);
    EXPECT_EQ(ReadAll(path + QStringLiteral(".1.corrupt")), second);

    // A save that cannot be written (its folder is gone) leaves no partial file behind.
    const QString gone = dir.filePath(QStringLiteral("missing/state.json"));
    EXPECT_FALSE(CVXWorkspaceWindowState::Save(SampleState(), gone));
    EXPECT_FALSE(QFile::exists(gone));
}
