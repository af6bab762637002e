// The market cards as a user meets them: made through the card registry over the real seeded
// feed, shown offscreen, driven by real mouse and key events, and checked against the feed's own
// values (recomputed here, not taken from the cards' code).

#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/QuoteCards/KLineCard.h"
#include "apps/Workspace/QuoteCards/StockHeaderCard.h"
#include "apps/Workspace/QuoteCards/TicksCard.h"
#include "apps/Workspace/QuoteCards/TicksStatisticCard.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"
#include "tests/workspace/WorkspaceTestSupport.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QImage>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>

using namespace vx_ws;

namespace {

const QStringList kMarketCardTypes = {QStringLiteral("StockHeader"), QStringLiteral("KLine"),
                                      QStringLiteral("Ticks"), QStringLiteral("TicksStatistic")};

// Pixels of `color` within `area` (all of the image when empty); small text is antialiased, so
// a tolerance per channel lets its strokes count.
int CountPixels(const QImage& image, const QColor& color, int tolerance = 0, QRect area = QRect())
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    if (area.isEmpty())
        area = rgb.rect();
    area &= rgb.rect();
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb px = line[x];
            if (std::abs(qRed(px) - color.red()) <= tolerance &&
                std::abs(qGreen(px) - color.green()) <= tolerance &&
                std::abs(qBlue(px) - color.blue()) <= tolerance)
                ++count;
        }
    }
    return count;
}

// The feed's minute candles merged into periods by a plain map, for comparison with the chart.
std::vector<vx_md::Candle> ReferenceCandles(const vx_md::CVXSimMarketData& feed, unsigned long id, int period)
{
    std::map<int, vx_md::Candle> merged;
    for (const vx_md::Candle& c : feed.GetCandles(id)) {
        const int start = c.minute / period * period;
        auto it = merged.find(start);
        if (it == merged.end()) {
            merged[start] = {start, c.open, c.high, c.low, c.close, c.volume};
            continue;
        }
        it->second.high = std::max(it->second.high, c.high);
        it->second.low = std::min(it->second.low, c.low);
        it->second.close = c.close;
        it->second.volume += c.volume;
    }
    std::vector<vx_md::Candle> out;
    for (const auto& entry : merged)
        out.push_back(entry.second);
    return out;
}

// Key by key as typed, for any text (QTest::keyClicks knows only Latin-1 keys).
void TypeText(QWidget* widget, const QString& text)
{
    for (const QChar ch : text)
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(ch), Qt::NoModifier);
}

