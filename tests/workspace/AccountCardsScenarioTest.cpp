// The account cards as a user meets them: real feed, real trade service, real widgets on the
// offscreen platform, real mouse input, a real canvas with a linkage group. Expected values come
// from the feed's own book and quotes and from the service's own records.

#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/AccInfoCard.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"
#include "apps/Workspace/TradeCards/HistoryOrdersCard.h"
#include "apps/Workspace/TradeCards/OrdersCard.h"
#include "apps/Workspace/TradeCards/PositionCard.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/Canvas/PanelTradeRequests.h"
#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardTypes.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/StdUI/Menu.h"
#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"
#include "tests/workspace/WorkspaceTestSupport.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

#include <cmath>
#include <memory>

using namespace vx_ws;
using vx_trade::EnOrderSide;
using vx_trade::EnOrderStatus;
using vx_trade::EnOrderType;

namespace {

constexpr unsigned long kFreshStock = 1006; // held by no account at the start
constexpr unsigned long kOtherStock = 1008;

// Stands in for the order panel the canvas opens: it keeps what it was opened with.
class COrderPanelProbe : public CVXCardObjBase
{
public:
    static constexpr const char* kCardType = trade_card_type::TradePlaceOrderSecuritiesPanel;
    explicit COrderPanelProbe(EnVXCardPos pos, QWidget* parent = nullptr) : CVXCardObjBase(pos, parent) {}
    QString GetCardObjType() override { return QString::fromLatin1(kCardType); }
};

class AccountCardsScenarioTest : public workspace_test::CFeedTest
{
protected:
    AccountCardsScenarioTest() : CFeedTest(20240611) {}

    void SetUp() override
    {
        CFeedTest::SetUp();
        SetTradeService(service.get());
        RegisterAccountCards();
        account = service->DefaultAccountID();
        ASSERT_NE(account, 0u);
        for (const vx_trade::AccountInfo& info : service->Accounts()) {
            if (info.id != account)
                otherAccount = info.id;
        }
        ASSERT_NE(otherAccount, 0u);
    }

    void TearDown() override
    {
        widgets.clear();
        board.reset();
        // Cards shown on their own may have joined the registries too.
        workspace_test::FlushDeletes();
        workspace_test::ResetCanvasRegistries();
        workspace_test::UnregisterCards({QString::fromLatin1(CVXPositionCard::kCardType),
                                         QString::fromLatin1(CVXOrdersCard::kCardType),
                                         QString::fromLatin1(CVXHistoryOrdersCard::kCardType),
                                         QString::fromLatin1(CVXAccInfoCard::kCardType),
                                         QString::fromLatin1(COrderPanelProbe::kCardType)});
        SetTradeService(nullptr);
        service.reset();
        CFeedTest::TearDown();
    }

    template <typename Card> Card* ShowCard(QSize size = Card::StaticCardStyle().idealSize)
    {
        auto card = std::make_unique<Card>(CardPos_PanelBox);
        card->resize(size);
        card->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(card.get()));
        Card* raw = card.get();
        widgets.push_back(std::move(card));
        return raw;
    }

    CVXPanelScrollView* ShowCanvas()
    {
        board = std::make_unique<workspace_test::CTestCanvas>(QSize(1300, 800));
        canvas = board->View();
        return canvas;
    }

    template <typename Card> Card* AddBox(const char* type, const QString& group)
    {
        CVXPanelAtomizationBox* box = board->AddBox(type, group);
        return box ? dynamic_cast<Card*>(box->GetCurrentCard()) : nullptr;
    }

    static CVXPanelAtomizationBox* BoxOf(QWidget* card)
    {
        for (QWidget* w = card; w; w = w->parentWidget()) {
            if (auto* box = qobject_cast<CVXPanelAtomizationBox*>(w))
                return box;
        }
        return nullptr;
    }

