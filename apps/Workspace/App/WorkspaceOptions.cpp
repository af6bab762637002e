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

// Each handler reads the value of one option into `result`; it returns why the value is refused,
// empty when it is taken.
using ApplyOption = QString (*)(const QString& name, const QString& value, CVXWorkspaceOptions* result);

QString ApplyUser(const QString& /*name*/, const QString& value, CVXWorkspaceOptions* result)
{
    unsigned long long id = 0;
    // Ids travel as signed 64-bit numbers in the store.
    const bool ok = ParseUnsigned(value, 0x7fffffffffffffffULL, &id) && id != 0;
    result->userId = id;
    return ok ? QString() : QStringLiteral("--user needs a positive number, not '%1'").arg(value);
}

QString ApplySeed(const QString& /*name*/, const QString& value, CVXWorkspaceOptions* result)
{
    unsigned long long seed = 0;
    const bool ok = ParseUnsigned(value, ~0ULL, &seed);
    result->seed = seed;
    return ok ? QString() : QStringLiteral("--seed needs a number, not '%1'").arg(value);
}

QString ApplyNonEmpty(const QString& name, const QString& value, QString* field)
{
    if (value.trimmed().isEmpty())
        return QStringLiteral("%1 needs a non-empty value").arg(name);
    *field = value;
    return QString();
}

QString ApplyDataDir(const QString& name, const QString& value, CVXWorkspaceOptions* result)
{
    return ApplyNonEmpty(name, value, &result->dataDir);
}

QString ApplyStore(const QString& name, const QString& value, CVXWorkspaceOptions* result)
{
    return ApplyNonEmpty(name, value, &result->storeFile);
}

QString ApplyScreenshot(const QString& name, const QString& value, CVXWorkspaceOptions* result)
{
    return ApplyNonEmpty(name, value, &result->screenshotFile);
}

QString ApplyLayout(const QString& name, const QString& value, CVXWorkspaceOptions* result)
{
    return ApplyNonEmpty(name, value, &result->layoutName);
}

QString ApplyLanguage(const QString& /*name*/, const QString& value, CVXWorkspaceOptions* result)
{
    if (value == QLatin1String("zh") || value == QLatin1String("zh_CN"))
        result->language = QStringLiteral("zh_CN");
    else if (value == QLatin1String("en"))
        result->language = QStringLiteral("en");
    else
        return QStringLiteral("--lang is zh or en, not '%1'").arg(value);
    return QString();
}

QString ApplyTheme(const QString& /*name*/, const QString& value, CVXWorkspaceOptions* result)
{
    if (value != QLatin1String("light") && value != QLatin1String("dark"))
        return QStringLiteral("--theme is light or dark, not '%1'").arg(value);
    result->theme = value;
    return QString();
}

QString ApplySize(const QString& /*name*/, const QString& value, CVXWorkspaceOptions* result)
{
    if (ParseSize(value, &result->size))
        return QString();
    return QStringLiteral("--size is WIDTHxHEIGHT, each %1 to %2, not '%3'")
        .arg(kMinSide)
        .arg(kMaxSide)
        .arg(value);
}

QString ApplyFrame(const QString& /*name*/, const QString& value, CVXWorkspaceOptions* result)
{
    unsigned long long key = 0;
    if (!ParseUnsigned(value, 0xffffffffULL, &key) ||
        !CVXWorkspaceWindowState::IsKnownFrame(static_cast<unsigned int>(key)))
        return QStringLiteral("--frame is %1 (workspace), %2 (watch list) or %3 (account), not '%4'")
            .arg(static_cast<int>(TabFrameKey_PanelWorkspace))
            .arg(static_cast<int>(TabFrameKey_WatchList))
            .arg(static_cast<int>(TabFrameKey_Account))
            .arg(value);
    result->frame = static_cast<unsigned int>(key);
    return QString();
}

struct ValuedOption
{
    const char* name;
    ApplyOption apply;
};

constexpr ValuedOption kValuedOptions[] = {
    {"--user", ApplyUser},   {"--data-dir", ApplyDataDir},      {"--store", ApplyStore},
    {"--seed", ApplySeed},   {"--lang", ApplyLanguage},         {"--theme", ApplyTheme},
    {"--size", ApplySize},   {"--screenshot", ApplyScreenshot}, {"--layout", ApplyLayout},
    {"--frame", ApplyFrame},
};

const ValuedOption* FindValuedOption(const QString& name)
{
    for (const ValuedOption& option : kValuedOptions) {
        if (name == QLatin1String(option.name))
            return &option;
    }
    return nullptr;
}

// Reads the option at `*index` ("--name value" or "--name=value", moving `*index` past a separate
// value) into `result`; returns why the command line is refused, empty when the option is taken.
QString ReadValuedOption(const QStringList& arguments, int* index, QSet<QString>* seen,
                         CVXWorkspaceOptions* result)
{
    const QString arg = arguments.at(*index);
    QString name = arg;
    QString value;
    bool hasValue = false;
    const int eq = arg.indexOf(QLatin1Char('='));
    if (arg.startsWith(QLatin1String("--")) && eq > 2) {
        name = arg.left(eq);
        value = arg.mid(eq + 1);
        hasValue = true;
    }
    const ValuedOption* option = FindValuedOption(name);
    if (!option)
        return QStringLiteral("unknown option '%1'").arg(arg);
    if (seen->contains(name))
        return QStringLiteral("option %1 given twice").arg(name);
    seen->insert(name);
    if (!hasValue) {
        if (*index + 1 >= arguments.size() || arguments.at(*index + 1).startsWith(QLatin1String("--")))
            return QStringLiteral("option %1 needs a value").arg(name);
        value = arguments.at(++*index);
    }
    return option->apply(name, value, result);
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
    for (int i = 0; i < arguments.size() && message.isEmpty(); ++i) {
        const QString& arg = arguments.at(i);
        if (IsEnvironmentFlag(arg))
            continue;
        if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            result.help = true;
            continue;
        }
        message = ReadValuedOption(arguments, &i, &seen, &result);
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
