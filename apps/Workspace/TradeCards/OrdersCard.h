#pragma once

// CVXOrdersCard ("SecuritiesTradeOrders"): today's orders of the card's account, newest first,
// behind filter tabs (all / working / filled / cancelled). Working orders carry a cancel cell
// that cancels through the trade service. A trade-orders request (SetObjProperty with
// "StockID") narrows the list to one security and shows a chip that clears it. The tab and the
// security filter are saved in the card's state ("OrderFilter", "FilterStockID").

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/TradeCards/AccountRows.h"
#include "apps/Workspace/TradeCards/OrderTableCard.h"

#include "UIFrame/CardBaseStyle.h"

namespace vx_ws {

class CVXOrdersCard : public TplVXWorkspaceCard<CVXOrdersCard, CVXOrderTableCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "SecuritiesTradeOrders";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXOrdersCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXOrdersCard() override;

    void SetObjProperty(const QString& cardType, const CVXVariantMapTree& property) override;
    // A box opened for a trade-orders request starts from the request's property.
    void InitWithData(CVXVariantMapTree data) override;
    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    EnOrderFilter Filter() const { return m_enFilter; }
    void SetFilter(EnOrderFilter filter);
    unsigned long FilterStockID() const { return m_ulFilterStock; }
    void SetFilterStockID(unsigned long stockId);
    int CancelColumn() const;

protected:
    void OnAccountDataChanged() override;
    void OnSegmentClicked(int index) override;
    void OnChipClosed() override;
    void OnActionClicked(unsigned long long key, int column) override;

private:
    void Rebuild();

    EnOrderFilter m_enFilter = EnOrderFilter::All;
    unsigned long m_ulFilterStock = 0;
};

} // namespace vx_ws
