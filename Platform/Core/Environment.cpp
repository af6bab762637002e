#include "Platform/Core/Environment.h"

#include "Platform/Core/Log.h"

#include <QSettings>

#include <mutex>

namespace core::environment {
namespace {

struct Flags
{
    bool zandor = false;
    bool release = false;
    bool bank = false;
    int firstMainBroker = 0;
};

std::mutex g_mutex;
Flags g_flags;

bool ParseBroker(const QString& text, int* brokerId)
{
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    if (!ok || value < 0)
        return false;
    *brokerId = value;
    return true;
}

bool ParseSwitch(const QVariant& value)
{
    const QString text = value.toString().trimmed().toLower();
    return text == QLatin1String("1") || text == QLatin1String("true") || text == QLatin1String("yes") ||
           text == QLatin1String("on");
}

} // namespace

void InitFromSettings(const QSettings& settings)
{
    Flags flags;
    {
        std::lock_guard<std::mutex> lock(g_mutex);
        flags = g_flags;
    }
    if (settings.contains(QStringLiteral("environment/brand")))
        flags.zandor = settings.value(QStringLiteral("environment/brand"))
                           .toString()
                           .trimmed()
                           .compare(QLatin1String("zandor"), Qt::CaseInsensitive) == 0;
    if (settings.contains(QStringLiteral("environment/release")))
        flags.release = ParseSwitch(settings.value(QStringLiteral("environment/release")));
    if (settings.contains(QStringLiteral("environment/bank")))
        flags.bank = ParseSwitch(settings.value(QStringLiteral("environment/bank")));
    if (settings.contains(QStringLiteral("environment/broker"))) {
        const QString text = settings.value(QStringLiteral("environment/broker")).toString();
        if (!ParseBroker(text, &flags.firstMainBroker))
            VXLOG_WARN("environment::InitFromSettings: ignoring broker id \"{}\"", text);
    }
    std::lock_guard<std::mutex> lock(g_mutex);
    g_flags = flags;
}

void InitFromArguments(const QStringList& arguments)
{
    Flags flags;
    {
        std::lock_guard<std::mutex> lock(g_mutex);
        flags = g_flags;
    }
    const QString brandPrefix = QStringLiteral("--brand=");
    const QString brokerPrefix = QStringLiteral("--broker=");
    // The first argument is the program; options the environment does not know belong to others.
    for (int i = 1; i < arguments.size(); ++i) {
        const QString& arg = arguments.at(i);
        if (arg.startsWith(brandPrefix)) {
            flags.zandor =
                arg.mid(brandPrefix.size()).compare(QLatin1String("zandor"), Qt::CaseInsensitive) == 0;
        } else if (arg == QLatin1String("--release")) {
            flags.release = true;
        } else if (arg == QLatin1String("--bank")) {
            flags.bank = true;
        } else if (arg.startsWith(brokerPrefix)) {
            if (!ParseBroker(arg.mid(brokerPrefix.size()), &flags.firstMainBroker))
                VXLOG_WARN("environment::InitFromArguments: ignoring \"{}\", not a broker id", arg);
        }
    }
    std::lock_guard<std::mutex> lock(g_mutex);
    g_flags = flags;
}

bool IsZandor()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    return g_flags.zandor;
}

bool IsReleaseAppVersion()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    return g_flags.release;
}

bool IsBankEdition()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    return g_flags.bank;
}

int GetFirstMainBrokerId()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    return g_flags.firstMainBroker;
}

void SetZandor(bool on)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_flags.zandor = on;
}

void SetReleaseAppVersion(bool on)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_flags.release = on;
}

void SetBankEdition(bool on)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_flags.bank = on;
}

void SetFirstMainBrokerId(int brokerId)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_flags.firstMainBroker = brokerId;
}

void ResetForTest()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_flags = Flags();
}

} // namespace core::environment
