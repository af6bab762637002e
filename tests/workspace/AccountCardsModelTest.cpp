// The account cards' logic without widgets: the shared table (sorting, which columns fit, what
// a point hits, scrolling, elision), the position rows and totals, the order and history
// filters, the cash share and the money formats. Expected values are worked out by hand.

#include "apps/Workspace/TradeCards/AccountCardBase.h"
#include "apps/Workspace/TradeCards/AccountRows.h"
#include "apps/Workspace/TradeCards/TradeTable.h"

#include "tests/common/TestSupport.h"

#include <QFont>
#include <QFontMetrics>

#include <gtest/gtest.h>

using namespace vx_ws;
using vx_trade::EnOrderStatus;
using vx_trade::Order;

namespace {

TradeTableCell NumberCell(double value)
{
    TradeTableCell cell;
    cell.text = QString::number(value);
    cell.sortKey = value;
    return cell;
}

TradeTableCell TextCell(const QString& text)
{
    TradeTableCell cell;
    cell.text = text;
    return cell;
}

// Columns of 50, 40, 60 and 30 px at least, sharing spare width 1:0:1:2, priorities 0, 2, 1, 3.
std::vector<TradeTableColumn> FourColumns()
{
    return {{QStringLiteral("a"), QStringLiteral("A"), Qt::AlignLeft, 50, 1, 0, true},
            {QStringLiteral("b"), QStringLiteral("B"), Qt::AlignRight, 40, 0, 2, true},
            {QStringLiteral("c"), QStringLiteral("C"), Qt::AlignRight, 60, 1, 1, true},
            {QStringLiteral("d"), QStringLiteral("D"), Qt::AlignLeft, 30, 2, 3, false}};
}

std::vector<TradeTableRow> Rows(const std::vector<std::pair<QString, double>>& values)
{
    std::vector<TradeTableRow> rows;
    unsigned long long key = 1;
    for (const auto& [text, number] : values)
        rows.push_back({key++, {TextCell(text), NumberCell(number), NumberCell(0), TextCell(QString())}});
    return rows;
}

std::vector<unsigned long long> ViewKeys(const CVXTradeTableModel& model)
{
    std::vector<unsigned long long> keys;
    for (int i = 0; i < model.RowCount(); ++i)
        keys.push_back(model.Row(i).key);
    return keys;
}

Order MakeOrder(unsigned long long id, unsigned long stock, EnOrderStatus status, int dayOffset = 0,
                int updateTime = 0)
{
    Order order;
    order.orderId = id;
    order.stockId = stock;
    order.status = status;
    order.dayOffset = dayOffset;
    order.updateTime = updateTime;
    return order;
}

std::vector<unsigned long long> Ids(const std::vector<Order>& orders)
{
    std::vector<unsigned long long> ids;
    for (const Order& order : orders)
        ids.push_back(order.orderId);
    return ids;
}

} // namespace

TEST(AccountCardsTableTest, HeaderClicksCycleThroughSortOrdersAndEqualKeysKeepTheirOrder)
{
    CVXTradeTableModel model;
    model.SetColumns(FourColumns());
    // Keys 1..5; "b" numbers 3, 1, 2, 1, 10 (10 would come first as text but not as a number).
    model.SetRows(Rows({{QStringLiteral("delta"), 3},
                        {QStringLiteral("Alpha"), 1},
                        {QStringLiteral("charlie"), 2},
                        {QStringLiteral("bravo"), 1},
                        {QStringLiteral("echo"), 10}}));
    EXPECT_EQ(ViewKeys(model), (std::vector<unsigned long long>{1, 2, 3, 4, 5}));

    // A number column starts descending, then ascending, then back to the given order.
    model.ToggleSort(1);
    EXPECT_EQ(model.SortOrder(), Qt::DescendingOrder);
    EXPECT_EQ(ViewKeys(model), (std::vector<unsigned long long>{5, 1, 3, 2, 4}));
    model.ToggleSort(1);
    EXPECT_EQ(ViewKeys(model), (std::vector<unsigned long long>{2, 4, 3, 1, 5}));
    model.ToggleSort(1);
    EXPECT_EQ(model.SortColumn(), -1);
    EXPECT_EQ(ViewKeys(model), (std::vector<unsigned long long>{1, 2, 3, 4, 5}));

    // A text column starts ascending, ignoring case.
    model.ToggleSort(0);
    EXPECT_EQ(ViewKeys(model), (std::vector<unsigned long long>{2, 4, 3, 1, 5}));
    EXPECT_EQ(model.CellText(0, 0), QStringLiteral("Alpha"));
    EXPECT_EQ(model.ViewRowOfKey(1), 3);

    // New rows keep the sort; an unsortable column does not sort.
    model.SetRows(Rows({{QStringLiteral("zulu"), 0}, {QStringLiteral("kilo"), 0}}));
    EXPECT_EQ(ViewKeys(model), (std::vector<unsigned long long>{2, 1}));
    model.ToggleSort(3);
    EXPECT_EQ(model.SortColumn(), 0);
}

