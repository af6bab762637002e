#include "apps/Workspace/TradeCards/PlaceOrderSecuritiesPanelCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"
#include "apps/Workspace/TradeCards/OrderTicketButton.h"

#include "UIFrame/Canvas/PanelTradeRequests.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QButtonGroup>
#include <QDoubleSpinBox>
#include <QLocale>
#include <QPainter>
#include <QSignalBlocker>
#include <QSpinBox>

#include <cmath>

namespace vx_ws {

using vx_trade::EnOrderSide;
using vx_trade::EnOrderType;

namespace {

constexpr int kMargin = 10;
constexpr int kLabelWidth = 72;

QString Key(const char* key)
{
    return QString::fromLatin1(key);
}

int DecimalsOf(double tick)
{
    int decimals = 0;
    double step = tick;
    while (decimals < 6 && std::fabs(step - std::round(step)) > 1e-9) {
        step *= 10;
        ++decimals;
    }
    return decimals;
}

QString SideText(EnOrderSide side)
{
    return side == EnOrderSide::Buy ? core::langx::tr(970321, "买入") : core::langx::tr(970322, "卖出");
}

} // namespace

struct CVXPlaceOrderSecuritiesPanelCard::Layout
{
    QRect account;
    QRect security;
    QRect bidAsk;
    QRect side;
    QRect type;
    QRect priceRow;
    QRect quantityRow;
    QRect amountRow;
    QRect maxRow;
    QRect place;
    QRect result;
};

CVXCardBaseStyle CVXPlaceOrderSecuritiesPanelCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(250213, "交易"), QSize(280, 380), QSize(230, 340),
                         QSize(5000, 5000));
}

CVXPlaceOrderSecuritiesPanelCard::CVXPlaceOrderSecuritiesPanelCard(EnVXCardPos pos, QWidget* parent)
    : TplVXWorkspaceCard(pos, parent)
{
    m_pBuy = new CVXOrderTicketButton(SideText(EnOrderSide::Buy), "ct_buy", this);
    m_pSell = new CVXOrderTicketButton(SideText(EnOrderSide::Sell), "ct_sell", this);
    m_pLimit = new CVXOrderTicketButton(core::langx::tr(970336, "限价"), "ct_selected", this);
    m_pMarket = new CVXOrderTicketButton(core::langx::tr(970337, "市价"), "ct_selected", this);
    for (CVXOrderTicketButton* button : {m_pBuy, m_pSell, m_pLimit, m_pMarket})
        button->setCheckable(true);
    auto* sides = new QButtonGroup(this);
    sides->addButton(m_pBuy);
    sides->addButton(m_pSell);
    auto* types = new QButtonGroup(this);
    types->addButton(m_pLimit);
    types->addButton(m_pMarket);
    m_pBuy->setChecked(true);
    m_pLimit->setChecked(true);
    m_pPlace = new CVXOrderTicketButton(QString(), "ct_buy", this);
    m_pPlace->SetSolid(true);

    m_pPrice = new QDoubleSpinBox(this);
    m_pPrice->setRange(0.0, 1e7);
    m_pPrice->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_pPrice->setAccelerated(true);
    m_pQuantity = new QSpinBox(this);
    m_pQuantity->setRange(0, 1000000000);
    m_pQuantity->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_pQuantity->setGroupSeparatorShown(true);
    m_pQuantity->setAccelerated(true);
    vx_ui_res::Provider::Instance().FollowTheme(m_pPrice);
    vx_ui_res::Provider::Instance().FollowTheme(m_pQuantity);

    connect(m_pBuy, &QAbstractButton::clicked, this, [this] { SetSide(EnOrderSide::Buy); });
    connect(m_pSell, &QAbstractButton::clicked, this, [this] { SetSide(EnOrderSide::Sell); });
    connect(m_pLimit, &QAbstractButton::clicked, this, [this] { SetType(EnOrderType::Limit); });
    connect(m_pMarket, &QAbstractButton::clicked, this, [this] { SetType(EnOrderType::Market); });
    connect(m_pPlace, &QAbstractButton::clicked, this, [this] { PlaceOrder(); });
    connect(m_pPrice, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this](double value) {
        if (m_bSyncing)
            return;
        m_model.SetPrice(value);
        update();
    });
    connect(m_pQuantity, QOverload<int>::of(&QSpinBox::valueChanged), this, [this](int value) {
        if (m_bSyncing)
            return;
        m_model.SetQuantity(value);
        // The box keeps what is being typed ("3" on the way to "300"); it shows the snapped
        // value once editing is finished.
        SyncWidgets(false);
    });
    // While the user types, the boxes keep what was typed; once done they show the snapped value.
    connect(m_pPrice, &QAbstractSpinBox::editingFinished, this, [this] {
        const QSignalBlocker blocker(m_pPrice);
        if (m_model.Type() == EnOrderType::Limit)
            m_pPrice->setValue(m_model.Price());
    });
    connect(m_pQuantity, &QAbstractSpinBox::editingFinished, this, [this] {
        const QSignalBlocker blocker(m_pQuantity);
        m_pQuantity->setValue(static_cast<int>(m_model.Quantity()));
    });

    RefreshSecurity();
}