void SendMouseMove(QWidget* widget, const QPoint& pos)
{
    QMouseEvent move(QEvent::MouseMove, pos, widget->mapToGlobal(pos), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

class MarketCardsTest : public workspace_test::CFeedTest
{
protected:
    MarketCardsTest() : CFeedTest(11) {}

    void SetUp() override
    {
        CFeedTest::SetUp();
        RegisterMarketCards();
    }

    void TearDown() override
    {
        cards.clear();
        workspace_test::UnregisterCards(kMarketCardTypes);
        CFeedTest::TearDown();
    }

    template <typename T> T* Make(const QSize& size, bool show = true)
    {
        CVXCardObjBase* card =
            CVXCardFactoryMgr::Instance().CreateCard(QString::fromLatin1(T::kCardType), CardPos_PanelBox,
                                                     TabFrameKey_None, CVXVariantMapTree(), nullptr);
        EXPECT_NE(card, nullptr);
        cards.emplace_back(card);
        card->resize(size);
        if (show) {
            card->show();
            EXPECT_TRUE(QTest::qWaitForWindowExposed(card));
        }
        return qobject_cast<T*>(card);
    }

    std::vector<std::unique_ptr<CVXCardObjBase>> cards;
};

} // namespace

TEST_F(MarketCardsTest, RegisteredCardsShowTheDefaultSecurityAndMoveItInTheFeed)
{
    for (const QString& type : kMarketCardTypes) {
        SCOPED_TRACE(type.toStdString());
        CVXCardBaseStyle style;
        ASSERT_TRUE(CVXCardFactoryMgr::Instance().GetCardStyle(type, &style));
        CVXCardObjBase* card = CVXCardFactoryMgr::Instance().CreateCard(
            type, CardPos_PanelBox, TabFrameKey_None, CVXVariantMapTree(), nullptr);
        ASSERT_NE(card, nullptr);
        cards.emplace_back(card);
        EXPECT_EQ(card->GetCardObjType(), type);
        // What the registry tells before a card exists is what the card says about itself.
        EXPECT_EQ(card->GetCardIdealSize(), style.idealSize);
        EXPECT_EQ(card->GetCardMinSize(), style.minSize);
        EXPECT_EQ(card->GetCardStaticTitle(), style.title);
        EXPECT_FALSE(style.title.isEmpty());
        EXPECT_TRUE(style.minSize.width() <= style.idealSize.width() &&
                    style.minSize.height() <= style.idealSize.height());
        EXPECT_EQ(qobject_cast<CVXWorkspaceCardBase*>(card)->ShownStockID(), kDefaultStockID);
    }
    EXPECT_EQ(feed.SubscriptionCount(kDefaultStockID), 4);

    auto* header = qobject_cast<CVXStockHeaderCard*>(cards[0].get());
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->View().code, QString::fromStdString(feed.GetSecurity(kDefaultStockID).code));
    EXPECT_EQ(header->View().name, QString::fromStdString(feed.GetSecurity(kDefaultStockID).name));
    cards.clear();
    EXPECT_EQ(feed.SubscriptionCount(kDefaultStockID), 0);
}

TEST_F(MarketCardsTest, HeaderFollowsTheFeedInAWideAndANarrowLayout)
{
    auto* header = Make<CVXStockHeaderCard>(QSize(480, 96));
    ASSERT_NE(header, nullptr);
    const vx_md::SecurityInfo info = feed.GetSecurity(kDefaultStockID);
    // Before any trade the open is unknown.
    EXPECT_EQ(header->View().stats.at(0).value, QStringLiteral("--"));
    const QImage before = header->grab().toImage();

    Steps(90);
    QCoreApplication::processEvents();
    const vx_md::Quote quote = feed.GetQuote(kDefaultStockID);
    const StockHeaderView view = header->View();
    EXPECT_TRUE(header->IsWideLayout());
    EXPECT_EQ(view.last, CVXWorkspaceCardBase::FormatPrice(quote.last, info.tickSize));
    EXPECT_EQ(view.changePercent,
              CVXWorkspaceCardBase::FormatPercent((quote.last - info.prevClose) / info.prevClose));
    ASSERT_EQ(view.stats.size(), 8u);
    QStringList values;
    for (const StockHeaderStat& stat : view.stats)
        values << stat.value;
    EXPECT_TRUE(values.contains(CVXWorkspaceCardBase::FormatPrice(quote.day.high, info.tickSize)));
    EXPECT_TRUE(values.contains(CVXWorkspaceCardBase::FormatPrice(quote.day.low, info.tickSize)));
    EXPECT_TRUE(values.contains(CVXWorkspaceCardBase::FormatVolume(quote.day.volume)));
    EXPECT_EQ(view.time, CVXWorkspaceCardBase::FormatTime(feed.Time()));

    // The painting moved with the feed, and the last price is drawn in its change colour.
    const QImage after = header->grab().toImage();
    EXPECT_NE(before, after);
    const QColor changeColor = CVXWorkspaceCardBase::ChangeColor(quote.last - info.prevClose);
    EXPECT_GT(CountPixels(after, changeColor), 40);

    header->resize(260, 64);
    EXPECT_FALSE(header->IsWideLayout());
    EXPECT_EQ(header->View().stats.size(), 4u);
    EXPECT_EQ(header->View().last, view.last);
}