    static void ClickAt(QWidget* widget, QPoint pos)
    {
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, pos);
        QCoreApplication::processEvents();
    }

    long long Lot(unsigned long id) const { return std::max(1, feed.GetSecurity(id).lotSize); }
    double Tick(unsigned long id) const { return feed.GetSecurity(id).tickSize; }
    // A limit buy well below the market, so that it keeps working.
    vx_trade::Order PlaceRestingBuy(unsigned long id, long long lots = 1)
    {
        const double bid = feed.GetOrderBook(id).bids.at(0).price;
        const double price = std::round((bid - 20 * Tick(id)) / Tick(id)) * Tick(id);
        return service->PlaceOrder(account, id, EnOrderSide::Buy, EnOrderType::Limit, price, lots * Lot(id));
    }

    // A copy: the service hands out its lists by value.
    static std::optional<vx_trade::Order> FindOrder(const std::vector<vx_trade::Order>& orders,
                                                    unsigned long long id)
    {
        for (const vx_trade::Order& order : orders) {
            if (order.orderId == id)
                return order;
        }
        return std::nullopt;
    }

    static const PositionRow* FindRow(const std::vector<PositionRow>& rows, unsigned long stockId)
    {
        for (const PositionRow& row : rows) {
            if (row.stockId == stockId)
                return &row;
        }
        return nullptr;
    }

    std::unique_ptr<vx_trade::CVXSimTradeService> service =
        std::make_unique<vx_trade::CVXSimTradeService>(&feed);
    unsigned long long account = 0;
    unsigned long long otherAccount = 0;
    std::vector<std::unique_ptr<QWidget>> widgets;
    std::unique_ptr<workspace_test::CTestCanvas> board;
    CVXPanelScrollView* canvas = nullptr;
};

} // namespace

TEST_F(AccountCardsScenarioTest, ABuyShowsInTheOrdersAndOnceFilledInThePositionsAndTheAccount)
{
    auto* orders = ShowCard<CVXOrdersCard>();
    auto* positions = ShowCard<CVXPositionCard>();
    auto* info = ShowCard<CVXAccInfoCard>();
    EXPECT_EQ(orders->AccountID(), account);
    EXPECT_EQ(FindRow(positions->Rows(), kFreshStock), nullptr);
    const double cashBefore = service->Summary(account).cash;
    const QImage positionsBefore = positions->grab().toImage();

    // A resting limit buy: listed first, working, with a cancel cell; no position yet.
    const vx_trade::Order resting = PlaceRestingBuy(kFreshStock, 2);
    ASSERT_EQ(resting.status, EnOrderStatus::Working) << resting.rejectReason;
    ASSERT_GE(orders->Table().RowCount(), 1);
    EXPECT_EQ(orders->Table().Row(0).key, resting.orderId);
    EXPECT_FALSE(orders->Table().CellText(0, orders->CancelColumn()).isEmpty());
    EXPECT_EQ(FindRow(positions->Rows(), kFreshStock), nullptr);

    // A market buy of 3 lots fills at once at the best ask.
    const double ask = feed.GetOrderBook(kFreshStock).asks.at(0).price;
    const long long quantity = 3 * Lot(kFreshStock);
    const vx_trade::Order market =
        service->PlaceOrder(account, kFreshStock, EnOrderSide::Buy, EnOrderType::Market, 0, quantity);
    ASSERT_EQ(market.status, EnOrderStatus::Filled) << market.rejectReason;
    EXPECT_EQ(orders->Table().Row(0).key, market.orderId);
    EXPECT_TRUE(orders->Table().CellText(0, orders->CancelColumn()).isEmpty()); // nothing left to cancel

    const PositionRow* row = FindRow(positions->Rows(), kFreshStock);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->quantity, quantity);
    EXPECT_NEAR(row->averageCost, ask, 1e-9);
    EXPECT_EQ(row->code, QString::fromStdString(feed.GetSecurity(kFreshStock).code));
    const int viewRow = positions->Table().ViewRowOfKey(kFreshStock);
    ASSERT_GE(viewRow, 0);
    EXPECT_EQ(positions->Table().CellText(viewRow, 2), QLocale(QLocale::English).toString(quantity));
    EXPECT_NE(positions->grab().toImage(), positionsBefore);

    // The new position is kept moving in the feed for the card.
    EXPECT_GE(feed.SubscriptionCount(kFreshStock), 1);

    // The account card shows the cash paid out and the frozen amount of the resting order.
    const double restingHold = resting.price * static_cast<double>(resting.quantity);
    EXPECT_EQ(info->FieldText(CVXAccInfoCard::EnField::Cash),
              CVXAccountCardBase::FormatMoney(cashBefore - ask * static_cast<double>(quantity)));
    EXPECT_NEAR(info->Summary().frozenCash, restingHold, 1e-6);
    EXPECT_LT(info->CashShareShown(), 1.0);
}

