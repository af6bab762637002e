// A busy workspace under the simulated feed: one market tick (BM_MarketTick: feed.Step() and the
// repaint it causes) against a full repaint of the same window (BM_FullRepaint). The window is a
// wall of 200 boxes of the program's own cards on one canvas, every box on screen: the boxes of
// the built-in layouts taken in turn (so the mix of card types is the one users start from), each
// at its card's smallest size, packed in rows, each copy of a layout in its own linkage group
// showing its own security, the trade boxes on the broker's default account with a few working
// orders. Every card watches a security that moves on each step, so a tick repaints every card:
// the ratio MarketTick / FullRepaint is what the feed, the bus dispatch and the cards' updates add
// to the painting a tick needs.
//
// The cards paint opaque (WA_OpaquePaintEvent), and Qt leaves opaque children out of a parent's
// repaint: window->repaint() alone would paint the boxes' frames and no card. A full repaint
// therefore marks every card too, then repaints the window: each widget of the window painted once.

#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/Layouts/BuiltInLayouts.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/Trade/SimTradeService.h"

#include "UIFrame/Canvas/PanelBoxKindRegistry.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QApplication>
#include <QEvent>
#include <QFont>
#include <QPointer>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <unordered_map>
#include <vector>

namespace {

constexpr std::uint64_t kSeed = 20240611;
// An hour of trading before the window opens, as the program does.
constexpr int kWarmUpSeconds = 3600;
// A 4K-wide wall; the height follows from the packing.
constexpr int kWallWidth = 3840;
constexpr int kGap = 4;

// Counts the paint events each watched card receives.
class CPaintCounter : public QObject
{
public:
    void Watch(QWidget* widget)
    {
        widget->installEventFilter(this);
        m_paints[widget] = 0;
    }
    void Reset()
    {
        for (auto& entry : m_paints)
            entry.second = 0;
    }
    long long Total() const
    {
        long long total = 0;
        for (const auto& entry : m_paints)
            total += entry.second;
        return total;
    }
    // Watched widgets that were not painted since the last Reset().
    int Unpainted() const
    {
        int n = 0;
        for (const auto& entry : m_paints)
            n += entry.second == 0 ? 1 : 0;
        return n;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            auto it = m_paints.find(watched);
            if (it != m_paints.end())
                ++it->second;
        }
        return false;
    }

private:
    std::unordered_map<QObject*, long long> m_paints;
};

// One box of the wall: a box of a built-in layout, the layout copy it belongs to.
struct WallBox
{
    const vx_ws::VXBuiltInLayout* layout = nullptr;
    vx_ws::VXBuiltInBox box;
    int copy = 0;
};

class WorkspaceBench
{
public:
    explicit WorkspaceBench(int boxCount) : feed(kSeed)
    {
        core::log::SetLevel(core::log::Level::Warn);
        core::product_path::SetRootOverride(root.path());
        // The program's font: card layouts measure text with it.
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(12);
        QApplication::setFont(font);
        vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Light);
        vx_ui_res::Provider::Instance().ApplyApplicationPalette();

        feed.WarmUp(kWarmUpSeconds);
        trade = std::make_unique<vx_trade::CVXSimTradeService>(&feed);
        vx_ws::SetMarketData(&feed);
        vx_ws::SetTradeService(trade.get());
        vx_ws::RegisterWorkspaceCards();
        PlaceWorkingOrders();

