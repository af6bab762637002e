#include "UIFrame/Linkage/PanelGroupSettingReport.h"

#include "Platform/Core/Report.h"

#include <json/value.h>

namespace panel_group_setting {

void ReportPopupClick(const char* optionName)
{
    Json::Value fields(Json::objectValue);
    fields["option_name"] = optionName;
    core::report::ClickReport("ClickComponentGroupPopup", fields);
}

} // namespace panel_group_setting
