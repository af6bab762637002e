#include "apps/Workspace/App/WorkspaceOptions.h"

#include "apps/Workspace/App/WorkspaceWindowState.h"

#include <QRegularExpression>
#include <QSet>

namespace vx_ws {

namespace {

// Limits of --size: smaller windows cannot show a canvas, larger ones no screen holds and a
// screenshot of them would take gigabytes.
constexpr int kMinSide = 320;
constexpr int kMaxSide = 8192;

bool ParseUnsigned(const QString& text, unsigned long long max, unsigned long long* out)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]{1,20}$"));
    if (!digits.match(text).hasMatch())
        return false;
    bool ok = false;
    const unsigned long long value = text.toULongLong(&ok);
    if (!ok || value > max)
        return false;
    *out = value;
    return true;
}

bool ParseSize(const QString& text, QSize* out)
{
    static const QRegularExpression form(QStringLiteral("^([0-9]{1,5})[xX]([0-9]{1,5})$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return false;
    const int w = match.captured(1).toInt();
    const int h = match.captured(2).toInt();
    if (w < kMinSide || h < kMinSide || w > kMaxSide || h > kMaxSide)
        return false;
    *out = QSize(w, h);
    return true;
}

bool IsEnvironmentFlag(const QString& arg)
{
    return arg == QLatin1String("--release") || arg == QLatin1String("--bank") ||
           arg.startsWith(QLatin1String("--brand=")) || arg.startsWith(QLatin1String("--broker="));
}

} // namespace

bool CVXWorkspaceOptions::Parse(const QStringList& arguments, CVXWorkspaceOptions* out, QString* error)
{
    CVXWorkspaceOptions result;
    if (out) {
        result.feedIntervalMs = out->feedIntervalMs;
        result.historySeconds = out->historySeconds;
    }
    QString message;
    QSet<QString> seen;
    const QStringList valued = {QStringLiteral("--user"),   QStringLiteral("--data-dir"),
                                QStringLiteral("--store"),  QStringLiteral("--seed"),
                                QStringLiteral("--lang"),   QStringLiteral("--theme"),
                                QStringLiteral("--size"),   QStringLiteral("--screenshot"),
                                QStringLiteral("--layout"), QStringLiteral("--frame")};

    for (int i = 0; i < arguments.size() && message.isEmpty(); ++i) {
        const QString arg = arguments.at(i);
        if (IsEnvironmentFlag(arg))
            continue;
        if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            result.help = true;
            continue;
        }
        QString name = arg;
        QString value;
        bool hasValue = false;
        const int eq = arg.indexOf(QLatin1Char('='));
        if (arg.startsWith(QLatin1String("--")) && eq > 2) {
            name = arg.left(eq);
            value = arg.mid(eq + 1);
            hasValue = true;
        }
        if (!valued.contains(name)) {
            message = QStringLiteral("unknown option '%1'").arg(arg);
            break;
        }
        if (seen.contains(name)) {
            message = QStringLiteral("option %1 given twice").arg(name);
            break;
        }
        seen.insert(name);
        if (!hasValue) {
            if (i + 1 >= arguments.size() || arguments.at(i + 1).startsWith(QLatin1String("--"))) {
                message = QStringLiteral("option %1 needs a value").arg(name);
                break;
            }
            value = arguments.at(++i);
        }

        if (name == QLatin1String("--user")) {
            unsigned long long id = 0;
            // Ids travel as signed 64-bit numbers in the store.
            if (!ParseUnsigned(value, 0x7fffffffffffffffULL, &id) || id == 0)
                message = QStringLiteral("--user needs a positive number, not '%1'").arg(value);
            result.userId = id;
        } else if (name == QLatin1String("--seed")) {
            unsigned long long seed = 0;
            if (!ParseUnsigned(value, ~0ULL, &seed))
                message = QStringLiteral("--seed needs a number, not '%1'").arg(value);
            result.seed = seed;
        } else if (name == QLatin1String("--data-dir") || name == QLatin1String("--store") ||
                   name == QLatin1String("--screenshot") || name == QLatin1String("--layout")) {
            if (value.trimmed().isEmpty()) {
                message = QStringLiteral("%1 needs a non-empty value").arg(name);
            } else if (name == QLatin1String("--data-dir")) {
                result.dataDir = value;
            } else if (name == QLatin1String("--store")) {
                result.storeFile = value;
            } else if (name == QLatin1String("--screenshot")) {
                result.screenshotFile = value;
            } else {
                result.layoutName = value;
            }
        } else if (name == QLatin1String("--lang")) {
            if (value == QLatin1String("zh") || value == QLatin1String("zh_CN"))
                result.language = QStringLiteral("zh_CN");
            else if (value == QLatin1String("en"))
                result.language = QStringLiteral("en");
            else
                message = QStringLiteral("--lang is zh or en, not '%1'").arg(value);
        } else if (name == QLatin1String("--theme")) {
            if (value == QLatin1String("light") || value == QLatin1String("dark"))
                result.theme = value;
            else
                message = QStringLiteral("--theme is light or dark, not '%1'").arg(value);
        } else if (name == QLatin1String("--frame")) {
            unsigned long long key = 0;
            if (!ParseUnsigned(value, 0xffffffffULL, &key) ||
                !CVXWorkspaceWindowState::IsKnownFrame(static_cast<unsigned int>(key)))
                message =
                    QStringLiteral("--frame is %1 (workspace), %2 (watch list) or %3 (account), not '%4'")
                        .arg(static_cast<int>(TabFrameKey_PanelWorkspace))
                        .arg(static_cast<int>(TabFrameKey_WatchList))
                        .arg(static_cast<int>(TabFrameKey_Account))
                        .arg(value);
            else
                result.frame = static_cast<unsigned int>(key);
        } else if (name == QLatin1String("--size")) {
            if (!ParseSize(value, &result.size))
                message = QStringLiteral("--size is WIDTHxHEIGHT, each %1 to %2, not '%3'")
                              .arg(kMinSide)
                              .arg(kMaxSide)
                              .arg(value);
        }
    }
    if (message.isEmpty() && !result.layoutName.isEmpty() && result.screenshotFile.isEmpty())
        message = QStringLiteral("--layout is only used with --screenshot");

    if (!message.isEmpty()) {
        if (error)
            *error = message;
        return false;
    }
    if (out)
        *out = result;
    if (error)
        error->clear();
    return true;
}

QString CVXWorkspaceOptions::Usage()
{
    return QStringLiteral("usage: vxworkspace [--user ID] [--data-dir DIR] [--store FILE] [--seed N]\n"
                          "                   [--lang zh|en] [--theme light|dark] [--size WxH]\n"
                          "                   [--frame KEY] [--screenshot FILE [--layout NAME]] [--help]\n"
                          "  --user ID          log in as this user (no login dialog)\n"
                          "  --data-dir DIR     keep user folders and the store below DIR\n"
                          "  --store FILE       the cloud store's database (shared by all users)\n"
                          "  --seed N           seed of the simulated market\n"
                          "  --lang zh|en       language of the texts\n"
                          "  --theme light|dark colour theme\n"
                          "  --size WxH         window size\n"
                          "  --frame KEY        the frame in front: 20004 workspace, 20001 watch list,\n"
                          "                     20003 account\n"
                          "  --screenshot FILE  render the window to a PNG file and exit\n"
                          "  --layout NAME      with --screenshot: open the layout of that title first\n"
                          "                     (as the gallery shows it, or a built-in layout's\n"
                          "                     Chinese title)\n");
}

} // namespace vx_ws
