#include "apps/Workspace/TradeCards/TradeTableCard.h"

#include "apps/Workspace/TradeCards/AccountSelector.h"
#include "apps/Workspace/TradeCards/TradeTablePainter.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>

namespace vx_ws {

namespace {

const QString kSortColumnKey = QStringLiteral("SortColumn");
const QString kSortOrderKey = QStringLiteral("SortOrder");
constexpr int kMargin = 8;
constexpr int kSegmentPadding = 8;
constexpr int kSegmentHeight = 22;

} // namespace

CVXTradeTableCard::CVXTradeTableCard(EnVXCardPos pos, QWidget* parent) : CVXAccountCardBase(pos, parent)
{
    setMouseTracking(true);
}

CVXTradeTableCard::~CVXTradeTableCard() = default;

std::vector<QRect> CVXTradeTableCard::LayoutSegments(const QFontMetrics& metrics, const QStringList& texts,
                                                     int left, const QRect& strip)
{
    std::vector<QRect> rects;
    const int height = std::min(kSegmentHeight, strip.height());
    const int top = strip.top() + (strip.height() - height) / 2;
    int x = left;
    for (const QString& text : texts) {
        const int width = metrics.horizontalAdvance(text) + 2 * kSegmentPadding;
        rects.emplace_back(x, top, width, height);
        x += width + 2;
    }
    return rects;
}

QRect CVXTradeTableCard::SegmentRect(int index) const
{
    return index >= 0 && index < static_cast<int>(m_segmentRects.size())
               ? m_segmentRects[static_cast<size_t>(index)]
               : QRect();
}

QRect CVXTradeTableCard::ChipRect() const
{
    return m_chipRect;
}

void CVXTradeTableCard::SetSegments(const QStringList& texts, int current)
{
    m_segments = texts;
    m_nCurrentSegment = current;
    LayoutParts();
    update();
}

void CVXTradeTableCard::SetCaption(const QString& caption)
{
    m_caption = caption;
    update();
}

void CVXTradeTableCard::SetChip(const QString& text)
{
    m_chip = text;
    LayoutParts();
    update();
}

void CVXTradeTableCard::SetEmptyText(const QString& text)
{
    m_emptyText = text;
    update();
}

void CVXTradeTableCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    const int column = m_model.SortColumn();
    data->Set<QString>(kSortColumnKey,
                       column >= 0 ? m_model.Columns()[static_cast<size_t>(column)].id : QString());
    data->Set<int>(kSortOrderKey, static_cast<int>(m_model.SortOrder()));
}

void CVXTradeTableCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    if (!data.Contains(kSortColumnKey))
        return;
    const int order = data.Get<int>(kSortOrderKey, 0);
    m_model.SetSort(m_model.ColumnIndex(data.Get<QString>(kSortColumnKey)),
                    order == Qt::DescendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder);
    update();
}

void CVXTradeTableCard::LayoutParts()
{
    const QRect strip(0, 0, width(), kToolbarHeight);
    AccountSelector()->adjustSize();
    const QSize selectorSize(std::min(AccountSelector()->sizeHint().width(), std::max(60, width() / 2)),
                             kSegmentHeight);
    AccountSelector()->setGeometry(
        QRect(QPoint(width() - kMargin - selectorSize.width(), (kToolbarHeight - selectorSize.height()) / 2),
              selectorSize));
    m_segmentRects = LayoutSegments(fontMetrics(), m_segments, kMargin, strip);
    if (m_chip.isEmpty()) {
        m_chipRect = QRect();
    } else {
        const int chipWidth = fontMetrics().horizontalAdvance(m_chip) + 2 * kSegmentPadding + 12;
        const int right = AccountSelector()->geometry().left() - 6;
        m_chipRect =
            QRect(right - chipWidth, (kToolbarHeight - kSegmentHeight) / 2, chipWidth, kSegmentHeight);
    }
    m_model.SetArea(QRect(0, kToolbarHeight, width(), std::max(0, height() - kToolbarHeight)));
}

void CVXTradeTableCard::resizeEvent(QResizeEvent* event)
{
    CVXAccountCardBase::resizeEvent(event);
    LayoutParts();
}

void CVXTradeTableCard::paintEvent(QPaintEvent* /*event*/)
{
    PostRefreshIfStale();
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("ct_bg_primary"));
    PaintToolbar(painter);

    TradeTableLook look = TradeTableLook::FromTheme(font());
    QFont totalsFont = look.font;
    totalsFont.setBold(true); // the totals row is painted bold
    m_model.FitNumberColumnsToContent(QFontMetrics(look.font), QFontMetrics(totalsFont));
    TradeTableHighlight highlight;
    highlight.hoverRow = m_nHoverRow;
    highlight.hoverActionRow = m_nHoverActionRow;
    highlight.selectedRow = m_bHasSelection ? m_model.ViewRowOfKey(m_u64SelectedKey) : -1;
    PaintTradeTable(painter, m_model, look, highlight);

    if (m_model.RowCount() == 0 && !m_emptyText.isEmpty()) {
        painter.setPen(look.secondaryText);
        painter.setFont(font());
        painter.drawText(m_model.BodyRect(), Qt::AlignCenter, m_emptyText);
    }
}

