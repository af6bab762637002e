#pragma once

// CVXPositionCard ("SecuritiesTradePosition"): the positions of the card's account with their
// value and unrealised P&L at the feed's last price, a totals row, sortable columns. A click on
// a row shows that security in the card's linkage group; a double click asks for an order panel
// that closes the position (sell a long, buy back a short, the whole quantity).

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/TradeCards/AccountRows.h"
#include "apps/Workspace/TradeCards/TradeTableCard.h"

#include "UIFrame/CardBaseStyle.h"

namespace vx_ws {

class CVXPositionCard : public TplVXWorkspaceCard<CVXPositionCard, CVXTradeTableCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "SecuritiesTradePosition";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXPositionCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXPositionCard() override;

    // The rows as last built, in the service's order (the table may show them sorted).
    const std::vector<PositionRow>& Rows() const { return m_rows; }

protected:
    void OnAccountDataChanged() override;
    void OnMarketDataChanged(const std::set<unsigned long>& stockIDs) override;
    void OnRowClicked(unsigned long long key) override;
    void OnRowDoubleClicked(unsigned long long key) override;

private:
    void Rebuild(bool resubscribe);

    std::vector<PositionRow> m_rows;
};

} // namespace vx_ws
