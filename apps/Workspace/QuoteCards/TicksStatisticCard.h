#pragma once

// CVXTicksStatisticCard ("TicksStatistic"): volume by price from the shown security's trades of
// the day as the feed keeps them. On top the buy, sell and neutral shares; below, one row per
// price level with its buy and sell volume (or, when narrow, the level's volume) and its share of
// the total as a bar split in the buy and sell colours; the busiest level is marked. Sorted by
// price (the view starts around the last price) or by volume; the sort is the card's saved
// state (key "SortBy", int: 0 price, 1 volume). The wheel scrolls the rows.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/QuoteCards/TicksStatisticModel.h"

#include "UIFrame/CardTypes.h"

#include <memory>

class QPainter;

namespace vx_ws {

class CVXTicksStatisticCard : public TplVXWorkspaceCard<CVXTicksStatisticCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = quote_card_type::TicksStatistic;
    static constexpr const char* kKeySortBy = "SortBy";
    static constexpr int kRowHeight = 18;
    // Below this width a row shows the level's volume instead of its buy and sell volumes.
    static constexpr int kSplitColumnsWidth = 300;
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXTicksStatisticCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXTicksStatisticCard() override;

    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    // A missing value keeps the current sort; an unknown one is logged and ignored.
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    EnTickStatSort Sort() const;
    void SetSort(EnTickStatSort sort);
    const TickStatistic& Statistic() const;
    // The toggle between the two sorts, in card coordinates.
    QRect SortToggleRect() const;
    // Rows [FirstShownRow(), FirstShownRow() + RowCapacity()) of Statistic().levels are on show.
    int FirstShownRow() const;
    int RowCapacity() const;

protected:
    void OnMarketDataChanged(const std::set<unsigned long>& stockIDs) override;
    void OnShownStockChanged(unsigned long stockID) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void Rebuild();
    struct PaintKit;
    void PaintTotals(QPainter& p, const PaintKit& kit);
    void PaintColumnHeader(QPainter& p, const PaintKit& kit);
    void PaintLevelRow(QPainter& p, const PaintKit& kit, int index, int top, double busiestShare);

    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_ws
