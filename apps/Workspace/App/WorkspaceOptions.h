#pragma once

// CVXWorkspaceOptions: the command line of the workspace program, parsed into a plain value.
// Parse() never exits and never prints: it reports a bad command line through `error`, and the
// caller decides (the program prints the message and the usage and exits with code 2).

#include <QSize>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace vx_ws {

struct CVXWorkspaceOptions
{
    // The feed's seed when none is given: every start shows the same simulated market.
    static constexpr std::uint64_t kDefaultSeed = 20240611;
    static constexpr int kDefaultWidth = 1280;
    static constexpr int kDefaultHeight = 800;

    unsigned long long userId = 0; // 0: ask in the login dialog
    QString dataDir;               // empty: the platform's data location
    QString storeFile;             // empty: the shared store file in the data root
    std::uint64_t seed = kDefaultSeed;
    QString language; // "zh_CN" or "en"; empty: the remembered choice
    QString theme;    // "light" or "dark"; empty: the remembered choice
    QSize size;       // invalid: the remembered geometry (the screenshot uses the default size)
    QString screenshotFile;
    QString layoutName;     // only with a screenshot
    unsigned int frame = 0; // the frame in front (EnVXTabFrameKey); 0: the remembered one
    bool help = false;

    // How often the running program steps the feed; tests make the app with 0 and step it
    // themselves. Not a command-line option.
    int feedIntervalMs = 1000;
    // Simulated trading before the window opens, so charts and tick lists start with an hour of
    // history; tests make the app with 0. Not a command-line option.
    int historySeconds = 3600;

    bool IsScreenshot() const { return !screenshotFile.isEmpty(); }
    QSize EffectiveScreenshotSize() const
    {
        return size.isValid() ? size : QSize(kDefaultWidth, kDefaultHeight);
    }

    // `arguments` without the program name. Options take their value as the next argument or
    // after '=' ("--user 7", "--user=7"). The environment flags (--brand=, --release, --bank,
    // --broker=) are accepted and left to core::environment. False with `error` set for an
    // unknown option, a missing or malformed value, an option given twice, a --frame key the main
    // window has no frame for, or --layout without --screenshot; `out` is then left as it was.
    static bool Parse(const QStringList& arguments, CVXWorkspaceOptions* out, QString* error);
    static QString Usage();
};

} // namespace vx_ws
