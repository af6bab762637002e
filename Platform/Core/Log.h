#pragma once

// Logging service: every line carries the "[UIFrame]" tag, the source file and line, and is
// formatted with {fmt}. Levels are chosen at run time. Sinks let tests capture every line.

#include "Platform/Core/CoreExport.h"

#include <QByteArray>
#include <QString>

#include <fmt/format.h>

#include <functional>
#include <string>
#include <string_view>

namespace core::log {

enum class Level { Trace = 0, Debug, Info, Warn, Error, Critical, Off };

struct Record
{
    Level level;
    const char* file; // as given by __FILE__
    int line;
    std::string message; // the formatted message, without tag and source
};

using Sink = std::function<void(const Record&)>;

// Lines below the level are dropped before formatting.
VXCORE_EXPORT void SetLevel(Level level);
VXCORE_EXPORT Level GetLevel();
VXCORE_EXPORT bool ShouldLog(Level level);

// Sinks are called on the thread that logs, under the service's lock; they must not log.
VXCORE_EXPORT int AddSink(Sink sink);
VXCORE_EXPORT void RemoveSink(int id);

// Also write lines to a file (appended); an empty path stops file output.
VXCORE_EXPORT void SetLogFile(const std::string& path);

VXCORE_EXPORT void Write(Level level, const char* file, int line, std::string message);

// "[UIFrame] message (File.cpp:123)": the text written to the console and to the log file.
VXCORE_EXPORT std::string FormatLine(const Record& record);

template <typename... Args>
void Log(Level level, const char* file, int line, fmt::format_string<Args...> format, Args&&... args)
{
    if (!ShouldLog(level))
        return;
    Write(level, file, line, fmt::format(format, std::forward<Args>(args)...));
}

} // namespace core::log

template <>
struct fmt::formatter<QString> : fmt::formatter<std::string_view>
{
    template <typename FormatContext>
    auto format(const QString& s, FormatContext& ctx) const
    {
        const QByteArray utf8 = s.toUtf8();
        return fmt::formatter<std::string_view>::format(std::string_view(utf8.constData(), utf8.size()), ctx);
    }
};

template <>
struct fmt::formatter<QByteArray> : fmt::formatter<std::string_view>
{
    template <typename FormatContext>
    auto format(const QByteArray& s, FormatContext& ctx) const
    {
        return fmt::formatter<std::string_view>::format(std::string_view(s.constData(), s.size()), ctx);
    }
};

#define VXLOG_TRACE(...) ::core::log::Log(::core::log::Level::Trace, __FILE__, __LINE__, __VA_ARGS__)
#define VXLOG_DEBUG(...) ::core::log::Log(::core::log::Level::Debug, __FILE__, __LINE__, __VA_ARGS__)
#define VXLOG_INFO(...) ::core::log::Log(::core::log::Level::Info, __FILE__, __LINE__, __VA_ARGS__)
#define VXLOG_WARN(...) ::core::log::Log(::core::log::Level::Warn, __FILE__, __LINE__, __VA_ARGS__)
#define VXLOG_ERROR(...) ::core::log::Log(::core::log::Level::Error, __FILE__, __LINE__, __VA_ARGS__)
