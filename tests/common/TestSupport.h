#pragma once

// Shared test support. Every test binary runs with a log sink and an assertion hook installed:
// an error-level log line or an assertion that the test did not declare expected fails it.
// Tests that provoke one say so first with ExpectError / ExpectAssertion.

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"

#include <string>
#include <vector>

namespace vxtest {

struct CapturedLog
{
    core::log::Level level;
    std::string message;
    std::string file;
    int line;
};

// The next error-level lines / assertions whose text contains `fragment` are expected.
// Each call allows any number of matching lines until the test ends.
void ExpectError(const std::string& fragment);
void ExpectAssertion(const std::string& fragment);

// Everything logged (any level) and every assertion raised since the test started.
const std::vector<CapturedLog>& Logs();
const std::vector<core::assertion::Info>& Assertions();
bool HasLog(const std::string& fragment);
int CountAssertions(const std::string& fragment);

// Called by the test listener around each test.
void BeginTest();
void EndTest();

} // namespace vxtest
