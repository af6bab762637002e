#include "apps/Workspace/QuoteCards/WatchlistCard.h"

#include "apps/Workspace/Cards/CardPaint.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/Menu.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <memory>

namespace vx_ws {

using namespace card_paint;
using EnColumn = CVXWatchlistModel::EnColumn;

namespace {

constexpr int kHeaderHeight = 24;
constexpr int kRowHeight = 22;
// Narrower than this the name column gives way to the numbers.
constexpr int kMinNameWidth = 44;
constexpr int kWheelRows = 3;

Qt::Alignment ColumnAlignment(EnColumn column)
{
    return column == EnColumn::Code || column == EnColumn::Name ? Qt::AlignLeft : Qt::AlignRight;
}

QString ColumnTitle(EnColumn column)
{
    switch (column) {
    case EnColumn::Code:
        return core::langx::tr(970212, "代码");
    case EnColumn::Name:
        return core::langx::tr(970213, "名称");
    case EnColumn::Last:
        return core::langx::tr(970214, "最新");
    case EnColumn::ChangePercent:
        return core::langx::tr(970215, "涨跌幅");
    case EnColumn::Volume:
        return core::langx::tr(970216, "成交量");
    case EnColumn::None:
        break;
    }
    return {};
}

} // namespace

CVXCardBaseStyle CVXWatchlistCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(236237, "自选"), QSize(300, 400), QSize(200, 160),
                         QSize(1600, 2000));
}

CVXWatchlistCard::CVXWatchlistCard(EnVXCardPos pos, QWidget* parent) : TplVXWorkspaceCard(pos, parent)
{
    setFocusPolicy(Qt::StrongFocus);
    m_model.Refresh(MarketData());
    ListChanged();
}

CVXWatchlistCard::~CVXWatchlistCard() = default;

void CVXWatchlistCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    CVXWorkspaceCardBase::GetCardObjRestoreData(data);
    m_model.Save(data);
}

void CVXWatchlistCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    CVXWorkspaceCardBase::SetCardObjRestoreData(data);
    if (m_model.Restore(data, MarketData()))
        ListChanged();
}

std::vector<CVXWatchlistCard::ColumnSpan> CVXWatchlistCard::Columns() const
{
    // The number columns take what their widest usual value needs; the name gets the rest, or
    // gives way entirely when too little is left for a name.
    const QFontMetrics metrics(font());
    const auto fit = [&](const char* sample) {
        return metrics.horizontalAdvance(QLatin1String(sample)) + 10;
    };
    const int code = fit("000000");
    const int last = fit("8888.88");
    const int change = fit("+88.88%");
    const int volume = fit("888.88M");
    const int total = width();
    const int numbers = code + last + change + volume;
    const int name = total - numbers;
    std::vector<ColumnSpan> columns;
    if (name >= kMinNameWidth) {
        columns = {{EnColumn::Code, 0, code},
                   {EnColumn::Name, code, name},
                   {EnColumn::Last, code + name, last},
                   {EnColumn::ChangePercent, code + name + last, change},
                   {EnColumn::Volume, code + name + last + change, volume}};
        return columns;
    }
    // Without the name the spare width is shared among the number columns; when even they do
    // not fit, the volume goes too.
    std::vector<std::pair<EnColumn, int>> kept{{EnColumn::Code, code},
                                               {EnColumn::Last, last},
                                               {EnColumn::ChangePercent, change},
                                               {EnColumn::Volume, volume}};
    if (numbers > total)
        kept.pop_back();
    int used = 0;
    for (const auto& entry : kept)
        used += entry.second;
    const int share = (total - used) / static_cast<int>(kept.size());
    int left = 0;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const int w = i + 1 == kept.size() ? total - left : kept[i].second + share;
        columns.push_back({kept[i].first, left, w});
        left += w;
    }
    return columns;
}

QRect CVXWatchlistCard::HeaderRect(EnColumn column) const
{
    for (const ColumnSpan& c : Columns())
        if (c.column == column)
            return QRect(c.left, 0, c.width, kHeaderHeight);
    return {};
}

