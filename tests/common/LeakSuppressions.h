#pragma once

// Sanitizer builds: Qt's platform plug-in and fontconfig keep process-lifetime allocations that
// the leak checker would report at exit. Include in exactly one source file of each test program.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen\nleak:libfontconfig\nleak:libQt5Gui\nleak:libQt5Core\n";
}