TEST_F(AccountCardsScenarioTest, ClickingTheCancelCellCancelsAndTheTabsFollowTheStatus)
{
    auto* orders = ShowCard<CVXOrdersCard>();
    const vx_trade::Order first = PlaceRestingBuy(kFreshStock);
    const vx_trade::Order second = PlaceRestingBuy(kOtherStock);
    ASSERT_EQ(first.status, EnOrderStatus::Working);
    ASSERT_EQ(second.status, EnOrderStatus::Working);

    // The working tab lists both.
    ClickAt(orders, orders->SegmentRect(1).center());
    EXPECT_EQ(orders->Filter(), EnOrderFilter::Working);
    ASSERT_EQ(orders->Table().RowCount(), 2);

    const int row = orders->Table().ViewRowOfKey(first.orderId);
    ASSERT_GE(row, 0);
    const QRect cancel = orders->Table().CellRect(row, orders->CancelColumn());
    ASSERT_FALSE(cancel.isEmpty());
    ClickAt(orders, cancel.center());

    const std::optional<vx_trade::Order> cancelled = FindOrder(service->Orders(account), first.orderId);
    ASSERT_TRUE(cancelled.has_value());
    EXPECT_EQ(cancelled->status, EnOrderStatus::Cancelled);
    EXPECT_EQ(FindOrder(service->Orders(account), second.orderId)->status, EnOrderStatus::Working);
    EXPECT_EQ(orders->SelectedKey(), 0u); // a cancel click is not a row pick
    ASSERT_EQ(orders->Table().RowCount(), 1);
    EXPECT_EQ(orders->Table().Row(0).key, second.orderId);

    // The cancelled tab now holds it, without a cancel cell.
    ClickAt(orders, orders->SegmentRect(3).center());
    EXPECT_EQ(orders->Filter(), EnOrderFilter::Cancelled);
    const int cancelledRow = orders->Table().ViewRowOfKey(first.orderId);
    ASSERT_GE(cancelledRow, 0);
    EXPECT_TRUE(orders->Table().CellText(cancelledRow, orders->CancelColumn()).isEmpty());
    EXPECT_EQ(orders->Table().ViewRowOfKey(second.orderId), -1);

    // Clicking where the cancel cell was does nothing more.
    const QRect stale = orders->Table().CellRect(cancelledRow, orders->CancelColumn());
    ClickAt(orders, stale.center());
    EXPECT_EQ(FindOrder(service->Orders(account), second.orderId)->status, EnOrderStatus::Working);
}

