#pragma once

// CVXOrderBookCard ("OrderBook"): the bid and ask levels of the shown security, 5 or 10 a side
// (the choice is saved with the card), asks above bids, or bids and asks side by side when the
// card is wide. Above them the spread and the balance of the shown bid and ask volume. Clicking
// a level asks for an order panel prefilled with its price: buy at an ask, sell at a bid
// (CardEventPostionsOpenPlaceOrder raised from the card).

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/QuoteCards/OrderBookModel.h"

#include "UIFrame/CardBaseStyle.h"

#include <QRect>

class QPainter;

namespace vx_ws {

class CVXOrderBookCard : public TplVXWorkspaceCard<CVXOrderBookCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "OrderBook";
    static CVXCardBaseStyle StaticCardStyle();

    enum class EnBookSide
    {
        Bid,
        Ask,
    };

    explicit CVXOrderBookCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXOrderBookCard() override;

    void GetCardMenu(vx_std_ui::VMenu* menu) override;
    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    // 5 or 10 (other values become the nearest).
    int Depth() const { return m_depth; }
    void SetDepth(int depth);
    // The book as painted now (empty without a feed).
    OrderBookView CurrentView() const;
    bool IsSideBySide() const;
    // Where a level is painted; empty when it is not shown.
    QRect LevelRect(EnBookSide side, int level) const;
    // The 5/10 switch.
    QRect DepthSwitchRect() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    struct Hit
    {
        EnBookSide side = EnBookSide::Bid;
        int level = 0; // 0: none
    };
    struct Geometry;
    Geometry ComputeGeometry(const OrderBookView& view) const;
    Hit HitTest(const QPoint& pos) const;
    void RequestOrder(const Hit& hit);
    void PaintHeader(QPainter& painter, const OrderBookView& view, const Geometry& g, double tick);
    void PaintRatioBar(QPainter& painter, const OrderBookView& view, const Geometry& g);
    void PaintLevel(QPainter& painter, const QRect& r, EnBookSide side, int levelNumber,
                    const OrderBookLevelView& level, double tick, double prevClose);
    void PaintSpreadLine(QPainter& painter, const Geometry& g);

    int m_depth = 5;
    Hit m_pressed;
    Hit m_hover;
};

} // namespace vx_ws
