#pragma once

// What the canvas hands to a card when it satisfies a trade request that a box passed up (the
// Inner card events): the card type that serves the request and the property tree the card
// receives (or starts from, when a new box is opened for it). Pure functions: no widgets.

#include "UIFrame/CardEvents.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QString>

namespace panel_trade_request {

// Property keys written below.
inline constexpr const char* kStockID = "StockID";
inline constexpr const char* kOrderSide = "OrderSide";
inline constexpr const char* kQuantity = "Quantity";
inline constexpr const char* kPrice = "Price";
inline constexpr const char* kComboOptionInfo = "ComboOptionInfo";
inline constexpr const char* kUnderlyingStockID = "UnderlyingStockID";

struct Target
{
    QString cardType;           // empty: no card can serve the request
    CVXVariantMapTree account;  // the account the request names (may be empty)
    CVXVariantMapTree property; // what the card is given
};

// Order panels serve every place-order request (securities, combination option, and the option
// chain opened from the combination-option order panel); the orders list serves the trade-orders
// request; a jump names its card type itself and carries its data as the property.
UIFRAME_EXPORT Target ForPlaceOrder(const VXPlaceOrderRequest& request);
UIFRAME_EXPORT Target ForTradeOrders(const VXTradeOrdersRequest& request);
UIFRAME_EXPORT Target ForComboOptionOrder(const VXComboOptionOrderRequest& request);
UIFRAME_EXPORT Target ForOptionChain(const VXOptionChainRequest& request);
UIFRAME_EXPORT Target ForCommonJump(const VXCommonJumpRequest& request);

} // namespace panel_trade_request
