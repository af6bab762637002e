#include "Platform/Core/Log.h"

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>

#include <atomic>
#include <cstring>
#include <map>
#include <mutex>

namespace core::log {
namespace {

struct Service
{
    std::mutex mutex;
    std::map<int, Sink> sinks;
    int nextSinkId = 1;
    std::shared_ptr<spdlog::logger> console;
    std::shared_ptr<spdlog::logger> file;
};

Service& S()
{
    static Service* s = [] {
        auto* service = new Service;
        service->console = spdlog::stderr_color_mt("vx_console");
        service->console->set_pattern("%H:%M:%S.%e %^%L%$ %v");
        service->console->set_level(spdlog::level::trace);
        return service;
    }();
    return *s;
}

std::atomic<int> g_level{static_cast<int>(Level::Info)};

spdlog::level::level_enum ToSpd(Level level)
{
    switch (level) {
    case Level::Trace: return spdlog::level::trace;
    case Level::Debug: return spdlog::level::debug;
    case Level::Info: return spdlog::level::info;
    case Level::Warn: return spdlog::level::warn;
    case Level::Error: return spdlog::level::err;
    case Level::Critical: return spdlog::level::critical;
    case Level::Off: return spdlog::level::off;
    }
    return spdlog::level::info;
}

const char* BaseName(const char* path)
{
    if (!path)
        return "";
    const char* slash = std::strrchr(path, '/');
    return slash ? slash + 1 : path;
}

} // namespace

void SetLevel(Level level)
{
    g_level.store(static_cast<int>(level));
}
Level GetLevel()
{
    return static_cast<Level>(g_level.load());
}

bool ShouldLog(Level level)
{
    // Sinks (tests) see every line; the console and file honour the level.
    std::lock_guard<std::mutex> lock(S().mutex);
    return static_cast<int>(level) >= g_level.load() || !S().sinks.empty();
}

int AddSink(Sink sink)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    const int id = S().nextSinkId++;
    S().sinks.emplace(id, std::move(sink));
    return id;
}

void RemoveSink(int id)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    S().sinks.erase(id);
}

void SetLogFile(const std::string& path)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    if (S().file) {
        S().file->flush();
        spdlog::drop(S().file->name());
        S().file.reset();
    }
    if (path.empty())
        return;
    try {
        S().file = spdlog::basic_logger_mt("vx_file", path);
        S().file->set_pattern("%Y-%m-%d %H:%M:%S.%e %L %v");
        S().file->set_level(spdlog::level::trace);
        S().file->flush_on(spdlog::level::warn);
    } catch (const spdlog::spdlog_ex& e) {
        S().console->error("[UIFrame] cannot open log file {}: {}", path, e.what());
    }
}

std::string FormatLine(const Record& record)
{
    return fmt::format("[UIFrame] {} ({}:{})", record.message, BaseName(record.file), record.line);
}

void Write(Level level, const char* file, int line, std::string message)
{
    Record record{level, file, line, std::move(message)};
    std::lock_guard<std::mutex> lock(S().mutex);
    for (auto& [id, sink] : S().sinks)
        sink(record);
    if (static_cast<int>(level) < g_level.load())
        return;
    const std::string text = FormatLine(record);
    S().console->log(ToSpd(level), text);
    if (S().file)
        S().file->log(ToSpd(level), text);
}

} // namespace core::log
