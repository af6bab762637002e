#include "apps/Workspace/QuoteCards/OptionChainsPanelCard.h"

#include "apps/Workspace/Cards/CardPaint.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPolygon>

#include <algorithm>

namespace vx_ws {

using namespace card_paint;

namespace {

const QString kExpiryKey = QStringLiteral("ExpiryDays");
const QString kSelectedKey = QStringLiteral("SelectedOptionID");
constexpr int kTopBarHeight = 28;
constexpr int kSideHeaderHeight = 18;
constexpr int kColumnHeaderHeight = 20;
constexpr int kMinRowHeight = 22;
constexpr int kMaxRowHeight = 30;
constexpr int kStrikeWidth = 70;
// Each side shows bid, ask and last always; change and the model price once it has room.
constexpr int kFullSideWidth = 210;

enum class EnField
{
    Bid,
    Ask,
    Last,
    Change,
    Theoretical,
};

QString FieldTitle(EnField field)
{
    switch (field) {
    case EnField::Bid:
        return core::langx::tr(970224, "买价");
    case EnField::Ask:
        return core::langx::tr(970225, "卖价");
    case EnField::Last:
        return core::langx::tr(970214, "最新");
    case EnField::Change:
        return core::langx::tr(970226, "涨跌");
    case EnField::Theoretical:
        return core::langx::tr(970227, "理论价");
    }
    return {};
}

QString ExpiryText(int days)
{
    return core::langx::tr(970228, "%1天").arg(days);
}

QString SignedPrice(double value, double tick)
{
    const QString text = CVXWorkspaceCardBase::FormatPrice(value, tick);
    return value > 0 && text.toDouble() != 0 ? QLatin1Char('+') + text : text;
}

// The text of one quote cell and its colour ("--" for a missing bid or ask).
QString CellText(EnField field, const OptionSideQuote& q, double tick, QColor* color)
{
    *color = CVXWorkspaceCardBase::ThemeColor("ct_text_primary");
    switch (field) {
    case EnField::Bid:
        return q.bid > 0 ? CVXWorkspaceCardBase::FormatPrice(q.bid, tick) : QStringLiteral("--");
    case EnField::Ask:
        return q.ask > 0 ? CVXWorkspaceCardBase::FormatPrice(q.ask, tick) : QStringLiteral("--");
    case EnField::Last:
        *color = CVXWorkspaceCardBase::ChangeColor(q.change);
        return CVXWorkspaceCardBase::FormatPrice(q.last, tick);
    case EnField::Change:
        *color = CVXWorkspaceCardBase::ChangeColor(q.change);
        return SignedPrice(q.change, tick);
    case EnField::Theoretical:
        *color = CVXWorkspaceCardBase::ThemeColor("ct_text_secondary");
        return CVXWorkspaceCardBase::FormatPrice(q.theoretical, tick);
    }
    return QString();
}

} // namespace

struct CVXOptionChainsPanelCard::Layout
{
    QRect topBar;
    std::vector<QRect> tabs;
    QRect sideHeader;
    QRect columnHeader;
    QRect rows;
    QRect callSide;
    QRect strike;
    QRect putSide;
    struct Cell
    {
        EnField field;
        int left;
        int width;
    };
    std::vector<Cell> callCells;
    std::vector<Cell> putCells;
    int rowHeight = kMinRowHeight;

    QRect RowRect(int row) const
    {
        return QRect(rows.left(), rows.top() + row * rowHeight, rows.width(), rowHeight);
    }
};

CVXCardBaseStyle CVXOptionChainsPanelCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(236246, "期权链"), QSize(560, 360), QSize(320, 180),
                         QSize(2000, 1600));
}

CVXOptionChainsPanelCard::CVXOptionChainsPanelCard(EnVXCardPos pos, QWidget* parent)
    : TplVXWorkspaceCard(pos, parent)
{
    Rebuild();
}

CVXOptionChainsPanelCard::~CVXOptionChainsPanelCard() = default;

void CVXOptionChainsPanelCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    CVXWorkspaceCardBase::GetCardObjRestoreData(data);
    if (!data)
        return;
    data->Set<int>(kExpiryKey, m_expiryDays);
    data->Set<qulonglong>(kSelectedKey, m_selectedOption);
}

void CVXOptionChainsPanelCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    CVXWorkspaceCardBase::SetCardObjRestoreData(data);
    m_expiryDays = data.Get<int>(kExpiryKey, m_expiryDays);
    m_selectedOption = static_cast<unsigned long>(data.Get<qulonglong>(kSelectedKey, m_selectedOption));
    Rebuild();
}