TEST_F(AccountCardsScenarioTest, ASecurityRequestFiltersWithAChipAndTheStateRoundTrips)
{
    auto* orders = ShowCard<CVXOrdersCard>();
    const vx_trade::Order a1 = PlaceRestingBuy(kFreshStock);
    const vx_trade::Order b1 = PlaceRestingBuy(kOtherStock);
    const vx_trade::Order a2 = PlaceRestingBuy(kFreshStock, 3);
    ASSERT_EQ(orders->Table().RowCount(), 3);
    EXPECT_TRUE(orders->ChipRect().isEmpty());

    CVXVariantMapTree request;
    request.Set<qulonglong>(QString::fromLatin1(panel_trade_request::kStockID), kFreshStock);
    orders->SetObjProperty(QString::fromLatin1(CVXOrdersCard::kCardType), request);
    EXPECT_EQ(orders->FilterStockID(), kFreshStock);
    EXPECT_FALSE(orders->ChipRect().isEmpty());
    ASSERT_EQ(orders->Table().RowCount(), 2);
    EXPECT_EQ(orders->Table().ViewRowOfKey(b1.orderId), -1);

    // Sort by quantity (a header click), pick the working tab, then save.
    const int quantityColumn = orders->Table().ColumnIndex(QStringLiteral("quantity"));
    ASSERT_GE(quantityColumn, 0);
    const QRect header = orders->Table().HeaderRect();
    ClickAt(orders, QPoint(orders->Table().ColumnSpan(quantityColumn).center().x(), header.center().y()));
    EXPECT_EQ(orders->Table().SortColumn(), quantityColumn);
    EXPECT_EQ(orders->Table().Row(0).key, a2.orderId); // 3 lots before 1
    ClickAt(orders, orders->SegmentRect(1).center());
    CVXVariantMapTree state;
    orders->GetCardObjRestoreData(&state);

    auto* restored = ShowCard<CVXOrdersCard>();
    restored->SetCardObjRestoreData(state);
    EXPECT_EQ(restored->Filter(), EnOrderFilter::Working);
    EXPECT_EQ(restored->FilterStockID(), kFreshStock);
    EXPECT_EQ(restored->Table().SortColumn(), quantityColumn);
    EXPECT_EQ(restored->Table().SortOrder(), Qt::DescendingOrder);
    ASSERT_EQ(restored->Table().RowCount(), 2);
    EXPECT_EQ(restored->Table().Row(0).key, a2.orderId);
    EXPECT_EQ(restored->Table().Row(1).key, a1.orderId);

    // The chip clears the security filter.
    ClickAt(restored, restored->ChipRect().center());
    EXPECT_EQ(restored->FilterStockID(), 0u);
    EXPECT_TRUE(restored->ChipRect().isEmpty());
    EXPECT_EQ(restored->Table().RowCount(), 3);

    // A request without a security shows everything too.
    orders->SetObjProperty(QString::fromLatin1(CVXOrdersCard::kCardType), CVXVariantMapTree());
    EXPECT_EQ(orders->FilterStockID(), 0u);
}

