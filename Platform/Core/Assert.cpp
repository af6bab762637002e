#include "Platform/Core/Assert.h"

#include "Platform/Core/Log.h"

#include <mutex>

namespace core::assertion {
namespace {

std::mutex g_mutex;
Hook g_hook;

void DefaultHook(const Info& info)
{
    const auto level = info.level == kLevelWarning ? log::Level::Warn : log::Level::Error;
    log::Write(level, info.file.c_str(), info.line, fmt::format("Assertion failed: {}", info.condition));
}

} // namespace

Hook SetHook(Hook hook)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    Hook previous = std::move(g_hook);
    g_hook = std::move(hook);
    return previous;
}

void Raise(const char* condition, const char* file, int line, int level)
{
    Info info{condition ? condition : "", file ? file : "", line, level};
    Hook hook;
    {
        std::lock_guard<std::mutex> lock(g_mutex);
        hook = g_hook;
    }
    if (hook)
        hook(info);
    else
        DefaultHook(info);
}

} // namespace core::assertion