TEST_F(MarketCardsTest, TypingACodeInTheHeaderMovesItsLinkageGroup)
{
    auto canvas = std::make_unique<workspace_test::CTestCanvas>(QSize(1000, 600));
    using Canvas = workspace_test::CTestCanvas;
    CVXPanelAtomizationBox* headerBox = canvas->AddBox("StockHeader");
    CVXPanelAtomizationBox* chartBox = canvas->AddBox("KLine");
    CVXPanelAtomizationBox* loneBox = canvas->AddBox("Ticks");
    ASSERT_TRUE(headerBox && chartBox && loneBox);
    headerBox->OnGroupIDChanged(QStringLiteral("3"));
    chartBox->OnGroupIDChanged(QStringLiteral("3"));
    auto* header = Canvas::CardOf<CVXStockHeaderCard>(headerBox);
    auto* chart = Canvas::CardOf<CVXKLineCard>(chartBox);
    auto* lone = Canvas::CardOf<CVXTicksCard>(loneBox);
    ASSERT_TRUE(header && chart && lone);
    canvas->View()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(canvas->View()));

    // Click the code, type another security's code, Enter.
    const vx_md::SecurityInfo target = feed.GetSecurity(1003);
    QTest::mouseClick(header, Qt::LeftButton, Qt::NoModifier, header->CodeArea().center());
    ASSERT_TRUE(header->IsCodeEditorOpen());
    QTest::keyClicks(header->CodeEditor(), QString::fromStdString(target.code));
    QTest::keyClick(header->CodeEditor(), Qt::Key_Return);
    EXPECT_FALSE(header->IsCodeEditorOpen());
    EXPECT_EQ(header->ShownStockID(), 1003u);
    EXPECT_EQ(chart->ShownStockID(), 1003u);
    EXPECT_EQ(lone->ShownStockID(), kDefaultStockID);
    EXPECT_EQ(header->View().code, QString::fromStdString(target.code));
    EXPECT_EQ(feed.SubscriptionCount(1003), 2);
    EXPECT_EQ(feed.SubscriptionCount(kDefaultStockID), 1);

    // An unknown code: a hint, the field stays open, nothing moves; Escape closes it.
    QTest::mouseClick(header, Qt::LeftButton, Qt::NoModifier, header->CodeArea().center());
    QTest::keyClicks(header->CodeEditor(), QStringLiteral("999999"));
    QTest::keyClick(header->CodeEditor(), Qt::Key_Return);
    EXPECT_TRUE(header->IsCodeEditorOpen());
    EXPECT_FALSE(header->NotFoundHint().isEmpty());
    EXPECT_EQ(header->ShownStockID(), 1003u);
    EXPECT_EQ(chart->ShownStockID(), 1003u);
    QTest::keyClick(header->CodeEditor(), Qt::Key_Backspace);
    EXPECT_TRUE(header->NotFoundHint().isEmpty());
    QTest::keyClick(header->CodeEditor(), Qt::Key_Escape);
    EXPECT_FALSE(header->IsCodeEditorOpen());

    // Typing on the focused card opens the field with that key; completion offers names too, and
    // picking an entry from the list moves the group.
    const vx_md::SecurityInfo byName = feed.GetSecurity(1007);
    header->setFocus();
    QTest::keyClick(header, byName.code.front());
    ASSERT_TRUE(header->IsCodeEditorOpen());
    EXPECT_EQ(header->CodeEditor()->text(), QString(QChar::fromLatin1(byName.code.front())));
    EXPECT_TRUE(header->CodeEditor()->hasFocus());
    header->CodeEditor()->clear();
    TypeText(QApplication::focusWidget(), QString::fromStdString(byName.name));
    QCompleter* completer = header->CodeEditor()->completer();
    ASSERT_NE(completer, nullptr);
    ASSERT_GE(completer->completionCount(), 1);
    bool offered = false;
    for (int i = 0; completer->setCurrentRow(i); ++i)
        offered = offered || completer->currentCompletion().startsWith(QString::fromStdString(byName.code));
    EXPECT_TRUE(offered);
    int row = 0;
    for (completer->setCurrentRow(0);
         !completer->currentCompletion().startsWith(QString::fromStdString(byName.code));
         completer->setCurrentRow(++row)) {
    }
    ASSERT_TRUE(completer->popup()->isVisible());
    completer->popup()->setCurrentIndex(completer->completionModel()->index(row, 0));
    QTest::keyClick(completer->popup(), Qt::Key_Return);
    EXPECT_FALSE(header->IsCodeEditorOpen());
    EXPECT_EQ(header->ShownStockID(), 1007u);
    EXPECT_EQ(chart->ShownStockID(), 1007u);
}

