#pragma once

// Translation: user-visible texts are looked up by numeric id in the current language's
// catalogue (JSON files "<lang>.json" in the resources' "lang" folder, an object mapping
// the id as a string to the text). A missing id, or no catalogue at all, yields the fallback,
// which is the Chinese text as written in the code.

#include "Platform/Core/CoreExport.h"

#include <QString>

namespace core::langx {

// "zh_CN" uses the fallbacks only; "en" loads en.json. Returns false (and keeps the previous
// language) when the catalogue is missing or malformed; the reason is logged.
VXCORE_EXPORT bool SetLanguage(const QString& language);
VXCORE_EXPORT QString GetLanguage();

// Loads a catalogue from a file for a language (tests, plug-ins). Same failure rules.
VXCORE_EXPORT bool LoadCatalogue(const QString& language, const QString& filePath);

VXCORE_EXPORT QString tr(int id, const QString& fallback);
VXCORE_EXPORT QString tr(int id, const char* fallbackUtf8);

VXCORE_EXPORT void ResetForTest();

} // namespace core::langx
