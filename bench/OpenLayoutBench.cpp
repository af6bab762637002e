// Opening a saved layout from the gallery (BM_OpenLayout) against building the same widget tree in
// plain Qt (BM_BareWidgetTree). The layout holds N single-card boxes with three tabs each of a
// trivial card (a widget with a label); opening it makes a canvas in the gallery's place in the
// main tab widget, shows it and processes the pending events. The bare tree is a scroll area
// holding, at the same places, N frames with a QTabWidget of three such pages, put into the same
// tab widget, shown and processed the same way. The ratio OpenLayout / BareWidgetTree is what to
// watch: non-current tabs are built on first show, so the open path should cost no more than the
// bare tree.

#include "bench/BenchCanvasSupport.h"

#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutPage.h"
#include "UIFrame/Canvas/PanelLayoutTemplate.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"

#include "Platform/Core/Log.h"

#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

constexpr QSize kMainSize(1600, 1000);

QString CardText()
{
    return QStringLiteral("Card");
}

class CLabelCard : public CVXCardObjBase
{
public:
    static constexpr const char* kCardType = "OpenLayoutBenchCard";
    static CVXCardBaseStyle StaticCardStyle() { return bench_canvas::TrivialCardStyle(); }
    explicit CLabelCard(EnVXCardPos pos, QWidget* parent) : CVXCardObjBase(pos, parent)
    {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(new QLabel(CardText(), this));
    }
    QString GetCardObjType() override { return QString::fromLatin1(kCardType); }
};

// The saved layout of N boxes, the places of its boxes and the shown main tab widget.
struct OpenLayoutBench
{
    explicit OpenLayoutBench(int boxes)
    {
        core::log::SetLevel(core::log::Level::Warn);
        CVXCardFactoryMgr::Instance().RegisterFactory(std::make_shared<TplVXCardFactory<CLabelCard>>(), true);
        const QString type = QString::fromLatin1(CLabelCard::kCardType);
        {
            CVXPanelScrollView source;
            source.resize(kMainSize);
            for (int i = 0; i < boxes; ++i) {
                CVXPanelAtomizationBox* box = bench_canvas::AddThreeTabBox(source, type);
                if (!box)
                    break;
                rects.push_back(box->geometry());
            }
            extent = source.GetContentWidget()->size();
            CVXPanelLayoutTemplate layout;
            layout.setLayoutKey(kLayoutKey);
            layout.setTitle(QStringLiteral("Bench"));
            CVXVariantMapTree record;
            source.GetObjRestoreData(&record);
            layout.setRestoreData(record);
            layout.setIsCustomized(true);
            CVXPanelLayoutManager::Instance().AddOrUpdatePanelLayoutData(layout,
                                                                         CVXPanelLayoutManager::ObjectData);
        }
        Flush();
        tabs = std::make_unique<CVXTabWidgetRestore>();
        tabs->resize(kMainSize);
        tabs->addTab(new QWidget, QStringLiteral("Home"));
        tabs->show();
        QCoreApplication::processEvents();
    }
    ~OpenLayoutBench()
    {
        tabs.reset();
        Flush();
        CVXPanelLayoutManager::ResetForTest();
        CVXPanelBoxManager::instance()->ResetForTest();
        CVXPanelLinkageData::GetInstance().ResetForTest();
        CVXCardFactoryMgr::Instance().UnRegisterFactory(QString::fromLatin1(CLabelCard::kCardType));
        core::log::SetLevel(core::log::Level::Info);
    }

    static void Flush()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    // Takes the page at `index` out of the tab widget and deletes it with everything pending.
    void Drop(int index)
    {
        delete tabs->takeTab(index);
        Flush();
    }

    static constexpr unsigned long long kLayoutKey = 424242;
    std::vector<QRect> rects;
    QSize extent;
    std::unique_ptr<CVXTabWidgetRestore> tabs;
};

void BM_OpenLayout(benchmark::State& state)
{
    OpenLayoutBench bench(static_cast<int>(state.range(0)));
    if (bench.rects.size() != static_cast<size_t>(state.range(0))) {
        state.SkipWithError("layout not built");
        return;
    }
    for (auto _ : state) {
        state.PauseTiming();
        auto* gallery = new CVXPanelLayoutPage;
        bench.tabs->setCurrentIndex(bench.tabs->addTab(gallery, QStringLiteral("Gallery")));
        QCoreApplication::processEvents();
        state.ResumeTiming();

        CVXPanelScrollView* opened = gallery->OnOpenPanelLayoutRequest(OpenLayoutBench::kLayoutKey, false);
        QCoreApplication::processEvents();

        state.PauseTiming();
        if (!opened || !opened->isVisible() || opened->GetPanelBoxes().size() != state.range(0)) {
            state.SkipWithError("the layout did not open");
            break;
        }
        state.counters["widgets"] = bench_canvas::CountWidgets(opened);
        bench.Drop(bench.tabs->indexOf(opened));
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenLayout)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);

// The same tree in plain Qt: frames with a three-page QTabWidget each, in a scroll area.
QWidget* BuildBareTree(const std::vector<QRect>& rects, const QSize& extent)
{
    auto* area = new QScrollArea;
    auto* content = new QWidget;
    content->resize(extent);
    for (const QRect& rect : rects) {
        auto* frame = new QFrame(content);
        frame->setFrameShape(QFrame::Box);
        frame->setGeometry(rect);
        auto* layout = new QVBoxLayout(frame);
        layout->setContentsMargins(1, 1, 1, 1);
        auto* tabWidget = new QTabWidget(frame);
        for (int i = 0; i < 3; ++i) {
            auto* page = new QWidget;
            auto* pageLayout = new QVBoxLayout(page);
            pageLayout->addWidget(new QLabel(CardText(), page));
            tabWidget->addTab(page, CardText());
        }
        layout->addWidget(tabWidget);
    }
    area->setWidget(content);
    return area;
}

void BM_BareWidgetTree(benchmark::State& state)
{
    OpenLayoutBench bench(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        QWidget* tree = BuildBareTree(bench.rects, bench.extent);
        const int index = bench.tabs->addTab(tree, QStringLiteral("Bare"));
        bench.tabs->setCurrentIndex(index);
        QCoreApplication::processEvents();

        state.PauseTiming();
        if (!tree->isVisible()) {
            state.SkipWithError("the tree was not shown");
            break;
        }
        state.counters["widgets"] = bench_canvas::CountWidgets(tree);
        bench.Drop(index);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_BareWidgetTree)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);

} // namespace