void CVXTradeTableCard::PaintToolbar(QPainter& painter)
{
    const QRect strip(0, 0, width(), kToolbarHeight);
    painter.fillRect(strip, ThemeColor("ct_bg_primary"));
    painter.setFont(font());
    if (m_segments.isEmpty() && !m_caption.isEmpty()) {
        painter.setPen(ThemeColor("ct_text_secondary"));
        const int right = AccountSelector()->geometry().left() - 6;
        painter.drawText(QRect(kMargin, 0, std::max(0, right - kMargin), kToolbarHeight),
                         Qt::AlignLeft | Qt::AlignVCenter,
                         CVXTradeTableModel::Elide(fontMetrics(), m_caption, right - kMargin));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const int limit = m_chipRect.isEmpty() ? AccountSelector()->geometry().left() - 6 : m_chipRect.left() - 6;
    for (int i = 0; i < m_segments.size(); ++i) {
        const QRect r = m_segmentRects[static_cast<size_t>(i)];
        if (r.right() > limit)
            break; // no room: the tabs that do not fit are left out rather than drawn over the chip
        const bool current = i == m_nCurrentSegment;
        if (current) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(ThemeColor("ct_selected"));
            painter.drawRoundedRect(QRectF(r), 3, 3);
        }
        painter.setPen(ThemeColor(current ? "ct_text_on_accent" : "ct_text_secondary"));
        painter.drawText(r, Qt::AlignCenter, m_segments[i]);
    }
    if (!m_chipRect.isEmpty()) {
        painter.setPen(ThemeColor("ct_focus"));
        painter.setBrush(ThemeColor("ct_bg_secondary"));
        painter.drawRoundedRect(QRectF(m_chipRect).adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);
        painter.setPen(ThemeColor("ct_text_primary"));
        painter.drawText(m_chipRect.adjusted(kSegmentPadding, 0, -(kSegmentPadding + 12), 0),
                         Qt::AlignLeft | Qt::AlignVCenter, m_chip);
        // The close cross.
        const QPointF c(m_chipRect.right() - kSegmentPadding - 4, m_chipRect.center().y() + 0.5);
        painter.setPen(QPen(ThemeColor("ct_text_secondary"), 1.2));
        painter.drawLine(c + QPointF(-3, -3), c + QPointF(3, 3));
        painter.drawLine(c + QPointF(-3, 3), c + QPointF(3, -3));
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(QRect(0, kToolbarHeight - 1, width(), 1), ThemeColor("ct_divider"));
}

bool CVXTradeTableCard::IsActionCell(int viewRow, int column) const
{
    if (viewRow < 0 || viewRow >= m_model.RowCount() || column < 0)
        return false;
    const TradeTableRow& row = m_model.Row(viewRow);
    return column < static_cast<int>(row.cells.size()) &&
           row.cells[static_cast<size_t>(column)].kind == TradeTableCell::EnKind::Action &&
           !row.cells[static_cast<size_t>(column)].text.isEmpty();
}

void CVXTradeTableCard::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        CVXAccountCardBase::mousePressEvent(event);
        return;
    }
    const QPoint pos = event->pos();
    event->accept();
    if (!m_chipRect.isEmpty() && m_chipRect.contains(pos)) {
        OnChipClosed();
        return;
    }
    for (int i = 0; i < static_cast<int>(m_segmentRects.size()); ++i) {
        if (m_segmentRects[static_cast<size_t>(i)].contains(pos)) {
            if (i != m_nCurrentSegment)
                OnSegmentClicked(i);
            return;
        }
    }
    const CVXTradeTableModel::Hit hit = m_model.HitTest(pos);
    switch (hit.area) {
    case CVXTradeTableModel::Hit::EnArea::Header:
        if (hit.column >= 0) {
            m_model.ToggleSort(hit.column);
            update();
        }
        return;
    case CVXTradeTableModel::Hit::EnArea::Row: {
        const unsigned long long key = m_model.Row(hit.row).key;
        if (IsActionCell(hit.row, hit.column)) {
            OnActionClicked(key, hit.column);
            return;
        }
        m_u64SelectedKey = key;
        m_bHasSelection = true;
        update();
        OnRowClicked(key);
        return;
    }
    default:
        return;
    }
}

void CVXTradeTableCard::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const CVXTradeTableModel::Hit hit = m_model.HitTest(event->pos());
    if (hit.area == CVXTradeTableModel::Hit::EnArea::Row && !IsActionCell(hit.row, hit.column))
        OnRowDoubleClicked(m_model.Row(hit.row).key);
    event->accept();
}

void CVXTradeTableCard::mouseMoveEvent(QMouseEvent* event)
{
    const CVXTradeTableModel::Hit hit = m_model.HitTest(event->pos());
    const int hoverRow = hit.area == CVXTradeTableModel::Hit::EnArea::Row ? hit.row : -1;
    const int hoverAction = IsActionCell(hoverRow, hit.column) ? hoverRow : -1;
    const bool overClickable =
        hoverAction >= 0 || (!m_chipRect.isEmpty() && m_chipRect.contains(event->pos()));
    setCursor(overClickable ? Qt::PointingHandCursor : Qt::ArrowCursor);
    if (hoverRow != m_nHoverRow || hoverAction != m_nHoverActionRow) {
        m_nHoverRow = hoverRow;
        m_nHoverActionRow = hoverAction;
        update();
    }
}

void CVXTradeTableCard::leaveEvent(QEvent* event)
{
    m_nHoverRow = -1;
    m_nHoverActionRow = -1;
    update();
    CVXAccountCardBase::leaveEvent(event);
}

void CVXTradeTableCard::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps != 0) {
        m_model.ScrollBy(-steps * 3);
        update();
    }
    event->accept();
}

} // namespace vx_ws