void CVXOptionChainsPanelCard::SetOptionIndexInfo(const CVXVariantMapTree& info)
{
    CVXWorkspaceCardBase::SetOptionIndexInfo(info);
    vx_md::CVXSimMarketData* feed = MarketData();
    if (!feed)
        return;
    const auto optionId =
        static_cast<unsigned long>(info.Get<qulonglong>(QString::fromLatin1(keys::kOptionID)));
    auto underlying =
        static_cast<unsigned long>(info.Get<qulonglong>(QString::fromLatin1(keys::kUnderlyingID)));
    if (optionId != 0 && feed->Contains(optionId))
        underlying = OptionChainUnderlying(*feed, optionId);
    if (underlying != 0 && underlying != m_chain.underlyingId && feed->Contains(underlying))
        SetStockID(underlying); // rebuilds the chain through OnShownStockChanged
    if (optionId != 0)
        SelectOption(optionId, false);
}

int CVXOptionChainsPanelCard::CurrentExpiryIndex() const
{
    return m_chain.ExpiryIndex(m_expiryDays);
}

void CVXOptionChainsPanelCard::SetCurrentExpiryIndex(int index)
{
    if (index < 0 || index >= static_cast<int>(m_chain.expiries.size()))
        return;
    m_expiryDays = m_chain.expiries[index].expiryDays;
    m_hoverOption = 0;
    update();
}

bool CVXOptionChainsPanelCard::SelectOption(unsigned long optionId, bool raise)
{
    int expiry = -1;
    if (optionId != 0 && !m_chain.Locate(optionId, &expiry, nullptr, nullptr))
        return false;
    m_selectedOption = optionId;
    if (expiry >= 0)
        m_expiryDays = m_chain.expiries[expiry].expiryDays;
    update();
    if (raise && optionId != 0)
        RaiseSelection();
    return true;
}

void CVXOptionChainsPanelCard::RaiseSelection()
{
    const QString underlyingKey = QString::fromLatin1(keys::kUnderlyingID);
    const QString optionKey = QString::fromLatin1(keys::kOptionID);
    CVXVariantMapTree index;
    index.Set<qulonglong>(underlyingKey, m_chain.underlyingId);
    index.Set<qulonglong>(optionKey, m_selectedOption);
    CardEventOptionIndexChanged indexEvent(index);
    core::ui_event::DispatchCardEvent(this, &indexEvent);

    // A single bought option is the simplest strategy an order panel can take over.
    CVXVariantMapTree leg;
    leg.Set<qulonglong>(optionKey, m_selectedOption);
    leg.Set<int>(QString::fromLatin1(keys::kSide), 1);
    leg.Set<int>(QString::fromLatin1(keys::kRatio), 1);
    CVXVariantMapTree combo;
    combo.Set<qulonglong>(underlyingKey, m_chain.underlyingId);
    combo.Set<QVector<CVXVariantMapTree>>(QString::fromLatin1(keys::kLegs), QVector<CVXVariantMapTree>{leg});
    CardEventComboOptionChanged comboEvent(combo);
    core::ui_event::DispatchCardEvent(this, &comboEvent);
}

void CVXOptionChainsPanelCard::OnShownStockChanged(unsigned long stockID)
{
    Rebuild();
    vx_md::CVXSimMarketData* feed = MarketData();
    if (feed && feed->Contains(stockID) && feed->GetSecurity(stockID).kind == vx_md::EnSecurityKind::Option)
        SelectOption(stockID, false);
    update();
}

void CVXOptionChainsPanelCard::Rebuild()
{
    vx_md::CVXSimMarketData* feed = MarketData();
    m_built = feed != nullptr;
    if (!feed) {
        m_chain = OptionChain();
        return;
    }
    const unsigned long underlying = OptionChainUnderlying(*feed, ShownStockID());
    m_chain = MakeOptionChain(feed->Securities(), underlying);
    if (m_chain.ExpiryIndex(m_expiryDays) < 0)
        m_expiryDays = m_chain.IsEmpty() ? 0 : m_chain.expiries.front().expiryDays;
    if (!m_chain.Locate(m_selectedOption, nullptr, nullptr, nullptr))
        m_selectedOption = 0;
    m_hoverOption = 0;
    std::vector<unsigned long> ids = m_chain.OptionIDs();
    // The underlying too: the in-the-money shading follows it when an option is the shown one.
    if (underlying != 0)
        ids.push_back(underlying);
    SetExtraSubscriptions(ids);
}

