#include "apps/Workspace/TradeCards/ComboOptionPanelCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"
#include "apps/Workspace/TradeCards/OrderTicketButton.h"

#include "UIFrame/Canvas/PanelTradeRequests.h"
#include "UIFrame/CardEvents.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QPainter>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>

namespace vx_ws {

using vx_trade::EnOrderSide;

namespace {

constexpr int kMargin = 8;
constexpr int kToolbarHeight = 24;
constexpr int kLegHeight = 26;
constexpr int kSideWidth = 44;
constexpr int kRatioWidth = 42;
// Below this width for the option's name the theoretical price column is left out.
constexpr int kMinNameWidth = 84;
constexpr int kGap = 6;
constexpr int kOrderHeight = 28;
constexpr int kQuantityWidth = 96;
constexpr int kMaxPlaceWidth = 220;
constexpr int kMaxSelectorWidth = 260;
const QString kQuantityKey = QStringLiteral("Quantity");

QString SideText(EnOrderSide side)
{
    return side == EnOrderSide::Buy ? core::langx::tr(970321, "买入") : core::langx::tr(970322, "卖出");
}

QString LegName(const ComboLegQuote& quote)
{
    const QString strike = QString::number(quote.strike, 'f', quote.strike < 10.0 ? 3 : 1);
    return (quote.call ? QStringLiteral("C ") : QStringLiteral("P ")) + strike + QStringLiteral("  ") +
           QString::number(quote.expiryDays) + QLatin1Char('D');
}

} // namespace

struct CVXComboOptionPanelCard::Layout
{
    QRect toolbar;
    QRect underlying;
    QRect header;
    int legsTop = 0;
    QRect net;
    QRect order; // the row of the quantity and Place
    QRect quantityLabel;
    QRect quantity;
    QRect place;
    QRect result;
    // Column edges of the leg table.
    int sideX = 0, nameX = 0, nameW = 0, ratioX = 0, theoX = 0, bidX = 0, askX = 0, numW = 0;
};

CVXCardBaseStyle CVXComboOptionPanelCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(259423, "期权交易"), QSize(360, 320), QSize(300, 260),
                         QSize(5000, 5000));
}

CVXComboOptionPanelCard::CVXComboOptionPanelCard(EnVXCardPos pos, QWidget* parent)
    : TplVXWorkspaceCard(pos, parent)
{
    m_pChain = new CVXOrderTicketButton(core::langx::tr(970360, "期权链"), "ct_selected", this);
    connect(m_pChain, &QAbstractButton::clicked, this, &CVXComboOptionPanelCard::OpenOptionChain);
    m_pQuantity = new QSpinBox(this);
    m_pQuantity->setRange(1, 100000);
    m_pQuantity->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    vx_ui_res::Provider::Instance().FollowTheme(m_pQuantity);
    connect(m_pQuantity, QOverload<int>::of(&QSpinBox::valueChanged), this, [this] { update(); });
    m_pPlace = new CVXOrderTicketButton(core::langx::tr(970370, "下单"), "ct_selected", this);
    m_pPlace->SetSolid(true);
    connect(m_pPlace, &QAbstractButton::clicked, this, [this] { PlaceOrder(); });
    SyncLegWidgets();
}

CVXComboOptionPanelCard::~CVXComboOptionPanelCard() = default;

void CVXComboOptionPanelCard::SetComboOptionInfo(const CVXVariantMapTree& info)
{
    CVXOrderTicketCardBase::SetComboOptionInfo(info);
    ApplyCombo(info);
}

void CVXComboOptionPanelCard::SetObjProperty(const QString& cardType, const CVXVariantMapTree& property)
{
    CVXOrderTicketCardBase::SetObjProperty(cardType, property);
    const QString comboKey = QString::fromLatin1(panel_trade_request::kComboOptionInfo);
    if (property.Contains(comboKey))
        SetComboOptionInfo(property.Get<CVXVariantMapTree>(comboKey));
    const long long quantity =
        property.Get<qlonglong>(QString::fromLatin1(panel_trade_request::kQuantity), 0);
    if (quantity > 0)
        m_pQuantity->setValue(static_cast<int>(quantity));
}

void CVXComboOptionPanelCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    data->Set<CVXVariantMapTree>(QString::fromLatin1(panel_trade_request::kComboOptionInfo),
                                 m_model.ToTree());
    data->Set<qlonglong>(kQuantityKey, m_pQuantity->value());
}

void CVXComboOptionPanelCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    const QString comboKey = QString::fromLatin1(panel_trade_request::kComboOptionInfo);
    if (data.Contains(comboKey))
        ApplyCombo(data.Get<CVXVariantMapTree>(comboKey));
    const long long quantity = data.Get<qlonglong>(kQuantityKey, 0);
    if (quantity > 0)
        m_pQuantity->setValue(static_cast<int>(quantity));
}

void CVXComboOptionPanelCard::ApplyCombo(const CVXVariantMapTree& info)
{
    m_model.SetFromTree(info);
    std::vector<unsigned long> ids;
    for (const vx_trade::ComboLeg& leg : m_model.Legs())
        ids.push_back(leg.optionId);
    if (m_model.UnderlyingID() != 0)
        ids.push_back(m_model.UnderlyingID());
    SetExtraSubscriptions(ids);
    SetResult(QString(), false);
    RebuildLegWidgets();
}

std::vector<ComboLegQuote> CVXComboOptionPanelCard::Quotes() const
{
    vx_md::CVXSimMarketData* feed = MarketData();
    return feed ? m_model.Quote(*feed) : std::vector<ComboLegQuote>{};
}

ComboNetPrice CVXComboOptionPanelCard::NetPrice() const
{
    return CVXComboOptionPanelModel::NetPrice(Quotes());
}

std::vector<vx_trade::Order> CVXComboOptionPanelCard::PlaceOrder()
{
    vx_trade::CVXSimTradeService* service = Service();
    if (!service) {
        SetResult(core::langx::tr(970339, "交易服务不可用"), true);
        return {};
    }
    if (m_model.IsEmpty())
        return {};
    const std::vector<vx_trade::Order> orders =
        service->PlaceComboOrder(AccountID(), m_model.Legs(), m_pQuantity->value());
    ShowOrdersResult(orders, 0.001);
    return orders;
}

void CVXComboOptionPanelCard::OpenOptionChain()
{
    CardEventPlaceOrderComboOptionOpenOptionChain event;
    event.request.u64UnderlyingStockID = UnderlyingID();
    event.request.comboOptionInfo = m_model.ToTree();
    event.request.accountInfo = vx_trade::CVXSimTradeService::MakeAccountTree(AccountID());
    core::ui_event::DispatchCardEvent(this, &event, false);
}

unsigned long CVXComboOptionPanelCard::UnderlyingID() const
{
    if (m_model.UnderlyingID() != 0)
        return m_model.UnderlyingID();
    // Legs without an underlying in the tree: the first leg's option names it.
    vx_md::CVXSimMarketData* feed = MarketData();
    if (feed && !m_model.IsEmpty() && feed->Contains(m_model.Legs().front().optionId))
        return feed->GetSecurity(m_model.Legs().front().optionId).underlyingId;
    return ShownStockID();
}

void CVXComboOptionPanelCard::OnMarketDataChanged(const std::set<unsigned long>& /*stockIDs*/)
{
    update();
}

void CVXComboOptionPanelCard::RebuildLegWidgets()
{
    for (CVXOrderTicketButton* button : m_sideButtons)
        delete button;
    for (QSpinBox* box : m_ratioBoxes)
        delete box;
    m_sideButtons.clear();
    m_ratioBoxes.clear();
    for (std::size_t i = 0; i < m_model.Legs().size(); ++i) {
        const int index = static_cast<int>(i);
        auto* side = new CVXOrderTicketButton(QString(), "ct_buy", this);
        side->SetSolid(true);
        connect(side, &QAbstractButton::clicked, this, [this, index] {
            m_model.ToggleSide(index);
            SyncLegWidgets();
        });
        auto* ratio = new QSpinBox(this);
        ratio->setRange(1, 99);
        ratio->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        vx_ui_res::Provider::Instance().FollowTheme(ratio);
        connect(ratio, QOverload<int>::of(&QSpinBox::valueChanged), this, [this, index](int value) {
            m_model.SetRatio(index, value);
            update();
        });
        m_sideButtons.push_back(side);
        m_ratioBoxes.push_back(ratio);
        side->show();
        ratio->show();
    }
    SyncLegWidgets();
    PlaceWidgets();
}

