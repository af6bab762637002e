#include "apps/Workspace/Layouts/BuiltInLayouts.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/Trade/SimTradeService.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardTypes.h"
#include "UIFrame/StateTreeTypes.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Log.h"

#include <algorithm>

namespace vx_ws {

namespace {

// The group every linked box of a layout joins: one security, one account per page.
const QString kGroup = QStringLiteral("1");

QStringList Types(std::initializer_list<const char*> types)
{
    QStringList list;
    for (const char* type : types)
        list.append(QString::fromLatin1(type));
    return list;
}

// Boxes are laid on a grid with the canvas's own spacing: a 4 px margin round the page and a
// 4 px gap between neighbours (what edge snapping leaves), so that no box overlaps another.
VXBuiltInBox Quote(int x, int y, int w, int h, std::initializer_list<const char*> types,
                   const CVXVariantMapTree& cardData = CVXVariantMapTree())
{
    return VXBuiltInBox{QRect(x, y, w, h), Types(types), kGroup, false, cardData};
}

VXBuiltInBox Trade(int x, int y, int w, int h, std::initializer_list<const char*> types,
                   const QString& group = kGroup, const CVXVariantMapTree& cardData = CVXVariantMapTree())
{
    return VXBuiltInBox{QRect(x, y, w, h), Types(types), group, true, cardData};
}

// A watch list long enough to fill a page-high box: the index, the ETFs and every stock (the
// list card keeps it under "IDs").
CVXVariantMapTree FullWatchlist()
{
    QVector<qlonglong> ids{1, 500, 501, 502};
    for (qlonglong id = 1000; id < 1040; ++id)
        ids.append(id);
    CVXVariantMapTree data;
    data.Set<QVector<qlonglong>>(QStringLiteral("IDs"), ids);
    return data;
}

// A strategy for the combo order panel to start with, so that the page shows what the panel is
// for: a bull call spread on the first ETF, long the 30-day call at the money, short the 30-day
// call 5 % above (the universe lists each underlying's options by expiry, strike, then call and
// put). The panel keeps it under "ComboOptionInfo" with the linkage keys of a combo.
CVXVariantMapTree BullCallSpread()
{
    auto leg = [](qulonglong optionId, vx_trade::EnOrderSide side) {
        CVXVariantMapTree tree;
        tree.Set<qulonglong>(QString::fromLatin1(keys::kOptionID), optionId);
        tree.Set<int>(QString::fromLatin1(keys::kSide), static_cast<int>(side));
        tree.Set<int>(QString::fromLatin1(keys::kRatio), 1);
        return tree;
    };
    CVXVariantMapTree combo;
    combo.Set<qulonglong>(QString::fromLatin1(keys::kUnderlyingID), 500);
    combo.Set<QVector<CVXVariantMapTree>>(
        QString::fromLatin1(keys::kLegs),
        {leg(100004, vx_trade::EnOrderSide::Buy), leg(100006, vx_trade::EnOrderSide::Sell)});
    CVXVariantMapTree data;
    data.Set<CVXVariantMapTree>(QStringLiteral("ComboOptionInfo"), combo);
    return data;
}

} // namespace

QSize BuiltInCanvasSize()
{
    return QSize(1260, 700);
}

const QVector<VXBuiltInLayout>& BuiltInLayouts()
{
    using namespace quote_card_type;
    using namespace trade_card_type;
    // Each: name and remarks (text id, Chinese fallback), file base, the security shown, boxes.
    static const QVector<VXBuiltInLayout> layouts = {
        {970600,
         "日内交易",
         970601,
         "自选股、报价、K线、买卖盘、逐笔与下单，持仓和订单同屏",
         QStringLiteral("DayTrading"),
         1000,
         {
             Quote(4, 4, 250, 692, {Watchlist}, FullWatchlist()),
             Quote(258, 4, 540, 120, {StockHeader}),
             Quote(258, 128, 540, 330, {KLine}),
             Trade(258, 462, 540, 234, {SecuritiesTradePosition, SecuritiesTradeOrders, TradeHistoryOrders}),
             Quote(802, 4, 210, 300, {OrderBook}),
             Quote(802, 308, 210, 388, {Ticks}),
             Trade(1016, 4, 240, 692, {TradePlaceOrderSecuritiesPanel}),
         }},
        // The first ETF: the underlying with the fullest option chain.
        {970602,
         "期权交易",
         970603,
         "标的报价、期权链、组合期权下单、K线与持仓",
         QStringLiteral("OptionsTrading"),
         500,
         {
             Quote(4, 4, 700, 120, {StockHeader}),
             Quote(4, 128, 700, 260, {OptionChainsPanel}),
             Quote(4, 392, 700, 304, {KLine}),
             Trade(708, 4, 548, 300, {TradePlaceOrderComboOptionPanel}, kGroup, BullCallSpread()),
             Trade(708, 308, 548, 388, {SecuritiesTradePosition, SecuritiesTradeOrders}),
         },
         true},
        // A Hong Kong stock: its book carries the broker queues.
        {970604,
         "市场概览",
         970605,
         "大自选列表、K线、成交统计、经纪队列与账户概况",
         QStringLiteral("MarketOverview"),
         1002,
         {
             Quote(4, 4, 520, 692, {Watchlist}, FullWatchlist()),
             Quote(528, 4, 728, 412, {KLine}),
             Quote(528, 420, 240, 276, {TicksStatistic}),
             Quote(772, 420, 240, 276, {Brokers}),
             // The account is not the security's: it stays out of the group.
             Trade(1016, 420, 240, 276, {SecuritiesAccInfo}, QString()),
         }},
        {970606,
         "点价交易",
         970607,
         "点价下单、买卖盘、逐笔成交与订单",
         QStringLiteral("PriceLadder"),
         1001,
         {
             Trade(4, 4, 380, 692, {TradePlaceOrderBookTraderPanel}),
             Quote(388, 4, 868, 120, {StockHeader}),
             Quote(388, 128, 290, 300, {OrderBook}),
             Quote(682, 128, 260, 300, {Ticks}),
             Quote(946, 128, 310, 300, {KLine}),
             Trade(388, 432, 868, 264, {SecuritiesTradeOrders, TradeHistoryOrders, SecuritiesTradePosition}),
         }},
    };
    return layouts;
}

CVXVariantMapTree BuiltInBoxRecord(const VXBuiltInLayout& layout, const VXBuiltInBox& box,
                                   unsigned long long accountId)
{
    QVector<CVXVariantMapTree> cards;
    for (const QString& type : box.cardTypes) {
        CVXVariantMapTree card;
        card.Set<QString>(QStringLiteral("CardType"), type);
        card.Set<CVXVariantMapTree>(QStringLiteral("CardData"),
                                    cards.isEmpty() ? box.cardData : CVXVariantMapTree());
        cards.append(card);
    }
    CVXVariantMapTree record;
    record.Set<VXPanelBoxType>(QStringLiteral("BoxType"), VXPanelBoxType_AtomizationBox);
    record.Set<QRect>(QStringLiteral("PanelBoxPos"), box.geometry);
    record.Set<QVector<CVXVariantMapTree>>(QStringLiteral("Cards"), cards);
    record.Set<int>(QStringLiteral("CurVisibleCard"), 0);
    record.Set<unsigned long long>(QStringLiteral("StockID"), layout.stockId);
    record.Set<CVXVariantMapTree>(QStringLiteral("AccountInfo"),
                                  box.trade && accountId != 0
                                      ? vx_trade::CVXSimTradeService::MakeAccountTree(accountId)
                                      : CVXVariantMapTree());
    record.Set<QString>(QStringLiteral("strGroupID"), box.groupId);
    record.Set<QString>(QStringLiteral("strGroupColor"), QString());
    return record;
}

unsigned long long BuiltInLayoutAccountID(const VXBuiltInLayout& layout,
                                          const vx_trade::CVXSimTradeService& broker)
{
    if (layout.marginAccount) {
        for (const vx_trade::AccountInfo& account : broker.Accounts()) {
            if (account.margin)
                return account.id;
        }
    }
    return broker.DefaultAccountID();
}

int FillBuiltInCanvas(const VXBuiltInLayout& layout, CVXPanelScrollView* canvas, unsigned long long accountId)
{
    if (!canvas) {
        VXLOG_WARN("FillBuiltInCanvas: no canvas for {}", layout.fileBase);
        return 0;
    }
    int made = 0;
    for (const VXBuiltInBox& box : layout.boxes) {
        if (canvas->CreateBoxFromRecord(BuiltInBoxRecord(layout, box, accountId), 0))
            ++made;
    }
    canvas->UpdateScrollInfo();
    return made;
}

QStringList MissingBuiltInCardTypes()
{
    QStringList missing;
    for (const VXBuiltInLayout& layout : BuiltInLayouts()) {
        for (const VXBuiltInBox& box : layout.boxes) {
            for (const QString& type : box.cardTypes) {
                if (!CVXCardFactoryMgr::Instance().HasFactory(type) && !missing.contains(type))
                    missing.append(type);
            }
        }
    }
    std::sort(missing.begin(), missing.end());
    return missing;
}

QString BuiltInCatalogueFileName()
{
    return QStringLiteral("DefaultPanelLayout.json");
}

} // namespace vx_ws
