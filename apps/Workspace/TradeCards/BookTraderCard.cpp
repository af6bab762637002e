#include "apps/Workspace/TradeCards/BookTraderCard.h"

#include "apps/Workspace/Cards/CardPaint.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"
#include "apps/Workspace/TradeCards/OrderTicketButton.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QMouseEvent>
#include <QPainter>
#include <QSpinBox>
#include <QWheelEvent>

#include <algorithm>

namespace vx_ws {

using card_paint::WithAlpha;
using vx_trade::EnOrderSide;
using Column = CVXBookTraderModel::EnColumn;

namespace {

constexpr int kMargin = 6;
constexpr int kToolbarHeight = 26;
constexpr int kHeaderHeight = 20;
constexpr int kRowHeight = 18;
constexpr int kResultHeight = 22;
const QString kQuantityKey = QStringLiteral("Quantity");

} // namespace

CVXCardBaseStyle CVXBookTraderCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(292863, "点价交易"), QSize(300, 420), QSize(240, 220),
                         QSize(5000, 5000));
}

CVXBookTraderCard::CVXBookTraderCard(EnVXCardPos pos, QWidget* parent) : TplVXWorkspaceCard(pos, parent)
{
    setMouseTracking(true);
    m_pQuantity = new QSpinBox(this);
    m_pQuantity->setRange(1, 1000000000);
    m_pQuantity->setPrefix(core::langx::tr(970356, "数量 "));
    m_pQuantity->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_pQuantity->setGroupSeparatorShown(true);
    m_pQuantity->setAccelerated(true);
    vx_ui_res::Provider::Instance().FollowTheme(m_pQuantity);
    connect(m_pQuantity, &QAbstractSpinBox::editingFinished, this, [this] {
        const QSignalBlocker blocker(m_pQuantity);
        m_pQuantity->setValue(static_cast<int>(OrderQuantity()));
    });
    m_pCentre = new CVXOrderTicketButton(core::langx::tr(970355, "居中"), "ct_selected", this);
    connect(m_pCentre, &QAbstractButton::clicked, this, &CVXBookTraderCard::Centre);
    RefreshSecurity();
}

CVXBookTraderCard::~CVXBookTraderCard() = default;

void CVXBookTraderCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    data->Set<qlonglong>(kQuantityKey, m_pQuantity->value());
}

void CVXBookTraderCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    const long long quantity = data.Get<qlonglong>(kQuantityKey, 0);
    if (quantity > 0)
        m_pQuantity->setValue(static_cast<int>(quantity));
}

QRect CVXBookTraderCard::LadderRect() const
{
    const int top = kMargin + kToolbarHeight + kMargin;
    return QRect(0, top, width(), std::max(0, height() - top - kResultHeight));
}

int CVXBookTraderCard::Lot() const
{
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    return feed && feed->Contains(id) ? std::max(1, feed->GetSecurity(id).lotSize) : 1;
}

long long CVXBookTraderCard::OrderQuantity() const
{
    const int lot = Lot();
    return std::max<long long>(lot, m_pQuantity->value() / lot * lot);
}

std::vector<BookTraderRow> CVXBookTraderCard::Rows()
{
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    if (!feed || !feed->Contains(id))
        return {};
    std::vector<vx_trade::Order> working;
    if (vx_trade::CVXSimTradeService* service = Service())
        working = service->WorkingOrders(AccountID(), id);
    return m_model.BuildRows(feed->GetOrderBook(id), feed->GetQuote(id).last, working);
}

void CVXBookTraderCard::Centre()
{
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    if (!feed || !feed->Contains(id))
        return;
    m_model.CentreOn(m_model.TicksOf(feed->GetQuote(id).last));
    m_bUserScrolled = false;
    m_bCentred = true;
    update();
}

void CVXBookTraderCard::OnMarketDataChanged(const std::set<unsigned long>& /*stockIDs*/)
{
    // The ladder follows the price only while the user has not scrolled it and the last price
    // has left the view: moving rows under a resting mouse would misplace clicks.
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    if (!m_bUserScrolled && feed && feed->Contains(id) &&
        m_model.RowOfTicks(m_model.TicksOf(feed->GetQuote(id).last)) < 0)
        Centre();
    update();
}