CVXOptionChainsPanelCard::Layout CVXOptionChainsPanelCard::ComputeLayout() const
{
    Layout l;
    l.topBar = QRect(0, 0, width(), kTopBarHeight);
    // Expiry tabs from the right edge of the top bar.
    const QFontMetrics metrics(font());
    int right = width() - 6;
    std::vector<QRect> tabs;
    for (auto it = m_chain.expiries.rbegin(); it != m_chain.expiries.rend(); ++it) {
        const int w = metrics.horizontalAdvance(ExpiryText(it->expiryDays)) + 16;
        tabs.push_back(QRect(right - w, 4, w, kTopBarHeight - 8));
        right -= w + 4;
    }
    l.tabs.assign(tabs.rbegin(), tabs.rend());

    l.sideHeader = QRect(0, l.topBar.bottom() + 1, width(), kSideHeaderHeight);
    l.columnHeader = QRect(0, l.sideHeader.bottom() + 1, width(), kColumnHeaderHeight);
    l.rows = QRect(0, l.columnHeader.bottom() + 1, width(), height() - l.columnHeader.bottom() - 1);
    const int sideWidth = (width() - kStrikeWidth) / 2;
    l.callSide = QRect(0, 0, sideWidth, height());
    l.strike = QRect(sideWidth, 0, width() - 2 * sideWidth, height());
    l.putSide = QRect(l.strike.right() + 1, 0, sideWidth, height());

    const std::vector<EnField> fields = sideWidth >= kFullSideWidth
                                            ? std::vector<EnField>{EnField::Bid, EnField::Ask, EnField::Last,
                                                                   EnField::Change, EnField::Theoretical}
                                            : std::vector<EnField>{EnField::Bid, EnField::Ask, EnField::Last};
    // The change carries a sign: a little more room than the prices.
    const auto weight = [](EnField field) { return field == EnField::Change ? 12 : 10; };
    int totalWeight = 0;
    for (EnField field : fields)
        totalWeight += weight(field);
    int done = 0;
    for (EnField field : fields) {
        const int from = sideWidth * done / totalWeight;
        done += weight(field);
        const int to = sideWidth * done / totalWeight;
        // Puts read outward from the strike; calls mirror them so that both sides' bid and ask
        // stand next to the strike.
        l.putCells.push_back({field, l.putSide.left() + from, to - from});
        l.callCells.push_back({field, l.callSide.right() + 1 - to, to - from});
    }

    // Rows grow to use the height a short chain leaves free.
    const int e = CurrentExpiryIndex();
    const int rowCount = e >= 0 ? static_cast<int>(m_chain.expiries[e].rows.size()) : 0;
    if (rowCount > 0)
        l.rowHeight = std::clamp(l.rows.height() / rowCount, kMinRowHeight, kMaxRowHeight);
    return l;
}

QRect CVXOptionChainsPanelCard::ExpiryTabRect(int index) const
{
    const Layout l = ComputeLayout();
    return index >= 0 && index < static_cast<int>(l.tabs.size()) ? l.tabs[index] : QRect();
}

QRect CVXOptionChainsPanelCard::OptionRect(unsigned long optionId) const
{
    int expiry = -1;
    int row = -1;
    vx_md::EnOptionRight right = vx_md::EnOptionRight::None;
    if (!m_chain.Locate(optionId, &expiry, &row, &right) || expiry != CurrentExpiryIndex())
        return {};
    const Layout l = ComputeLayout();
    const QRect r = l.RowRect(row);
    if (r.bottom() > height())
        return {};
    const QRect side = right == vx_md::EnOptionRight::Call ? l.callSide : l.putSide;
    return QRect(side.left(), r.top(), side.width(), r.height());
}

unsigned long CVXOptionChainsPanelCard::OptionAt(const QPoint& pos) const
{
    const int e = CurrentExpiryIndex();
    if (e < 0)
        return 0;
    for (const OptionChainRow& row : m_chain.expiries[e].rows) {
        for (unsigned long id : {row.callId, row.putId})
            if (id != 0 && OptionRect(id).contains(pos))
                return id;
    }
    return 0;
}

void CVXOptionChainsPanelCard::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        CVXWorkspaceCardBase::mousePressEvent(event);
        return;
    }
    const Layout l = ComputeLayout();
    for (std::size_t i = 0; i < l.tabs.size(); ++i) {
        if (l.tabs[i].contains(event->pos())) {
            SetCurrentExpiryIndex(static_cast<int>(i));
            return;
        }
    }
    if (const unsigned long id = OptionAt(event->pos()))
        SelectOption(id, true);
}

