#include "UIFrame/Canvas/PanelTradeRequests.h"

#include "UIFrame/CardTypes.h"
#include "UIFrame/VariantMapTreeAccess.h"

namespace panel_trade_request {

namespace {

QString Key(const char* key)
{
    return QString::fromLatin1(key);
}

// Zero means "let the panel choose": such fields are left out so that the card keeps its own.
void SetOrderFields(CVXVariantMapTree& property, EnVXOrderSide side, long long quantity, double price)
{
    if (side != EnVXOrderSide::None)
        property.Set<int>(Key(kOrderSide), static_cast<int>(side));
    if (quantity != 0)
        property.Set<qlonglong>(Key(kQuantity), quantity);
    if (price != 0.0)
        property.Set<double>(Key(kPrice), price);
}

// A stock id of zero and an empty combo are "none" and left out like the order fields.
void SetStock(CVXVariantMapTree& property, const char* key, unsigned long long stockId)
{
    if (stockId != 0)
        property.Set<qulonglong>(Key(key), stockId);
}

void SetComboOption(CVXVariantMapTree& property, const CVXVariantMapTree& comboOptionInfo)
{
    if (!comboOptionInfo.IsEmpty())
        property.Set<CVXVariantMapTree>(Key(kComboOptionInfo), comboOptionInfo);
}

Target TradeTarget(const char* cardType, const CVXVariantMapTree& account)
{
    Target target;
    target.cardType = QString::fromLatin1(cardType);
    target.account = account;
    return target;
}

} // namespace

Target ForPlaceOrder(const VXPlaceOrderRequest& request)
{
    Target target = TradeTarget(trade_card_type::TradePlaceOrderSecuritiesPanel, request.accountInfo);
    SetStock(target.property, kStockID, request.u64StockID);
    SetOrderFields(target.property, request.enSide, request.llQuantity, request.dPrice);
    return target;
}

Target ForTradeOrders(const VXTradeOrdersRequest& request)
{
    Target target = TradeTarget(trade_card_type::SecuritiesTradeOrders, request.accountInfo);
    SetStock(target.property, kStockID, request.u64StockID);
    return target;
}

Target ForComboOptionOrder(const VXComboOptionOrderRequest& request)
{
    Target target = TradeTarget(trade_card_type::TradePlaceOrderSecuritiesPanel, request.accountInfo);
    SetComboOption(target.property, request.comboOptionInfo);
    SetOrderFields(target.property, request.enSide, request.llQuantity, request.dPrice);
    return target;
}

Target ForOptionChain(const VXOptionChainRequest& request)
{
    Target target = TradeTarget(trade_card_type::TradePlaceOrderSecuritiesPanel, request.accountInfo);
    SetStock(target.property, kUnderlyingStockID, request.u64UnderlyingStockID);
    SetComboOption(target.property, request.comboOptionInfo);
    return target;
}

Target ForCommonJump(const VXCommonJumpRequest& request)
{
    Target target;
    target.cardType = request.strTargetCardType;
    target.property = request.jumpData;
    return target;
}

} // namespace panel_trade_request