TEST_F(MarketCardsTest, ChartPeriodAndAveragesAreClickedAndRestored)
{
    auto* chart = Make<CVXKLineCard>(QSize(480, 300));
    ASSERT_NE(chart, nullptr);
    EXPECT_TRUE(chart->Candles().empty());
    Steps(40 * 60);
    ASSERT_FALSE(chart->Candles().empty());
    EXPECT_EQ(chart->Period(), 1);
    EXPECT_TRUE(chart->IsMAShown());
    EXPECT_EQ(chart->Candles().size(), ReferenceCandles(feed, kDefaultStockID, 1).size());
    const QImage oneMinute = chart->grab().toImage();

    QTest::mouseClick(chart, Qt::LeftButton, Qt::NoModifier, chart->PeriodButtonRect(15).center());
    EXPECT_EQ(chart->Period(), 15);
    const std::vector<vx_md::Candle> reference = ReferenceCandles(feed, kDefaultStockID, 15);
    ASSERT_EQ(chart->Candles().size(), reference.size());
    EXPECT_EQ(chart->Candles().front().volume, reference.front().volume);
    EXPECT_DOUBLE_EQ(chart->Candles().back().high, reference.back().high);
    // Few enough to all be on show.
    EXPECT_EQ(chart->VisibleRange().count, static_cast<int>(reference.size()));
    const QImage withAverages = chart->grab().toImage();
    EXPECT_NE(withAverages, oneMinute);

    QTest::mouseClick(chart, Qt::LeftButton, Qt::NoModifier, chart->MAButtonRect().center());
    EXPECT_FALSE(chart->IsMAShown());
    const QImage withoutAverages = chart->grab().toImage();
    EXPECT_NE(withoutAverages, withAverages);
    EXPECT_GT(CountPixels(withAverages, CVXWorkspaceCardBase::ThemeColor("ck_orange500")),
              CountPixels(withoutAverages, CVXWorkspaceCardBase::ThemeColor("ck_orange500")));

    CVXVariantMapTree saved;
    chart->GetObjRestoreData(&saved);
    EXPECT_EQ(saved.Get<int>(QString::fromLatin1(CVXKLineCard::kKeyPeriod)), 15);
    EXPECT_FALSE(saved.Get<bool>(QString::fromLatin1(CVXKLineCard::kKeyShowMA), true));

    auto* fresh = Make<CVXKLineCard>(QSize(480, 300), false);
    ASSERT_NE(fresh, nullptr);
    fresh->SetObjRestoreData(saved);
    EXPECT_EQ(fresh->Period(), 15);
    EXPECT_FALSE(fresh->IsMAShown());
    EXPECT_EQ(fresh->Candles().size(), reference.size());

    // An unsupported period is refused; the other saved value still applies.
    CVXVariantMapTree odd;
    odd.Set<int>(QString::fromLatin1(CVXKLineCard::kKeyPeriod), 7);
    odd.Set<bool>(QString::fromLatin1(CVXKLineCard::kKeyShowMA), true);
    fresh->SetObjRestoreData(odd);
    EXPECT_EQ(fresh->Period(), 15);
    EXPECT_TRUE(fresh->IsMAShown());
    EXPECT_TRUE(vxtest::HasLog("unsupported period 7"));
}

