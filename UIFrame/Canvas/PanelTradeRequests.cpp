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

} // namespace

Target ForPlaceOrder(const VXPlaceOrderRequest& request)
{
    Target target;
    target.cardType = QString::fromLatin1(trade_card_type::TradePlaceOrderSecuritiesPanel);
    target.account = request.accountInfo;
    if (request.u64StockID != 0)
        target.property.Set<qulonglong>(Key(kStockID), request.u64StockID);
    SetOrderFields(target.property, request.enSide, request.llQuantity, request.dPrice);
    return target;
}

Target ForTradeOrders(const VXTradeOrdersRequest& request)
{
    Target target;
    target.cardType = QString::fromLatin1(trade_card_type::SecuritiesTradeOrders);
    target.account = request.accountInfo;
    if (request.u64StockID != 0)
        target.property.Set<qulonglong>(Key(kStockID), request.u64StockID);
    return target;
}

Target ForComboOptionOrder(const VXComboOptionOrderRequest& request)
{
    Target target;
    target.cardType = QString::fromLatin1(trade_card_type::TradePlaceOrderSecuritiesPanel);
    target.account = request.accountInfo;
    if (!request.comboOptionInfo.IsEmpty())
        target.property.Set<CVXVariantMapTree>(Key(kComboOptionInfo), request.comboOptionInfo);
    SetOrderFields(target.property, request.enSide, request.llQuantity, request.dPrice);
    return target;
}

Target ForOptionChain(const VXOptionChainRequest& request)
{
    Target target;
    target.cardType = QString::fromLatin1(trade_card_type::TradePlaceOrderSecuritiesPanel);
    target.account = request.accountInfo;
    if (request.u64UnderlyingStockID != 0)
        target.property.Set<qulonglong>(Key(kUnderlyingStockID), request.u64UnderlyingStockID);
    if (!request.comboOptionInfo.IsEmpty())
        target.property.Set<CVXVariantMapTree>(Key(kComboOptionInfo), request.comboOptionInfo);
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
