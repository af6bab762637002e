#pragma once

// CVXComboOptionPanelModel: the strategy an options order panel trades, without widgets: the
// underlying, the legs (option, side, ratio) read from and written to the combo option tree
// (vx_ws::keys), and the strategy's net price per combo from each leg's quote. Buying a leg pays
// its ask, selling receives its bid; a positive net is a debit (the strategy costs money), a
// negative one a credit.

#include "apps/Workspace/Trade/SimTradeService.h"

#include "Platform/Core/VariantMapTree.h"

#include <string>
#include <vector>

namespace vx_md {
class CVXSimMarketData;
}

namespace vx_ws {

struct ComboLegQuote
{
    vx_trade::ComboLeg leg;
    std::string code;
    double strike = 0.0;
    bool call = true;
    int expiryDays = 0;
    double theoretical = 0.0;
    double bid = 0.0; // 0: none
    double ask = 0.0;
    double tickSize = 0.001;
};

struct ComboNetPrice
{
    double market = 0.0;      // per one combo at the book's prices
    double theoretical = 0.0; // per one combo at the model prices
    bool complete = false;    // every leg has the book price it needs
};

class CVXComboOptionPanelModel
{
public:
    // Legs without an option id are dropped; a ratio below 1 becomes 1, a side other than
    // sell becomes buy. The same option twice is kept once (the first).
    void SetFromTree(const CVXVariantMapTree& tree);
    CVXVariantMapTree ToTree() const;

    unsigned long UnderlyingID() const { return m_underlyingId; }
    const std::vector<vx_trade::ComboLeg>& Legs() const { return m_legs; }
    bool IsEmpty() const { return m_legs.empty(); }
    // False for an index out of range.
    bool ToggleSide(int index);
    bool SetRatio(int index, int ratio);

    // The legs' quotes now; options the feed does not know are left out.
    std::vector<ComboLegQuote> Quote(const vx_md::CVXSimMarketData& feed) const;
    static ComboNetPrice NetPrice(const std::vector<ComboLegQuote>& quotes);

private:
    unsigned long m_underlyingId = 0;
    std::vector<vx_trade::ComboLeg> m_legs;
};

} // namespace vx_ws