TEST_F(MarketCardsTest, CrosshairShowsTheCandleUnderTheMouse)
{
    auto* chart = Make<CVXKLineCard>(QSize(480, 300));
    ASSERT_NE(chart, nullptr);
    Steps(70 * 60);
    chart->SetPeriod(5);
    const std::vector<vx_md::Candle> reference = ReferenceCandles(feed, kDefaultStockID, 5);
    const kline::CandleRange range = chart->VisibleRange();
    ASSERT_GE(range.count, 10);
    EXPECT_EQ(range.first + range.count, static_cast<int>(reference.size()));
    EXPECT_EQ(chart->HoveredCandleIndex(), -1);
    const QImage plain = chart->grab().toImage();

    const QRect plot = chart->PricePlotRect();
    for (int index : {range.first, range.first + range.count / 2, range.first + range.count - 1}) {
        SCOPED_TRACE(index);
        const int x = chart->CandleCenterX(index);
        ASSERT_GE(x, plot.left());
        SendMouseMove(chart, QPoint(x, plot.center().y()));
        ASSERT_EQ(chart->HoveredCandleIndex(), index);
        const vx_md::Candle& candle = reference[index];
        const QStringList lines = chart->CrosshairLines();
        ASSERT_EQ(lines.size(), 6);
        EXPECT_EQ(lines[0], CVXWorkspaceCardBase::FormatTime(candle.minute * 60).left(5));
        const double tick = feed.GetSecurity(kDefaultStockID).tickSize;
        EXPECT_TRUE(lines[1].endsWith(CVXWorkspaceCardBase::FormatPrice(candle.open, tick)));
        EXPECT_TRUE(lines[2].endsWith(CVXWorkspaceCardBase::FormatPrice(candle.high, tick)));
        EXPECT_TRUE(lines[3].endsWith(CVXWorkspaceCardBase::FormatPrice(candle.low, tick)));
        EXPECT_TRUE(lines[4].endsWith(CVXWorkspaceCardBase::FormatPrice(candle.close, tick)));
        EXPECT_TRUE(lines[5].endsWith(CVXWorkspaceCardBase::FormatVolume(candle.volume)));
    }
    // A few pixels either side of a candle's centre is still that candle.
    const int middle = range.first + range.count / 2;
    SendMouseMove(chart, QPoint(chart->CandleCenterX(middle) + 3, plot.bottom() - 2));
    EXPECT_EQ(chart->HoveredCandleIndex(), middle);
    SendMouseMove(chart, QPoint(chart->CandleCenterX(middle) - 4, plot.top() + 2));
    EXPECT_EQ(chart->HoveredCandleIndex(), middle);
    EXPECT_NE(chart->grab().toImage(), plain);

    // Over the price axis or the tool strip: no candle; leaving the card clears it too.
    SendMouseMove(chart, QPoint(plot.right() + 10, plot.center().y()));
    EXPECT_EQ(chart->HoveredCandleIndex(), -1);
    SendMouseMove(chart, QPoint(chart->CandleCenterX(middle), 5));
    EXPECT_EQ(chart->HoveredCandleIndex(), -1);
    SendMouseMove(chart, QPoint(chart->CandleCenterX(middle), plot.center().y()));
    EXPECT_EQ(chart->HoveredCandleIndex(), middle);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(chart, &leave);
    EXPECT_EQ(chart->HoveredCandleIndex(), -1);
    EXPECT_TRUE(chart->CrosshairLines().isEmpty());
}

