// vxlayoutgen <folder>: writes the workspace program's built-in layouts (layout files, light and
// dark previews, catalogue) into <folder> with the layout manager's own exporter. Runs at build
// time without a display. Exit code 0 on success, 1 on failure (the reason on stderr).

#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/Layouts/BuiltInLayouts.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/ProductPath.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThreadPool>

// Sanitizer builds run the generator during the build: Qt's platform plug-in and fontconfig keep
// process-lifetime allocations that the leak checker would otherwise report as a failed step.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:libfontconfig\nleak:libQt5Gui\nleak:libQt5Core\n";
}

namespace {

QtMessageHandler g_defaultHandler = nullptr;

// The offscreen platform says on every shown window that it cannot pass size hints on; in a
// build log that line only hides the ones that matter.
void QuietHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (message.contains(QLatin1String("propagateSizeHints")))
        return;
    if (g_defaultHandler)
        g_defaultHandler(type, context, message);
}

} // namespace

int main(int argc, char** argv)
{
    g_defaultHandler = qInstallMessageHandler(&QuietHandler);
    // Warnings and errors reach the build log; the progress lines of the libraries do not.
    core::log::SetLevel(core::log::Level::Warn);
    // The previews are drawn the same way with or without a display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTextStream err(stderr);
    const QStringList args = QApplication::arguments();
    if (args.size() != 2 || args.at(1).isEmpty() || args.at(1).startsWith(QLatin1Char('-'))) {
        err << "usage: vxlayoutgen <folder>\n"
               "Writes the built-in layouts (layout files, previews and DefaultPanelLayout.json) into "
               "<folder>.\n";
        return 1;
    }
    const QString folder = QDir(args.at(1)).absolutePath();

    // The font the previews are drawn in, whatever the machine's default.
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(12);
    QApplication::setFont(font);

    // The exporter keeps a note of its last folder in the user folder: a scratch root keeps
    // the build away from the real user's files.
    QTemporaryDir scratch;
    if (!scratch.isValid()) {
        err << "vxlayoutgen: cannot create a scratch folder: " << scratch.errorString() << "\n";
        return 1;
    }
    core::product_path::SetRootOverride(scratch.path());

    vx_ws::RegisterWorkspaceCards();
    const QStringList missing = vx_ws::MissingBuiltInCardTypes();
    if (!missing.isEmpty())
        err << "vxlayoutgen: warning: no card for " << missing.join(QStringLiteral(", "))
            << "; the layouts are written without those cards\n";

    QString error;
    const bool ok = vx_ws::WriteBuiltInLayouts(folder, &error);
    // Pooled work may still hold the scratch folder.
    QThreadPool::globalInstance()->waitForDone();
    if (!ok) {
        err << "vxlayoutgen: the built-in layouts were not written to " << folder << ": " << error << "\n";
        return 1;
    }
    QTextStream(stdout) << "vxlayoutgen: " << vx_ws::BuiltInLayouts().size()
                        << " built-in layouts written to " << folder << "\n";
    return 0;
}