TEST_F(AccountCardsScenarioTest, HistoryListsFinishedOrdersByDateWithPeriodTabs)
{
    auto* history = ShowCard<CVXHistoryOrdersCard>();
    const std::vector<vx_trade::Order> all = service->HistoryOrders(account);
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(history->Period(), EnHistoryPeriod::Week);

    // Today has nothing finished yet; then a filled market buy shows first.
    ClickAt(history, history->SegmentRect(0).center());
    EXPECT_EQ(history->Period(), EnHistoryPeriod::Today);
    EXPECT_EQ(history->Table().RowCount(), 0);
    const vx_trade::Order filled =
        service->PlaceOrder(account, kFreshStock, EnOrderSide::Buy, EnOrderType::Market, 0, Lot(kFreshStock));
    ASSERT_EQ(filled.status, EnOrderStatus::Filled);
    ASSERT_EQ(history->Table().RowCount(), 1);
    EXPECT_EQ(history->Table().Row(0).key, filled.orderId);
    EXPECT_EQ(history->Table().CellText(0, 0), QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")));

    // All: every earlier order too, newest day first, each dated by its day offset.
    ClickAt(history, history->SegmentRect(2).center());
    EXPECT_EQ(history->Period(), EnHistoryPeriod::All);
    ASSERT_EQ(history->Table().RowCount(), static_cast<int>(service->HistoryOrders(account).size()));
    int previousOffset = 1;
    for (int r = 0; r < history->Table().RowCount(); ++r) {
        const std::optional<vx_trade::Order> order =
            FindOrder(service->HistoryOrders(account), history->Table().Row(r).key);
        ASSERT_TRUE(order.has_value());
        EXPECT_LE(order->dayOffset, previousOffset);
        previousOffset = order->dayOffset;
        EXPECT_EQ(history->Table().CellText(r, 0),
                  QDate::currentDate().addDays(order->dayOffset).toString(QStringLiteral("yyyy-MM-dd")));
    }

    CVXVariantMapTree state;
    history->GetCardObjRestoreData(&state);
    auto* restored = ShowCard<CVXHistoryOrdersCard>();
    restored->SetCardObjRestoreData(state);
    EXPECT_EQ(restored->Period(), EnHistoryPeriod::All);
    EXPECT_EQ(restored->Table().RowCount(), history->Table().RowCount());
}

TEST_F(AccountCardsScenarioTest, PositionsFollowTheFeedAndTheirTotalsAddUp)
{
    auto* positions = ShowCard<CVXPositionCard>();
    const std::vector<vx_trade::Position> held = service->Positions(account);
    ASSERT_FALSE(held.empty());
    ASSERT_EQ(positions->Rows().size(), held.size());
    for (const vx_trade::Position& position : held)
        EXPECT_GE(feed.SubscriptionCount(position.stockId), 1) << position.stockId;

    // Step until a held security moves; the rows follow the feed's last price.
    std::map<unsigned long, double> before;
    for (const vx_trade::Position& position : held)
        before[position.stockId] = feed.GetQuote(position.stockId).last;
    bool moved = false;
    for (int i = 0; i < 50 && !moved; ++i) {
        feed.Step();
        for (const auto& [id, last] : before)
            moved = moved || feed.GetQuote(id).last != last;
    }
    ASSERT_TRUE(moved);
    double valueSum = 0;
    double pnlSum = 0;
    for (const vx_trade::Position& position : held) {
        const PositionRow* row = FindRow(positions->Rows(), position.stockId);
        ASSERT_NE(row, nullptr);
        const double last = feed.GetQuote(position.stockId).last;
        EXPECT_DOUBLE_EQ(row->last, last);
        EXPECT_EQ(row->quantity, position.quantity);
        valueSum += last * static_cast<double>(position.quantity);
        pnlSum += (last - position.averageCost) * static_cast<double>(position.quantity);
    }
    // The totals row: the market value and P&L of all positions; the account agrees.
    ASSERT_TRUE(positions->Table().Totals().has_value());
    const auto& totals = positions->Table().Totals()->cells;
    EXPECT_EQ(totals.at(5).text, CVXAccountCardBase::FormatMoney(valueSum));
    EXPECT_EQ(totals.at(6).text, CVXAccountCardBase::FormatSignedMoney(pnlSum));
    EXPECT_NEAR(service->Summary(account).marketValue, valueSum, 1e-6);

    // Sorting by P&L (two clicks: descending, then ascending) orders the rows by it.
    const int pnlColumn = positions->Table().ColumnIndex(QStringLiteral("pnl"));
    const QPoint header(positions->Table().ColumnSpan(pnlColumn).center().x(),
                        positions->Table().HeaderRect().center().y());
    ClickAt(positions, header);
    double previous = 1e300;
    for (int r = 0; r < positions->Table().RowCount(); ++r) {
        const double pnl = FindRow(positions->Rows(), positions->Table().Row(r).key)->unrealizedPnL;
        EXPECT_LE(pnl, previous);
        previous = pnl;
    }
}

TEST_F(AccountCardsScenarioTest, WithoutAServiceTheCardsAreEmptyAndPickItUpLater)
{
    SetTradeService(nullptr);
    auto* positions = ShowCard<CVXPositionCard>();
    auto* info = ShowCard<CVXAccInfoCard>();
    auto* orders = ShowCard<CVXOrdersCard>();
    positions->grab();
    info->grab();
    orders->grab();
    EXPECT_EQ(positions->AccountID(), 0u);
    EXPECT_TRUE(positions->Rows().empty());
    EXPECT_FALSE(positions->Table().Totals().has_value());
    EXPECT_FALSE(info->HasAccount());
    EXPECT_EQ(info->FieldText(CVXAccInfoCard::EnField::TotalAssets), QStringLiteral("--"));
    EXPECT_EQ(orders->Table().RowCount(), 0);
    EXPECT_EQ(info->AccountSelector()->ShowMenu(), nullptr);

    // The next repaint notices the service.
    SetTradeService(service.get());
    positions->grab();
    info->grab();
    QCoreApplication::processEvents();
    EXPECT_EQ(positions->AccountID(), account);
    EXPECT_EQ(positions->Rows().size(), service->Positions(account).size());
    EXPECT_TRUE(info->HasAccount());
    EXPECT_EQ(info->FieldText(CVXAccInfoCard::EnField::TotalAssets),
              CVXAccountCardBase::FormatMoney(service->Summary(account).totalAssets));
    EXPECT_EQ(info->AccountSelector()->AccountID(), account);
}

TEST_F(AccountCardsScenarioTest, OnACanvasPositionsDriveTheGroupAndTheAccountPickerSwitchesIt)
{
    ShowCanvas();
    auto* positions = AddBox<CVXPositionCard>(CVXPositionCard::kCardType, QStringLiteral("1"));
    auto* orders = AddBox<CVXOrdersCard>(CVXOrdersCard::kCardType, QStringLiteral("1"));
    auto* info = AddBox<CVXAccInfoCard>(CVXAccInfoCard::kCardType, QStringLiteral("1"));
    auto* loner = AddBox<CVXOrdersCard>(CVXOrdersCard::kCardType, QStringLiteral("2"));
    ASSERT_TRUE(positions && orders && info && loner);
    QCoreApplication::processEvents();
    ASSERT_GE(positions->Table().RowCount(), 2);

    // A click on the second row shows its security in the group, not outside it.
    const unsigned long long picked = positions->Table().Row(1).key;
    ClickAt(positions, positions->Table().CellRect(1, 0).center());
    EXPECT_EQ(BoxOf(orders)->GetStockID(), picked);
    EXPECT_EQ(orders->GetStockID(), picked);
    EXPECT_NE(BoxOf(loner)->GetStockID(), picked);

    // Picking the other account in the account card (menu chosen with the mouse).
    CVXAccountSelector* selector = info->AccountSelector();
    ClickAt(selector, selector->rect().center());
    vx_std_ui::VMenu* menu = selector->OpenMenu();
    ASSERT_NE(menu, nullptr);
    QAction* action = menu->findAction(QVariant::fromValue<qulonglong>(otherAccount));
    ASSERT_NE(action, nullptr);
    ClickAt(menu, menu->actionGeometry(action).center());
    EXPECT_EQ(info->AccountID(), otherAccount);
    EXPECT_EQ(positions->AccountID(), otherAccount);
    EXPECT_EQ(orders->AccountID(), otherAccount);
    EXPECT_EQ(loner->AccountID(), account);
    EXPECT_EQ(positions->AccountSelector()->AccountID(), otherAccount);
    std::vector<unsigned long long> shown;
    for (const PositionRow& row : positions->Rows())
        shown.push_back(row.stockId);
    std::vector<unsigned long long> held;
    for (const vx_trade::Position& position : service->Positions(otherAccount))
        held.push_back(position.stockId);
    EXPECT_EQ(shown, held);
    EXPECT_EQ(info->FieldText(CVXAccInfoCard::EnField::Cash),
              CVXAccountCardBase::FormatMoney(service->Summary(otherAccount).cash));

    // A double click on a long position opens an order panel to sell all of it, for this account.
    CVXCardFactoryMgr::Instance().RegisterFactory(std::make_shared<TplVXCardFactory<COrderPanelProbe>>(),
                                                  true);
    const PositionRow* longRow = nullptr;
    for (const PositionRow& row : positions->Rows()) {
        if (row.quantity > 0)
            longRow = &row;
    }
    ASSERT_NE(longRow, nullptr);
    const PositionRow target = *longRow;
    const QPoint at =
        positions->Table().CellRect(positions->Table().ViewRowOfKey(target.stockId), 0).center();
    QTest::mouseDClick(positions, Qt::LeftButton, Qt::NoModifier, at);
    QCoreApplication::processEvents();
    CVXCardObjBase* panel = nullptr;
    for (CVXPanelBaseBox* box : canvas->GetPanelBoxes()) {
        auto* single = qobject_cast<CVXPanelAtomizationBox*>(box);
        if (single && single->GetCurrentCard() &&
            single->GetCurrentCard()->GetCardObjType() == QString::fromLatin1(COrderPanelProbe::kCardType))
            panel = single->GetCurrentCard();
    }
    ASSERT_NE(panel, nullptr);
    const CVXVariantMapTree& request = panel->GetInitData();
    EXPECT_EQ(request.Get<qulonglong>(QString::fromLatin1(panel_trade_request::kStockID)), target.stockId);
    EXPECT_EQ(request.Get<int>(QString::fromLatin1(panel_trade_request::kOrderSide)),
              static_cast<int>(EnVXOrderSide::Sell));
    EXPECT_EQ(request.Get<qlonglong>(QString::fromLatin1(panel_trade_request::kQuantity)), target.quantity);
    EXPECT_EQ(vx_trade::CVXSimTradeService::AccountIDFromTree(BoxOf(panel)->GetAccountInfo()), otherAccount);
}

TEST_F(AccountCardsScenarioTest, CardsPaintInBothThemesAndDropColumnsWhenNarrow)
{
    // Some activity so that every card has rows of each kind.
    PlaceRestingBuy(kFreshStock);
    service->PlaceOrder(account, kOtherStock, EnOrderSide::Buy, EnOrderType::Market, 0, Lot(kOtherStock));
    const vx_trade::Order cancelled = PlaceRestingBuy(kOtherStock);
    service->CancelOrder(account, cancelled.orderId);
    Steps(5);

    auto* positions = ShowCard<CVXPositionCard>();
    auto* orders = ShowCard<CVXOrdersCard>();
    auto* history = ShowCard<CVXHistoryOrdersCard>();
    auto* info = ShowCard<CVXAccInfoCard>();
    history->SetPeriod(EnHistoryPeriod::All);
    const std::vector<std::pair<QString, QWidget*>> cards = {{QStringLiteral("positions"), positions},
                                                             {QStringLiteral("orders"), orders},
                                                             {QStringLiteral("history"), history},
                                                             {QStringLiteral("account"), info}};
    std::vector<QImage> light;
    for (const auto& [name, card] : cards) {
        light.push_back(card->grab().toImage());
        workspace_test::KeepSnapshot(light.back(), QStringLiteral("b2-%1-light").arg(name));
    }
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    for (size_t i = 0; i < cards.size(); ++i) {
        const QImage dark = cards[i].second->grab().toImage();
        EXPECT_NE(dark, light[i]) << cards[i].first.toStdString();
        workspace_test::KeepSnapshot(dark, QStringLiteral("b2-%1-dark").arg(cards[i].first));
    }

    // Narrow: fewer columns, the code and the status stay.
    const size_t wide = orders->Table().VisibleColumns().size();
    orders->resize(300, 200);
    positions->resize(260, 160);
    EXPECT_LT(orders->Table().VisibleColumns().size(), wide);
    const std::vector<int>& narrow = orders->Table().VisibleColumns();
    EXPECT_NE(std::find(narrow.begin(), narrow.end(), orders->Table().ColumnIndex(QStringLiteral("code"))),
              narrow.end());
    EXPECT_NE(std::find(narrow.begin(), narrow.end(), orders->Table().ColumnIndex(QStringLiteral("status"))),
              narrow.end());
    info->resize(220, 150);
    workspace_test::KeepSnapshot(orders->grab().toImage(), QStringLiteral("b2-orders-narrow-dark"));
    workspace_test::KeepSnapshot(positions->grab().toImage(), QStringLiteral("b2-positions-narrow-dark"));
    workspace_test::KeepSnapshot(info->grab().toImage(), QStringLiteral("b2-account-small-dark"));
    info->resize(420, 300);
    positions->resize(900, 360);
    workspace_test::KeepSnapshot(info->grab().toImage(), QStringLiteral("b2-account-large-dark"));
    workspace_test::KeepSnapshot(positions->grab().toImage(), QStringLiteral("b2-positions-large-dark"));
}