TEST_F(MarketCardsTest, TicksListTheNewestTradesOnTopAsTheFeedSteps)
{
    auto* ticks = Make<CVXTicksCard>(QSize(240, 240));
    ASSERT_NE(ticks, nullptr);
    EXPECT_TRUE(ticks->ShownTicks().empty());
    Steps(60);
    const int capacity = ticks->RowCapacity();
    ASSERT_GE(capacity, 5);
    EXPECT_LE(CVXTicksCard::kHeaderHeight + capacity * CVXTicksCard::kRowHeight, ticks->height());
    EXPECT_GT(CVXTicksCard::kHeaderHeight + (capacity + 1) * CVXTicksCard::kRowHeight, ticks->height());

    std::vector<vx_md::Tick> all = feed.GetTicks(kDefaultStockID);
    std::vector<vx_md::Tick> shown = ticks->ShownTicks();
    ASSERT_EQ(static_cast<int>(shown.size()), capacity);
    for (int i = 0; i < capacity; ++i) {
        const vx_md::Tick& expected = all[all.size() - 1 - i];
        EXPECT_EQ(shown[i].time, expected.time);
        EXPECT_EQ(shown[i].price, expected.price);
        EXPECT_EQ(shown[i].volume, expected.volume);
        EXPECT_EQ(shown[i].side, expected.side);
    }
    const QImage before = ticks->grab().toImage();
    // Both sides traded in 60 seconds: both markers are painted at the right edge.
    const QRect markers(ticks->width() - 24, CVXTicksCard::kHeaderHeight, 24, ticks->height());
    EXPECT_GT(CountPixels(before, CVXWorkspaceCardBase::ThemeColor("ct_buy"), 40, markers), 0);
    EXPECT_GT(CountPixels(before, CVXWorkspaceCardBase::ThemeColor("ct_sell"), 40, markers), 0);

    const vx_md::Tick previousTop = shown.front();
    Steps(1);
    shown = ticks->ShownTicks();
    EXPECT_EQ(shown[0].time, feed.Time());
    EXPECT_EQ(shown[1].time, previousTop.time);
    EXPECT_NE(ticks->grab().toImage(), before);

    ticks->resize(240, 130);
    EXPECT_LT(static_cast<int>(ticks->ShownTicks().size()), capacity);
    EXPECT_EQ(ticks->ShownTicks().front().time, feed.Time());
}

TEST_F(MarketCardsTest, TickStatisticsAddUpAndKeepTheirSort)
{
    auto* stats = Make<CVXTicksStatisticCard>(QSize(240, 240));
    ASSERT_NE(stats, nullptr);
    Steps(300);
    long long total = 0;
    long long bought = 0;
    for (const vx_md::Tick& t : feed.GetTicks(kDefaultStockID)) {
        total += t.volume;
        bought += t.side > 0 ? t.volume : 0;
    }
    const TickStatistic& byPrice = stats->Statistic();
    EXPECT_EQ(byPrice.Total(), total);
    EXPECT_EQ(byPrice.buy, bought);
    ASSERT_GE(byPrice.levels.size(), 3u);
    for (std::size_t i = 1; i < byPrice.levels.size(); ++i)
        EXPECT_GT(byPrice.levels[i - 1].price, byPrice.levels[i].price);
    // With more levels than rows, the view starts around the last price.
    const double last = feed.GetQuote(kDefaultStockID).last;
    if (static_cast<int>(byPrice.levels.size()) > stats->RowCapacity()) {
        bool lastOnShow = false;
        for (int i = stats->FirstShownRow(); i < stats->FirstShownRow() + stats->RowCapacity(); ++i)
            lastOnShow = lastOnShow || std::fabs(byPrice.levels[i].price - last) < 1e-6;
        EXPECT_TRUE(lastOnShow);
    }

    const QImage priceImage = stats->grab().toImage();
    QTest::mouseClick(stats, Qt::LeftButton, Qt::NoModifier, stats->SortToggleRect().center());
    EXPECT_EQ(stats->Sort(), EnTickStatSort::ByVolume);
    const TickStatistic& byVolume = stats->Statistic();
    EXPECT_EQ(byVolume.busiestLevel, 0);
    EXPECT_EQ(stats->FirstShownRow(), 0);
    for (std::size_t i = 1; i < byVolume.levels.size(); ++i)
        EXPECT_GE(byVolume.levels[i - 1].Total(), byVolume.levels[i].Total());
    EXPECT_NE(stats->grab().toImage(), priceImage);

    CVXVariantMapTree saved;
    stats->GetObjRestoreData(&saved);
    auto* fresh = Make<CVXTicksStatisticCard>(QSize(240, 240), false);
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(fresh->Sort(), EnTickStatSort::ByPrice);
    fresh->SetObjRestoreData(saved);
    EXPECT_EQ(fresh->Sort(), EnTickStatSort::ByVolume);
    CVXVariantMapTree bad;
    bad.Set<int>(QString::fromLatin1(CVXTicksStatisticCard::kKeySortBy), 9);
    fresh->SetObjRestoreData(bad);
    EXPECT_EQ(fresh->Sort(), EnTickStatSort::ByVolume);
}

