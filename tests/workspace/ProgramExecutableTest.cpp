// The real vxworkspace executable, started as a user would from a shell (offscreen): a
// screenshot of the gallery and of an opened layout at the requested size, and the exit codes
// of an unknown layout and a bad command line, and a terminate signal that ends it like Quit.

#include "tests/workspace/ProgramTestSupport.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QSet>

#include <gtest/gtest.h>

namespace {

struct ProcessRun
{
    int exitCode = -1;
    bool finished = false;
    QString stdErr;
};

ProcessRun RunProgram(const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(env);
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/vxworkspace"), arguments);
    ProcessRun run;
    run.finished = process.waitForFinished(60000);
    if (!run.finished)
        process.kill();
    run.exitCode = process.exitCode();
    run.stdErr = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

int DistinctColours(const QImage& image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 2) {
        for (int x = 0; x < image.width(); x += 2)
            colours.insert(image.pixel(x, y));
    }
    return colours.size();
}

class ProgramExecutableTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!QFile::exists(QCoreApplication::applicationDirPath() + QStringLiteral("/vxworkspace")))
            GTEST_SKIP() << "no vxworkspace next to the tests: build the vxworkspace target";
        if (!program_test::HaveBuiltInLayouts())
            GTEST_SKIP() << "no built-in layouts in " << program_test::TemplatesFolder().toStdString();
        ASSERT_TRUE(dir.isValid());
    }
    QTemporaryDir dir;
};

} // namespace

TEST_F(ProgramExecutableTest, ScreenshotsOfTheGalleryAndOfALayoutAtTheRequestedSize)
{
    const QString gallery = dir.filePath(QStringLiteral("s.png"));
    ProcessRun run = RunProgram({QStringLiteral("--data-dir"), dir.path(), QStringLiteral("--user"),
                                 QStringLiteral("7"), QStringLiteral("--screenshot"), gallery});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 0) << run.stdErr.toStdString();
    QImage image(gallery);
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), QSize(1280, 800));
    EXPECT_GT(DistinctColours(image), 50);

    // A built-in layout under its Chinese title, in the dark theme, at another size.
    const vx_ws::VXBuiltInLayout& layout = vx_ws::BuiltInLayouts().first();
    const QString opened = dir.filePath(QStringLiteral("layout.png"));
    run = RunProgram({QStringLiteral("--data-dir"), dir.path(), QStringLiteral("--user"), QStringLiteral("7"),
                      QStringLiteral("--theme"), QStringLiteral("dark"), QStringLiteral("--size"),
                      QStringLiteral("1100x700"), QStringLiteral("--screenshot"), opened,
                      QStringLiteral("--layout"), QString::fromUtf8(layout.name)});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 0) << run.stdErr.toStdString();
    QImage layoutImage(opened);
    ASSERT_FALSE(layoutImage.isNull());
    EXPECT_EQ(layoutImage.size(), QSize(1100, 700));
    EXPECT_GT(DistinctColours(layoutImage), 50);
    // Dark: most of the window is darker than mid grey, unlike the light gallery.
    const auto darkShare = [](const QImage& img) {
        int dark = 0;
        int all = 0;
        for (int y = 0; y < img.height(); y += 4) {
            for (int x = 0; x < img.width(); x += 4, ++all)
                dark += qGray(img.pixel(x, y)) < 128 ? 1 : 0;
        }
        return double(dark) / all;
    };
    EXPECT_GT(darkShare(layoutImage), 0.6);
    EXPECT_LT(darkShare(image), 0.2);
}

TEST_F(ProgramExecutableTest, AnUnknownLayoutAndABadCommandLineExitWithCodeTwo)
{
    const QString file = dir.filePath(QStringLiteral("none.png"));
    ProcessRun run = RunProgram({QStringLiteral("--data-dir"), dir.path(), QStringLiteral("--screenshot"),
                                 file, QStringLiteral("--layout"), QStringLiteral("No such layout")});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("no layout named 'No such layout'")))
        << run.stdErr.toStdString();
    EXPECT_FALSE(QFile::exists(file));

    run = RunProgram({QStringLiteral("--size"), QStringLiteral("wide")});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("--size is WIDTHxHEIGHT"))) << run.stdErr.toStdString();
    EXPECT_TRUE(run.stdErr.contains(QStringLiteral("usage: vxworkspace")));
}

// A script written for the Chinese titles keeps working in English, and --frame puts another
// frame in front of the opened layout: the account frame's picture is not the layout's.
TEST_F(ProgramExecutableTest, AnEnglishRunFindsABuiltInByItsChineseTitleAndShowsTheAskedFrame)
{
    const vx_ws::VXBuiltInLayout& layout = vx_ws::BuiltInLayouts().first();
    const QStringList common = {QStringLiteral("--data-dir"), dir.path(),
                                QStringLiteral("--user"),     QStringLiteral("7"),
                                QStringLiteral("--lang"),     QStringLiteral("en"),
                                QStringLiteral("--layout"),   QString::fromUtf8(layout.name)};
    const QString workspace = dir.filePath(QStringLiteral("workspace.png"));
    ProcessRun run = RunProgram(common + QStringList{QStringLiteral("--screenshot"), workspace});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 0) << run.stdErr.toStdString();

    const QString account = dir.filePath(QStringLiteral("account.png"));
    run = RunProgram(common + QStringList{QStringLiteral("--frame"), QStringLiteral("20003"),
                                          QStringLiteral("--screenshot"), account});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.exitCode, 0) << run.stdErr.toStdString();
    const QImage a(workspace);
    const QImage b(account);
    ASSERT_FALSE(a.isNull());
    ASSERT_FALSE(b.isNull());
    ASSERT_EQ(a.size(), b.size());
    // Below the tab rows the two pictures have little in common.
    int same = 0;
    int all = 0;
    for (int y = a.height() / 4; y < a.height() * 3 / 4; y += 4) {
        for (int x = 0; x < a.width(); x += 4, ++all)
            same += a.pixel(x, y) == b.pixel(x, y) ? 1 : 0;
    }
    EXPECT_LT(double(same) / all, 0.8);
}

TEST_F(ProgramExecutableTest, ATerminateSignalEndsTheProgramLikeQuitAndKeepsTheWindowState)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(env);
    process.setReadChannel(QProcess::StandardError);
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/vxworkspace"),
                  {QStringLiteral("--data-dir"), dir.path(), QStringLiteral("--user"), QStringLiteral("11")});
    ASSERT_TRUE(process.waitForStarted(10000));
    // The layout manager's start-up line comes once the user is logged in and the window is up.
    QString stdErr;
    QDeadlineTimer deadline(60000);
    while (!stdErr.contains(QStringLiteral("[StartupCost]")) && !deadline.hasExpired() &&
           process.state() == QProcess::Running) {
        process.waitForReadyRead(500);
        stdErr += QString::fromLocal8Bit(process.readAllStandardError());
    }
    ASSERT_TRUE(stdErr.contains(QStringLiteral("[StartupCost]"))) << stdErr.toStdString();
    const QString statePath =
        QDir(dir.path()).filePath(QStringLiteral("data/users/11/WorkspaceWindowState.json"));
    EXPECT_FALSE(QFile::exists(statePath));

    process.terminate(); // SIGTERM
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(QFile::exists(statePath)) << "the window state is written on the way out";
}
