#pragma once

// CVXOptionChainsPanelCard ("OptionChainsPanel"): the option chain of the shown security (of its
// underlying when the shown security is an option), one expiry at a time (expiry tabs; the
// choice is saved with the card). Calls on the left, the strike in the middle, puts on the
// right; each side shows bid, ask, last, change and the model price; in-the-money halves are
// shaded and a line marks where the underlying trades between two strikes.
//
// Clicking an option selects it and raises CardEventOptionIndexChanged {UnderlyingID, OptionID}
// and CardEventComboOptionChanged {UnderlyingID, Legs: one leg {OptionID, Side 1, Ratio 1}} from
// the card. An option index arriving from the card's surroundings selects that option and its
// expiry (switching to its underlying when needed). Every option of the chain is kept moving.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/QuoteCards/OptionChainModel.h"

#include "UIFrame/CardBaseStyle.h"

#include <QRect>

namespace vx_ws {

class CVXOptionChainsPanelCard : public TplVXWorkspaceCard<CVXOptionChainsPanelCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "OptionChainsPanel";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXOptionChainsPanelCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXOptionChainsPanelCard() override;

    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;
    void SetOptionIndexInfo(const CVXVariantMapTree& info) override;

    const OptionChain& Chain() const { return m_chain; }
    // The expiry on show; -1 when the chain is empty.
    int CurrentExpiryIndex() const;
    void SetCurrentExpiryIndex(int index);
    unsigned long SelectedOptionID() const { return m_selectedOption; }
    // Selects an option of the chain (0: none) and shows its expiry; with raise, tells the card's
    // surroundings as a click does. False for an id that is not in the chain.
    bool SelectOption(unsigned long optionId, bool raise);

    QRect ExpiryTabRect(int index) const;
    // The half row of an option of the expiry on show; empty otherwise.
    QRect OptionRect(unsigned long optionId) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void OnShownStockChanged(unsigned long stockID) override;

private:
    struct Layout;
    Layout ComputeLayout() const;
    void Rebuild();
    void RaiseSelection();
    unsigned long OptionAt(const QPoint& pos) const;
    void PaintTopBar(QPainter& painter, const Layout& layout);
    void PaintColumnTitles(QPainter& painter, const Layout& layout);
    void PaintRows(QPainter& painter, const Layout& layout);
    void PaintOptionSide(QPainter& painter, const Layout& layout, const OptionChainRow& row, const QRect& r,
                         bool call, double spot);
    void PaintSpotLine(QPainter& painter, const Layout& layout, int spotLine);

    OptionChain m_chain;
    bool m_built = false;
    int m_expiryDays = 0; // the expiry on show, kept across underlyings when it exists
    unsigned long m_selectedOption = 0;
    unsigned long m_hoverOption = 0;
};

} // namespace vx_ws