int CVXWatchlistCard::VisibleRowCount() const
{
    return std::max(0, (height() - kHeaderHeight) / kRowHeight);
}

QRect CVXWatchlistCard::RowRect(int row) const
{
    const int shownIndex = row - m_firstRow;
    if (row < 0 || row >= static_cast<int>(m_model.Rows().size()) || shownIndex < 0 ||
        shownIndex >= VisibleRowCount())
        return {};
    return QRect(0, kHeaderHeight + shownIndex * kRowHeight, width(), kRowHeight);
}

int CVXWatchlistCard::RowAt(const QPoint& pos) const
{
    if (pos.y() < kHeaderHeight || pos.x() < 0 || pos.x() >= width())
        return -1;
    const int row = m_firstRow + (pos.y() - kHeaderHeight) / kRowHeight;
    return RowRect(row).contains(pos) ? row : -1;
}

void CVXWatchlistCard::ScrollTo(int firstRow)
{
    const int rows = static_cast<int>(m_model.Rows().size());
    const int clamped = std::clamp(firstRow, 0, std::max(0, rows - VisibleRowCount()));
    if (clamped == m_firstRow)
        return;
    m_firstRow = clamped;
    m_hoverRow = -1;
    update();
}

void CVXWatchlistCard::EnsureRowVisible(int row)
{
    if (row < 0)
        return;
    if (row < m_firstRow)
        ScrollTo(row);
    else if (row >= m_firstRow + VisibleRowCount())
        ScrollTo(row - VisibleRowCount() + 1);
}

void CVXWatchlistCard::ListChanged()
{
    SetExtraSubscriptions(m_model.IDs());
    m_subscribed = MarketData() != nullptr;
    ScrollTo(m_firstRow);
    update();
}

vx_std_ui::VMenu* CVXWatchlistCard::BuildContextMenu(const QPoint& pos)
{
    auto* menu = new vx_std_ui::VMenu;
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long shown = ShownStockID();
    QString shownName = QString::number(shown);
    if (feed && feed->Contains(shown))
        shownName = QString::fromStdString(feed->GetSecurity(shown).code);
    QAction* add =
        menu->addActionWithData(core::langx::tr(970217, "添加 %1").arg(shownName), kActionAddShown);
    add->setEnabled(!m_model.Contains(shown) && feed && feed->Contains(shown));

    const int row = RowAt(pos);
    unsigned long rowId = 0;
    if (row >= 0) {
        const CVXWatchlistModel::Row& r = m_model.Rows()[row];
        rowId = r.id;
        const QString rowName = r.known ? r.code : QString::number(r.id);
        menu->addActionWithData(core::langx::tr(970218, "删除 %1").arg(rowName), kActionRemoveRow);
    }
    menu->addSeparator();
    menu->addActionWithData(core::langx::tr(970219, "恢复默认列表"), kActionResetList);

    connect(menu, &vx_std_ui::VMenu::Triggered, this, [this, shown, rowId](QAction* action) {
        bool changed = false;
        switch (action->data().toInt()) {
        case kActionAddShown:
            changed = m_model.Add(shown, MarketData());
            if (changed)
                EnsureRowVisible(m_model.RowOf(shown));
            break;
        case kActionRemoveRow:
            changed = m_model.Remove(rowId, MarketData());
            break;
        case kActionResetList:
            m_model.SetIDs(CVXWatchlistModel::DefaultIDs(), MarketData());
            changed = true;
            break;
        default:
            break;
        }
        if (changed)
            ListChanged();
    });
    return menu;
}

void CVXWatchlistCard::OnMarketDataChanged(const std::set<unsigned long>& /*stockIDs*/)
{
    m_model.Refresh(MarketData());
    update();
}

void CVXWatchlistCard::OnShownStockChanged(unsigned long stockID)
{
    EnsureRowVisible(m_model.RowOf(stockID));
    update();
}

