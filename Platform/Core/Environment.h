#pragma once

// Environment flags of the running client: brand, release build, bank edition, first main
// broker. Read once from the command line ("--brand=zandor", "--release", "--bank",
// "--broker=N") and the application's settings; tests override them.

#include "Platform/Core/CoreExport.h"

#include <QStringList>

class QSettings;

namespace core::environment {

// Only the flags present are changed, so settings read first can be overridden by the command
// line. A broker id that is not a number is logged and ignored.
VXCORE_EXPORT void InitFromArguments(const QStringList& arguments);
// Keys "environment/brand", "environment/release", "environment/bank", "environment/broker".
VXCORE_EXPORT void InitFromSettings(const QSettings& settings);

VXCORE_EXPORT bool IsZandor();
VXCORE_EXPORT bool IsReleaseAppVersion();
VXCORE_EXPORT bool IsBankEdition();
VXCORE_EXPORT int GetFirstMainBrokerId();

VXCORE_EXPORT void SetZandor(bool on);
VXCORE_EXPORT void SetReleaseAppVersion(bool on);
VXCORE_EXPORT void SetBankEdition(bool on);
VXCORE_EXPORT void SetFirstMainBrokerId(int brokerId);

VXCORE_EXPORT void ResetForTest();

} // namespace core::environment