TEST(AccountCardsTableTest, ColumnsShareSpareWidthAndTheLeastImportantGoFirstWhenNarrow)
{
    CVXTradeTableModel model;
    model.SetColumns(FourColumns());

    // 300 px: 180 of minimum, 120 spare shared 1:0:1:2 -> 30, 0, 30, 60.
    model.SetArea(QRect(0, 0, 300, 200));
    EXPECT_EQ(model.VisibleColumns(), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(model.ColumnSpan(0), QRect(0, 0, 80, 200));
    EXPECT_EQ(model.ColumnSpan(1), QRect(80, 0, 40, 200));
    EXPECT_EQ(model.ColumnSpan(2), QRect(120, 0, 90, 200));
    EXPECT_EQ(model.ColumnSpan(3), QRect(210, 0, 90, 200));

    // 150 px: "d" (priority 3) goes; the other three fit exactly.
    model.SetArea(QRect(10, 0, 150, 200));
    EXPECT_EQ(model.VisibleColumns(), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(model.ColumnSpan(2), QRect(100, 0, 60, 200));
    EXPECT_TRUE(model.ColumnSpan(3).isNull());

    // 100 px: then "b" (2) and "c" (1); "a" takes the whole width.
    model.SetArea(QRect(0, 0, 100, 200));
    EXPECT_EQ(model.VisibleColumns(), std::vector<int>{0});
    EXPECT_EQ(model.ColumnSpan(0), QRect(0, 0, 100, 200));

    // Narrower than the first column alone: it stays, cut to the width.
    model.SetArea(QRect(0, 0, 30, 200));
    EXPECT_EQ(model.VisibleColumns(), std::vector<int>{0});
    EXPECT_EQ(model.ColumnSpan(0).width(), 30);
}

TEST(AccountCardsTableTest, NumberColumnsWidenToTheirWidestTextAndPushOutLessImportantColumns)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(12);
    const QFontMetrics metrics(font);
    QFont boldFont = font;
    boldFont.setBold(true);
    const QFontMetrics bold(boldFont);
    CVXTradeTableModel model;
    model.SetColumns(FourColumns());
    model.SetRows(Rows({{QStringLiteral("x"), 1}}));
    TradeTableRow totals{0,
                         {TextCell(QStringLiteral("Σ")), TextCell(QStringLiteral("+43,539.00")),
                          TextCell(QStringLiteral("+12,345,678.90")), TextCell(QString())}};
    model.SetTotals(totals);
    model.SetArea(QRect(0, 0, 270, 200));
    model.FitNumberColumnsToContent(metrics, bold);

    const int pad = 2 * CVXTradeTableModel::kCellPadding;
    // The totals row is measured in its own (bold) font.
    const int widestB = bold.horizontalAdvance(QStringLiteral("+43,539.00")) + pad;
    const int widestC = bold.horizontalAdvance(QStringLiteral("+12,345,678.90")) + pad;
    ASSERT_GT(widestB, 40);
    ASSERT_GT(widestC, 60);
    // Minimums 50 + widestB + widestC + 30 no longer fit 270 px: "d" (least important) goes;
    // the number columns keep their whole text and "a" takes what is left.
    ASSERT_GT(50 + widestB + widestC + 30, 270);
    ASSERT_LE(50 + widestB + widestC, 270);
    EXPECT_EQ(model.VisibleColumns(), (std::vector<int>{0, 1, 2}));
    EXPECT_GE(model.ColumnSpan(1).width(), widestB);
    EXPECT_GE(model.ColumnSpan(2).width(), widestC);
    EXPECT_EQ(model.ColumnSpan(2).right(), 269);

    // Other text columns are not widened: a long name elides instead (the 300 px split of the
    // plain minimums, as in the test above).
    model.SetArea(QRect(0, 0, 300, 200));
    model.SetRows({{1,
                    {TextCell(QStringLiteral("x")), NumberCell(1), NumberCell(0),
                     TextCell(QStringLiteral("a very long security name indeed"))}}});
    model.SetTotals(std::nullopt);
    model.FitNumberColumnsToContent(metrics, bold);
    EXPECT_EQ(model.VisibleColumns(), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(model.ColumnSpan(0), QRect(0, 0, 80, 200));
    EXPECT_EQ(model.ColumnSpan(3), QRect(210, 0, 90, 200));

    // The first column is the row's identity: a long code widens it.
    model.SetRows(
        {{1,
          {TextCell(QStringLiteral("510100C30D440")), NumberCell(1), NumberCell(0), TextCell(QString())}}});
    model.FitNumberColumnsToContent(metrics, bold);
    EXPECT_GE(model.ColumnSpan(0).width(), metrics.horizontalAdvance(QStringLiteral("510100C30D440")) + pad);
}

TEST(AccountCardsTableTest, PointsHitHeaderRowsAndTotalsAndScrollingIsClamped)
{
    CVXTradeTableModel model;
    model.SetColumns(FourColumns());
    std::vector<std::pair<QString, double>> values;
    for (int i = 0; i < 20; ++i)
        values.emplace_back(QStringLiteral("r%1").arg(i), i);
    model.SetRows(Rows(values));
    model.SetTotals(TradeTableRow{0, {TextCell(QStringLiteral("Total"))}});
    // Area y 30..229: header 30..53, totals 208..229, body 54..207 = 154 px = 7 rows of 22.
    model.SetArea(QRect(0, 30, 300, 200));
    EXPECT_EQ(model.HeaderRect(), QRect(0, 30, 300, 24));
    EXPECT_EQ(model.TotalsRect(), QRect(0, 208, 300, 22));
    EXPECT_EQ(model.BodyRect(), QRect(0, 54, 300, 154));
    EXPECT_EQ(model.VisibleRowCapacity(), 7);

    using Area = CVXTradeTableModel::Hit::EnArea;
    auto hit = model.HitTest(QPoint(85, 40));
    EXPECT_EQ(hit.area, Area::Header);
    EXPECT_EQ(hit.column, 1);
    hit = model.HitTest(QPoint(10, 54 + 2 * 22 + 5));
    EXPECT_EQ(hit.area, Area::Row);
    EXPECT_EQ(hit.row, 2);
    EXPECT_EQ(hit.column, 0);
    hit = model.HitTest(QPoint(250, 215));
    EXPECT_EQ(hit.area, Area::Totals);
    EXPECT_EQ(hit.column, 3);
    EXPECT_EQ(model.HitTest(QPoint(10, 10)).area, Area::None);
    EXPECT_EQ(model.CellRect(2, 2), QRect(120, 98, 90, 22));

    // 20 rows, 7 in view: the first row shown is at most 13.
    model.ScrollTo(100);
    EXPECT_EQ(model.FirstRow(), 13);
    hit = model.HitTest(QPoint(10, 60));
    EXPECT_EQ(hit.row, 13);
    EXPECT_TRUE(model.CellRect(12, 0).isNull());
    EXPECT_EQ(model.CellRect(19, 0), QRect(0, 54 + 6 * 22, 80, 22));
    model.ScrollBy(-20);
    EXPECT_EQ(model.FirstRow(), 0);

    // Fewer rows than the view holds: below the last row nothing is hit.
    model.ScrollTo(13);
    model.SetRows(Rows({{QStringLiteral("only"), 1}}));
    EXPECT_EQ(model.FirstRow(), 0);
    EXPECT_EQ(model.HitTest(QPoint(10, 54 + 22 + 5)).area, Area::None);
}

TEST(AccountCardsTableTest, ElisionKeepsWhatFitsAndDropsWhatCannotShowAnEllipsis)
{
    QFont font;
    font.setPixelSize(12);
    const QFontMetrics metrics(font);
    const QString text = QStringLiteral("Shanghai Pudong Development");
    const int full = metrics.horizontalAdvance(text);
    EXPECT_EQ(CVXTradeTableModel::Elide(metrics, text, full), text);
    const QString cut = CVXTradeTableModel::Elide(metrics, text, full / 2);
    EXPECT_TRUE(cut.endsWith(QChar(0x2026))) << cut.toStdString();
    EXPECT_TRUE(text.startsWith(cut.left(cut.size() - 1)));
    EXPECT_LE(metrics.horizontalAdvance(cut), full / 2);
    EXPECT_EQ(CVXTradeTableModel::Elide(metrics, text, 2), QString());
    EXPECT_EQ(CVXTradeTableModel::Elide(metrics, text, 0), QString());
}

TEST(AccountCardsRowsTest, PositionRowsValueLongsShortsAndUnknownSecurities)
{
    // 300 long at 10.00, last 10.50: value 3,150, P&L +150 = +5% of 3,000.
    // 200 short at 20.00, last 21.00: value -4,200, P&L -200 = -5% of 4,000.
    // 100 of an unknown id at 5.00: valued at its cost, no P&L.
    // A known security that has not traded (last 0): valued at its cost too.
    const std::vector<vx_trade::Position> positions = {
        {1000, 300, 10.0}, {1001, -200, 20.0}, {424242, 100, 5.0}, {1002, 50, 8.0}};
    const auto lookup = [](unsigned long id) {
        PositionSecurity security;
        if (id == 424242)
            return security;
        security.known = true;
        security.code = QString::number(600000 + id);
        security.name = QStringLiteral("Name %1").arg(id);
        security.last = id == 1000 ? 10.5 : (id == 1001 ? 21.0 : 0.0);
        return security;
    };
    const std::vector<PositionRow> rows = BuildPositionRows(positions, lookup);
    ASSERT_EQ(rows.size(), 4u);

    EXPECT_EQ(rows[0].code, QStringLiteral("601000"));
    EXPECT_DOUBLE_EQ(rows[0].marketValue, 3150.0);
    EXPECT_DOUBLE_EQ(rows[0].unrealizedPnL, 150.0);
    EXPECT_DOUBLE_EQ(rows[0].pnlRatio, 0.05);

    EXPECT_EQ(rows[1].quantity, -200);
    EXPECT_DOUBLE_EQ(rows[1].marketValue, -4200.0);
    EXPECT_DOUBLE_EQ(rows[1].unrealizedPnL, -200.0);
    EXPECT_DOUBLE_EQ(rows[1].pnlRatio, -0.05);

    EXPECT_EQ(rows[2].code, QStringLiteral("424242"));
    EXPECT_TRUE(rows[2].name.isEmpty());
    EXPECT_DOUBLE_EQ(rows[2].last, 5.0);
    EXPECT_DOUBLE_EQ(rows[2].marketValue, 500.0);
    EXPECT_DOUBLE_EQ(rows[2].unrealizedPnL, 0.0);

    EXPECT_DOUBLE_EQ(rows[3].last, 8.0);
    EXPECT_DOUBLE_EQ(rows[3].unrealizedPnL, 0.0);

    // Totals: value 3,150 - 4,200 + 500 + 400 = -150; P&L -50 over a cost of 7,900.
    const PositionTotals totals = SumPositions(rows);
    EXPECT_DOUBLE_EQ(totals.marketValue, -150.0);
    EXPECT_DOUBLE_EQ(totals.unrealizedPnL, -50.0);
    EXPECT_NEAR(totals.pnlRatio, -50.0 / 7900.0, 1e-12);

    const PositionTotals none = SumPositions({});
    EXPECT_DOUBLE_EQ(none.marketValue, 0.0);
    EXPECT_DOUBLE_EQ(none.pnlRatio, 0.0);
    EXPECT_TRUE(BuildPositionRows(positions, PositionSecurityLookup())[0].code == QStringLiteral("1000"));
}

TEST(AccountCardsRowsTest, OrderTabsAndSecurityFilterPickTheRightOrders)
{
    const std::vector<Order> orders = {
        MakeOrder(1, 1000, EnOrderStatus::Working),  MakeOrder(2, 1001, EnOrderStatus::PartFilled),
        MakeOrder(3, 1000, EnOrderStatus::Filled),   MakeOrder(4, 1000, EnOrderStatus::Cancelled),
        MakeOrder(5, 1001, EnOrderStatus::Rejected), MakeOrder(6, 1000, EnOrderStatus::PartFilled)};
    EXPECT_EQ(Ids(FilterOrders(orders, EnOrderFilter::All, 0)),
              (std::vector<unsigned long long>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(Ids(FilterOrders(orders, EnOrderFilter::Working, 0)),
              (std::vector<unsigned long long>{1, 2, 6}));
    EXPECT_EQ(Ids(FilterOrders(orders, EnOrderFilter::Filled, 0)), std::vector<unsigned long long>{3});
    EXPECT_EQ(Ids(FilterOrders(orders, EnOrderFilter::Cancelled, 0)),
              (std::vector<unsigned long long>{4, 5}));
    EXPECT_EQ(Ids(FilterOrders(orders, EnOrderFilter::All, 1000)),
              (std::vector<unsigned long long>{1, 3, 4, 6}));
    EXPECT_EQ(Ids(FilterOrders(orders, EnOrderFilter::Working, 1001)), std::vector<unsigned long long>{2});
    EXPECT_TRUE(FilterOrders(orders, EnOrderFilter::Filled, 1001).empty());
}

TEST(AccountCardsRowsTest, HistoryPeriodsCountDaysBackAndListNewestFirst)
{
    // Given out of order: ids carry (day offset, update time).
    const std::vector<Order> orders = {MakeOrder(10, 1000, EnOrderStatus::Filled, -7, 36000),
                                       MakeOrder(11, 1000, EnOrderStatus::Filled, 0, 35000),
                                       MakeOrder(12, 1000, EnOrderStatus::Cancelled, -1, 50000),
                                       MakeOrder(13, 1000, EnOrderStatus::Filled, 0, 40000),
                                       MakeOrder(14, 1000, EnOrderStatus::Rejected, -6, 34300),
                                       MakeOrder(15, 1000, EnOrderStatus::Filled, -30, 34300),
                                       MakeOrder(16, 1000, EnOrderStatus::Filled, -1, 50000)};
    EXPECT_EQ(Ids(FilterHistory(orders, EnHistoryPeriod::Today)), (std::vector<unsigned long long>{13, 11}));
    EXPECT_EQ(Ids(FilterHistory(orders, EnHistoryPeriod::Week)),
              (std::vector<unsigned long long>{13, 11, 16, 12, 14}));
    EXPECT_EQ(Ids(FilterHistory(orders, EnHistoryPeriod::All)),
              (std::vector<unsigned long long>{13, 11, 16, 12, 14, 10, 15}));

    // Dates count back over month ends and a leap day.
    Order order;
    order.dayOffset = -1;
    EXPECT_EQ(OrderDate(order, QDate(2024, 3, 1)), QDate(2024, 2, 29));
    order.dayOffset = -7;
    EXPECT_EQ(OrderDate(order, QDate(2024, 1, 3)), QDate(2023, 12, 27));
    order.dayOffset = 0;
    EXPECT_EQ(OrderDate(order, QDate(2024, 1, 3)), QDate(2024, 1, 3));
}

TEST(AccountCardsRowsTest, CashShareAndMoneyTexts)
{
    vx_trade::AccountSummary summary;
    summary.cash = 750;
    summary.marketValue = 250;
    EXPECT_DOUBLE_EQ(CashShare(summary), 0.75);
    summary.marketValue = -250; // a short's value still takes room in the bar
    EXPECT_DOUBLE_EQ(CashShare(summary), 0.75);
    summary.marketValue = 0;
    EXPECT_DOUBLE_EQ(CashShare(summary), 1.0);
    summary.cash = -100;
    summary.marketValue = 400;
    EXPECT_DOUBLE_EQ(CashShare(summary), 0.0);
    EXPECT_DOUBLE_EQ(CashShare(vx_trade::AccountSummary()), 0.0);

    EXPECT_EQ(CVXAccountCardBase::FormatMoney(1234567.891), QStringLiteral("1,234,567.89"));
    EXPECT_EQ(CVXAccountCardBase::FormatMoney(-0.004), QStringLiteral("0.00"));
    EXPECT_EQ(CVXAccountCardBase::FormatMoney(-1500.5), QStringLiteral("-1,500.50"));
    EXPECT_EQ(CVXAccountCardBase::FormatSignedMoney(12), QStringLiteral("+12.00"));
    EXPECT_EQ(CVXAccountCardBase::FormatSignedMoney(-12), QStringLiteral("-12.00"));
    EXPECT_EQ(CVXAccountCardBase::FormatSignedMoney(0.001), QStringLiteral("0.00"));
}