void CVXWatchlistCard::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        CVXWorkspaceCardBase::mousePressEvent(event);
        return;
    }
    setFocus(Qt::MouseFocusReason);
    if (event->pos().y() < kHeaderHeight) {
        for (const ColumnSpan& c : Columns()) {
            if (event->pos().x() >= c.left && event->pos().x() < c.left + c.width) {
                m_model.CycleSort(c.column);
                update();
                return;
            }
        }
        return;
    }
    const int row = RowAt(event->pos());
    if (row >= 0 && m_model.Rows()[row].known)
        RaiseStockChange(m_model.Rows()[row].id);
}

void CVXWatchlistCard::mouseMoveEvent(QMouseEvent* event)
{
    const int row = RowAt(event->pos());
    if (row != m_hoverRow) {
        m_hoverRow = row;
        update();
    }
    CVXWorkspaceCardBase::mouseMoveEvent(event);
}

void CVXWatchlistCard::leaveEvent(QEvent* event)
{
    if (m_hoverRow >= 0) {
        m_hoverRow = -1;
        update();
    }
    CVXWorkspaceCardBase::leaveEvent(event);
}

void CVXWatchlistCard::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps == 0) {
        event->ignore();
        return;
    }
    ScrollTo(m_firstRow - steps * kWheelRows);
    event->accept();
}

void CVXWatchlistCard::keyPressEvent(QKeyEvent* event)
{
    const int rows = static_cast<int>(m_model.Rows().size());
    if ((event->key() != Qt::Key_Up && event->key() != Qt::Key_Down) || rows == 0) {
        CVXWorkspaceCardBase::keyPressEvent(event);
        return;
    }
    const int current = m_model.RowOf(ShownStockID());
    int next = 0;
    if (current < 0)
        next = event->key() == Qt::Key_Down ? 0 : rows - 1;
    else
        next = std::clamp(current + (event->key() == Qt::Key_Down ? 1 : -1), 0, rows - 1);
    event->accept();
    if (next == current || !m_model.Rows()[next].known)
        return;
    EnsureRowVisible(next);
    RaiseStockChange(m_model.Rows()[next].id);
}

void CVXWatchlistCard::contextMenuEvent(QContextMenuEvent* event)
{
    std::unique_ptr<vx_std_ui::VMenu> menu(BuildContextMenu(event->pos()));
    menu->exec(event->globalPos());
    event->accept();
}

void CVXWatchlistCard::resizeEvent(QResizeEvent* event)
{
    CVXWorkspaceCardBase::resizeEvent(event);
    ScrollTo(m_firstRow);
}

void CVXWatchlistCard::paintEvent(QPaintEvent* /*event*/)
{
    vx_md::CVXSimMarketData* feed = MarketData();
    if (feed && !m_subscribed) {
        // The feed arrived after the card: pick it up now.
        m_model.Refresh(feed);
        ListChanged();
    }
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const std::vector<ColumnSpan> columns = Columns();
    PaintHeader(painter, columns);

    const auto& rows = m_model.Rows();
    if (rows.empty()) {
        painter.setFont(font());
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(rect().adjusted(0, kHeaderHeight, 0, 0), Qt::AlignCenter,
                         core::langx::tr(970220, "自选列表为空"));
        return;
    }
    const int last = std::min(static_cast<int>(rows.size()), m_firstRow + VisibleRowCount());
    for (int i = m_firstRow; i < last; ++i)
        PaintRow(painter, columns, i);
    PaintScrollIndicator(painter);
}