void CVXBookTraderCard::OnShownStockChanged(unsigned long /*stockID*/)
{
    RefreshSecurity();
}

void CVXBookTraderCard::OnAccountDataChanged()
{
    update();
}

void CVXBookTraderCard::RefreshSecurity()
{
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    const bool known = feed && feed->Contains(id);
    m_model.SetTickSize(known ? feed->GetSecurity(id).tickSize : 0.01);
    const int lot = Lot();
    m_pQuantity->setSingleStep(lot);
    m_pQuantity->setMinimum(lot);
    m_pQuantity->setValue(std::max(lot, m_pQuantity->value() / lot * lot));
    SetResult(QString(), false);
    UpdateGeometry();
    Centre();
}

void CVXBookTraderCard::UpdateGeometry()
{
    const QRect ladder = LadderRect();
    m_model.SetGeometry(ladder.width(), ladder.height(), kHeaderHeight, kRowHeight);
}

void CVXBookTraderCard::resizeEvent(QResizeEvent* event)
{
    CVXOrderTicketCardBase::resizeEvent(event);
    const int w = width() - 2 * kMargin;
    const int centreWidth = std::max(44, w / 6);
    const int quantityWidth = std::max(90, w * 3 / 10);
    AccountSelector()->setGeometry(kMargin, kMargin, w - centreWidth - quantityWidth - 2 * kMargin,
                                   kToolbarHeight);
    m_pQuantity->setGeometry(width() - kMargin - centreWidth - kMargin - quantityWidth, kMargin,
                             quantityWidth, kToolbarHeight);
    m_pCentre->setGeometry(width() - kMargin - centreWidth, kMargin, centreWidth, kToolbarHeight);
    UpdateGeometry();
    if (!m_bUserScrolled)
        Centre();
}

void CVXBookTraderCard::PlaceAt(EnOrderSide side, long long ticks)
{
    vx_trade::CVXSimTradeService* service = Service();
    if (!service) {
        SetResult(core::langx::tr(970339, "交易服务不可用"), true);
        return;
    }
    const vx_trade::Order order =
        service->PlaceOrder(AccountID(), ShownStockID(), side, vx_trade::EnOrderType::Limit,
                            m_model.PriceOf(ticks), OrderQuantity());
    ShowOrdersResult({order}, m_model.TickSize());
}

void CVXBookTraderCard::CancelAt(EnOrderSide side, long long ticks)
{
    vx_trade::CVXSimTradeService* service = Service();
    if (!service)
        return;
    const unsigned long long account = AccountID();
    int cancelled = 0;
    for (const vx_trade::Order& order : service->WorkingOrders(account, ShownStockID())) {
        if (order.side == side && m_model.TicksOf(order.price) == ticks &&
            service->CancelOrder(account, order.orderId))
            ++cancelled;
    }
    if (cancelled > 0)
        SetResult(core::langx::tr(970357, "已撤单 %1 笔").arg(cancelled), false);
}

void CVXBookTraderCard::mousePressEvent(QMouseEvent* event)
{
    const QRect ladder = LadderRect();
    const QPoint local = event->pos() - ladder.topLeft();
    const int row = m_model.RowAt(local.y());
    const Column column = m_model.ColumnAt(local.x());
    if (!ladder.contains(event->pos()) || row < 0 || m_model.TicksAtRow(row) < 1) {
        CVXOrderTicketCardBase::mousePressEvent(event);
        return;
    }
    const long long ticks = m_model.TicksAtRow(row);
    if (event->button() == Qt::LeftButton && column == Column::Bid)
        PlaceAt(EnOrderSide::Buy, ticks);
    else if (event->button() == Qt::LeftButton && column == Column::Ask)
        PlaceAt(EnOrderSide::Sell, ticks);
    else if (event->button() == Qt::RightButton && column == Column::OwnBuy)
        CancelAt(EnOrderSide::Buy, ticks);
    else if (event->button() == Qt::RightButton && column == Column::OwnSell)
        CancelAt(EnOrderSide::Sell, ticks);
    event->accept();
}