        window = std::make_unique<QWidget>();
        auto* layout = new QVBoxLayout(window.get());
        layout->setContentsMargins(0, 0, 0, 0);
        canvas = new CVXPanelScrollView(window.get());
        layout->addWidget(canvas);
        const int height = Fill(boxCount);
        window->resize(kWallWidth, height);
        window->show();
        Settle();
        canvas->UpdateScrollInfo();
        Settle();
        WatchShownCards();
    }

    ~WorkspaceBench()
    {
        window.reset();
        Settle();
        CVXPanelBoxManager::instance()->ResetForTest();
        CVXPanelLinkageData::GetInstance().ResetForTest();
        CVXPanelBoxKindRegistry::Instance().ResetForTest();
        for (const QString& type : vx_ws::WorkspaceCardTypes())
            CVXCardFactoryMgr::Instance().UnRegisterFactory(type);
        vx_ws::SetTradeService(nullptr);
        vx_ws::SetMarketData(nullptr);
        trade.reset();
        core::product_path::ResetForTest();
        core::log::SetLevel(core::log::Level::Info);
    }

    static void Settle()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    // The repaint a tick asks for: the posted update requests, delivered and painted.
    static void DeliverRepaint() { QCoreApplication::processEvents(); }

    void FullRepaint()
    {
        for (QWidget* card : cards)
            card->update();
        window->repaint();
    }

    // Empty when the wall is as described; else why not.
    std::string Check()
    {
        if (boxes != static_cast<int>(expectedBoxes))
            return "only " + std::to_string(boxes) + " of " + std::to_string(expectedBoxes) + " boxes made";
        if (shownCards != boxes)
            return std::to_string(boxes - shownCards) + " boxes show no card on screen";
        // A tick must repaint every card, and nothing may be left for after the measured region.
        counter.Reset();
        feed.Step();
        DeliverRepaint();
        if (counter.Unpainted() != 0)
            return std::to_string(counter.Unpainted()) + " cards not repainted by a tick";
        counter.Reset();
        QCoreApplication::processEvents();
        if (counter.Total() != 0)
            return "a tick left paints pending after its repaint";
        counter.Reset();
        FullRepaint();
        if (counter.Unpainted() != 0)
            return std::to_string(counter.Unpainted()) + " cards not painted by a full repaint";
        counter.Reset();
        return std::string();
    }

    QTemporaryDir root;
    vx_md::CVXSimMarketData feed;
    std::unique_ptr<vx_trade::CVXSimTradeService> trade;
    std::unique_ptr<QWidget> window;
    CVXPanelScrollView* canvas = nullptr;
    CPaintCounter counter;
    std::vector<QWidget*> cards; // the shown card of each box
    size_t expectedBoxes = 0;
    int boxes = 0;
    int shownCards = 0;

