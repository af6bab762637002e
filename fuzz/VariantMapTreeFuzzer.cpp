// libFuzzer target for the state tree's parser. Properties checked on every input:
// - parsing never crashes, leaks or over-allocates (the sanitizers and -malloc_limit_mb);
// - a refused input leaves the tree exactly as it was;
// - an accepted input re-serialises to a form that parses again to the same keys and, once
//   settled, to the same bytes.
// With VX_FUZZ_SEED_DIR set, a few well-formed buffers are written there as a seed corpus.

#include "Platform/Core/Log.h"
#include "Platform/Core/VariantMapTree.h"

#include <QColor>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QPointF>
#include <QRect>
#include <QStringList>

#include <cstdint>
#include <cstdlib>

namespace {

CVXVariantMapTree SampleTree(int variant)
{
    CVXVariantMapTree tree;
    tree.StoreValue(QStringLiteral("Int"), QVariant(-123456 * variant));
    tree.StoreValue(QStringLiteral("Bool"), QVariant(variant % 2 == 0));
    tree.StoreValue(QStringLiteral("Id"), QVariant(qulonglong(0xFEDCBA9876543210ull) + qulonglong(variant)));
    tree.StoreValue(QStringLiteral("Signed"), QVariant(qlonglong(-(1ll << 40)) - variant));
    tree.StoreValue(QStringLiteral("Title"), QVariant(QStringLiteral("K线 \U0001F600 %1").arg(variant)));
    tree.StoreValue(QStringLiteral("Blob"), QVariant(QByteArray("\0\1\2proto", 8)));
    tree.StoreValue(QStringLiteral("Rect"), QVariant(QRect(-5, 10, 300, 200 + variant)));
    tree.StoreValue(QStringLiteral("Names"),
                    QVariant(QStringList{QStringLiteral("a"), QStringLiteral("βγ")}));
    tree.StoreValue(QStringLiteral("List"), QVariant::fromValue(QList<QString>{QStringLiteral("x")}));
    tree.StoreValue(QStringLiteral("Vector"),
                    QVariant::fromValue(QVector<QString>{QString(), QStringLiteral("y")}));
    tree.StoreValue(QStringLiteral("Numbers"), QVariant::fromValue(QVector<qlonglong>{0, -1, 1ll << 62}));
    tree.StoreValue(QStringLiteral("Map"), QVariant::fromValue(QMap<QString, int>{
                                               {QStringLiteral("a"), 1}, {QStringLiteral("b"), -2}}));
    tree.StoreValue(QStringLiteral("When"), QVariant(QDate(2024, 5, 6)));
    tree.StoreValue(QStringLiteral("Colour"), QVariant(QColor(10, 20, 30, 40)));
    tree.StoreValue(QStringLiteral("Point"), QVariant(QPointF(1.5, -2.25)));

    CVXVariantMapTree card;
    card.StoreValue(QStringLiteral("CardType"), QVariant(QStringLiteral("OrderBook")));
    card.Child(QStringLiteral("Extra")).StoreValue(QStringLiteral("Depth"), QVariant(10));
    tree.StoreValue(QStringLiteral("Card"), QVariant::fromValue(card));
    tree.StoreValue(QStringLiteral("Cards"), QVariant::fromValue(QVector<CVXVariantMapTree>{card, card}));
    tree.Child(QStringLiteral("Child")).StoreValue(QStringLiteral("Leaf"), QVariant(true));
    return tree;
}

void WriteSeeds(const QString& folder)
{
    QDir().mkpath(folder);
    const auto write = [&folder](const QString& name, const QByteArray& bytes) {
        QFile file(folder + QLatin1Char('/') + name);
        if (file.open(QIODevice::WriteOnly))
            file.write(bytes);
    };
    write(QStringLiteral("empty"), CVXVariantMapTree().SerializeAsQByteArray());
    write(QStringLiteral("sample1"), SampleTree(1).SerializeAsQByteArray());
    write(QStringLiteral("sample2"), SampleTree(2).SerializeAsQByteArray());
    // The same buffer with a type name nobody registered: its value becomes a lazy entry.
    QByteArray unknown = SampleTree(3).SerializeAsQByteArray();
    const int at = unknown.lastIndexOf("QPointF");
    if (at > 0)
        unknown.replace(at, 7, "Unknown");
    write(QStringLiteral("unknown-type"), unknown);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    core::log::SetLevel(core::log::Level::Off);
    const QByteArray seeds = qgetenv("VX_FUZZ_SEED_DIR");
    if (!seeds.isEmpty())
        WriteSeeds(QString::fromLocal8Bit(seeds));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size > (1u << 24))
        return 0;
    const QByteArray input = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));

    CVXVariantMapTree tree;
    tree.StoreValue(QStringLiteral("Before"), QVariant(42));
    const QByteArray before = tree.SerializeAsQByteArray();
    if (!tree.ParseFromQByteArray(input)) {
        if (tree.SerializeAsQByteArray() != before)
            abort();
        return 0;
    }

    // Qt's own stream forms (types without a codec) may normalise once more on the way back:
    // a date-time with a zero UTC offset is read back as UTC. After that the bytes are fixed.
    const QByteArray canonical = tree.SerializeAsQByteArray();
    CVXVariantMapTree again;
    if (!again.ParseFromQByteArray(canonical) || again.Keys() != tree.Keys())
        abort();
    const QByteArray settled = again.SerializeAsQByteArray();
    CVXVariantMapTree third;
    if (!third.ParseFromQByteArray(settled) || third.SerializeAsQByteArray() != settled || !(third == again))
        abort();

    for (const QString& key : tree.Keys()) {
        tree.LazyLoad(key);
        QVariant value;
        if (tree.FindValue(key, &value))
            CVXVariantMapTree::ValueToString(value);
    }
    return 0;
}