void CVXBookTraderCard::mouseMoveEvent(QMouseEvent* event)
{
    const QRect ladder = LadderRect();
    const int row = ladder.contains(event->pos()) ? m_model.RowAt(event->pos().y() - ladder.top()) : -1;
    if (row != m_nHoverRow) {
        m_nHoverRow = row;
        update();
    }
    CVXOrderTicketCardBase::mouseMoveEvent(event);
}

void CVXBookTraderCard::leaveEvent(QEvent* event)
{
    m_nHoverRow = -1;
    update();
    CVXOrderTicketCardBase::leaveEvent(event);
}

void CVXBookTraderCard::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps == 0) {
        event->ignore();
        return;
    }
    // Turning the wheel towards the user (negative delta) goes down to lower prices.
    m_model.ScrollRows(-steps * 3);
    m_bUserScrolled = true;
    update();
    event->accept();
}

void CVXBookTraderCard::paintEvent(QPaintEvent*)
{
    if (AccountSelector()->AccountID() != AccountID())
        AccountSelector()->SetAccountID(AccountID());
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const QRect ladder = LadderRect();
    PaintHeader(painter, ladder);
    vx_md::CVXSimMarketData* feed = MarketData();
    if (!feed || !feed->Contains(ShownStockID())) {
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(ladder.adjusted(0, kHeaderHeight, 0, 0), Qt::AlignCenter,
                         core::langx::tr(970340, "无可交易的证券"));
    } else {
        PaintRows(painter, ladder);
    }
    const QRect result(kMargin, height() - kResultHeight, width() - 2 * kMargin, kResultHeight);
    painter.setPen(ThemeColor("ct_divider"));
    painter.drawLine(0, result.top(), width(), result.top());
    if (!TradeService() && ResultText().isEmpty()) {
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(result, Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970339, "交易服务不可用"));
    } else {
        PaintResult(painter, result);
    }
}

void CVXBookTraderCard::PaintHeader(QPainter& painter, const QRect& ladder)
{
    const QRect header(ladder.left(), ladder.top(), ladder.width(), kHeaderHeight);
    painter.fillRect(header, ThemeColor("ct_bg_secondary"));
    painter.setPen(ThemeColor("ct_text_secondary"));
    const std::pair<Column, QString> titles[] = {
        {Column::OwnBuy, core::langx::tr(970350, "买单")},  {Column::Bid, core::langx::tr(970351, "买量")},
        {Column::Price, core::langx::tr(970330, "价格")},   {Column::Ask, core::langx::tr(970353, "卖量")},
        {Column::OwnSell, core::langx::tr(970354, "卖单")},
    };
    for (const auto& [column, title] : titles) {
        const QRect cell(ladder.left() + m_model.ColumnLeft(column), header.top(),
                         m_model.ColumnWidth(column), kHeaderHeight);
        painter.drawText(cell, Qt::AlignCenter,
                         painter.fontMetrics().elidedText(title, Qt::ElideRight, cell.width()));
    }
}

void CVXBookTraderCard::PaintRows(QPainter& painter, const QRect& ladder)
{
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    const double tickSize = feed->GetSecurity(id).tickSize;
    const double prevClose = feed->GetQuote(id).prevClose;
    const std::vector<BookTraderRow> rows = Rows();
    long long maxVolume = 1;
    for (const BookTraderRow& row : rows)
        maxVolume = std::max({maxVolume, row.bidVolume, row.askVolume});

    painter.save();
    painter.setClipRect(ladder.adjusted(0, kHeaderHeight, 0, 0));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int top = ladder.top() + kHeaderHeight + static_cast<int>(i) * kRowHeight;
        const QRect line(ladder.left(), top, ladder.width(), kRowHeight);
        if (static_cast<int>(i) == m_nHoverRow)
            painter.fillRect(line, ThemeColor("ct_hover"));
        PaintDepthCells(painter, ladder, rows[i], top, maxVolume);
        PaintPriceAndOwnOrders(painter, ladder, rows[i], top, tickSize, prevClose);
        painter.setFont(font());
        painter.setPen(ThemeColor("ct_divider"));
        painter.drawLine(line.left(), line.bottom(), line.right(), line.bottom());
    }
    // Column rules.
    for (Column column : {Column::Bid, Column::Price, Column::Ask, Column::OwnSell}) {
        const int x = ladder.left() + m_model.ColumnLeft(column);
        painter.drawLine(x, ladder.top() + kHeaderHeight, x, ladder.bottom());
    }
    painter.restore();
}

