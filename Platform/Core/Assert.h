#pragma once

// Assertion hook: broken internal rules are reported here with the condition text, the source
// file and line, and a level. The default hook logs them at error level (level 1) or warning
// level (level 2) and never aborts. Tests install their own hook to capture them.

#include "Platform/Core/CoreExport.h"

#include <functional>
#include <string>

namespace core::assertion {

enum Level : int {
    kLevelError = 1,   // a rule of the program is broken
    kLevelWarning = 2, // non-fatal: reported, then the caller goes on
};

struct Info
{
    std::string condition; // the condition text or message
    std::string file;
    int line = 0;
    int level = kLevelError;
};

using Hook = std::function<void(const Info&)>;

// Installs a hook and returns the previous one; an empty hook restores the default.
VXCORE_EXPORT Hook SetHook(Hook hook);
VXCORE_EXPORT void Raise(const char* condition, const char* file, int line, int level);

} // namespace core::assertion

// Evaluates to the condition; on failure reports it first. Use as `if (!VX_ASSERT(p)) return;`.
#define VX_ASSERT(cond)                                                                              \
    (static_cast<bool>(cond) ||                                                                      \
     (::core::assertion::Raise(#cond, __FILE__, __LINE__, ::core::assertion::kLevelError), false))

#define VX_ASSERT_LEVEL(message, level) ::core::assertion::Raise((message), __FILE__, __LINE__, (level))