CVXPlaceOrderSecuritiesPanelCard::~CVXPlaceOrderSecuritiesPanelCard() = default;

void CVXPlaceOrderSecuritiesPanelCard::SetObjProperty(const QString& cardType,
                                                      const CVXVariantMapTree& property)
{
    CVXOrderTicketCardBase::SetObjProperty(cardType, property);
    using namespace panel_trade_request;
    unsigned long long stockId = property.Get<qulonglong>(Key(kStockID), 0);
    int side = property.Get<int>(Key(kOrderSide), 0);
    // An option chain asked for from an options panel: the ticket shows the underlying.
    if (stockId == 0)
        stockId = property.Get<qulonglong>(Key(kUnderlyingStockID), 0);
    // A strategy handed to this ticket: it trades the first leg.
    const CVXVariantMapTree combo = property.Get<CVXVariantMapTree>(Key(kComboOptionInfo));
    const QVector<CVXVariantMapTree> legs = combo.Get<QVector<CVXVariantMapTree>>(Key(keys::kLegs));
    if (stockId == 0 && !legs.isEmpty()) {
        stockId = legs.front().Get<qulonglong>(Key(keys::kOptionID), 0);
        if (side == 0)
            side = legs.front().Get<int>(Key(keys::kSide), 0);
    }
    if (stockId != 0)
        SetStockID(stockId);
    if (side == static_cast<int>(EnOrderSide::Buy) || side == static_cast<int>(EnOrderSide::Sell))
        SetSide(static_cast<EnOrderSide>(side));
    if (property.Contains(Key(kQuantity)))
        m_model.SetQuantity(property.Get<qlonglong>(Key(kQuantity), 0));
    if (property.Contains(Key(kPrice))) {
        m_model.SetType(EnOrderType::Limit);
        m_model.SetPrice(property.Get<double>(Key(kPrice), 0.0));
    }
    SetResult(QString(), false);
    SyncWidgets();
}

void CVXPlaceOrderSecuritiesPanelCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    data->Set<int>(Key(panel_trade_request::kOrderSide), static_cast<int>(m_model.Side()));
    data->Set<int>(QStringLiteral("OrderType"), static_cast<int>(m_model.Type()));
    data->Set<qlonglong>(Key(panel_trade_request::kQuantity), m_model.Quantity());
}

void CVXPlaceOrderSecuritiesPanelCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    const int side = data.Get<int>(Key(panel_trade_request::kOrderSide), 0);
    if (side == static_cast<int>(EnOrderSide::Buy) || side == static_cast<int>(EnOrderSide::Sell))
        m_model.SetSide(static_cast<EnOrderSide>(side));
    const int type = data.Get<int>(QStringLiteral("OrderType"), 0);
    if (type == static_cast<int>(EnOrderType::Limit) || type == static_cast<int>(EnOrderType::Market))
        m_model.SetType(static_cast<EnOrderType>(type));
    if (data.Contains(Key(panel_trade_request::kQuantity)))
        m_model.SetQuantity(data.Get<qlonglong>(Key(panel_trade_request::kQuantity), 0));
    SyncWidgets();
}

