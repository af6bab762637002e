// The main of every test binary: offscreen widgets, a private runtime folder, a fixed
// application font, and the listener that checks for unexpected errors after each test.

#include "tests/common/TestSupport.h"

#include "tests/common/LeakSuppressions.h"

#include <QApplication>
#include <QFont>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

class ErrorListener : public ::testing::EmptyTestEventListener
{
    void OnTestStart(const ::testing::TestInfo&) override { vxtest::BeginTest(); }
    void OnTestEnd(const ::testing::TestInfo&) override { vxtest::EndTest(); }
};

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir runtimeDir;
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR") && runtimeDir.isValid()) {
        QFile::setPermissions(runtimeDir.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                     QFileDevice::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", runtimeDir.path().toLocal8Bit());
    }

    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(12);
    QApplication::setFont(font);

    ::testing::UnitTest::GetInstance()->listeners().Append(new ErrorListener);
    return RUN_ALL_TESTS();
}