TEST_F(MarketCardsTest, CardsPaintInTheLightAndTheDarkTheme)
{
    struct Shot
    {
        CVXCardObjBase* card;
        const char* name;
    };
    const std::vector<Shot> shots = {{Make<CVXStockHeaderCard>(QSize(480, 96)), "header"},
                                     {Make<CVXStockHeaderCard>(QSize(250, 64)), "header-narrow"},
                                     {Make<CVXKLineCard>(QSize(480, 300)), "kline"},
                                     {Make<CVXKLineCard>(QSize(240, 160)), "kline-small"},
                                     {Make<CVXTicksCard>(QSize(240, 240)), "ticks"},
                                     {Make<CVXTicksStatisticCard>(QSize(240, 240)), "ticksstat"},
                                     {Make<CVXTicksStatisticCard>(QSize(360, 240)), "ticksstat-wide"},
                                     {Make<CVXStockHeaderCard>(QSize(480, 96)), "header-search"}};
    auto* search = qobject_cast<CVXStockHeaderCard*>(shots.back().card);
    search->OpenCodeEditor(QStringLiteral("12345"));
    QTest::keyClick(search->CodeEditor(), Qt::Key_Return);
    ASSERT_FALSE(search->NotFoundHint().isEmpty());
    Steps(45 * 60);
    auto* chart = qobject_cast<CVXKLineCard*>(shots[2].card);
    chart->SetPeriod(5);
    SendMouseMove(chart, QPoint(chart->CandleCenterX(chart->VisibleRange().first + 4),
                                chart->PricePlotRect().center().y()));
    std::map<std::string, QImage> light;
    for (vx_ui_res::Theme theme : {vx_ui_res::Theme::Light, vx_ui_res::Theme::Dark}) {
        vx_ui_res::Provider::Instance().SetTheme(theme);
        const QColor background = CVXWorkspaceCardBase::ThemeColor("ct_bg_primary");
        for (const Shot& shot : shots) {
            SCOPED_TRACE(shot.name);
            const QImage image = shot.card->grab().toImage();
            // The corner is background in either theme.
            EXPECT_EQ(QColor(image.pixel(image.width() - 2, image.height() - 2)).rgb(), background.rgb());
            EXPECT_GT(CountPixels(image, CVXWorkspaceCardBase::ThemeColor("ct_text_secondary")), 0);
            if (theme == vx_ui_res::Theme::Light)
                light[shot.name] = image;
            else
                EXPECT_NE(image, light[shot.name]);
            workspace_test::KeepSnapshot(
                image,
                QStringLiteral("a1-%1-%2").arg(QString::fromLatin1(shot.name), vx_ui_res::ThemeName(theme)));
        }
    }
}