void CVXOptionChainsPanelCard::mouseMoveEvent(QMouseEvent* event)
{
    const unsigned long id = OptionAt(event->pos());
    if (id != m_hoverOption) {
        m_hoverOption = id;
        setCursor(id != 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
        update();
    }
    CVXWorkspaceCardBase::mouseMoveEvent(event);
}

void CVXOptionChainsPanelCard::leaveEvent(QEvent* event)
{
    if (m_hoverOption != 0) {
        m_hoverOption = 0;
        update();
    }
    CVXWorkspaceCardBase::leaveEvent(event);
}

void CVXOptionChainsPanelCard::paintEvent(QPaintEvent* /*event*/)
{
    if (!m_built && MarketData())
        Rebuild();
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const Layout l = ComputeLayout();
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long underlying = m_chain.underlyingId;

    PaintTopBar(painter, l);
    if (!feed || underlying == 0 || m_chain.IsEmpty()) {
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.setFont(font());
        const QString message = (!feed || underlying == 0) ? core::langx::tr(970230, "暂无行情")
                                                           : core::langx::tr(970229, "该标的暂无期权");
        painter.drawText(rect().adjusted(0, kTopBarHeight, 0, 0), Qt::AlignCenter, message);
        return;
    }
    PaintColumnTitles(painter, l);
    PaintRows(painter, l);
}

// The underlying with its price and change, and the expiry tabs.
void CVXOptionChainsPanelCard::PaintTopBar(QPainter& painter, const Layout& l)
{
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long underlying = m_chain.underlyingId;
    painter.fillRect(l.topBar, ThemeColor("ct_bg_secondary"));
    if (feed && underlying != 0) {
        const vx_md::SecurityInfo info = feed->GetSecurity(underlying);
        const vx_md::Quote quote = feed->GetQuote(underlying);
        const double change = quote.last - quote.prevClose;
        const int tabsLeft = l.tabs.empty() ? l.topBar.right() : l.tabs.front().left();
        QRect text = l.topBar.adjusted(8, 0, 0, 0);
        text.setRight(tabsLeft - 8);
        const QString title =
            QString::fromStdString(info.code) + QLatin1Char(' ') + QString::fromStdString(info.name);
        painter.setFont(font());
        painter.setPen(ThemeColor("ct_text_primary"));
        const QString shownTitle = painter.fontMetrics().elidedText(title, Qt::ElideRight, text.width() / 2);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, shownTitle);
        const int titleWidth = painter.fontMetrics().horizontalAdvance(shownTitle) + 10;
        const QString price = FormatPrice(quote.last, info.tickSize) + QStringLiteral("  ") +
                              FormatPercent(quote.prevClose > 0 ? change / quote.prevClose : 0.0);
        DrawCellText(painter, text.adjusted(titleWidth - 4, 0, 0, 0), price, Qt::AlignLeft,
                     ChangeColor(change));
    }
    for (std::size_t i = 0; i < l.tabs.size(); ++i) {
        const QRect tab = l.tabs[i];
        const bool current = static_cast<int>(i) == CurrentExpiryIndex();
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setPen(current ? ThemeColor("ct_selected") : ThemeColor("ct_border"));
        painter.setBrush(current ? WithAlpha(ThemeColor("ct_selected"), 36) : QColor(Qt::transparent));
        painter.drawRoundedRect(QRectF(tab).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(current ? ThemeColor("ct_selected") : ThemeColor("ct_text_secondary"));
        painter.drawText(tab, Qt::AlignCenter, ExpiryText(m_chain.expiries[i].expiryDays));
    }
}

// Side titles over the calls and the puts, then the column titles.
void CVXOptionChainsPanelCard::PaintColumnTitles(QPainter& painter, const Layout& l)
{
    const QColor textSecondary = ThemeColor("ct_text_secondary");
    painter.setFont(SmallerFont(font()));
    DrawCellText(painter,
                 QRect(l.callSide.left(), l.sideHeader.top(), l.callSide.width(), l.sideHeader.height()),
                 core::langx::tr(970221, "看涨"), Qt::AlignCenter, ThemeColor("ct_rise"));
    DrawCellText(painter,
                 QRect(l.putSide.left(), l.sideHeader.top(), l.putSide.width(), l.sideHeader.height()),
                 core::langx::tr(970222, "看跌"), Qt::AlignCenter, ThemeColor("ct_fall"));
    painter.fillRect(l.columnHeader, ThemeColor("ct_bg_secondary"));
    for (const auto* cells : {&l.callCells, &l.putCells})
        for (const Layout::Cell& c : *cells)
            DrawCellText(painter, QRect(c.left, l.columnHeader.top(), c.width, l.columnHeader.height()),
                         FieldTitle(c.field), Qt::AlignRight, textSecondary);
    DrawCellText(painter,
                 QRect(l.strike.left(), l.columnHeader.top(), l.strike.width(), l.columnHeader.height()),
                 core::langx::tr(970223, "行权价"), Qt::AlignCenter, textSecondary);
}

void CVXOptionChainsPanelCard::PaintRows(QPainter& painter, const Layout& l)
{
    const OptionChainExpiry& expiry = m_chain.expiries[CurrentExpiryIndex()];
    const double spot = MarketData()->GetQuote(m_chain.underlyingId).last;
    const QColor textPrimary = ThemeColor("ct_text_primary");
    const QColor divider = ThemeColor("ct_divider");
    painter.setFont(font());

    int spotLine = -1;
    for (std::size_t i = 0; i < expiry.rows.size(); ++i) {
        const OptionChainRow& row = expiry.rows[i];
        const QRect r = l.RowRect(static_cast<int>(i));
        if (r.top() >= height())
            break;
        if (spotLine < 0 && row.strike > spot)
            spotLine = r.top();
        PaintOptionSide(painter, l, row, r, true, spot);
        PaintOptionSide(painter, l, row, r, false, spot);
        const QRect strikeCell(l.strike.left(), r.top(), l.strike.width(), r.height());
        painter.fillRect(strikeCell, ThemeColor("ct_bg_secondary"));
        DrawCellText(painter, strikeCell, FormatPrice(row.strike, 0.01), Qt::AlignCenter, textPrimary);
        painter.fillRect(QRect(r.left(), r.bottom(), r.width(), 1), WithAlpha(divider, 160));
    }
    if (spotLine < 0 && !expiry.rows.empty())
        spotLine = l.RowRect(static_cast<int>(expiry.rows.size())).top();
    PaintSpotLine(painter, l, spotLine);
}

// The call or put half of one strike's row: in-the-money shade, selection or hover, and quotes.
void CVXOptionChainsPanelCard::PaintOptionSide(QPainter& painter, const Layout& l, const OptionChainRow& row,
                                               const QRect& r, bool call, double spot)
{
    const unsigned long id = call ? row.callId : row.putId;
    const QRect side = call ? l.callSide : l.putSide;
    const QRect half(side.left(), r.top(), side.width(), r.height());
    if (IsInTheMoney(call ? vx_md::EnOptionRight::Call : vx_md::EnOptionRight::Put, row.strike, spot))
        painter.fillRect(half, WithAlpha(ThemeColor("ct_focus"), 22));
    const QColor selected = ThemeColor("ct_selected");
    if (id != 0 && id == m_selectedOption) {
        painter.fillRect(half, WithAlpha(selected, 46));
        painter.setPen(selected);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(half.adjusted(0, 0, -1, -1));
    } else if (id != 0 && id == m_hoverOption) {
        painter.fillRect(half, ThemeColor("ct_hover"));
    }
    if (id == 0)
        return;
    vx_md::CVXSimMarketData* feed = MarketData();
    const OptionSideQuote q = MakeOptionSideQuote(*feed, id);
    const double tick = feed->GetSecurity(id).tickSize;
    for (const Layout::Cell& c : call ? l.callCells : l.putCells) {
        QColor color;
        const QString text = CellText(c.field, q, tick, &color);
        DrawCellText(painter, QRect(c.left, r.top(), c.width, r.height()), text, Qt::AlignRight, color);
    }
}

// Where the underlying trades between the strikes: a line across and two arrow heads at the
// strike column (the price itself is in the top bar).
void CVXOptionChainsPanelCard::PaintSpotLine(QPainter& painter, const Layout& l, int spotLine)
{
    if (spotLine < l.rows.top() || spotLine >= height())
        return;
    const QColor focus = ThemeColor("ct_focus");
    painter.fillRect(QRect(0, spotLine - 1, width(), 2), focus);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);
    painter.setBrush(focus);
    const int y = spotLine;
    const int left = l.strike.left();
    const int right = l.strike.right() + 1;
    painter.drawPolygon(QPolygon({QPoint(left, y - 5), QPoint(left + 6, y), QPoint(left, y + 5)}));
    painter.drawPolygon(QPolygon({QPoint(right, y - 5), QPoint(right - 6, y), QPoint(right, y + 5)}));
    painter.setRenderHint(QPainter::Antialiasing, false);
}

} // namespace vx_ws