void CVXComboOptionPanelCard::SyncLegWidgets()
{
    for (std::size_t i = 0; i < m_sideButtons.size() && i < m_model.Legs().size(); ++i) {
        const vx_trade::ComboLeg& leg = m_model.Legs()[i];
        m_sideButtons[i]->setText(SideText(leg.side));
        m_sideButtons[i]->SetAccentKey(leg.side == EnOrderSide::Buy ? "ct_buy" : "ct_sell");
        const QSignalBlocker blocker(m_ratioBoxes[i]);
        m_ratioBoxes[i]->setValue(leg.ratio);
    }
    const bool hasLegs = !m_model.IsEmpty();
    m_pQuantity->setVisible(hasLegs);
    m_pPlace->setVisible(hasLegs);
    m_pPlace->setEnabled(hasLegs && TradeService() != nullptr);
    update();
}

CVXComboOptionPanelCard::Layout CVXComboOptionPanelCard::ComputeLayout() const
{
    Layout l;
    const int w = width() - 2 * kMargin;
    int y = kMargin;
    auto row = [&](int rowHeight, int gapAfter) {
        const QRect r(kMargin, y, w, rowHeight);
        y += rowHeight + gapAfter;
        return r;
    };
    l.toolbar = row(kToolbarHeight, kGap + 2);
    l.underlying = row(20, 4);
    l.header = row(20, 2);
    l.legsTop = y;
    const int legCount = static_cast<int>(m_model.Legs().size());
    y += legCount * kLegHeight + kGap + 2;
    // The rows follow one another from the top; a taller card leaves its extra room below.
    l.net = row(22, kGap + 2);
    l.order = row(kOrderHeight, kGap);
    l.result = row(20, 0);
    if (legCount == 0)
        l.result.moveTop(std::max(l.header.bottom() + 1, height() - kMargin - l.result.height()));

    l.numW = std::max(44, w * 14 / 100);
    l.sideX = kMargin;
    l.nameX = l.sideX + kSideWidth + kGap;
    l.askX = kMargin + w - l.numW;
    l.bidX = l.askX - l.numW;
    l.theoX = l.bidX - l.numW;
    l.ratioX = l.theoX - kGap - kRatioWidth;
    l.nameW = l.ratioX - kGap - l.nameX;
    if (l.nameW < kMinNameWidth) {
        l.theoX = -1;
        l.ratioX = l.bidX - kGap - kRatioWidth;
        l.nameW = l.ratioX - kGap - l.nameX;
    }

    // The order row: "Quantity" [box] on the left, the order button ending at the table's right
    // edge, as wide as the room allows up to a ticket button's width.
    const int labelWidth = fontMetrics().horizontalAdvance(core::langx::tr(970331, "数量")) + kGap;
    l.quantityLabel = QRect(l.order.left(), l.order.top(), labelWidth, l.order.height());
    l.quantity = QRect(l.quantityLabel.right() + 1, l.order.top(), kQuantityWidth, l.order.height());
    const int room = l.order.right() - l.quantity.right() - 2 * kGap;
    const int placeWidth = std::max(0, std::min(kMaxPlaceWidth, room));
    l.place = QRect(l.order.right() + 1 - placeWidth, l.order.top(), placeWidth, l.order.height());
    return l;
}

