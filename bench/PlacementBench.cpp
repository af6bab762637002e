// Placing a new box on a 1920 x 1080 page that N boxes fill completely: the search runs through
// every step and the whole raster before it falls back to the cascade point. The plain raster
// search of the reference is the baseline the canvas's own search must beat by 20 times.

#include "UIFrame/Canvas/PanelGeometry.h"

#include "tests/reference/PlacementReference.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int kPageWidth = 1920;
constexpr int kPageHeight = 1080;
const QSize kNewBox(150, 100);

// 20 columns and N / 20 rows of the reference's dense grid.
QVector<QRect> FullPage(int boxCount)
{
    return placement_reference::DenseGrid(20, boxCount / 20);
}

void BM_PlacementReference(benchmark::State& state)
{
    const QVector<QRect> boxes = FullPage(int(state.range(0)));
    for (auto _ : state) {
        QPoint p = placement_reference::PlainRasterPlacement(boxes, kNewBox, kPageWidth, kPageHeight);
        benchmark::DoNotOptimize(p);
    }
}
BENCHMARK(BM_PlacementReference)->Arg(200)->Unit(benchmark::kMicrosecond);

void BM_Placement(benchmark::State& state)
{
    const QVector<QRect> boxes = FullPage(int(state.range(0)));
    // A fast answer is only worth measuring when it is the right one.
    if (panel_geometry::FindPlacement(boxes, kNewBox, kPageWidth, kPageHeight) !=
        placement_reference::PlainRasterPlacement(boxes, kNewBox, kPageWidth, kPageHeight)) {
        state.SkipWithError("FindPlacement differs from the reference");
        return;
    }
    for (auto _ : state) {
        QPoint p = panel_geometry::FindPlacement(boxes, kNewBox, kPageWidth, kPageHeight);
        benchmark::DoNotOptimize(p);
    }
}
BENCHMARK(BM_Placement)->Arg(200)->Unit(benchmark::kMicrosecond);

} // namespace
