// The state tree's core: its byte layout, copy semantics, lazy entries and its behaviour on
// corrupt and hostile buffers. Buffers are built here by hand with a small encoder of the
// test's own, so the layout is checked against an independent reading of it.

#include "Platform/Core/VariantMapTree.h"

#include "tests/common/TestSupport.h"

#include <QDataStream>
#include <QDate>
#include <QPointF>
#include <QRect>
#include <QStringList>

#include <gtest/gtest.h>

#include <climits>
#include <random>

namespace {

// ---- an independent encoder of the binary form ----------------------------------------------

QByteArray Var(quint64 v)
{
    QByteArray out;
    do {
        quint8 byte = v & 0x7F;
        v >>= 7;
        if (v)
            byte |= 0x80;
        out.append(char(byte));
    } while (v);
    return out;
}

QByteArray Str(const QByteArray& utf8)
{
    return Var(quint64(utf8.size())) + utf8;
}

QByteArray Entry(const QByteArray& key, int typeIndex, const QByteArray& payload)
{
    return Str(key) + Var(quint64(typeIndex)) + Var(quint64(payload.size())) + payload;
}

// A whole buffer: header, body, type table.
QByteArray Buffer(const QByteArray& body, const QList<QByteArray>& types)
{
    QByteArray out("VXTR\x01", 5);
    const quint32 offset = quint32(9 + body.size());
    for (int i = 0; i < 4; ++i)
        out.append(char((offset >> (8 * i)) & 0xFF));
    out += body;
    out += Var(quint64(types.size()));
    for (const QByteArray& t : types)
        out += Str(t);
    return out;
}

CVXVariantMapTree SentinelTree()
{
    CVXVariantMapTree tree;
    tree.StoreValue(QStringLiteral("sentinel"), QVariant(99));
    tree.Child(QStringLiteral("kid")).StoreValue(QStringLiteral("x"), QVariant(QStringLiteral("y")));
    return tree;
}

template <typename T> T ValueOf(const CVXVariantMapTree& tree, const QString& key)
{
    QVariant v;
    EXPECT_TRUE(tree.FindValue(key, &v)) << key.toStdString();
    EXPECT_EQ(v.userType(), qMetaTypeId<T>()) << key.toStdString();
    return v.value<T>();
}

CVXVariantMapTree RoundTrip(const CVXVariantMapTree& tree)
{
    CVXVariantMapTree parsed;
    EXPECT_TRUE(parsed.ParseFromQByteArray(tree.SerializeAsQByteArray()));
    return parsed;
}

// A tree with every value type the core writes itself, nested trees and children.
CVXVariantMapTree RichTree()
{
    CVXVariantMapTree card;
    card.StoreValue(QStringLiteral("CardType"), QVariant(QStringLiteral("OrderBook")));
    card.Child(QStringLiteral("Extra")).StoreValue(QStringLiteral("Depth"), QVariant(10));
    CVXVariantMapTree tree;
    tree.StoreValue(QStringLiteral("Int"), QVariant(-7));
    tree.StoreValue(QStringLiteral("Bool"), QVariant(true));
    tree.StoreValue(QStringLiteral("Id"), QVariant(qulonglong(0x8000000000000001ull)));
    tree.StoreValue(QStringLiteral("Signed"), QVariant(qlonglong(LLONG_MIN)));
    tree.StoreValue(QStringLiteral("Title"), QVariant(QStringLiteral("盘口 \U0001F4C8")));
    tree.StoreValue(QStringLiteral("Blob"), QVariant(QByteArray("\0\xFF\x01", 3)));
    tree.StoreValue(QStringLiteral("Rect"), QVariant(QRect(-3, 4, 100, 50)));
    tree.StoreValue(QStringLiteral("Names"), QVariant(QStringList{QStringLiteral("a"), QString()}));
    tree.StoreValue(QStringLiteral("Numbers"),
                    QVariant::fromValue(QVector<qlonglong>{LLONG_MIN, 0, LLONG_MAX}));
    tree.StoreValue(QStringLiteral("Map"), QVariant::fromValue(QMap<QString, int>{
                                               {QStringLiteral("b"), INT_MIN}, {QStringLiteral("a"), 1}}));
    tree.StoreValue(QStringLiteral("When"), QVariant(QDate(2023, 1, 2)));
    tree.StoreValue(QStringLiteral("Card"), QVariant::fromValue(card));
    tree.StoreValue(QStringLiteral("Cards"),
                    QVariant::fromValue(QVector<CVXVariantMapTree>{card, card, card}));
    tree.Child(QStringLiteral("Child")).StoreValue(QStringLiteral("Leaf"), QVariant(false));
    return tree;
}

// ---- byte layout ---------------------------------------------------------------------------

TEST(VariantMapTreeBytes, SmallTreeHasTheDocumentedLayout)
{
    CVXVariantMapTree tree;
    tree.StoreValue(QStringLiteral("b"), QVariant(QStringLiteral("hé")));
    tree.StoreValue(QStringLiteral("a"), QVariant(1));
    tree.Child(QStringLiteral("c"));

    // Worked out by hand: magic, version, table offset 0x1B (9 + 18 body bytes), body (two
    // entries in key order,
    // int 1 as zigzag 2, "hé" as 68 C3 A9, one empty child "c"), then the type table.
    const QByteArray expected = QByteArray::fromHex("5658545201"
                                                    "1B000000"
                                                    "02"
                                                    "0161"
                                                    "00"
                                                    "01"
                                                    "02"
                                                    "0162"
                                                    "01"
                                                    "03"
                                                    "68C3A9"
                                                    "01"
                                                    "0163"
                                                    "0000"
                                                    "02"
                                                    "03696E74"
                                                    "0751537472696E67");
    EXPECT_EQ(tree.SerializeAsQByteArray().toHex(), expected.toHex());
}

TEST(VariantMapTreeBytes, NumbersUseTheirShortestForms)
{
    // (value, payload) pairs worked out by hand from the zigzag / short little-endian rules.
    const QList<QPair<QVariant, QByteArray>> rows = {
        {QVariant(0), QByteArray()},
        {QVariant(-1), QByteArray::fromHex("01")},
        {QVariant(300), QByteArray::fromHex("5802")},
        {QVariant(INT_MIN), QByteArray::fromHex("FFFFFFFF")},
        {QVariant(qulonglong(0x1234)), QByteArray::fromHex("3412")},
        {QVariant(qulonglong(ULLONG_MAX)), QByteArray::fromHex("FFFFFFFFFFFFFFFF")},
        {QVariant(qlonglong(-2)), QByteArray::fromHex("03")},
        {QVariant(true), QByteArray::fromHex("01")},
        {QVariant(QRect(QPoint(-1, 2), QPoint(3, -4))), QByteArray::fromHex("01040607")},
    };
    for (const auto& row : rows) {
        CVXVariantMapTree tree;
        tree.StoreValue(QStringLiteral("k"), row.first);
        const QByteArray bytes = tree.SerializeAsQByteArray();
        const QByteArray expectedBody = Var(1) + Entry("k", 0, row.second) + Var(0);
        EXPECT_EQ(bytes.mid(9, expectedBody.size()).toHex(), expectedBody.toHex()) << row.first.typeName();

        CVXVariantMapTree parsed;
        ASSERT_TRUE(parsed.ParseFromQByteArray(bytes));
        QVariant back;
        ASSERT_TRUE(parsed.FindValue(QStringLiteral("k"), &back));
        EXPECT_EQ(back, row.first);
    }
}

TEST(VariantMapTreeBytes, EveryCoreTypeSurvivesARoundTrip)
{
    const CVXVariantMapTree tree = RichTree();
    const CVXVariantMapTree parsed = RoundTrip(tree);

    EXPECT_EQ(ValueOf<int>(parsed, QStringLiteral("Int")), -7);
    EXPECT_EQ(ValueOf<bool>(parsed, QStringLiteral("Bool")), true);
    EXPECT_EQ(ValueOf<qulonglong>(parsed, QStringLiteral("Id")), 0x8000000000000001ull);
    EXPECT_EQ(ValueOf<qlonglong>(parsed, QStringLiteral("Signed")), LLONG_MIN);
    EXPECT_EQ(ValueOf<QString>(parsed, QStringLiteral("Title")), QStringLiteral("盘口 \U0001F4C8"));
    EXPECT_EQ(ValueOf<QByteArray>(parsed, QStringLiteral("Blob")), QByteArray("\0\xFF\x01", 3));
    EXPECT_EQ(ValueOf<QRect>(parsed, QStringLiteral("Rect")), QRect(-3, 4, 100, 50));
    EXPECT_EQ(ValueOf<QStringList>(parsed, QStringLiteral("Names")),
              (QStringList{QStringLiteral("a"), QString()}));
    EXPECT_EQ(ValueOf<QVector<qlonglong>>(parsed, QStringLiteral("Numbers")),
              (QVector<qlonglong>{LLONG_MIN, 0, LLONG_MAX}));
    const QMap<QString, int> map = ValueOf<QMap<QString, int>>(parsed, QStringLiteral("Map"));
    EXPECT_EQ(map.keys(), (QList<QString>{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(map.value(QStringLiteral("b")), INT_MIN);
    EXPECT_EQ(ValueOf<QDate>(parsed, QStringLiteral("When")), QDate(2023, 1, 2));

    const CVXVariantMapTree card = ValueOf<CVXVariantMapTree>(parsed, QStringLiteral("Card"));
    EXPECT_EQ(ValueOf<QString>(card, QStringLiteral("CardType")), QStringLiteral("OrderBook"));
    EXPECT_EQ(ValueOf<int>(card.Child(QStringLiteral("Extra")), QStringLiteral("Depth")), 10);
    EXPECT_EQ(ValueOf<QVector<CVXVariantMapTree>>(parsed, QStringLiteral("Cards")).size(), 3);
    EXPECT_EQ(ValueOf<bool>(parsed.Child(QStringLiteral("Child")), QStringLiteral("Leaf")), false);
    EXPECT_TRUE(parsed == tree);
}

TEST(VariantMapTreeBytes, SavingAgainGivesIdenticalBytes)
{
    const CVXVariantMapTree tree = RichTree();
    const QByteArray first = tree.SerializeAsQByteArray();
    EXPECT_EQ(tree.SerializeAsQByteArray(), first);
    EXPECT_EQ(RoundTrip(tree).SerializeAsQByteArray(), first);
    CVXVariantMapTree copy = tree;
    EXPECT_EQ(copy.SerializeAsQByteArray(), first);
}

TEST(VariantMapTreeBytes, DataStreamOperatorsCarryTheTree)
{
    const CVXVariantMapTree tree = RichTree();
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << tree;
    }
    CVXVariantMapTree back;
    QDataStream in(bytes);
    in >> back;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(back == tree);

    QByteArray corrupt;
    {
        QDataStream out(&corrupt, QIODevice::WriteOnly);
        out << QByteArray("not a tree");
    }
    CVXVariantMapTree untouched = SentinelTree();
    QDataStream bad(corrupt);
    bad >> untouched;
    EXPECT_EQ(bad.status(), QDataStream::ReadCorruptData);
    EXPECT_TRUE(untouched == SentinelTree());
}

// ---- values the reader does not know --------------------------------------------------------

TEST(VariantMapTreeLazy, UnknownTypesSurviveByteExactly)
{
    const QByteArray payload = QByteArray::fromHex("00FF10203040");
    // int 0 is written with an empty payload: the buffer is in canonical form.
    const QByteArray bytes = Buffer(Var(2) + Entry("a", 0, QByteArray()) + Entry("z", 1, payload) + Var(0),
                                    {"int", "Test::NeverRegisteredType"});
    CVXVariantMapTree tree;
    ASSERT_TRUE(tree.ParseFromQByteArray(bytes));
    EXPECT_EQ(tree.Keys(), (QList<QString>{QStringLiteral("a"), QStringLiteral("z")}));
    ASSERT_TRUE(tree.LazyEntries().contains(QStringLiteral("z")));
    EXPECT_EQ(tree.LazyEntries().value(QStringLiteral("z")).strTypeName,
              QStringLiteral("Test::NeverRegisteredType"));
    EXPECT_EQ(tree.LazyEntries().value(QStringLiteral("z")).data, payload);
    EXPECT_TRUE(tree.Contains(QStringLiteral("z")));
    EXPECT_FALSE(tree.IsEmpty());
    EXPECT_FALSE(tree.LazyLoad(QStringLiteral("z")));
    EXPECT_FALSE(tree.IsSameType(QStringLiteral("z"), QMetaType::Int));
    EXPECT_EQ(tree.SerializeAsQByteArray(), bytes);

    // Written again next to a new value, the unknown entry keeps its name and bytes.
    tree.StoreValue(QStringLiteral("m"), QVariant(QStringLiteral("new")));
    CVXVariantMapTree again;
    ASSERT_TRUE(again.ParseFromQByteArray(tree.SerializeAsQByteArray()));
    EXPECT_EQ(again.LazyEntries().value(QStringLiteral("z")).data, payload);
    EXPECT_EQ(ValueOf<QString>(again, QStringLiteral("m")), QStringLiteral("new"));

    EXPECT_TRUE(tree.Remove(QStringLiteral("z")));
    EXPECT_FALSE(tree.Contains(QStringLiteral("z")));
    EXPECT_FALSE(tree.Remove(QStringLiteral("z")));
}

TEST(VariantMapTreeLazy, MalformedValuesOfKnownTypesStayAsBytes)
{
    // (type, payload): an int of five bytes, a bool of 2, a string with a lone continuation
    // byte, a string list claiming a billion items, a rect with one coordinate missing.
    const QList<QPair<QByteArray, QByteArray>> rows = {
        {"int", QByteArray::fromHex("0102030405")},
        {"bool", QByteArray::fromHex("02")},
        {"QString", QByteArray::fromHex("6180")},
        {"QStringList", Var(1000000000)},
        {"QRect", QByteArray::fromHex("010203")},
        {"QMap<QString,int>", Var(2) + Str("b") + Var(2) + Str("a") + Var(4)}, // keys out of order
    };
    for (const auto& row : rows) {
        const QByteArray bytes = Buffer(Var(1) + Entry("k", 0, row.second) + Var(0), {row.first});
        CVXVariantMapTree tree;
        ASSERT_TRUE(tree.ParseFromQByteArray(bytes)) << row.first.constData();
        EXPECT_FALSE(tree.LazyLoad(QStringLiteral("k"))) << row.first.constData();
        EXPECT_TRUE(tree.LazyEntries().contains(QStringLiteral("k"))) << row.first.constData();
        EXPECT_EQ(tree.SerializeAsQByteArray(), bytes) << row.first.constData();
    }
}

// ---- copies -------------------------------------------------------------------------------

TEST(VariantMapTreeCopies, CopiesNeverSeeEachOthersWrites)
{
    CVXVariantMapTree a;
    a.StoreValue(QStringLiteral("v"), QVariant(1));
    a.Child(QStringLiteral("c")).StoreValue(QStringLiteral("x"), QVariant(1));
    a.Child(QStringLiteral("c")).Child(QStringLiteral("d")).StoreValue(QStringLiteral("y"), QVariant(1));

    CVXVariantMapTree b = a;
    b.StoreValue(QStringLiteral("v"), QVariant(2));
    b.Child(QStringLiteral("c")).StoreValue(QStringLiteral("x"), QVariant(2));
    b.Child(QStringLiteral("c")).Child(QStringLiteral("d")).StoreValue(QStringLiteral("y"), QVariant(2));
    b.Child(QStringLiteral("new"));

    EXPECT_EQ(ValueOf<int>(a, QStringLiteral("v")), 1);
    EXPECT_EQ(ValueOf<int>(a.Child(QStringLiteral("c")), QStringLiteral("x")), 1);
    EXPECT_EQ(ValueOf<int>(a.Child(QStringLiteral("c")).Child(QStringLiteral("d")), QStringLiteral("y")), 1);
    EXPECT_FALSE(a.HasChild(QStringLiteral("new")));
    EXPECT_EQ(ValueOf<int>(b.Child(QStringLiteral("c")).Child(QStringLiteral("d")), QStringLiteral("y")), 2);

    // The original written after the copy: the copy keeps what it had.
    CVXVariantMapTree c = a;
    a.Child(QStringLiteral("c")).StoreValue(QStringLiteral("x"), QVariant(3));
    const CVXVariantMapTree& constC = c;
    EXPECT_EQ(ValueOf<int>(constC.Child(QStringLiteral("c")), QStringLiteral("x")), 1);

    // Assignment as well.
    CVXVariantMapTree d;
    d = a;
    d.Child(QStringLiteral("c")).StoreValue(QStringLiteral("x"), QVariant(4));
    EXPECT_EQ(ValueOf<int>(a.Child(QStringLiteral("c")), QStringLiteral("x")), 3);
}

TEST(VariantMapTreeCopies, EqualityFollowsContent)
{
    CVXVariantMapTree a = RichTree();
    CVXVariantMapTree b = RichTree();
    EXPECT_TRUE(a == b);
    b.Child(QStringLiteral("Child")).StoreValue(QStringLiteral("Leaf"), QVariant(true));
    EXPECT_TRUE(a != b);
    b = a;
    b.StoreValue(QStringLiteral("Int"), QVariant(-8));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(CVXVariantMapTree() == CVXVariantMapTree());

    const CVXVariantMapTree& constA = a;
    EXPECT_TRUE(constA.Child(QStringLiteral("none")).IsEmpty());
    EXPECT_FALSE(constA.HasChild(QStringLiteral("none")));
    a.Clear();
    EXPECT_TRUE(a.IsEmpty());
    EXPECT_TRUE(a.Keys().isEmpty());
    EXPECT_FALSE(a.HasChild(QStringLiteral("Child")));
}

// ---- registry ------------------------------------------------------------------------------

TEST(VariantMapTreeRegistry, OnlySafeBuiltinsAndRegisteredTypesAreCarried)
{
    EXPECT_TRUE(CVXVariantMapTree::HasRegisteredDataStreamOperator(QMetaType::Int));
    EXPECT_TRUE(CVXVariantMapTree::HasRegisteredDataStreamOperator(qMetaTypeId<CVXVariantMapTree>()));
    EXPECT_TRUE(
        CVXVariantMapTree::HasRegisteredDataStreamOperator(qMetaTypeId<QVector<CVXVariantMapTree>>()));
    EXPECT_TRUE(CVXVariantMapTree::HasRegisteredDataStreamOperator(qMetaTypeId<QList<QString>>()));
    EXPECT_FALSE(CVXVariantMapTree::HasRegisteredDataStreamOperator(QMetaType::UnknownType));
    // Qt's readers for these reserve by a count taken from the bytes: never without a codec.
    CVXVariantMapTree::MarkDataStreamOperatorRegistered(QMetaType::QVariantList);
    EXPECT_FALSE(CVXVariantMapTree::HasRegisteredDataStreamOperator(QMetaType::QVariantList));
    // Qt reads date-times with time zones that it then crashes saving (found by the fuzzer).
    EXPECT_FALSE(CVXVariantMapTree::HasRegisteredDataStreamOperator(QMetaType::QDateTime));

    // A value of such a type is left out of the bytes rather than written unreadable.
    CVXVariantMapTree tree;
    tree.StoreValue(QStringLiteral("list"), QVariant(QVariantList{1, 2}));
    tree.StoreValue(QStringLiteral("ok"), QVariant(5));
    const CVXVariantMapTree parsed = RoundTrip(tree);
    EXPECT_EQ(parsed.Keys(), QList<QString>{QStringLiteral("ok")});
    EXPECT_TRUE(vxtest::HasLog("left out"));
}

TEST(VariantMapTreeRegistry, TextOperatorsAreLookedUpByType)
{
    const int id = QMetaType::QPointF;
    EXPECT_FALSE(CVXVariantMapTree::HasRegisteredTextStreamOperator(id));
    EXPECT_EQ(CVXVariantMapTree::ValueToString(QVariant(QPointF(1, 2))), QString());
    CVXVariantMapTree::RegisterTextStreamOperator(id, [](const QVariant& v) {
        return QStringLiteral("(%1;%2)").arg(v.toPointF().x()).arg(v.toPointF().y());
    });
    EXPECT_TRUE(CVXVariantMapTree::HasRegisteredTextStreamOperator(id));
    EXPECT_EQ(CVXVariantMapTree::ValueToString(QVariant(QPointF(1, 2))), QStringLiteral("(1;2)"));
}

// ---- corrupt and hostile buffers ------------------------------------------------------------

// Nested tree values, depth levels deep, with an int at the bottom.
QByteArray NestedBuffer(int depth)
{
    QByteArray body = Var(1) + Entry("v", 0, QByteArray()) + Var(0);
    for (int i = 0; i < depth; ++i)
        body = Var(1) + Entry("t", 1, body) + Var(0);
    return Buffer(body, {"int", "CVXVariantMapTree"});
}

TEST(VariantMapTreeHostile, RefusedBuffersLeaveTheTreeAlone)
{
    const QByteArray okBody = Var(1) + Entry("a", 0, Var(2)) + Var(0);
    const QList<QByteArray> intTable = {"int"};
    const QByteArray ok = Buffer(okBody, intTable);

    QByteArray wrongOffset = ok;
    wrongOffset[5] = char(ok[5] + 1);
    QByteArray hugeOffset = ok;
    hugeOffset[8] = char(0x7F);

    const QByteArray deepChildren = [] {
        QByteArray body = Var(0) + Var(0);
        for (int i = 0; i < 10000; ++i)
            body = Var(0) + Var(1) + Str("c") + body;
        return Buffer(body, {});
    }();

    struct Row
    {
        const char* name;
        QByteArray bytes;
    };
    const QList<Row> rows = {
        {"empty", QByteArray()},
        {"header only", ok.left(9)},
        {"bad magic", QByteArray("VXTX") + ok.mid(4)},
        {"unknown version", ok.left(4) + char(2) + ok.mid(5)},
        {"table offset inside the header", ok.left(5) + QByteArray("\x03\0\0\0", 4) + ok.mid(9)},
        {"table offset off by one", wrongOffset},
        {"table offset beyond the end", hugeOffset},
        {"truncated table", ok.left(ok.size() - 1)},
        {"trailing bytes", ok + char(0)},
        {"entry count 0xFFFFFFFF", Buffer(Var(0xFFFFFFFFu) + Var(0), intTable)},
        {"entry count 2^31-1", Buffer(Var(0x7FFFFFFF) + Entry("a", 0, Var(2)) + Var(0), intTable)},
        {"count varint of eleven bytes", Buffer(QByteArray(10, char(0x80)) + char(0) + Var(0), intTable)},
        {"key length beyond the end", Buffer(Var(1) + Var(1000) + "a" + Var(0) + Var(0) + Var(0), intTable)},
        {"payload length beyond the end",
         Buffer(Var(1) + Str("a") + Var(0) + Var(0x7FFFFFF0) + Var(0), intTable)},
        {"type index out of range", Buffer(Var(1) + Entry("a", 1, Var(2)) + Var(0), intTable)},
        {"type index huge", Buffer(Var(1) + Entry("a", 0x7FFFFFFF, Var(2)) + Var(0), intTable)},
        {"type count huge", Buffer(okBody, {}).left(9 + okBody.size()) + Var(0x7FFFFFFF) + Str("int")},
        {"empty type name", Buffer(okBody, {""})},
        {"type name with a control byte", Buffer(okBody, {QByteArray("in\nt")})},
        {"type name with a NUL byte", Buffer(okBody, {QByteArray("int\0x", 5)})},
        {"key not valid UTF-8", Buffer(Var(1) + Entry("\xC0\xAF", 0, Var(2)) + Var(0), intTable)},
        {"key with an encoded surrogate",
         Buffer(Var(1) + Entry("\xED\xA0\x80", 0, Var(2)) + Var(0), intTable)},
        {"keys out of order", Buffer(Var(2) + Entry("b", 0, {}) + Entry("a", 0, {}) + Var(0), intTable)},
        {"duplicate keys", Buffer(Var(2) + Entry("a", 0, {}) + Entry("a", 0, {}) + Var(0), intTable)},
        {"child count huge", Buffer(Var(0) + Var(0x7FFFFFFF), {})},
        {"children out of order",
         Buffer(Var(0) + Var(2) + Str("b") + Var(0) + Var(0) + Str("a") + Var(0) + Var(0), {})},
        {"tree vector count huge",
         Buffer(Var(1) + Entry("v", 0, Var(0x7FFFFFFF)) + Var(0), {"QVector<CVXVariantMapTree>"})},
        {"tree vector count 0xFFFFFFFF",
         Buffer(Var(1) + Entry("v", 0, Var(0xFFFFFFFFu)) + Var(0), {"QVector<CVXVariantMapTree>"})},
        {"nested tree with trailing bytes",
         Buffer(Var(1) + Entry("t", 0, Var(0) + Var(0) + char(7)) + Var(0), {"CVXVariantMapTree"})},
        {"nested tree cut short", Buffer(Var(1) + Entry("t", 0, Var(1)) + Var(0), {"CVXVariantMapTree"})},
        {"values nested 65 deep", NestedBuffer(65)},
        {"values nested 10000 deep", NestedBuffer(10000)},
        {"children nested 10000 deep", deepChildren},
    };

    const CVXVariantMapTree original = SentinelTree();
    const QByteArray originalBytes = original.SerializeAsQByteArray();
    for (const Row& row : rows) {
        CVXVariantMapTree tree = original;
        EXPECT_FALSE(tree.ParseFromQByteArray(row.bytes)) << row.name;
        EXPECT_EQ(tree.SerializeAsQByteArray(), originalBytes) << row.name;
    }

    // The edges of what is accepted.
    CVXVariantMapTree tree;
    EXPECT_TRUE(tree.ParseFromQByteArray(ok));
    EXPECT_TRUE(tree.ParseFromQByteArray(NestedBuffer(64)));
    EXPECT_TRUE(tree.ParseFromQByteArray(Buffer(Var(0) + Var(0), {})));
    EXPECT_TRUE(tree.IsEmpty());
}

TEST(VariantMapTreeHostile, TooDeepTreesAreWrittenWithoutTheirDeepestValues)
{
    CVXVariantMapTree tree;
    tree.StoreValue(QStringLiteral("v"), QVariant(1));
    for (int i = 0; i < 70; ++i) {
        CVXVariantMapTree outer;
        outer.StoreValue(QStringLiteral("t"), QVariant::fromValue(tree));
        tree = outer;
    }
    CVXVariantMapTree parsed;
    ASSERT_TRUE(parsed.ParseFromQByteArray(tree.SerializeAsQByteArray()));
    int depth = 0;
    CVXVariantMapTree level = parsed;
    while (level.Contains(QStringLiteral("t"))) {
        level = ValueOf<CVXVariantMapTree>(level, QStringLiteral("t"));
        ++depth;
    }
    // The root body is level 0 and bodies go down to level 64; the value that would open
    // level 65 is left out.
    EXPECT_EQ(depth, 64);
    EXPECT_TRUE(vxtest::HasLog("left out"));
}

// Seeds of several shapes for the mutation test.
QList<QByteArray> MutationSeeds()
{
    CVXVariantMapTree withLazy;
    withLazy.ParseFromQByteArray(
        Buffer(Var(2) + Entry("a", 0, Var(4)) + Entry("u", 1, "payload") + Var(0), {"int", "Test::Unknown"}));
    return {RichTree().SerializeAsQByteArray(), withLazy.SerializeAsQByteArray(), NestedBuffer(5),
            SentinelTree().SerializeAsQByteArray()};
}

QByteArray Mutate(const QList<QByteArray>& seeds, std::mt19937& random)
{
    QByteArray bytes = seeds[int(random() % quint32(seeds.size()))];
    const int steps = 1 + int(random() % 4);
    for (int s = 0; s < steps && !bytes.isEmpty(); ++s) {
        const int at = int(random() % quint32(bytes.size()));
        switch (random() % 7) {
        case 0: // bit flip
            bytes[at] = char(bytes[at] ^ (1 << (random() % 8)));
            break;
        case 1: // byte replaced, often by a boundary value
        {
            static const char kValues[] = {'\0', '\x01', '\x7F', '\x80', '\xFF'};
            bytes[at] = random() % 2 ? char(random()) : kValues[random() % 5];
            break;
        }
        case 2: // insertion
            bytes.insert(at, QByteArray(1 + int(random() % 4), char(random())));
            break;
        case 3: // deletion
            bytes.remove(at, 1 + int(random() % 4));
            break;
        case 4: // splice with another seed
        {
            const QByteArray& other = seeds[int(random() % quint32(seeds.size()))];
            const int from = int(random() % quint32(other.size()));
            bytes = bytes.left(at) + other.mid(from);
            break;
        }
        case 5: // truncation
            bytes.truncate(at);
            break;
        default: // a varint-sized run of 0xFF, as a hostile count would be
            bytes.replace(at, 1, QByteArray(int(1 + random() % 5), '\xFF'));
            break;
        }
    }
    return bytes;
}

TEST(VariantMapTreeHostile, MutatedBuffersGiveFalseOrAStableTree)
{
    const QList<QByteArray> seeds = MutationSeeds();
    const CVXVariantMapTree original = SentinelTree();
    const QByteArray originalBytes = original.SerializeAsQByteArray();
    std::mt19937 random(12345);
    int accepted = 0;
    int refused = 0;
    for (int i = 0; i < 25000; ++i) {
        const QByteArray bytes =
            i < 2000 ? seeds[i % seeds.size()].left(i / seeds.size()) : Mutate(seeds, random);
        CVXVariantMapTree tree = original;
        if (!tree.ParseFromQByteArray(bytes)) {
            ++refused;
            ASSERT_EQ(tree.SerializeAsQByteArray(), originalBytes) << "input " << i;
            continue;
        }
        ++accepted;
        // Whatever was accepted is written in a form that reads back to the same keys; Qt's own
        // stream forms (types without a codec) may normalise once more, then the bytes settle.
        const QByteArray canonical = tree.SerializeAsQByteArray();
        CVXVariantMapTree again;
        ASSERT_TRUE(again.ParseFromQByteArray(canonical)) << "input " << i;
        ASSERT_EQ(again.Keys(), tree.Keys()) << "input " << i;
        const QByteArray settled = again.SerializeAsQByteArray();
        CVXVariantMapTree third;
        ASSERT_TRUE(third.ParseFromQByteArray(settled)) << "input " << i;
        ASSERT_EQ(third.SerializeAsQByteArray(), settled) << "input " << i;
        for (const QString& key : tree.Keys())
            tree.LazyLoad(key);
    }
    // Both outcomes are exercised, so the mutations reach past the header checks.
    EXPECT_GT(accepted, 500);
    EXPECT_GT(refused, 5000);
}

} // namespace