void CVXComboOptionPanelCard::PlaceWidgets()
{
    const Layout l = ComputeLayout();
    const int chainWidth = std::max(80, m_pChain->sizeHint().width());
    // The account name needs no more than a ticket's width, however wide the card.
    const int selectorWidth = std::min(kMaxSelectorWidth, l.toolbar.width() - chainWidth - kGap);
    AccountSelector()->setGeometry(l.toolbar.left(), l.toolbar.top(), selectorWidth, l.toolbar.height());
    m_pChain->setGeometry(l.toolbar.right() + 1 - chainWidth, l.toolbar.top(), chainWidth,
                          l.toolbar.height());
    for (std::size_t i = 0; i < m_sideButtons.size(); ++i) {
        const int top = l.legsTop + static_cast<int>(i) * kLegHeight + 2;
        m_sideButtons[i]->setGeometry(l.sideX, top, kSideWidth, kLegHeight - 4);
        m_ratioBoxes[i]->setGeometry(l.ratioX, top, kRatioWidth, kLegHeight - 4);
    }
    m_pQuantity->setGeometry(l.quantity);
    m_pPlace->setGeometry(l.place);
}

void CVXComboOptionPanelCard::resizeEvent(QResizeEvent* event)
{
    CVXOrderTicketCardBase::resizeEvent(event);
    PlaceWidgets();
}

void CVXComboOptionPanelCard::paintEvent(QPaintEvent*)
{
    if (AccountSelector()->AccountID() != AccountID())
        AccountSelector()->SetAccountID(AccountID());
    if (m_pPlace->isEnabled() != (!m_model.IsEmpty() && TradeService() != nullptr))
        m_pPlace->setEnabled(!m_model.IsEmpty() && TradeService() != nullptr);
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const Layout l = ComputeLayout();

    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long underlying = UnderlyingID();
    if (feed && feed->Contains(underlying)) {
        const vx_md::SecurityInfo info = feed->GetSecurity(underlying);
        const vx_md::Quote quote = feed->GetQuote(underlying);
        QFont bold = font();
        bold.setBold(true);
        painter.setFont(bold);
        painter.setPen(ThemeColor("ct_text_primary"));
        const QString code = QString::fromStdString(info.code);
        painter.drawText(l.underlying, Qt::AlignLeft | Qt::AlignVCenter, code);
        const int codeWidth = painter.fontMetrics().horizontalAdvance(code) + 6;
        painter.setPen(ChangeColor(quote.last - quote.prevClose));
        const QString last =
            FormatPrice(quote.last, info.tickSize) + QStringLiteral("  ") +
            (quote.prevClose > 0 ? FormatPercent(quote.last / quote.prevClose - 1.0) : QString());
        painter.drawText(l.underlying, Qt::AlignRight | Qt::AlignVCenter, last);
        const int lastWidth = painter.fontMetrics().horizontalAdvance(last) + 8;
        painter.setFont(font());
        painter.setPen(ThemeColor("ct_text_secondary"));
        const QRect name = l.underlying.adjusted(codeWidth, 0, -lastWidth, 0);
        painter.drawText(name, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(QString::fromStdString(info.name), Qt::ElideRight,
                                                          name.width()));
    }

    if (m_model.IsEmpty()) {
        painter.setPen(ThemeColor("ct_text_secondary"));
        const QRect empty(l.header.left(), l.header.top(), l.header.width(), l.result.top() - l.header.top());
        painter.drawText(
            empty, Qt::AlignCenter | Qt::TextWordWrap,
            core::langx::tr(970369, "还没有期权腿。\n请点击“期权链”，在期权链中选择期权组成策略。"));
    } else {
        const std::vector<ComboLegQuote> quotes = Quotes();
        PaintLegs(painter, l, quotes);
        PaintNet(painter, l, quotes);
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(l.quantityLabel, Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970331, "数量"));
    }
    if (!TradeService() && ResultText().isEmpty()) {
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(l.result, Qt::AlignLeft | Qt::AlignVCenter,
                         core::langx::tr(970339, "交易服务不可用"));
    } else {
        PaintResult(painter, l.result);
    }
}

