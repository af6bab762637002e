#pragma once

// CVXBookTraderCard: price-ladder trading for the shown security. A column of prices one tick
// apart (centred on the last price, scrolled by the wheel, re-centred by a button), with the
// account's working buys, the bid volume, the price, the ask volume and the working sells on
// each row; the last price's row is marked. A click on a row's bid cell places a buy limit
// order at that price, on the ask cell a sell limit; a right click on an own-order cell cancels
// the account's working orders of that side at that price. The ladder arithmetic is
// CVXBookTraderModel's.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/TradeCards/BookTraderModel.h"
#include "apps/Workspace/TradeCards/OrderTicketCardBase.h"

class QSpinBox;

namespace vx_ws {

class CVXOrderTicketButton;

class CVXBookTraderCard : public TplVXWorkspaceCard<CVXBookTraderCard, CVXOrderTicketCardBase>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "TradePlaceOrderBookTraderPanel";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXBookTraderCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXBookTraderCard() override;

    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    const CVXBookTraderModel& Model() const { return m_model; }
    // The ladder's rectangle in the card (header strip included); the model's y is relative to it.
    QRect LadderRect() const;
    QSpinBox* QuantityBox() const { return m_pQuantity; }
    CVXOrderTicketButton* CentreButton() const { return m_pCentre; }
    // The order quantity of a click: the box's value snapped down to whole lots (at least one).
    long long OrderQuantity() const;
    // The rows as shown now.
    std::vector<BookTraderRow> Rows();
    void Centre();

protected:
    void OnMarketDataChanged(const std::set<unsigned long>& stockIDs) override;
    void OnShownStockChanged(unsigned long stockID) override;
    void OnAccountDataChanged() override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void RefreshSecurity();
    void UpdateGeometry();
    void PlaceAt(vx_trade::EnOrderSide side, long long ticks);
    void CancelAt(vx_trade::EnOrderSide side, long long ticks);
    void PaintHeader(QPainter& painter, const QRect& ladder);
    void PaintRows(QPainter& painter, const QRect& ladder);
    QRect CellRect(const QRect& ladder, CVXBookTraderModel::EnColumn column, int top) const;
    void PaintDepthCells(QPainter& painter, const QRect& ladder, const BookTraderRow& row, int top,
                         long long maxVolume);
    void PaintPriceAndOwnOrders(QPainter& painter, const QRect& ladder, const BookTraderRow& row, int top,
                                double tickSize, double prevClose);
    int Lot() const;

    CVXBookTraderModel m_model;
    bool m_bUserScrolled = false;
    bool m_bCentred = false;
    int m_nHoverRow = -1;
    QSpinBox* m_pQuantity = nullptr;
    CVXOrderTicketButton* m_pCentre = nullptr;
};

} // namespace vx_ws
