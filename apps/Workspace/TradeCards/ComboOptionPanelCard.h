#pragma once

// CVXComboOptionPanelCard: the order panel of an options strategy. It shows the legs of the combo
// option info it was given (SetComboOptionInfo, or the "ComboOptionInfo" subtree of a request
// through SetObjProperty): code, side (a click flips it), ratio, theoretical price and best
// bid/ask of each leg, the strategy's net price (debit or credit), a quantity and Place, which
// sends the legs as one combo order; the broker's answer shows in the card. "Option chain"
// raises CardEventPlaceOrderComboOptionOpenOptionChain so that the canvas opens a chain to pick
// options in. Without legs the card says so.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/TradeCards/ComboOptionPanelModel.h"
#include "apps/Workspace/TradeCards/OrderTicketCardBase.h"

#include <vector>

class QSpinBox;

namespace vx_ws {

class CVXOrderTicketButton;

class CVXComboOptionPanelCard : public TplVXWorkspaceCard<CVXComboOptionPanelCard, CVXOrderTicketCardBase>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "TradePlaceOrderComboOptionPanel";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXComboOptionPanelCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXComboOptionPanelCard() override;

    void SetComboOptionInfo(const CVXVariantMapTree& info) override;
    void SetObjProperty(const QString& cardType, const CVXVariantMapTree& property) override;
    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    const CVXComboOptionPanelModel& Model() const { return m_model; }
    // The legs' quotes and the net price as shown now.
    std::vector<ComboLegQuote> Quotes() const;
    ComboNetPrice NetPrice() const;
    // The side toggle and ratio box of each leg, in leg order.
    const std::vector<CVXOrderTicketButton*>& SideButtons() const { return m_sideButtons; }
    const std::vector<QSpinBox*>& RatioBoxes() const { return m_ratioBoxes; }
    QSpinBox* QuantityBox() const { return m_pQuantity; }
    CVXOrderTicketButton* PlaceButton() const { return m_pPlace; }
    CVXOrderTicketButton* OptionChainButton() const { return m_pChain; }
    std::vector<vx_trade::Order> PlaceOrder();
    void OpenOptionChain();

protected:
    void OnMarketDataChanged(const std::set<unsigned long>& stockIDs) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Layout;
    Layout ComputeLayout() const;
    void ApplyCombo(const CVXVariantMapTree& info);
    void RebuildLegWidgets();
    void PlaceWidgets();
    void SyncLegWidgets();
    unsigned long UnderlyingID() const;
    void PaintLegs(QPainter& painter, const Layout& layout, const std::vector<ComboLegQuote>& quotes);
    void PaintNet(QPainter& painter, const Layout& layout, const std::vector<ComboLegQuote>& quotes);

    CVXComboOptionPanelModel m_model;
    std::vector<CVXOrderTicketButton*> m_sideButtons;
    std::vector<QSpinBox*> m_ratioBoxes;
    QSpinBox* m_pQuantity = nullptr;
    CVXOrderTicketButton* m_pPlace = nullptr;
    CVXOrderTicketButton* m_pChain = nullptr;
};

} // namespace vx_ws
