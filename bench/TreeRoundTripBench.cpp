// Saving and restoring a workspace: a canvas record of N box records, each with three cards,
// written to bytes and parsed back. The same content as nested QVariantMap/QVariantList through
// QDataStream is the reference the state tree must beat in time and size.

#include "UIFrame/StateTreeTypes.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include <QDataStream>
#include <QRect>
#include <QVariantList>
#include <QVariantMap>

#include <benchmark/benchmark.h>

#include <random>

namespace {

const char* const kCardTypes[] = {"StockHeader", "KLine", "OrderBook"};

CVXVariantMapTree MakeWorkspaceTree(int boxCount)
{
    std::mt19937_64 random(20240506);
    QVector<CVXVariantMapTree> boxes;
    for (int i = 0; i < boxCount; ++i) {
        CVXVariantMapTree box;
        box.Set(QStringLiteral("BoxType"),
                i % 3 ? VXPanelBoxType_AtomizationBox : VXPanelBoxType_CombinationBox);
        box.Set(QStringLiteral("Rect"), QRect(i * 13 % 1600, i * 7 % 900, 320 + i % 50, 240 + i % 30));
        box.Set(QStringLiteral("BoxID"), qulonglong(random() | 1));
        box.Set(QStringLiteral("strGroupID"), QStringLiteral("group-%1").arg(i % 4));
        box.Set(QStringLiteral("Title"), QStringLiteral("Box %1").arg(i));
        box.Set(QStringLiteral("ZOrder"), i);
        box.Set(QStringLiteral("Locked"), i % 5 == 0);
        QVector<CVXVariantMapTree> cards;
        for (int c = 0; c < 3; ++c) {
            CVXVariantMapTree data;
            data.Set(QStringLiteral("StockID"), qulonglong(random() % 100000000));
            data.Set(QStringLiteral("Market"), c + 1);
            data.Set(QStringLiteral("Period"), QStringLiteral("Day"));
            data.Set(QStringLiteral("ShowVolume"), c != 1);
            data.Set(QStringLiteral("Scale"), 100 + c);
            CVXVariantMapTree card;
            card.Set(QStringLiteral("CardType"), QString::fromLatin1(kCardTypes[c]));
            card.Set(QStringLiteral("Data"), data);
            cards.append(card);
        }
        box.Set(QStringLiteral("Cards"), cards);
        boxes.append(box);
    }
    CVXVariantMapTree canvas;
    canvas.Set(QStringLiteral("Boxes"), boxes);
    return canvas;
}

QVariantMap MakeWorkspaceMap(int boxCount)
{
    std::mt19937_64 random(20240506);
    QVariantList boxes;
    for (int i = 0; i < boxCount; ++i) {
        QVariantMap box;
        box.insert(QStringLiteral("BoxType"), i % 3 ? 0 : 1);
        box.insert(QStringLiteral("Rect"), QRect(i * 13 % 1600, i * 7 % 900, 320 + i % 50, 240 + i % 30));
        box.insert(QStringLiteral("BoxID"), qulonglong(random() | 1));
        box.insert(QStringLiteral("strGroupID"), QStringLiteral("group-%1").arg(i % 4));
        box.insert(QStringLiteral("Title"), QStringLiteral("Box %1").arg(i));
        box.insert(QStringLiteral("ZOrder"), i);
        box.insert(QStringLiteral("Locked"), i % 5 == 0);
        QVariantList cards;
        for (int c = 0; c < 3; ++c) {
            QVariantMap data;
            data.insert(QStringLiteral("StockID"), qulonglong(random() % 100000000));
            data.insert(QStringLiteral("Market"), c + 1);
            data.insert(QStringLiteral("Period"), QStringLiteral("Day"));
            data.insert(QStringLiteral("ShowVolume"), c != 1);
            data.insert(QStringLiteral("Scale"), 100 + c);
            QVariantMap card;
            card.insert(QStringLiteral("CardType"), QString::fromLatin1(kCardTypes[c]));
            card.insert(QStringLiteral("Data"), data);
            cards.append(card);
        }
        box.insert(QStringLiteral("Cards"), cards);
        boxes.append(box);
    }
    QVariantMap canvas;
    canvas.insert(QStringLiteral("Boxes"), boxes);
    return canvas;
}

void BM_TreeRoundTrip(benchmark::State& state)
{
    const CVXVariantMapTree tree = MakeWorkspaceTree(int(state.range(0)));
    qint64 bytes = 0;
    for (auto _ : state) {
        const QByteArray data = tree.SerializeAsQByteArray();
        CVXVariantMapTree parsed;
        if (!parsed.ParseFromQByteArray(data)) {
            state.SkipWithError("parse failed");
            break;
        }
        bytes = data.size();
        benchmark::DoNotOptimize(parsed);
    }
    state.counters["bytes"] = double(bytes);
}
BENCHMARK(BM_TreeRoundTrip)->Arg(200)->Unit(benchmark::kMicrosecond);

void BM_QVariantMapRoundTrip(benchmark::State& state)
{
    const QVariant map = MakeWorkspaceMap(int(state.range(0)));
    qint64 bytes = 0;
    for (auto _ : state) {
        QByteArray data;
        {
            QDataStream out(&data, QIODevice::WriteOnly);
            out.setVersion(QDataStream::Qt_5_15);
            out << map;
        }
        QDataStream in(data);
        in.setVersion(QDataStream::Qt_5_15);
        QVariant parsed;
        in >> parsed;
        if (in.status() != QDataStream::Ok) {
            state.SkipWithError("read failed");
            break;
        }
        bytes = data.size();
        benchmark::DoNotOptimize(parsed);
    }
    state.counters["bytes"] = double(bytes);
}
BENCHMARK(BM_QVariantMapRoundTrip)->Arg(200)->Unit(benchmark::kMicrosecond);

} // namespace