void CVXComboOptionPanelCard::PaintLegs(QPainter& painter, const Layout& l,
                                        const std::vector<ComboLegQuote>& quotes)
{
    painter.fillRect(l.header, ThemeColor("ct_bg_secondary"));
    painter.setPen(ThemeColor("ct_text_secondary"));
    auto headerCell = [&](int x, int w, const QString& text, Qt::Alignment align) {
        painter.drawText(QRect(x, l.header.top(), w, l.header.height()), align | Qt::AlignVCenter, text);
    };
    headerCell(l.sideX + 4, kSideWidth, core::langx::tr(970361, "方向"), Qt::AlignLeft);
    headerCell(l.nameX, l.nameW, core::langx::tr(970362, "合约"), Qt::AlignLeft);
    headerCell(l.ratioX, kRatioWidth - 4, core::langx::tr(970363, "比例"), Qt::AlignRight);
    if (l.theoX >= 0)
        headerCell(l.theoX, l.numW - 4, core::langx::tr(970364, "理论价"), Qt::AlignRight);
    headerCell(l.bidX, l.numW - 4, core::langx::tr(970341, "买价"), Qt::AlignRight);
    headerCell(l.askX, l.numW - 4, core::langx::tr(970342, "卖价"), Qt::AlignRight);

    for (std::size_t i = 0; i < quotes.size(); ++i) {
        const ComboLegQuote& q = quotes[i];
        const int top = l.legsTop + static_cast<int>(i) * kLegHeight;
        auto cell = [&](int x, int w, const QString& text, Qt::Alignment align) {
            painter.drawText(QRect(x, top, w, kLegHeight), align | Qt::AlignVCenter, text);
        };
        painter.setPen(ThemeColor("ct_text_primary"));
        // The exchange code when it fits, else the short form (right, strike, days to expiry).
        const QString code = QString::fromStdString(q.code);
        const QString name = painter.fontMetrics().horizontalAdvance(code) <= l.nameW ? code : LegName(q);
        cell(l.nameX, l.nameW, painter.fontMetrics().elidedText(name, Qt::ElideRight, l.nameW),
             Qt::AlignLeft);
        painter.setPen(ThemeColor("ct_text_secondary"));
        if (l.theoX >= 0)
            cell(l.theoX, l.numW - 4, FormatPrice(q.theoretical, q.tickSize), Qt::AlignRight);
        // The price the leg trades at is the emphasised one: the ask for a buy, the bid for a sell.
        const bool buy = q.leg.side == EnOrderSide::Buy;
        painter.setPen(ThemeColor(buy ? "ct_text_secondary" : "ct_sell"));
        cell(l.bidX, l.numW - 4, q.bid > 0 ? FormatPrice(q.bid, q.tickSize) : QStringLiteral("--"),
             Qt::AlignRight);
        painter.setPen(ThemeColor(buy ? "ct_buy" : "ct_text_secondary"));
        cell(l.askX, l.numW - 4, q.ask > 0 ? FormatPrice(q.ask, q.tickSize) : QStringLiteral("--"),
             Qt::AlignRight);
        painter.setPen(ThemeColor("ct_divider"));
        painter.drawLine(l.header.left(), top + kLegHeight - 1, l.header.right(), top + kLegHeight - 1);
    }
}

void CVXComboOptionPanelCard::PaintNet(QPainter& painter, const Layout& l,
                                       const std::vector<ComboLegQuote>& quotes)
{
    const ComboNetPrice net = CVXComboOptionPanelModel::NetPrice(quotes);
    const double tick = quotes.empty() ? 0.001 : quotes.front().tickSize;
    painter.setPen(ThemeColor("ct_text_secondary"));
    const QString theo = core::langx::tr(970371, "理论 %1").arg(FormatPrice(std::abs(net.theoretical), tick));
    painter.drawText(l.net, Qt::AlignRight | Qt::AlignVCenter, theo);
    painter.drawText(l.net, Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970366, "净价"));
    const int labelWidth = painter.fontMetrics().horizontalAdvance(core::langx::tr(970366, "净价")) + 10;
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    QString text = QStringLiteral("--");
    if (net.complete) {
        const QString kind =
            net.market >= 0 ? core::langx::tr(970367, "借方") : core::langx::tr(970368, "贷方");
        text = FormatPrice(std::abs(net.market), tick) + QStringLiteral("  ") + kind;
    }
    painter.setPen(net.complete ? ThemeColor(net.market >= 0 ? "ct_buy" : "ct_sell")
                                : ThemeColor("ct_text_secondary"));
    painter.drawText(l.net.adjusted(labelWidth, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text);
    painter.setFont(font());
}

} // namespace vx_ws