vx_trade::Order CVXPlaceOrderSecuritiesPanelCard::PlaceOrder()
{
    vx_trade::CVXSimTradeService* service = Service();
    RefreshLimits();
    if (!service) {
        SetResult(core::langx::tr(970339, "交易服务不可用"), true);
        return {};
    }
    if (!m_model.CanPlace()) {
        SetResult(CVXOrderTicketModel::IssueText(m_model.Issue()), true);
        return {};
    }
    const vx_trade::Order order = service->PlaceOrder(AccountID(), m_model.StockID(), m_model.Side(),
                                                      m_model.Type(), m_model.Price(), m_model.Quantity());
    ShowOrdersResult({order}, m_model.TickSize());
    return order;
}

void CVXPlaceOrderSecuritiesPanelCard::OnMarketDataChanged(const std::set<unsigned long>& /*stockIDs*/)
{
    RefreshMarket();
    update();
}

void CVXPlaceOrderSecuritiesPanelCard::OnShownStockChanged(unsigned long /*stockID*/)
{
    RefreshSecurity();
}

void CVXPlaceOrderSecuritiesPanelCard::OnAccountDataChanged()
{
    RefreshLimits();
    SyncWidgets(false);
}

void CVXPlaceOrderSecuritiesPanelCard::RefreshSecurity()
{
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    if (feed && feed->Contains(id) && feed->GetSecurity(id).kind != vx_md::EnSecurityKind::Index) {
        const vx_md::SecurityInfo info = feed->GetSecurity(id);
        m_model.SetSecurity(id, info.lotSize, info.tickSize);
    } else {
        m_model.SetSecurity(0, 1, 0.01);
    }
    RefreshMarket();
    RefreshLimits();
    SetResult(QString(), false);
    SyncWidgets();
}

void CVXPlaceOrderSecuritiesPanelCard::RefreshMarket()
{
    vx_md::CVXSimMarketData* feed = MarketData();
    if (!feed || m_model.StockID() == 0)
        return;
    const double before = m_model.Price();
    m_model.SetMarketFromBook(feed->GetQuote(m_model.StockID()).last, feed->GetOrderBook(m_model.StockID()));
    RefreshLimits();
    if (m_model.Price() != before)
        SyncWidgets(false);
}

void CVXPlaceOrderSecuritiesPanelCard::RefreshLimits()
{
    vx_trade::CVXSimTradeService* service = Service();
    const unsigned long long account = AccountID();
    if (!service || account == 0) {
        m_model.SetAccountLimits(false, false, 0.0, 0);
        return;
    }
    m_model.SetAccountLimits(true, service->GetAccount(account).margin, service->Summary(account).buyingPower,
                             service->SellableQuantity(account, m_model.StockID()));
}

void CVXPlaceOrderSecuritiesPanelCard::SyncWidgets(bool quantityBox)
{
    m_bSyncing = true;
    const bool limit = m_model.Type() == EnOrderType::Limit;
    m_pBuy->setChecked(m_model.Side() == EnOrderSide::Buy);
    m_pSell->setChecked(m_model.Side() == EnOrderSide::Sell);
    m_pLimit->setChecked(limit);
    m_pMarket->setChecked(!limit);
    m_pPrice->setDecimals(DecimalsOf(m_model.TickSize()));
    m_pPrice->setSingleStep(m_model.TickSize());
    if (!m_pPrice->hasFocus() || !limit)
        m_pPrice->setValue(limit ? m_model.Price() : m_model.EffectivePrice());
    m_pPrice->setEnabled(limit && m_model.StockID() != 0);
    m_pQuantity->setSingleStep(m_model.LotSize());
    if (quantityBox)
        m_pQuantity->setValue(static_cast<int>(m_model.Quantity()));
    m_pQuantity->setEnabled(m_model.StockID() != 0);

    QString code;
    if (vx_md::CVXSimMarketData* feed = MarketData(); feed && m_model.StockID() != 0)
        code = QString::fromStdString(feed->GetSecurity(m_model.StockID()).code);
    m_pPlace->setText(SideText(m_model.Side()) + (code.isEmpty() ? QString() : QLatin1Char(' ') + code));
    m_pPlace->SetAccentKey(m_model.Side() == EnOrderSide::Buy ? "ct_buy" : "ct_sell");
    m_pPlace->setEnabled(m_model.StockID() != 0 && TradeService() != nullptr);
    m_bSyncing = false;
    update();
}

