#include "apps/Workspace/TradeCards/ComboOptionPanelModel.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include <algorithm>

namespace vx_ws {

namespace {
QString Key(const char* key)
{
    return QString::fromLatin1(key);
}
} // namespace

void CVXComboOptionPanelModel::SetFromTree(const CVXVariantMapTree& tree)
{
    m_underlyingId = static_cast<unsigned long>(tree.Get<qulonglong>(Key(keys::kUnderlyingID), 0));
    m_legs.clear();
    const QVector<CVXVariantMapTree> legs = tree.Get<QVector<CVXVariantMapTree>>(Key(keys::kLegs));
    for (const CVXVariantMapTree& legTree : legs) {
        vx_trade::ComboLeg leg;
        leg.optionId = static_cast<unsigned long>(legTree.Get<qulonglong>(Key(keys::kOptionID), 0));
        if (leg.optionId == 0)
            continue;
        const bool duplicate =
            std::any_of(m_legs.begin(), m_legs.end(),
                        [&](const vx_trade::ComboLeg& other) { return other.optionId == leg.optionId; });
        if (duplicate)
            continue;
        leg.side = legTree.Get<int>(Key(keys::kSide), 1) == static_cast<int>(vx_trade::EnOrderSide::Sell)
                       ? vx_trade::EnOrderSide::Sell
                       : vx_trade::EnOrderSide::Buy;
        leg.ratio = std::max(1, legTree.Get<int>(Key(keys::kRatio), 1));
        m_legs.push_back(leg);
    }
}

CVXVariantMapTree CVXComboOptionPanelModel::ToTree() const
{
    CVXVariantMapTree tree;
    tree.Set<qulonglong>(Key(keys::kUnderlyingID), m_underlyingId);
    QVector<CVXVariantMapTree> legs;
    for (const vx_trade::ComboLeg& leg : m_legs) {
        CVXVariantMapTree legTree;
        legTree.Set<qulonglong>(Key(keys::kOptionID), leg.optionId);
        legTree.Set<int>(Key(keys::kSide), static_cast<int>(leg.side));
        legTree.Set<int>(Key(keys::kRatio), leg.ratio);
        legs.push_back(legTree);
    }
    tree.Set<QVector<CVXVariantMapTree>>(Key(keys::kLegs), legs);
    return tree;
}

bool CVXComboOptionPanelModel::ToggleSide(int index)
{
    if (index < 0 || index >= static_cast<int>(m_legs.size()))
        return false;
    vx_trade::ComboLeg& leg = m_legs[static_cast<std::size_t>(index)];
    leg.side =
        leg.side == vx_trade::EnOrderSide::Buy ? vx_trade::EnOrderSide::Sell : vx_trade::EnOrderSide::Buy;
    return true;
}

bool CVXComboOptionPanelModel::SetRatio(int index, int ratio)
{
    if (index < 0 || index >= static_cast<int>(m_legs.size()) || ratio < 1)
        return false;
    m_legs[static_cast<std::size_t>(index)].ratio = ratio;
    return true;
}

std::vector<ComboLegQuote> CVXComboOptionPanelModel::Quote(const vx_md::CVXSimMarketData& feed) const
{
    std::vector<ComboLegQuote> quotes;
    for (const vx_trade::ComboLeg& leg : m_legs) {
        if (!feed.Contains(leg.optionId))
            continue;
        const vx_md::SecurityInfo info = feed.GetSecurity(leg.optionId);
        const vx_md::OrderBook book = feed.GetOrderBook(leg.optionId);
        ComboLegQuote quote;
        quote.leg = leg;
        quote.code = info.code;
        quote.strike = info.strike;
        quote.call = info.right != vx_md::EnOptionRight::Put;
        quote.expiryDays = info.expiryDays;
        quote.theoretical = feed.OptionTheoreticalPrice(leg.optionId);
        quote.bid = book.bids.empty() ? 0.0 : book.bids.front().price;
        quote.ask = book.asks.empty() ? 0.0 : book.asks.front().price;
        quote.tickSize = info.tickSize;
        quotes.push_back(quote);
    }
    return quotes;
}

ComboNetPrice CVXComboOptionPanelModel::NetPrice(const std::vector<ComboLegQuote>& quotes)
{
    ComboNetPrice net;
    net.complete = !quotes.empty();
    for (const ComboLegQuote& quote : quotes) {
        const bool buy = quote.leg.side == vx_trade::EnOrderSide::Buy;
        const double sign = buy ? 1.0 : -1.0;
        const double price = buy ? quote.ask : quote.bid;
        if (price <= 0.0)
            net.complete = false;
        net.market += sign * price * quote.leg.ratio;
        net.theoretical += sign * quote.theoretical * quote.leg.ratio;
    }
    return net;
}

} // namespace vx_ws
