// The entry point of vxworkspace: the application object, the fonts, the command line, then
// the app object until it says the program ends.

#include "apps/Workspace/App/WorkspaceApp.h"
#include "apps/Workspace/App/WorkspaceOptions.h"

#include "Platform/Core/Environment.h"

#include <QApplication>
#include <QFont>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>

#include <sys/socket.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
// Sanitizer builds: Qt's platform plug-in and fontconfig keep process-lifetime allocations that
// the leak checker would report at exit.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:libfontconfig\nleak:libQt5Gui\nleak:libQt5Core\n";
}
#endif

namespace {

// Ctrl+C or a polite kill ends the program the way the Quit menu does, so the window state is
// saved: the signal handler only writes a byte to a socket pair, which the event loop reads.
int g_signalSockets[2] = {-1, -1};

void OnQuitSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(g_signalSockets[0], &byte, 1);
}

void QuitOnSignals(QApplication& application)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, g_signalSockets) != 0)
        return;
    auto* notifier = new QSocketNotifier(g_signalSockets[1], QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, [notifier]() {
        notifier->setEnabled(false);
        char byte = 0;
        [[maybe_unused]] const ssize_t read = ::read(g_signalSockets[1], &byte, 1);
        QApplication::exit(0);
    });
    struct sigaction action = {};
    action.sa_handler = OnQuitSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

} // namespace

int main(int argc, char** argv)
{
    // The command line is read before Qt starts, so --help and a bad option need no display.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    vx_ws::CVXWorkspaceOptions options;
    QString error;
    if (!vx_ws::CVXWorkspaceOptions::Parse(arguments, &options, &error)) {
        std::fprintf(stderr, "vxworkspace: %s\n%s", error.toLocal8Bit().constData(),
                     vx_ws::CVXWorkspaceOptions::Usage().toLocal8Bit().constData());
        return 2;
    }
    if (options.help) {
        std::fprintf(stdout, "%s", vx_ws::CVXWorkspaceOptions::Usage().toLocal8Bit().constData());
        return 0;
    }

    // A screenshot needs no screen: without a display it renders offscreen.
    if (options.IsScreenshot() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
        qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("vxworkspace"));
    QApplication::setOrganizationName(QStringLiteral("VX"));

    // Latin text in DejaVu, Chinese from WenQuanYi wherever the first family has no glyph.
    QFont::insertSubstitutions(QStringLiteral("DejaVu Sans"),
                               {QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("WenQuanYi Zen Hei")});
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(12);
    QApplication::setFont(font);

    core::environment::InitFromArguments(QApplication::arguments());

    // The app object decides when the program ends, not the last window (logout closes it).
    QApplication::setQuitOnLastWindowClosed(false);
    vx_ws::CVXWorkspaceApp app(options);
    QObject::connect(&app, &vx_ws::CVXWorkspaceApp::Finished, &application,
                     [](int code) { QApplication::exit(code); });
    QuitOnSignals(application);
    app.Start();
    return application.exec();
}