void CVXPlaceOrderSecuritiesPanelCard::SetSide(EnOrderSide side)
{
    m_model.SetSide(side);
    SyncWidgets();
}

void CVXPlaceOrderSecuritiesPanelCard::SetType(EnOrderType type)
{
    m_model.SetType(type);
    SyncWidgets();
}

CVXPlaceOrderSecuritiesPanelCard::Layout CVXPlaceOrderSecuritiesPanelCard::ComputeLayout() const
{
    Layout l;
    const int w = width() - 2 * kMargin;
    int y = kMargin;
    auto row = [&](int height, int gapAfter) {
        const QRect r(kMargin, y, w, height);
        y += height + gapAfter;
        return r;
    };
    l.account = row(24, 8);
    l.security = row(20, 2);
    l.bidAsk = row(18, 10);
    l.side = row(28, 6);
    l.type = row(24, 10);
    l.priceRow = row(26, 6);
    l.quantityRow = row(26, 8);
    l.amountRow = row(20, 2);
    l.maxRow = row(20, 10);
    // The main action and the answer follow the figures: a taller card leaves its room below,
    // so the eye never travels across an empty area from the quantity to the button.
    l.place = row(32, 6);
    l.result = row(36, 0);
    return l;
}

void CVXPlaceOrderSecuritiesPanelCard::resizeEvent(QResizeEvent* event)
{
    CVXOrderTicketCardBase::resizeEvent(event);
    const Layout l = ComputeLayout();
    AccountSelector()->setGeometry(l.account);
    const int half = (l.side.width() - 6) / 2;
    m_pBuy->setGeometry(l.side.left(), l.side.top(), half, l.side.height());
    m_pSell->setGeometry(l.side.right() + 1 - half, l.side.top(), half, l.side.height());
    m_pLimit->setGeometry(l.type.left(), l.type.top(), half, l.type.height());
    m_pMarket->setGeometry(l.type.right() + 1 - half, l.type.top(), half, l.type.height());
    m_pPrice->setGeometry(l.priceRow.adjusted(kLabelWidth, 0, 0, 0));
    m_pQuantity->setGeometry(l.quantityRow.adjusted(kLabelWidth, 0, 0, 0));
    m_pPlace->setGeometry(l.place);
}

void CVXPlaceOrderSecuritiesPanelCard::paintEvent(QPaintEvent*)
{
    // The service may have been installed since the last paint.
    if (AccountSelector()->AccountID() != AccountID())
        AccountSelector()->SetAccountID(AccountID());
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const Layout l = ComputeLayout();
    PaintQuote(painter, l);
    PaintFigures(painter, l);
    QRect result = l.result;
    if (!TradeService() && ResultText().isEmpty()) {
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(result, Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970339, "交易服务不可用"));
    } else {
        PaintResult(painter, result);
    }
}

