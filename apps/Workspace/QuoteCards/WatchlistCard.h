#pragma once

// CVXWatchlistCard ("Watchlist"): a table of securities (code, name, last, change %, volume),
// prices coloured by their change, the shown security's row highlighted. Clicking a row, or Up
// and Down while the card has focus, picks that security for the card's linkage group. A click
// on a column header cycles its sort (descending, ascending, none). The context menu adds the
// shown security or removes the row under the pointer. The list and the sort are saved with the
// card; every listed security is kept moving in the feed.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/QuoteCards/WatchlistModel.h"

#include "UIFrame/CardBaseStyle.h"

#include <QRect>

class QPainter;

namespace vx_std_ui {
class VMenu;
}

namespace vx_ws {

class CVXWatchlistCard : public TplVXWorkspaceCard<CVXWatchlistCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "Watchlist";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXWatchlistCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXWatchlistCard() override;

    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    const CVXWatchlistModel& Model() const { return m_model; }
    // The rectangle of the i-th row in display order (scrolling included); empty when it is
    // scrolled out of sight or does not exist.
    QRect RowRect(int row) const;
    // The header cell of a column; empty for a column not shown at this width.
    QRect HeaderRect(CVXWatchlistModel::EnColumn column) const;
    // The first row on show.
    int FirstVisibleRow() const { return m_firstRow; }
    // The context menu for a point of the card, owned by the caller (its actions act on the card
    // when triggered, whether or not it is shown).
    vx_std_ui::VMenu* BuildContextMenu(const QPoint& pos);

    // Context menu action data.
    static constexpr int kActionAddShown = 1;
    static constexpr int kActionRemoveRow = 2;
    static constexpr int kActionResetList = 3;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void OnMarketDataChanged(const std::set<unsigned long>& stockIDs) override;
    void OnShownStockChanged(unsigned long stockID) override;

private:
    struct ColumnSpan
    {
        CVXWatchlistModel::EnColumn column;
        int left;
        int width;
    };
    std::vector<ColumnSpan> Columns() const;
    int RowAt(const QPoint& pos) const;
    int VisibleRowCount() const;
    void ScrollTo(int firstRow);
    void EnsureRowVisible(int row);
    void ListChanged();
    void PaintHeader(QPainter& painter, const std::vector<ColumnSpan>& columns);
    void PaintRow(QPainter& painter, const std::vector<ColumnSpan>& columns, int index);
    void PaintCell(QPainter& painter, const CVXWatchlistModel::Row& row, const QRect& cell,
                   CVXWatchlistModel::EnColumn column);
    void PaintScrollIndicator(QPainter& painter);

    CVXWatchlistModel m_model;
    int m_firstRow = 0;
    int m_hoverRow = -1;
    bool m_subscribed = false;
};

} // namespace vx_ws