// Column titles; the sort column in the link colour with its direction.
void CVXWatchlistCard::PaintHeader(QPainter& painter, const std::vector<ColumnSpan>& columns)
{
    painter.fillRect(QRect(0, 0, width(), kHeaderHeight), ThemeColor("ct_bg_secondary"));
    painter.setFont(SmallerFont(font()));
    for (const ColumnSpan& c : columns) {
        QString title = ColumnTitle(c.column);
        if (c.column == m_model.SortColumn())
            title += m_model.SortOrder() == CVXWatchlistModel::EnSortOrder::Descending ? QStringLiteral(" ▼")
                                                                                       : QStringLiteral(" ▲");
        DrawCellText(painter, QRect(c.left, 0, c.width, kHeaderHeight), title, ColumnAlignment(c.column),
                     c.column == m_model.SortColumn() ? ThemeColor("ct_link")
                                                      : ThemeColor("ct_text_secondary"));
    }
    painter.fillRect(QRect(0, kHeaderHeight - 1, width(), 1), ThemeColor("ct_divider"));
}

// One security: the shown one marked, the hovered one tinted, a divider under it.
void CVXWatchlistCard::PaintRow(QPainter& painter, const std::vector<ColumnSpan>& columns, int index)
{
    const CVXWatchlistModel::Row& row = m_model.Rows()[index];
    const QRect r = RowRect(index);
    if (row.id == ShownStockID()) {
        painter.fillRect(r, WithAlpha(ThemeColor("ct_selected"), 40));
        painter.fillRect(QRect(r.left(), r.top(), 2, r.height()), ThemeColor("ct_selected"));
    } else if (index == m_hoverRow) {
        painter.fillRect(r, ThemeColor("ct_hover"));
    }
    for (const ColumnSpan& c : columns)
        PaintCell(painter, row, QRect(c.left, r.top(), c.width, r.height()), c.column);
    painter.fillRect(QRect(r.left(), r.bottom(), r.width(), 1), WithAlpha(ThemeColor("ct_divider"), 160));
}

// "--" for a security the feed does not know (only its id is shown).
void CVXWatchlistCard::PaintCell(QPainter& painter, const CVXWatchlistModel::Row& row, const QRect& cell,
                                 EnColumn column)
{
    const QColor textSecondary = ThemeColor("ct_text_secondary");
    const double change = row.last - row.prevClose;
    const QColor changeColor = row.known ? ChangeColor(change) : textSecondary;
    QString text = QStringLiteral("--");
    QColor color = ThemeColor("ct_text_primary");
    painter.setFont(font());
    switch (column) {
    case EnColumn::Code:
        text = row.known ? row.code : QString::number(row.id);
        break;
    case EnColumn::Name:
        painter.setFont(SmallerFont(font()));
        color = textSecondary;
        if (row.known)
            text = row.name;
        break;
    case EnColumn::Last:
        color = changeColor;
        if (row.known)
            text = FormatPrice(row.last, row.tickSize);
        break;
    case EnColumn::ChangePercent:
        color = changeColor;
        if (row.known) {
            text = FormatPercent(row.changeRatio);
            // A tinted tag behind the change, the column the eye scans for movers.
            const int tagWidth = painter.fontMetrics().horizontalAdvance(text) + 8;
            const QRect tag(cell.right() - tagWidth - 1, cell.top() + 3, tagWidth, cell.height() - 6);
            if (change != 0)
                painter.fillRect(tag, WithAlpha(changeColor, 30));
        }
        break;
    case EnColumn::Volume:
        if (row.known)
            text = FormatVolume(row.volume);
        break;
    case EnColumn::None:
        break;
    }
    DrawCellText(painter, cell, text, ColumnAlignment(column), color);
}

// Where the list goes on: a thin scroll indicator on the right edge.
void CVXWatchlistCard::PaintScrollIndicator(QPainter& painter)
{
    const int visible = VisibleRowCount();
    const int total = static_cast<int>(m_model.Rows().size());
    if (total > visible && visible > 0) {
        const int trackHeight = height() - kHeaderHeight;
        const int thumbHeight = std::max(16, trackHeight * visible / total);
        const int thumbTop =
            kHeaderHeight + (trackHeight - thumbHeight) * m_firstRow / std::max(1, total - visible);
        painter.fillRect(QRect(width() - 3, thumbTop, 3, thumbHeight), ThemeColor("ct_scrollbar"));
    }
}

} // namespace vx_ws