void CVXPlaceOrderSecuritiesPanelCard::PaintQuote(QPainter& painter, const Layout& l)
{
    vx_md::CVXSimMarketData* feed = MarketData();
    if (!feed || m_model.StockID() == 0) {
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(l.security, Qt::AlignLeft | Qt::AlignVCenter,
                         core::langx::tr(970340, "无可交易的证券"));
        return;
    }
    const vx_md::SecurityInfo info = feed->GetSecurity(m_model.StockID());
    const vx_md::Quote quote = feed->GetQuote(m_model.StockID());
    const double change = quote.last - quote.prevClose;

    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(ThemeColor("ct_text_primary"));
    const QString code = QString::fromStdString(info.code);
    painter.drawText(l.security, Qt::AlignLeft | Qt::AlignVCenter, code);
    const int codeWidth = painter.fontMetrics().horizontalAdvance(code) + 6;

    const QString percent = quote.prevClose > 0 ? FormatPercent(change / quote.prevClose) : QString();
    const QString last = FormatPrice(quote.last, info.tickSize);
    painter.setPen(ChangeColor(change));
    const int percentWidth = painter.fontMetrics().horizontalAdvance(QStringLiteral("+00.00%"));
    painter.drawText(l.security, Qt::AlignRight | Qt::AlignVCenter, percent);
    const QRect lastRect = l.security.adjusted(0, 0, -percentWidth - 6, 0);
    painter.drawText(lastRect, Qt::AlignRight | Qt::AlignVCenter, last);
    const int lastWidth = painter.fontMetrics().horizontalAdvance(last) + percentWidth + 12;

    painter.setFont(font());
    painter.setPen(ThemeColor("ct_text_secondary"));
    const QRect nameRect = l.security.adjusted(codeWidth, 0, -lastWidth, 0);
    painter.drawText(nameRect, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(QString::fromStdString(info.name), Qt::ElideRight,
                                                      nameRect.width()));

    // Best bid on the left, best ask on the right, each with its volume.
    const vx_md::OrderBook book = feed->GetOrderBook(m_model.StockID());
    auto side = [&](const QRect& r, const QString& label, const std::vector<vx_md::BookLevel>& levels,
                    const char* colour, Qt::Alignment align) {
        QString text = label + QLatin1Char(' ');
        if (levels.empty()) {
            text += QStringLiteral("--");
        } else {
            text += FormatPrice(levels.front().price, info.tickSize);
            // The volume goes first when the half of a narrow card has no room for it.
            const QString volume = QStringLiteral("  ") + FormatVolume(levels.front().volume);
            if (painter.fontMetrics().horizontalAdvance(text + volume) <= r.width())
                text += volume;
        }
        painter.setPen(ThemeColor(colour));
        painter.drawText(r, align | Qt::AlignVCenter, text);
    };
    const int half = l.bidAsk.width() / 2;
    side(QRect(l.bidAsk.left(), l.bidAsk.top(), half - 4, l.bidAsk.height()), core::langx::tr(970341, "买价"),
         book.bids, "ct_buy", Qt::AlignLeft);
    side(QRect(l.bidAsk.left() + half + 4, l.bidAsk.top(), half - 4, l.bidAsk.height()),
         core::langx::tr(970342, "卖价"), book.asks, "ct_sell", Qt::AlignRight);
}

void CVXPlaceOrderSecuritiesPanelCard::PaintFigures(QPainter& painter, const Layout& l)
{
    painter.setPen(ThemeColor("ct_text_secondary"));
    painter.drawText(l.priceRow.adjusted(0, 0, -(l.priceRow.width() - kLabelWidth), 0),
                     Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970330, "价格"));
    painter.drawText(l.quantityRow.adjusted(0, 0, -(l.quantityRow.width() - kLabelWidth), 0),
                     Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970331, "数量"));
    painter.drawText(l.amountRow, Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970332, "预估金额"));
    const bool buy = m_model.Side() == EnOrderSide::Buy;
    QString maxLabel = buy ? core::langx::tr(970333, "最大可买") : core::langx::tr(970334, "最大可卖");
    if (m_model.StockID() != 0)
        maxLabel += QStringLiteral("  ") + core::langx::tr(970343, "(每手 %1)").arg(m_model.LotSize());
    painter.drawText(l.maxRow, Qt::AlignLeft | Qt::AlignVCenter, maxLabel);

    const bool known = m_model.StockID() != 0 && m_model.EffectivePrice() > 0.0;
    QFont figures = font();
    figures.setBold(true);
    painter.setFont(figures);
    painter.setPen(ThemeColor("ct_text_primary"));
    const QLocale locale(QLocale::English);
    painter.drawText(l.amountRow, Qt::AlignRight | Qt::AlignVCenter,
                     known ? locale.toString(m_model.EstimatedAmount(), 'f', 2) : QStringLiteral("--"));
    const bool over = m_model.Issue() == CVXOrderTicketModel::EnIssue::OverMaximum;
    painter.setPen(over ? ThemeColor("ct_rise") : ThemeColor("ct_text_primary"));
    painter.drawText(l.maxRow, Qt::AlignRight | Qt::AlignVCenter,
                     known && AccountID() != 0 ? locale.toString(m_model.MaxQuantity())
                                               : QStringLiteral("--"));
    painter.setFont(font());
}

} // namespace vx_ws
