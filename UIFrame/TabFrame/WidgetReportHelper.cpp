#include "UIFrame/TabFrame/WidgetReportHelper.h"

#include "UIFrame/CardObjBase.h"
#include "UIFrame/CardTypes.h"
#include "UIFrame/TabFrame/TabFrameBase.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/Report.h"

#include <QHash>

const std::vector<CVXWidgetReportHelper::TabPosEntry>& CVXWidgetReportHelper::ReportTabPosEntries()
{
    static const std::vector<TabPosEntry> entries = {
        {TabFrameKey_WatchList, report_tabtype::kstrWatchList},
        {TabFrameKey_Account, report_tabtype::kstrAccount},
        {TabFrameKey_Market, report_tabtype::kstrMarket},
        {TabFrameKey_PanelWorkspace, report_tabtype::kstrPanel},
        {TabFrameKey_Discovery, report_tabtype::kstrDiscovery},
        {TabFrameKey_Options, report_tabtype::kstrOptions},
        {TabFrameKey_Screener, report_tabtype::kstrScreen},
        {TabFrameKey_Information, report_tabtype::kstrInfo},
        {TabFrameKey_Quantitative, report_tabtype::kstrQuantitative},
        {TabFrameKey_CommunityCircle, report_tabtype::kstrQPCircle},
        {TabFrameKey_Message, report_tabtype::kstrMessage},
        {TabFrameKey_Chat, report_tabtype::kstrChat},
        {TabFrameKey_Shortcut, report_tabtype::kstrShortcut},
        {TabFrameKey_PaperTrading, report_tabtype::kstrPaperTrade},
        {TabFrameKey_None, report_tabtype::kstrUnknown},
    };
    return entries;
}

QString CVXWidgetReportHelper::GetReportTabPosStringByTabFrameKey(EnVXTabFrameKey key)
{
    if (key == TabFrameKey_None)
        return {};
    static const QHash<unsigned int, QString> map = [] {
        QHash<unsigned int, QString> result;
        for (const TabPosEntry& entry : ReportTabPosEntries())
            result.insert(entry.first, QString::fromLatin1(entry.second));
        return result;
    }();
    return map.value(key);
}

QString CVXWidgetReportHelper::GetReportTabPosString(QPointer<QWidget> widget)
{
    for (QWidget* current = widget.data(); current; current = current->parentWidget()) {
        if (auto* frame = dynamic_cast<CVXTabFrameBase*>(current))
            return GetReportTabPosStringByTabFrameKey(frame->GetTabFrameKey());
    }
    return {};
}

QString CVXWidgetReportHelper::GetCardReportTabPosString(const CVXCardObjBase* card)
{
    if (!card)
        return {};
    const CVXTabFrameBase* frame = card->GetTabFrame();
    return frame ? GetReportTabPosStringByTabFrameKey(frame->GetTabFrameKey()) : QString();
}

void CVXWidgetReportHelper::FillTabTypeToClickReport(QPointer<QWidget> widget, const std::string& eventName,
                                                     Json::Value fields)
{
    if (eventName.empty()) {
        VXLOG_ERROR("CVXWidgetReportHelper::FillTabTypeToClickReport: empty report name");
        return;
    }
    if (!fields.isObject())
        fields = Json::Value(Json::objectValue);
    fields["tab_type"] = GetReportTabPosString(widget).toStdString();
    core::report::ClickReport(eventName, fields);
}

namespace {

// "StockHeader" -> "stock_header", "ETFConstituents" -> "etf_constituents", "IPOs" -> "ipos":
// a word starts at an upper-case letter after a lower-case letter or digit, and at the last
// capital of a run of capitals followed by a lower-case word (a plural "s" stays with its run).
QString ReportNameOfCardType(const QString& cardType)
{
    QString result;
    const int n = cardType.size();
    for (int i = 0; i < n; ++i) {
        const QChar c = cardType.at(i);
        if (i > 0 && c.isUpper()) {
            const QChar prev = cardType.at(i - 1);
            const bool afterLower = prev.isLower() || prev.isDigit();
            bool endOfCapitals = false;
            if (prev.isUpper() && i + 1 < n && cardType.at(i + 1).isLower()) {
                const bool pluralOfRun =
                    cardType.at(i + 1) == QLatin1Char('s') && (i + 2 == n || cardType.at(i + 2).isUpper());
                endOfCapitals = !pluralOfRun;
            }
            if (afterLower || endOfCapitals)
                result += QLatin1Char('_');
        }
        result += c.toLower();
    }
    return result;
}

} // namespace

const QHash<QString, QString>& CVXWidgetReportHelper::ReportCardTypeMap()
{
    static const QHash<QString, QString> map = [] {
        QHash<QString, QString> result;
        for (const QString& cardType : card_types::AllCardTypes())
            result.insert(cardType, ReportNameOfCardType(cardType));
        return result;
    }();
    return map;
}

QString CVXWidgetReportHelper::GetReportCardTypeString(const QString& cardType)
{
    return ReportCardTypeMap().value(cardType);
}
