#pragma once

// CVXOrdersCard ("SecuritiesTradeOrders"): today's orders of the card's account, newest first,
// behind filter tabs (all / working / filled / cancelled). Working orders carry a cancel cell
// that cancels through the trade service. A trade-orders request (SetObjProperty with
// "StockID") narrows the list to one security and shows a chip that clears it. The tab and the
// security filter are saved in the card's state ("OrderFilter", "FilterStockID").

#include "apps/Workspace/TradeCards/AccountRows.h"
#include "apps/Workspace/TradeCards/TradeTableCard.h"

#include "UIFrame/CardBaseStyle.h"

namespace vx_ws {

class CVXOrdersCard : public CVXTradeTableCard
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "SecuritiesTradeOrders";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXOrdersCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXOrdersCard() override;

    QString GetCardObjType() override;
    QString GetCardStaticTitle() override;
    QSize GetCardMinSize() override;
    QSize GetCardIdealSize() override;
    void SetObjProperty(const QString& cardType, const CVXVariantMapTree& property) override;
    // A box opened for a trade-orders request starts from the request's property.
    void InitWithData(CVXVariantMapTree data) override;
    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    EnOrderFilter Filter() const { return m_enFilter; }
    void SetFilter(EnOrderFilter filter);
    unsigned long FilterStockID() const { return m_ulFilterStock; }
    void SetFilterStockID(unsigned long stockId);
    // The orders listed, in the service's order (the table may show them sorted).
    const std::vector<vx_trade::Order>& ListedOrders() const { return m_orders; }
    int CancelColumn() const;

protected:
    void OnAccountDataChanged() override;
    void OnSegmentClicked(int index) override;
    void OnChipClosed() override;
    void OnRowClicked(unsigned long long key) override;
    void OnActionClicked(unsigned long long key, int column) override;

private:
    void Rebuild();

    EnOrderFilter m_enFilter = EnOrderFilter::All;
    unsigned long m_ulFilterStock = 0;
    std::vector<vx_trade::Order> m_orders;
};

} // namespace vx_ws