QRect CVXBookTraderCard::CellRect(const QRect& ladder, CVXBookTraderModel::EnColumn column, int top) const
{
    return QRect(ladder.left() + m_model.ColumnLeft(column), top, m_model.ColumnWidth(column), kRowHeight);
}

// The bid and ask cells are where clicks trade: tinted by side, with a depth bar and the volume.
void CVXBookTraderCard::PaintDepthCells(QPainter& painter, const QRect& ladder, const BookTraderRow& row,
                                        int top, long long maxVolume)
{
    const QColor buy = ThemeColor("ct_buy");
    const QColor sell = ThemeColor("ct_sell");
    const QRect bid = CellRect(ladder, Column::Bid, top);
    const QRect ask = CellRect(ladder, Column::Ask, top);
    painter.fillRect(bid.adjusted(1, 0, -1, 0), WithAlpha(buy, 20));
    painter.fillRect(ask.adjusted(1, 0, -1, 0), WithAlpha(sell, 20));
    if (row.bidVolume > 0) {
        const int bar = static_cast<int>(bid.width() * row.bidVolume / maxVolume);
        painter.fillRect(QRect(bid.right() - bar, top + 2, bar, kRowHeight - 4), WithAlpha(buy, 60));
        painter.setPen(ThemeColor("ct_text_primary"));
        painter.drawText(bid.adjusted(2, 0, -4, 0), Qt::AlignRight | Qt::AlignVCenter,
                         FormatVolume(row.bidVolume));
    }
    if (row.askVolume > 0) {
        const int bar = static_cast<int>(ask.width() * row.askVolume / maxVolume);
        painter.fillRect(QRect(ask.left(), top + 2, bar, kRowHeight - 4), WithAlpha(sell, 60));
        painter.setPen(ThemeColor("ct_text_primary"));
        painter.drawText(ask.adjusted(4, 0, -2, 0), Qt::AlignLeft | Qt::AlignVCenter,
                         FormatVolume(row.askVolume));
    }
}

// The price (the last price's row framed) and the account's working quantities beside it.
void CVXBookTraderCard::PaintPriceAndOwnOrders(QPainter& painter, const QRect& ladder,
                                               const BookTraderRow& row, int top, double tickSize,
                                               double prevClose)
{
    QFont bold = font();
    bold.setBold(true);
    const QRect price = CellRect(ladder, Column::Price, top);
    if (row.isLast) {
        painter.fillRect(price.adjusted(1, 1, -1, -1), WithAlpha(ThemeColor("ct_selected"), 40));
        painter.setPen(ThemeColor("ct_selected"));
        painter.drawRect(price.adjusted(1, 1, -2, -2));
    }
    painter.setFont(row.isLast ? bold : font());
    painter.setPen(ChangeColor(row.price - prevClose));
    painter.drawText(price, Qt::AlignCenter, FormatPrice(row.price, tickSize));
    painter.setFont(bold);
    if (row.ownBuy > 0) {
        painter.setPen(ThemeColor("ct_buy"));
        painter.drawText(CellRect(ladder, Column::OwnBuy, top).adjusted(2, 0, -4, 0),
                         Qt::AlignRight | Qt::AlignVCenter, FormatVolume(row.ownBuy));
    }
    if (row.ownSell > 0) {
        painter.setPen(ThemeColor("ct_sell"));
        painter.drawText(CellRect(ladder, Column::OwnSell, top).adjusted(4, 0, -2, 0),
                         Qt::AlignLeft | Qt::AlignVCenter, FormatVolume(row.ownSell));
    }
}

} // namespace vx_ws
