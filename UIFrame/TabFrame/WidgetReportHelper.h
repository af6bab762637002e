#pragma once

// Usage-report helpers of tab frames: the "tab_type" text of a frame key, of a widget inside a
// frame, and of a card.

#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/UIFrameExport.h"

#include <json/value.h>

#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <utility>
#include <vector>

class CVXCardObjBase;

namespace report_tabtype {
inline constexpr const char* kstrWatchList = "0";
inline constexpr const char* kstrAccount = "1";
inline constexpr const char* kstrMarket = "2";
inline constexpr const char* kstrPanel = "3";
inline constexpr const char* kstrDiscovery = "4";
inline constexpr const char* kstrOptions = "5";
inline constexpr const char* kstrScreen = "6";
inline constexpr const char* kstrInfo = "7";
inline constexpr const char* kstrQuantitative = "8";
inline constexpr const char* kstrQPCircle = "9";
inline constexpr const char* kstrMessage = "10";
inline constexpr const char* kstrChat = "11";
inline constexpr const char* kstrShortcut = "12";
inline constexpr const char* kstrPaperTrade = "13";
inline constexpr const char* kstrUnknown = "-1";
} // namespace report_tabtype

class UIFRAME_EXPORT CVXWidgetReportHelper
{
public:
    using TabPosEntry = std::pair<EnVXTabFrameKey, const char*>;

    // The frame key -> tab position table, in the order it is filled.
    static const std::vector<TabPosEntry>& ReportTabPosEntries();

    // Empty for key 0 and for keys without a tab position.
    static QString GetReportTabPosStringByTabFrameKey(EnVXTabFrameKey key);
    // The text of the widget's frame (the widget itself or its nearest frame ancestor); empty
    // without one.
    static QString GetReportTabPosString(QPointer<QWidget> widget);
    // The text of the card's frame (CVXObjBase::GetTabFrame); empty without one.
    static QString GetCardReportTabPosString(const CVXCardObjBase* card);

    // Sends the click report `eventName` with `fields` plus "tab_type", the tab position text
    // of the widget's frame (empty outside a frame).
    static void FillTabTypeToClickReport(QPointer<QWidget> widget, const std::string& eventName,
                                         Json::Value fields = Json::Value(Json::objectValue));

    // The report name of a card type of the catalogue (card_types::AllCardTypes()): its words
    // in lower case joined by "_" ("StockHeader" -> "stock_header", "ETFConstituents" ->
    // "etf_constituents"); empty for a type outside the catalogue.
    static QString GetReportCardTypeString(const QString& cardType);
    // The whole card type -> report name table.
    static const QHash<QString, QString>& ReportCardTypeMap();
};
