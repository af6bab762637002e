#pragma once

// The usage report shared by the group setting popups: one click report named
// "ClickComponentGroupPopup" whose "option_name" tells what was clicked.

namespace panel_group_setting {

inline constexpr const char* kGroupOption = "1"; // a linkage group chosen
inline constexpr const char* kColorOption = "2"; // a colour chosen

void ReportPopupClick(const char* optionName);

} // namespace panel_group_setting
