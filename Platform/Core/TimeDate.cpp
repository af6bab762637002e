#include "Platform/Core/TimeDate.h"

#include <QDateTime>

#include <atomic>

namespace core::time_date {
namespace {

std::atomic<long long> g_offsetMs{0};

} // namespace

long long GetServerTimeMs()
{
    return QDateTime::currentMSecsSinceEpoch() + g_offsetMs.load();
}

void SetServerTimeOffsetMs(long long offsetMs)
{
    g_offsetMs.store(offsetMs);
}

long long GetServerTimeOffsetMs()
{
    return g_offsetMs.load();
}

} // namespace core::time_date