private:
    // The boxes of the built-in layouts in turn, layout after layout, until `count`.
    static std::vector<WallBox> Mix(int count)
    {
        std::vector<WallBox> mix;
        const QVector<vx_ws::VXBuiltInLayout>& layouts = vx_ws::BuiltInLayouts();
        for (int copy = 0; static_cast<int>(mix.size()) < count; ++copy) {
            for (const vx_ws::VXBuiltInLayout& layout : layouts) {
                for (const vx_ws::VXBuiltInBox& box : layout.boxes) {
                    if (static_cast<int>(mix.size()) < count)
                        mix.push_back(WallBox{&layout, box, copy});
                }
            }
        }
        return mix;
    }

    // Each box at its first card's smallest size, packed in rows across the wall, tallest first
    // (so that a row wastes little height). Returns the height the wall needs.
    int Fill(int count)
    {
        std::vector<WallBox> mix = Mix(count);
        expectedBoxes = mix.size();
        for (WallBox& item : mix) {
            CVXCardBaseStyle style;
            if (CVXCardFactoryMgr::Instance().GetCardStyle(item.box.cardTypes.value(0), &style))
                item.box.geometry.setSize(CVXPanelAtomizationBox::CardSizeAddBoxBorder(style.minSize));
        }
        std::stable_sort(mix.begin(), mix.end(), [](const WallBox& a, const WallBox& b) {
            return a.box.geometry.height() > b.box.geometry.height();
        });
        const QVector<vx_ws::VXBuiltInLayout>& layouts = vx_ws::BuiltInLayouts();
        const unsigned long long account = trade->DefaultAccountID();
        int x = kGap;
        int y = kGap;
        int rowHeight = 0;
        for (const WallBox& item : mix) {
            const QSize size = item.box.geometry.size();
            if (x + size.width() + kGap > kWallWidth) {
                x = kGap;
                y += rowHeight + kGap;
                rowHeight = 0;
            }
            const int layoutIndex = static_cast<int>(item.layout - layouts.data());
            const int groupNumber = item.copy * layouts.size() + layoutIndex;
            vx_ws::VXBuiltInLayout copy = *item.layout;
            copy.stockId = StockOfCopy(*item.layout, groupNumber);
            vx_ws::VXBuiltInBox box = item.box;
            box.geometry = QRect(QPoint(x, y), size);
            if (!box.groupId.isEmpty())
                box.groupId = QString::number(groupNumber + 1);
            if (canvas->CreateBoxFromRecord(vx_ws::BuiltInBoxRecord(copy, box, account), 0))
                ++boxes;
            x += size.width() + kGap;
            rowHeight = std::max(rowHeight, size.height());
        }
        return y + rowHeight + kGap;
    }

    // The first copy of a layout shows its own security; later copies other stocks, except the
    // options layout whose combo strategy is written for its underlying.
    static unsigned long StockOfCopy(const vx_ws::VXBuiltInLayout& layout, int groupNumber)
    {
        if (groupNumber < vx_ws::BuiltInLayouts().size() || layout.stockId < vx_ws::kDefaultStockID)
            return layout.stockId;
        return vx_ws::kDefaultStockID + static_cast<unsigned long>(groupNumber % 40);
    }

    // Buys below the market that stay working, so the broker follows the feed and the order
    // cards have rows.
    void PlaceWorkingOrders()
    {
        const unsigned long long account = trade->DefaultAccountID();
        for (unsigned long id = vx_ws::kDefaultStockID; id < vx_ws::kDefaultStockID + 8; ++id) {
            const vx_md::SecurityInfo info = feed.GetSecurity(id);
            const double tick = info.tickSize > 0 ? info.tickSize : 0.01;
            const double limit = std::floor(feed.GetQuote(id).last * 0.8 / tick) * tick;
            trade->PlaceOrder(account, id, vx_trade::EnOrderSide::Buy, vx_trade::EnOrderType::Limit, limit,
                              info.lotSize > 0 ? info.lotSize : 100);
        }
    }

    void WatchShownCards()
    {
        for (CVXPanelBaseBox* base : canvas->GetPanelBoxes()) {
            auto* box = qobject_cast<CVXPanelAtomizationBox*>(base);
            CVXCardObjBase* card = box ? box->GetCurrentCard() : nullptr;
            if (!card || !card->isVisible() || card->visibleRegion().isEmpty())
                continue;
            counter.Watch(card);
            cards.push_back(card);
            ++shownCards;
        }
    }
};

void BM_MarketTick(benchmark::State& state)
{
    WorkspaceBench bench(static_cast<int>(state.range(0)));
    const std::string problem = bench.Check();
    if (!problem.empty()) {
        state.SkipWithError(problem.c_str());
        return;
    }
    for (auto _ : state) {
        bench.feed.Step();
        WorkspaceBench::DeliverRepaint();
    }
    state.counters["cards_painted"] =
        benchmark::Counter(static_cast<double>(bench.counter.Total()), benchmark::Counter::kAvgIterations);
    state.counters["window_px"] =
        static_cast<double>(bench.window->width()) * static_cast<double>(bench.window->height());
}

void BM_FullRepaint(benchmark::State& state)
{
    WorkspaceBench bench(static_cast<int>(state.range(0)));
    const std::string problem = bench.Check();
    if (!problem.empty()) {
        state.SkipWithError(problem.c_str());
        return;
    }
    for (auto _ : state)
        bench.FullRepaint();
    state.counters["cards_painted"] =
        benchmark::Counter(static_cast<double>(bench.counter.Total()), benchmark::Counter::kAvgIterations);
    state.counters["window_px"] =
        static_cast<double>(bench.window->width()) * static_cast<double>(bench.window->height());
}

} // namespace

BENCHMARK(BM_MarketTick)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FullRepaint)->Arg(200)->Unit(benchmark::kMillisecond);
