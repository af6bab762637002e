#pragma once

// The services the workspace program's cards draw from. The program (or a test) installs them
// before it creates cards and takes them away (nullptr) after the last card is gone. A card made
// while a service is missing shows an empty state and logs nothing; it picks the service up on
// its next repaint.

namespace vx_md {
class CVXSimMarketData;
}
namespace vx_trade {
class CVXSimTradeService;
}

namespace vx_ws {

void SetMarketData(vx_md::CVXSimMarketData* marketData);
vx_md::CVXSimMarketData* MarketData();

void SetTradeService(vx_trade::CVXSimTradeService* tradeService);
vx_trade::CVXSimTradeService* TradeService();

// The security a card shows before anything told it one: the first stock of the universe.
inline constexpr unsigned long kDefaultStockID = 1000;

// Keys of the linkage trees the cards exchange through the card events.
namespace keys {
// Account info (CardEventAccountInfoChanged, SetAccountInfo): the account id, qulonglong.
inline constexpr const char* kAccountID = "AccountID";
// Option index info (CardEventOptionIndexChanged): the underlying (qulonglong) and the option
// the user picked in a chain (qulonglong, 0 when none).
inline constexpr const char* kUnderlyingID = "UnderlyingID";
inline constexpr const char* kOptionID = "OptionID";
// Combo option info (CardEventComboOptionChanged): kUnderlyingID plus "Legs", a
// QVector<CVXVariantMapTree> of {kOptionID, kSide (int: 1 buy, 2 sell), kRatio (int >= 1)}.
inline constexpr const char* kLegs = "Legs";
inline constexpr const char* kSide = "Side";
inline constexpr const char* kRatio = "Ratio";
} // namespace keys

} // namespace vx_ws
