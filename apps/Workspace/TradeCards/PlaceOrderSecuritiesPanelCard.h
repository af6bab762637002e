#pragma once

// CVXPlaceOrderSecuritiesPanelCard: the order ticket of one security. Account, the security with
// its last price and best bid/ask (live), Buy/Sell, Limit/Market, price on the tick grid
// (prefilled with the best opposite price; off for a market order), quantity in lots, the
// estimated amount, the most the account can buy or sell, and Place; the broker's answer shows
// in the card. The numbers come from CVXOrderTicketModel.
//
// Requests from the canvas arrive through SetObjProperty with the keys of
// UIFrame/Canvas/PanelTradeRequests.h (StockID, OrderSide, Quantity, Price, ComboOptionInfo).
// The card saves its side, order type and last quantity.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/TradeCards/OrderTicketCardBase.h"
#include "apps/Workspace/TradeCards/OrderTicketModel.h"

class QDoubleSpinBox;
class QSpinBox;

namespace vx_ws {

class CVXOrderTicketButton;

class CVXPlaceOrderSecuritiesPanelCard
    : public TplVXWorkspaceCard<CVXPlaceOrderSecuritiesPanelCard, CVXOrderTicketCardBase>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "TradePlaceOrderSecuritiesPanel";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXPlaceOrderSecuritiesPanelCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXPlaceOrderSecuritiesPanelCard() override;

    void SetObjProperty(const QString& cardType, const CVXVariantMapTree& property) override;
    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    const CVXOrderTicketModel& Model() const { return m_model; }
    CVXOrderTicketButton* BuyButton() const { return m_pBuy; }
    CVXOrderTicketButton* SellButton() const { return m_pSell; }
    CVXOrderTicketButton* LimitButton() const { return m_pLimit; }
    CVXOrderTicketButton* MarketButton() const { return m_pMarket; }
    CVXOrderTicketButton* PlaceButton() const { return m_pPlace; }
    QDoubleSpinBox* PriceBox() const { return m_pPrice; }
    QSpinBox* QuantityBox() const { return m_pQuantity; }
    // What Place does; the order the broker returned (a default order when nothing was sent).
    vx_trade::Order PlaceOrder();

protected:
    void OnMarketDataChanged(const std::set<unsigned long>& stockIDs) override;
    void OnShownStockChanged(unsigned long stockID) override;
    void OnAccountDataChanged() override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Layout;
    Layout ComputeLayout() const;
    void RefreshSecurity();
    void RefreshMarket();
    void RefreshLimits();
    // quantityBox false: leave the quantity box as the user is typing it.
    void SyncWidgets(bool quantityBox = true);
    void SetSide(vx_trade::EnOrderSide side);
    void SetType(vx_trade::EnOrderType type);
    void PaintQuote(QPainter& painter, const Layout& layout);
    void PaintFigures(QPainter& painter, const Layout& layout);

    CVXOrderTicketModel m_model;
    bool m_bSyncing = false;
    CVXOrderTicketButton* m_pBuy = nullptr;
    CVXOrderTicketButton* m_pSell = nullptr;
    CVXOrderTicketButton* m_pLimit = nullptr;
    CVXOrderTicketButton* m_pMarket = nullptr;
    CVXOrderTicketButton* m_pPlace = nullptr;
    QDoubleSpinBox* m_pPrice = nullptr;
    QSpinBox* m_pQuantity = nullptr;
};

} // namespace vx_ws
