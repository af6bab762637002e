#pragma once

// Helpers for the group setting popup tests: clicking a child of a shown popup through its
// window, reading the usage report lines, saving screenshots when VX_SCREENSHOT_DIR is set.

#include <gtest/gtest.h>
#include <json/reader.h>
#include <json/value.h>

#include <QDir>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <memory>
#include <string>
#include <vector>

namespace group_popup_test {

// A left click in the middle of `child`, delivered to the window of `top` like a real click.
inline void ClickThroughWindow(QWidget* top, QWidget* child)
{
    QTest::mouseClick(top->windowHandle(), Qt::LeftButton, {}, child->mapTo(top, child->rect().center()));
}

struct ClickReportLine
{
    std::string kind;
    std::string name;
    std::string optionName;
    bool hasOptionName = false;
};

inline ClickReportLine ParseClickReport(const std::string& line)
{
    Json::Value value;
    Json::CharReaderBuilder builder;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    std::string errors;
    ClickReportLine parsed;
    if (!reader->parse(line.data(), line.data() + line.size(), &value, &errors) || !value.isObject())
        return parsed;
    parsed.kind = value["kind"].asString();
    parsed.name = value["name"].asString();
    const Json::Value& fields = value["fields"];
    parsed.hasOptionName = fields.isObject() && fields.isMember("option_name");
    if (parsed.hasOptionName)
        parsed.optionName = fields["option_name"].asString();
    return parsed;
}

// `lines` hold exactly one click report of the group popups, for `optionName`. Call it inside
// ASSERT_NO_FATAL_FAILURE: its fatal checks end only the helper.
inline void ExpectOnePopupClick(const std::vector<std::string>& lines, const char* optionName)
{
    ASSERT_EQ(lines.size(), 1u);
    const ClickReportLine report = ParseClickReport(lines[0]);
    EXPECT_EQ(report.kind, "click");
    EXPECT_EQ(report.name, "ClickComponentGroupPopup");
    ASSERT_TRUE(report.hasOptionName);
    EXPECT_EQ(report.optionName, optionName);
}

// Looked at by people, never compared: saved only when VX_SCREENSHOT_DIR names a folder.
inline void SaveScreenshot(QWidget* widget, const QString& name)
{
    const QString folder = qEnvironmentVariable("VX_SCREENSHOT_DIR");
    if (folder.isEmpty())
        return;
    QDir().mkpath(folder);
    widget->grab().save(QDir(folder).filePath(name + QStringLiteral(".png")));
}

} // namespace group_popup_test
