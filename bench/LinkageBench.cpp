// Linkage on a full canvas: one stock change in one card spreads through the linkage store and the
// bus to every other box of the group (BM_LinkedStockChange), against the plain cost of visiting
// every widget of the same canvas once with a virtual call (BM_WidgetTreeVisit). Both run on the
// same shown canvas of N single-card boxes with three tabs each of a trivial card, all in group "1".
// The ratio LinkedStockChange / WidgetTreeVisit is what to watch: the spread touches each widget
// about once, so it should stay within a small factor of the bare visit.

#include "bench/BenchCanvasSupport.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardEvents.h"
#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"

#include "Platform/Core/Log.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

class CBenchCard : public CVXCardObjBase
{
public:
    static constexpr const char* kCardType = "LinkageBenchCard";
    static CVXCardBaseStyle StaticCardStyle() { return bench_canvas::TrivialCardStyle(); }
    explicit CBenchCard(EnVXCardPos pos, QWidget* parent) : CVXCardObjBase(pos, parent)
    {
        RegisterUIEventHandler<CardEventStockIDChanged>(this, &CBenchCard::OnStock);
    }
    QString GetCardObjType() override { return QString::fromLatin1(kCardType); }
    void OnStock(const CardEventStockIDChanged* event) { m_u64Last = event->u64StockID; }
    void Pick(unsigned long long id)
    {
        CardEventStockIDChanged event(id);
        core::ui_event::DispatchCardEvent(this, &event);
    }
    unsigned long long m_u64Last = 0;
};

// The canvas shared by both benchmarks of one size.
struct BenchCanvas
{
    explicit BenchCanvas(int boxes)
    {
        core::log::SetLevel(core::log::Level::Warn);
        CVXCardFactoryMgr::Instance().RegisterFactory(std::make_shared<TplVXCardFactory<CBenchCard>>(), true);
        canvas = std::make_unique<CVXPanelScrollView>();
        canvas->resize(1600, 1000);
        canvas->show();
        const QString type = QString::fromLatin1(CBenchCard::kCardType);
        for (int i = 0; i < boxes; ++i) {
            CVXPanelAtomizationBox* box = bench_canvas::AddThreeTabBox(*canvas, type);
            if (!box)
                break;
            box->SetGroupID(QStringLiteral("1"));
            if (!first)
                first = dynamic_cast<CBenchCard*>(box->GetCardByIndex(0));
            last = box;
        }
        QCoreApplication::processEvents();
    }
    ~BenchCanvas()
    {
        canvas.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        CVXPanelBoxManager::instance()->ResetForTest();
        CVXPanelLinkageData::GetInstance().ResetForTest();
        CVXCardFactoryMgr::Instance().UnRegisterFactory(QString::fromLatin1(CBenchCard::kCardType));
        core::log::SetLevel(core::log::Level::Info);
    }

    std::unique_ptr<CVXPanelScrollView> canvas;
    CBenchCard* first = nullptr;
    CVXPanelAtomizationBox* last = nullptr;
};

void BM_LinkedStockChange(benchmark::State& state)
{
    BenchCanvas bench(static_cast<int>(state.range(0)));
    if (!bench.first || !bench.last) {
        state.SkipWithError("canvas not built");
        return;
    }
    unsigned long long id = 1000;
    for (auto _ : state) {
        ++id;
        bench.first->Pick(id);
    }
    if (bench.last->GetStockID() != id)
        state.SkipWithError("the last box did not follow");
    state.counters["widgets"] = bench_canvas::CountWidgets(bench.canvas.get());
}
BENCHMARK(BM_LinkedStockChange)->Arg(200)->Unit(benchmark::kMicrosecond);

// The baseline: every widget of the canvas once, with a virtual call that the compiler cannot drop.
int VisitAll(QWidget* root)
{
    int sum = root->devType();
    for (QObject* child : root->children()) {
        if (child->isWidgetType())
            sum += VisitAll(static_cast<QWidget*>(child));
    }
    return sum;
}

void BM_WidgetTreeVisit(benchmark::State& state)
{
    BenchCanvas bench(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(VisitAll(bench.canvas.get()));
    state.counters["widgets"] = bench_canvas::CountWidgets(bench.canvas.get());
}
BENCHMARK(BM_WidgetTreeVisit)->Arg(200)->Unit(benchmark::kMicrosecond);

} // namespace
