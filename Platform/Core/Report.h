#pragma once

// Usage reports: click reports (a name and a JSON object of fields) and timer reports (a timer
// started when something becomes visible and ended with a type, fields and a value). Each
// report is appended as one JSON line to "reports.jsonl" in the current user's folder (resolved
// when the report is made); one writer thread of its own appends them in the order reported.

#include "Platform/Core/CoreExport.h"

#include <json/value.h>

#include <QString>

#include <functional>
#include <string>

namespace core::report {

// A card or page whose tab type is unknown is never timed.
inline constexpr const char* kstrUnknownTabType = "-1";

VXCORE_EXPORT void ClickReport(const std::string& name, const Json::Value& fields);

// Timers are identified by a non-zero handle; 0 is "no timer", returned for an empty name and for
// kstrUnknownTabType.
VXCORE_EXPORT unsigned long long TimerStart(const std::string& name);
// Ends a running timer and writes a line with the elapsed milliseconds; an unknown handle is
// ignored.
VXCORE_EXPORT void TimerEnd(unsigned long long handle, int type, const Json::Value& fields, int value);
VXCORE_EXPORT void TimerCancel(unsigned long long handle);
VXCORE_EXPORT bool IsTimerRunning(unsigned long long handle);

// Where reports go: by default the file above. Tests replace it to capture lines; an empty
// function restores the default. Called on the thread that reports.
using Writer = std::function<void(const std::string& jsonLine)>;
VXCORE_EXPORT void SetWriter(Writer writer);

// Blocks until every queued line is written (tests, shutdown). Lines that could not be written
// (the file cannot be opened) are logged and kept in memory; they are written before the next
// line that goes to the same file.
VXCORE_EXPORT void Flush();

// Drops running timers and lines kept after a failed write, restores the default writer.
VXCORE_EXPORT void ResetForTest();

} // namespace core::report
