#pragma once

// CVXTradeTableCard: the widget half of the three account table cards. Above the table a tool
// strip holds filter tabs (or a caption) on the left, an optional removable chip and the account
// selector on the right. It turns input into calls: a header click sorts, a row click selects
// and calls OnRowClicked, a double click OnRowDoubleClicked, a click on an action cell
// OnActionClicked (and nothing else), the wheel scrolls. The sort column is saved in the card's
// state by column id ("SortColumn", "SortOrder"); subclasses add their own keys.

#include "apps/Workspace/TradeCards/AccountCardBase.h"
#include "apps/Workspace/TradeCards/TradeTable.h"

#include <QStringList>

namespace vx_ws {

class CVXTradeTableCard : public CVXAccountCardBase
{
    Q_OBJECT
public:
    static constexpr int kToolbarHeight = 32;

    explicit CVXTradeTableCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXTradeTableCard() override;

    const CVXTradeTableModel& Table() const { return m_model; }
    unsigned long long SelectedKey() const { return m_u64SelectedKey; }
    // Where the tool strip's parts are (empty when absent), for painting and clicks.
    QRect SegmentRect(int index) const;
    QRect ChipRect() const;
    int CurrentSegment() const { return m_nCurrentSegment; }

    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    // Pure: the tabs laid left to right from `left`, vertically centred in `strip`.
    static std::vector<QRect> LayoutSegments(const QFontMetrics& metrics, const QStringList& texts, int left,
                                             const QRect& strip);

protected:
    CVXTradeTableModel& MutableTable() { return m_model; }
    void SetSegments(const QStringList& texts, int current);
    void SetCaption(const QString& caption);
    void SetChip(const QString& text); // empty: no chip
    void SetEmptyText(const QString& text);

    virtual void OnSegmentClicked(int /*index*/) {}
    virtual void OnChipClosed() {}
    virtual void OnRowClicked(unsigned long long /*key*/) {}
    virtual void OnRowDoubleClicked(unsigned long long /*key*/) {}
    virtual void OnActionClicked(unsigned long long /*key*/, int /*column*/) {}

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void LayoutParts();
    void PaintToolbar(QPainter& painter);
    bool IsActionCell(int viewRow, int column) const;

    CVXTradeTableModel m_model;
    QStringList m_segments;
    std::vector<QRect> m_segmentRects;
    int m_nCurrentSegment = 0;
    QString m_caption;
    QString m_chip;
    QRect m_chipRect;
    QString m_emptyText;
    unsigned long long m_u64SelectedKey = 0;
    bool m_bHasSelection = false;
    int m_nHoverRow = -1;
    int m_nHoverActionRow = -1;
};

} // namespace vx_ws
