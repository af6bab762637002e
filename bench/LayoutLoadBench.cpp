// Start-up load of the user's layouts: N layout files (each a canvas record of ten boxes and a
// small preview) read through the layout manager's asynchronous path while the main thread keeps
// turning its event loop. load_ms is the time from the request until the last layout is in the
// manager's list; stall_ms is the longest time the event loop did not turn meanwhile (request and
// completion included), measured as the lateness of a 1 ms timer; apply_ms is the main thread's
// own share (adding the loaded layouts). The loading belongs in the pool: stall_ms must stay a
// small share of load_ms (check_ratios.py: stall_ms / load_ms <= 0.1).

#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/ProductPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRect>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

CVXVariantMapTree BoxRecord(int index)
{
    CVXVariantMapTree box;
    box.Set<int>(QStringLiteral("BoxType"), 0);
    box.Set<qulonglong>(QStringLiteral("BoxId"), 1000 + index);
    box.Set<QRect>(QStringLiteral("Geometry"), QRect(4 + (index % 4) * 305, 4 + (index / 4) * 205, 300, 200));
    box.Set<QString>(QStringLiteral("GroupID"), QString::number(index % 3 + 1));
    box.Set<QString>(QStringLiteral("Color"), QStringLiteral("#FF6A00"));
    QVector<CVXVariantMapTree> cards;
    for (int c = 0; c < 3; ++c) {
        CVXVariantMapTree card;
        card.Set<QString>(QStringLiteral("CardType"), QStringLiteral("QuoteSummaryCard"));
        card.Set<qulonglong>(QStringLiteral("StockID"), 200000 + index * 10 + c);
        card.Set<QStringList>(
            QStringLiteral("Columns"),
            QStringList{QStringLiteral("price"), QStringLiteral("change"), QStringLiteral("volume")});
        cards.append(card);
    }
    box.Set<QVector<CVXVariantMapTree>>(QStringLiteral("Cards"), cards);
    box.Set<int>(QStringLiteral("CurrentIndex"), 0);
    return box;
}

CVXPanelLayoutTemplate RealisticLayout(unsigned long long key)
{
    CVXVariantMapTree record;
    QVector<CVXVariantMapTree> boxes;
    for (int i = 0; i < 10; ++i)
        boxes.append(BoxRecord(i));
    record.Set<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData"), boxes);
    record.Set<int>(QStringLiteral("BoxCount"), 10);
    record.Set<int>(QStringLiteral("ViewX"), 0);
    record.Set<int>(QStringLiteral("ViewY"), 0);
    record.Set<qulonglong>(QStringLiteral("LayoutKey"), key);
    record.Set<QString>(QStringLiteral("ShortcutId"), QStringLiteral("Desk_%1").arg(key));
    record.Set<bool>(QStringLiteral("IsSaveAsTemplate"), true);

    // A preview like a shrunken canvas: a background and ten framed boxes with a label.
    QImage image(320, 200, QImage::Format_ARGB32);
    image.fill(QColor(0x1E, 0x20, 0x26));
    QPainter painter(&image);
    for (int i = 0; i < 10; ++i) {
        const QRect r(4 + (i % 4) * 78, 4 + (i / 4) * 64, 74, 60);
        painter.fillRect(r, QColor(0x2A + i * 8, 0x2E, 0x38));
        painter.setPen(QColor(0xFF, 0x6A, 0x00));
        painter.drawRect(r.adjusted(0, 0, -1, -1));
        painter.drawText(r, Qt::AlignCenter, QString::number(key % 1000 + i));
    }
    painter.end();

    CVXPanelLayoutTemplate layout;
    layout.setLayoutKey(key);
    layout.setTitle(QStringLiteral("Desk %1").arg(key));
    layout.setRemarks(QStringLiteral("ten boxes"));
    layout.setRestoreData(record);
    layout.setPreviewPixmap(QPixmap::fromImage(image));
    layout.setUpdateTimestamp(key);
    layout.setIsCustomized(true);
    layout.setIsUploaded(true);
    return layout;
}

constexpr qint64 kTickNs = 1'000'000;

void BM_LoadUserLayouts(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    core::log::SetLevel(core::log::Level::Warn);
    QTemporaryDir root;
    core::product_path::SetRootOverride(root.path());
    CVXPanelLayoutManager::ResetForTest();
    for (int i = 0; i < count; ++i) {
        const CVXPanelLayoutTemplate layout = RealisticLayout(1700000000000ull + i);
        if (!CVXPanelLayoutManager::Instance().SavePanelLayoutToUserFolder(layout).HasValue()) {
            state.SkipWithError("cannot write the layout files");
            return;
        }
    }

    double loadMs = 0;
    double stallMs = 0;
    double applyMs = 0;
    for (auto _ : state) {
        state.PauseTiming();
        CVXPanelLayoutManager::ResetForTest();
        CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
        state.ResumeTiming();

        // The event loop sleeps while idle, as the application's does; a 1 ms timer marks each
        // turn. A tick that comes later than its interval shows how long the loop could not
        // turn: the stall is the longest such lateness (the interval itself is idle time).
        QEventLoop loop;
        QTimer tick;
        tick.setTimerType(Qt::PreciseTimer);
        tick.setInterval(int(kTickNs / 1'000'000));
        QElapsedTimer timer;
        qint64 lastTurn = 0;
        qint64 longestGap = 0;
        bool arrived = false;
        qint64 arrivedAt = 0;
        const auto turn = [&] {
            const qint64 now = timer.nsecsElapsed();
            longestGap = std::max(longestGap, now - lastTurn - kTickNs);
            lastTurn = now;
            if (!arrived && manager.GetPanelLayoutDataListRef().size() >= count) {
                arrived = true;
                arrivedAt = now;
                loop.quit();
            }
        };
        QObject::connect(&tick, &QTimer::timeout, &loop, turn);
        QTimer::singleShot(60000, &loop, [&] { loop.quit(); });
        timer.start();
        tick.start();
        // The main thread's own share: from the first layout added to the last.
        qint64 firstAdded = -1;
        QObject::connect(&manager, &CVXPanelLayoutManager::LayoutDataAdded, &loop, [&] {
            if (firstAdded < 0)
                firstAdded = timer.nsecsElapsed();
        });
        manager.AsyncLoadCustomizedPanelLayouts([&] { turn(); });
        loop.exec();
        if (!arrived) {
            state.SkipWithError("the layouts never arrived");
            return;
        }
        loadMs += arrivedAt / 1e6;
        stallMs += longestGap / 1e6;
        applyMs += (arrivedAt - firstAdded) / 1e6;
    }
    state.counters["load_ms"] = loadMs / double(state.iterations());
    state.counters["stall_ms"] = stallMs / double(state.iterations());
    state.counters["apply_ms"] = applyMs / double(state.iterations());
    state.counters["layouts"] = count;

    CVXPanelLayoutManager::ResetForTest();
    core::product_path::ResetForTest();
    core::log::SetLevel(core::log::Level::Info);
}
BENCHMARK(BM_LoadUserLayouts)->Arg(50)->Unit(benchmark::kMillisecond);

} // namespace
