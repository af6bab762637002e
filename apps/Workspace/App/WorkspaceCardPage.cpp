#include "apps/Workspace/App/WorkspaceCardPage.h"

#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/AccountCardBase.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"

#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/TabFrame/TabFramePageFactory.h"

#include "Platform/Core/Log.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QSplitter>
#include <QVBoxLayout>

namespace vx_ws {

namespace {

CVXWorkspaceCardPage::Node Card(const char* type)
{
    CVXWorkspaceCardPage::Node node;
    node.cardType = QString::fromLatin1(type);
    return node;
}

CVXWorkspaceCardPage::Node Split(Qt::Orientation orientation, QVector<CVXWorkspaceCardPage::Node> children,
                                 QList<int> sizes)
{
    CVXWorkspaceCardPage::Node node;
    node.orientation = orientation;
    node.children = std::move(children);
    node.sizes = std::move(sizes);
    return node;
}

class CPageFactory : public CVXTabFramePageFactory::PageFactory
{
public:
    CPageFactory(EnVXTabFrameKey key, CVXWorkspaceCardPage::Node (*arrangement)())
        : m_key(key), m_arrangement(arrangement)
    {
    }
    CVXTabFramePageBase* create() const override { return new CVXWorkspaceCardPage(m_key, m_arrangement()); }

private:
    EnVXTabFrameKey m_key;
    CVXWorkspaceCardPage::Node (*m_arrangement)();
};

// The splitter handles are the only gaps between cards: a thin line in the divider colour.
void PaintSplitterHandles(QSplitter* splitter)
{
    QPalette palette = splitter->palette();
    palette.setColor(QPalette::Window,
                     vx_ui_res::Provider::Instance().GetColor(QStringLiteral("ct_divider")));
    splitter->setPalette(palette);
}

void StyleSplitter(QSplitter* splitter)
{
    splitter->setHandleWidth(1);
    splitter->setChildrenCollapsible(false);
    splitter->setAutoFillBackground(true);
    PaintSplitterHandles(splitter);
    QObject::connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, splitter,
                     [splitter]() { PaintSplitterHandles(splitter); });
}

} // namespace

CVXWorkspaceCardPage::Node CVXWorkspaceCardPage::WatchListArrangement()
{
    const Node right = Split(Qt::Vertical,
                             {Card("StockHeader"), Card("KLine"),
                              Split(Qt::Horizontal, {Card("OrderBook"), Card("Ticks")}, {1, 1})},
                             {90, 330, 280});
    return Split(Qt::Horizontal, {Card("Watchlist"), right}, {340, 900});
}

CVXWorkspaceCardPage::Node CVXWorkspaceCardPage::AccountArrangement()
{
    // The positions table needs about half the width its nine columns got across the whole
    // page; the order tables, with more columns, take the rest.
    const Node left =
        Split(Qt::Vertical, {Card("SecuritiesAccInfo"), Card("SecuritiesTradePosition")}, {230, 470});
    const Node right =
        Split(Qt::Vertical, {Card("SecuritiesTradeOrders"), Card("TradeHistoryOrders")}, {1, 1});
    return Split(Qt::Horizontal, {left, right}, {560, 720});
}

void CVXWorkspaceCardPage::RegisterPageFactories()
{
    CVXTabFramePageFactory::Instance().Register(
        TabFrameKey_WatchList, std::make_shared<CPageFactory>(TabFrameKey_WatchList, &WatchListArrangement));
    CVXTabFramePageFactory::Instance().Register(
        TabFrameKey_Account, std::make_shared<CPageFactory>(TabFrameKey_Account, &AccountArrangement));
}

void CVXWorkspaceCardPage::UnRegisterPageFactories()
{
    CVXTabFramePageFactory::Instance().Register(TabFrameKey_WatchList, nullptr);
    CVXTabFramePageFactory::Instance().Register(TabFrameKey_Account, nullptr);
}

CVXWorkspaceCardPage::CVXWorkspaceCardPage(EnVXTabFrameKey key, Node arrangement, QWidget* parent)
    : CVXTabFramePageBase(parent), m_key(key), m_arrangement(std::move(arrangement))
{
}

CVXWorkspaceCardPage::~CVXWorkspaceCardPage() = default;

void CVXWorkspaceCardPage::Init()
{
    if (layout())
        return;
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(0);
    box->addWidget(Build(m_arrangement, this));
    SetUpAccountPicker();
}

void CVXWorkspaceCardPage::SetUpAccountPicker()
{
    for (CVXCardObjBase* card : m_cards) {
        auto* accountCard = qobject_cast<CVXAccountCardBase*>(card);
        if (!accountCard)
            continue;
        if (!m_pAccountPicker) {
            m_pAccountPicker = accountCard->AccountSelector();
            connect(m_pAccountPicker, &CVXAccountSelector::AccountPicked, this,
                    &CVXWorkspaceCardPage::ShowAccount);
        } else {
            accountCard->AccountSelector()->hide();
        }
    }
}

void CVXWorkspaceCardPage::ShowAccount(unsigned long long accountId)
{
    if (accountId == 0)
        return;
    m_accountId = accountId;
    const CVXVariantMapTree info = vx_trade::CVXSimTradeService::MakeAccountTree(accountId);
    for (CVXCardObjBase* card : m_cards)
        card->SetAccountInfo(info);
}

void CVXWorkspaceCardPage::OnCardEventAccountInfoChanged(const CVXVariantMapTree& accountInfo)
{
    ShowAccount(vx_trade::CVXSimTradeService::AccountIDFromTree(accountInfo));
}

QWidget* CVXWorkspaceCardPage::Build(const Node& node, QWidget* parent)
{
    if (!node.cardType.isEmpty()) {
        CVXCardObjBase* card = CVXCardFactoryMgr::Instance().CreateCard(node.cardType, CardPos_TabFramePage,
                                                                        m_key, CVXVariantMapTree(), parent);
        if (!card) {
            VXLOG_WARN("CVXWorkspaceCardPage::Build: no card of type '{}'", node.cardType);
            return new QWidget(parent);
        }
        m_cards.append(card);
        return card;
    }
    auto* splitter = new QSplitter(node.orientation, parent);
    StyleSplitter(splitter);
    for (const Node& child : node.children)
        splitter->addWidget(Build(child, splitter));
    if (!node.sizes.isEmpty())
        splitter->setSizes(node.sizes);
    for (int i = 0; i < node.sizes.size() && i < splitter->count(); ++i)
        splitter->setStretchFactor(i, node.sizes.at(i));
    return splitter;
}

QList<CVXCardObjBase*> CVXWorkspaceCardPage::Cards() const
{
    return m_cards;
}

CVXCardObjBase* CVXWorkspaceCardPage::FindCard(const QString& cardType) const
{
    for (CVXCardObjBase* card : m_cards) {
        if (card->GetCardObjType() == cardType)
            return card;
    }
    return nullptr;
}

void CVXWorkspaceCardPage::ShowStock(unsigned long long stockId)
{
    if (stockId == 0)
        return;
    m_stockId = stockId;
    for (CVXCardObjBase* card : m_cards)
        card->SetStockID(stockId);
}

void CVXWorkspaceCardPage::OnCardEventStockIDChanged(unsigned long long stockID)
{
    if (stockID != 0)
        m_stockId = stockID;
}

} // namespace vx_ws
