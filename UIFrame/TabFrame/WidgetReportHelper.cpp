#include "UIFrame/TabFrame/WidgetReportHelper.h"

#include "UIFrame/CardObjBase.h"
#include "UIFrame/TabFrame/TabFrameBase.h"

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
