// The typed accessors of the state tree and UIFrame's value types: the Get/Set rules, round
// trips of every stored type, lazy entries becoming readable once their type is registered,
// the text forms, copies and equality.

#include "UIFrame/StateTreeTypes.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "tests/common/TestSupport.h"

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRect>

#include <gtest/gtest.h>

#include <climits>
#include <thread>

// A value type that only this test registers, on its first typed access.
struct StateTreeTestQuote
{
    qint32 price = 0;
    QString code;
};
Q_DECLARE_METATYPE(StateTreeTestQuote)

QDataStream& operator<<(QDataStream& stream, const StateTreeTestQuote& quote)
{
    return stream << quote.price << quote.code;
}

QDataStream& operator>>(QDataStream& stream, StateTreeTestQuote& quote)
{
    return stream >> quote.price >> quote.code;
}

namespace {

using StringIntMap = QMap<QString, int>;

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

// A buffer of one value, built by hand: header, body, type table.
QByteArray OneValueBuffer(const QByteArray& key, const QByteArray& typeName, const QByteArray& payload)
{
    const QByteArray body =
        Var(1) + Var(quint64(key.size())) + key + Var(0) + Var(quint64(payload.size())) + payload + Var(0);
    QByteArray out("VXTR\x01", 5);
    const quint32 offset = quint32(9 + body.size());
    for (int i = 0; i < 4; ++i)
        out.append(char((offset >> (8 * i)) & 0xFF));
    return out + body + Var(1) + Var(quint64(typeName.size())) + typeName;
}

QPixmap TestPixmap()
{
    QImage image(8, 6, QImage::Format_ARGB32);
    image.fill(QColor(10, 20, 30));
    image.setPixelColor(7, 5, QColor(200, 100, 50));
    return QPixmap::fromImage(image);
}

CVXVariantMapTree Parsed(const CVXVariantMapTree& tree)
{
    CVXVariantMapTree parsed;
    EXPECT_TRUE(parsed.ParseFromQByteArray(tree.SerializeAsQByteArray()));
    return parsed;
}

// ---- Get and Set -----------------------------------------------------------------------------

TEST(StateTreeAccess, TypeOfAKeyNeverChanges)
{
    CVXVariantMapTree tree;
    EXPECT_EQ(tree.Get<int>(QStringLiteral("k"), 7), 7);
    EXPECT_TRUE(tree.Set<QString>(QStringLiteral("k"), QStringLiteral("x")));
    EXPECT_EQ(tree.Get<int>(QStringLiteral("k"), 7), 7);
    EXPECT_FALSE(tree.Set<int>(QStringLiteral("k"), 1));
    EXPECT_EQ(tree.Get<QString>(QStringLiteral("k")), QStringLiteral("x"));

    // Same type: replaced. Removed: free for another type.
    EXPECT_TRUE(tree.Set<QString>(QStringLiteral("k"), QStringLiteral("12")));
    EXPECT_EQ(tree.Get<QString>(QStringLiteral("k"), QStringLiteral("d")), QStringLiteral("12"));
    EXPECT_TRUE(tree.Remove(QStringLiteral("k")));
    EXPECT_TRUE(tree.Set<int>(QStringLiteral("k"), 1));
    EXPECT_EQ(tree.Get<int>(QStringLiteral("k"), 7), 1);
}

TEST(StateTreeAccess, EmptyKeyIsRefused)
{
    CVXVariantMapTree tree;
    EXPECT_FALSE(tree.Set<int>(QString(), 5));
    EXPECT_FALSE(tree.Set<int>(QStringLiteral(""), 5));
    EXPECT_TRUE(tree.IsEmpty());
    EXPECT_EQ(tree.Get<int>(QString(), 3), 3);
}

TEST(StateTreeAccess, EnumIsItsOwnType)
{
    CVXVariantMapTree tree;
    EXPECT_TRUE(tree.Set(QStringLiteral("BoxType"), VXPanelBoxType_CombinationBox));
    EXPECT_EQ(tree.Get<int>(QStringLiteral("BoxType"), -1), -1);
    EXPECT_EQ(tree.Get<VXPanelBoxType>(QStringLiteral("BoxType"), VXPanelBoxType_AtomizationBox),
              VXPanelBoxType_CombinationBox);
    EXPECT_FALSE(tree.Set<int>(QStringLiteral("BoxType"), 0));
    EXPECT_STREQ(QMetaType::typeName(qMetaTypeId<VXPanelBoxType>()), "VXPanelBoxType");
    EXPECT_EQ(QMetaType::sizeOf(qMetaTypeId<VXPanelBoxType>()), 4);
    EXPECT_TRUE(QMetaType::typeFlags(qMetaTypeId<VXPanelBoxType>()) & QMetaType::IsEnumeration);
}

TEST(StateTreeAccess, GetImpFillsOnlyWhatIsFound)
{
    CVXVariantMapTree tree;
    tree.Set<qulonglong>(QStringLiteral("BoxID"), 42);
    std::optional<qulonglong> id = 9;
    tree.GetImp(QStringLiteral("Missing"), &id);
    EXPECT_FALSE(id.has_value());
    tree.GetImp(QStringLiteral("BoxID"), &id);
    ASSERT_TRUE(id.has_value());
    EXPECT_EQ(*id, 42u);
    std::optional<QString> wrongType;
    tree.GetImp(QStringLiteral("BoxID"), &wrongType);
    EXPECT_FALSE(wrongType.has_value());
    tree.GetImp<int>(QStringLiteral("BoxID"), nullptr); // harmless
}

TEST(StateTreeAccess, StoredTreesAreCopies)
{
    CVXVariantMapTree card;
    card.Set(QStringLiteral("CardType"), QStringLiteral("KLine"));
    card.Child(QStringLiteral("Extra")).Set(QStringLiteral("Period"), 5);
    CVXVariantMapTree box;
    box.Set(QStringLiteral("Card"), card);
    box.Set(QStringLiteral("Cards"), QVector<CVXVariantMapTree>{card});

    card.Set(QStringLiteral("CardType"), QStringLiteral("Ticks"));
    card.Child(QStringLiteral("Extra")).Set(QStringLiteral("Period"), 6);

    const CVXVariantMapTree stored = box.Get<CVXVariantMapTree>(QStringLiteral("Card"));
    EXPECT_EQ(stored.Get<QString>(QStringLiteral("CardType")), QStringLiteral("KLine"));
    EXPECT_EQ(stored.Child(QStringLiteral("Extra")).Get<int>(QStringLiteral("Period")), 5);
    const auto cards = box.Get<QVector<CVXVariantMapTree>>(QStringLiteral("Cards"));
    ASSERT_EQ(cards.size(), 1);
    EXPECT_EQ(cards[0].Child(QStringLiteral("Extra")).Get<int>(QStringLiteral("Period")), 5);

    // A copy of the box is independent as well, children included.
    CVXVariantMapTree copy = box;
    copy.Child(QStringLiteral("Layout")).Set(QStringLiteral("Rows"), 2);
    box.Child(QStringLiteral("Layout")).Set(QStringLiteral("Rows"), 3);
    EXPECT_EQ(copy.Child(QStringLiteral("Layout")).Get<int>(QStringLiteral("Rows")), 2);
    EXPECT_EQ(box.Child(QStringLiteral("Layout")).Get<int>(QStringLiteral("Rows")), 3);
}

// ---- round trips -----------------------------------------------------------------------------

CVXVariantMapTree TableTree()
{
    CVXVariantMapTree cardA;
    cardA.Set(QStringLiteral("CardType"), QStringLiteral("StockHeader"));
    CVXVariantMapTree cardB;
    cardB.Set(QStringLiteral("CardType"), QStringLiteral("OrderBook"));
    cardB.Child(QStringLiteral("Data")).Set(QStringLiteral("Depth"), 10);
    CVXVariantMapTree cardC;
    cardC.Set(QStringLiteral("CardType"), QStringLiteral("KLine"));

    CVXVariantMapTree tree;
    tree.Set(QStringLiteral("Int"), INT_MIN);
    tree.Set(QStringLiteral("Bool"), true);
    tree.Set(QStringLiteral("BoxID"), qulonglong(ULLONG_MAX));
    tree.Set(QStringLiteral("Signed"), qlonglong(-9000000000ll));
    tree.Set(QStringLiteral("Title"), QStringLiteral("自选股 ✓"));
    tree.Set(QStringLiteral("CVXObjBaseProtoData"), QByteArray("\x08\x96\x01", 3));
    tree.Set(QStringLiteral("Rect"), QRect(-20, 30, 640, 480));
    tree.Set(QStringLiteral("Thumbnail"), TestPixmap());
    tree.Set(QStringLiteral("List"), QList<QString>{QStringLiteral("b"), QStringLiteral("a")});
    tree.Set(QStringLiteral("StringList"), QStringList{QStringLiteral("x")});
    tree.Set(QStringLiteral("Vector"), QVector<QString>{QStringLiteral("p"), QString()});
    tree.Set(QStringLiteral("Numbers"), QVector<qlonglong>{3, -4, LLONG_MAX});
    tree.Set(QStringLiteral("Widths"),
             QMap<QString, int>{{QStringLiteral("code"), 80}, {QStringLiteral("name"), 120}});
    tree.Set(QStringLiteral("Card"), cardB);
    tree.Set(QStringLiteral("Cards"), QVector<CVXVariantMapTree>{cardA, cardB, cardC});
    tree.Set(QStringLiteral("BoxType"), VXPanelBoxType_AtomizationBox);
    tree.Child(QStringLiteral("Canvas")).Set(QStringLiteral("Zoom"), 2);
    return tree;
}

TEST(StateTreeRoundTrip, EveryStoredTypeComesBack)
{
    const CVXVariantMapTree parsed = Parsed(TableTree());

    EXPECT_EQ(parsed.Get<int>(QStringLiteral("Int")), INT_MIN);
    EXPECT_EQ(parsed.Get<bool>(QStringLiteral("Bool")), true);
    EXPECT_EQ(parsed.Get<qulonglong>(QStringLiteral("BoxID")), ULLONG_MAX);
    EXPECT_EQ(parsed.Get<qlonglong>(QStringLiteral("Signed")), -9000000000ll);
    EXPECT_EQ(parsed.Get<QString>(QStringLiteral("Title")), QStringLiteral("自选股 ✓"));
    EXPECT_EQ(parsed.Get<QByteArray>(QStringLiteral("CVXObjBaseProtoData")), QByteArray("\x08\x96\x01", 3));
    EXPECT_EQ(parsed.Get<QRect>(QStringLiteral("Rect")), QRect(-20, 30, 640, 480));
    EXPECT_EQ(parsed.Get<QList<QString>>(QStringLiteral("List")),
              (QList<QString>{QStringLiteral("b"), QStringLiteral("a")}));
    EXPECT_EQ(parsed.Get<QStringList>(QStringLiteral("StringList")), QStringList{QStringLiteral("x")});
    EXPECT_EQ(parsed.Get<QVector<QString>>(QStringLiteral("Vector")),
              (QVector<QString>{QStringLiteral("p"), QString()}));
    EXPECT_EQ(parsed.Get<QVector<qlonglong>>(QStringLiteral("Numbers")),
              (QVector<qlonglong>{3, -4, LLONG_MAX}));
    const QMap<QString, int> widths{{QStringLiteral("code"), 80}, {QStringLiteral("name"), 120}};
    EXPECT_EQ(parsed.Get<StringIntMap>(QStringLiteral("Widths")), widths);
    EXPECT_EQ(parsed.Get<VXPanelBoxType>(QStringLiteral("BoxType"), VXPanelBoxType_CombinationBox),
              VXPanelBoxType_AtomizationBox);
    EXPECT_EQ(parsed.Child(QStringLiteral("Canvas")).Get<int>(QStringLiteral("Zoom")), 2);

    const CVXVariantMapTree card = parsed.Get<CVXVariantMapTree>(QStringLiteral("Card"));
    EXPECT_EQ(card.Get<QString>(QStringLiteral("CardType")), QStringLiteral("OrderBook"));
    EXPECT_EQ(card.Child(QStringLiteral("Data")).Get<int>(QStringLiteral("Depth")), 10);
    const auto cards = parsed.Get<QVector<CVXVariantMapTree>>(QStringLiteral("Cards"));
    ASSERT_EQ(cards.size(), 3);
    EXPECT_EQ(cards[0].Get<QString>(QStringLiteral("CardType")), QStringLiteral("StockHeader"));
    EXPECT_EQ(cards[1].Get<QString>(QStringLiteral("CardType")), QStringLiteral("OrderBook"));
    EXPECT_EQ(cards[2].Get<QString>(QStringLiteral("CardType")), QStringLiteral("KLine"));

    const QImage image = parsed.Get<QPixmap>(QStringLiteral("Thumbnail")).toImage();
    ASSERT_EQ(image.size(), QSize(8, 6));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(10, 20, 30));
    EXPECT_EQ(image.pixelColor(7, 5), QColor(200, 100, 50));
}

TEST(StateTreeRoundTrip, RectIsOneValue)
{
    CVXVariantMapTree tree;
    tree.Set(QStringLiteral("Rect"), QRect(1, 2, 3, 4));
    EXPECT_EQ(Parsed(tree).Keys(), QList<QString>{QStringLiteral("Rect")});
}

TEST(StateTreeRoundTrip, UnchangedTreeGivesIdenticalBytes)
{
    const CVXVariantMapTree tree = TableTree();
    const QByteArray first = tree.SerializeAsQByteArray();
    EXPECT_EQ(TableTree().SerializeAsQByteArray(), first);
    EXPECT_EQ(Parsed(tree).SerializeAsQByteArray(), first);
    EXPECT_TRUE(Parsed(tree) == tree);

    CVXVariantMapTree changed = tree;
    changed.Set(QStringLiteral("Rect"), QRect(-20, 30, 640, 481));
    EXPECT_TRUE(changed != tree);
}

TEST(StateTreeRoundTrip, TypeRegisteredAfterParsingIsReadOnFirstGet)
{
    // The quote's stream form, written here field by field: qint32 price, then the QString.
    QByteArray payload;
    {
        QDataStream out(&payload, QIODevice::WriteOnly);
        out.setVersion(QDataStream::Qt_5_15);
        out << qint32(1234) << QStringLiteral("00700");
    }
    const QByteArray bytes = OneValueBuffer("Quote", "StateTreeTestQuote", payload);
    ASSERT_EQ(QMetaType::type("StateTreeTestQuote"), QMetaType::UnknownType) << "registered too early";

    CVXVariantMapTree tree;
    ASSERT_TRUE(tree.ParseFromQByteArray(bytes));
    EXPECT_TRUE(tree.LazyEntries().contains(QStringLiteral("Quote")));
    EXPECT_EQ(tree.Get<int>(QStringLiteral("Quote"), -1), -1); // another type: still lazy
    EXPECT_TRUE(tree.LazyEntries().contains(QStringLiteral("Quote")));

    const StateTreeTestQuote quote = tree.Get<StateTreeTestQuote>(QStringLiteral("Quote"));
    EXPECT_EQ(quote.price, 1234);
    EXPECT_EQ(quote.code, QStringLiteral("00700"));
    EXPECT_FALSE(tree.LazyEntries().contains(QStringLiteral("Quote")));
    EXPECT_EQ(tree.SerializeAsQByteArray(), bytes);

    // Now registered, it also goes through Set and a round trip.
    CVXVariantMapTree other;
    EXPECT_TRUE(other.Set(QStringLiteral("Q"), StateTreeTestQuote{-5, QStringLiteral("AAPL")}));
    const StateTreeTestQuote back = Parsed(other).Get<StateTreeTestQuote>(QStringLiteral("Q"));
    EXPECT_EQ(back.price, -5);
    EXPECT_EQ(back.code, QStringLiteral("AAPL"));
}

// ---- pixmaps -------------------------------------------------------------------------------

quint32 Crc32(const QByteArray& data)
{
    quint32 crc = 0xFFFFFFFFu;
    for (char c : data) {
        crc ^= quint8(c);
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

QByteArray BigEndian32(quint32 v)
{
    const char bytes[4] = {char(v >> 24), char((v >> 16) & 0xFF), char((v >> 8) & 0xFF), char(v & 0xFF)};
    return QByteArray(bytes, 4);
}

QByteArray PngChunk(const QByteArray& type, const QByteArray& data)
{
    return BigEndian32(quint32(data.size())) + type + data + BigEndian32(Crc32(type + data));
}

TEST(StateTreePixmap, HeaderClaimingHugeDimensionsIsNotDecoded)
{
    // A well-formed PNG header for 50000 x 50000 RGBA pixels (10 GB) in a few dozen bytes.
    const QByteArray ihdr = BigEndian32(50000) + BigEndian32(50000) + QByteArray("\x08\x06\x00\x00\x00", 5);
    const QByteArray png = QByteArray("\x89PNG\r\n\x1a\n", 8) + PngChunk("IHDR", ihdr) +
                           PngChunk("IDAT", QByteArray::fromHex("789c030000000001")) + PngChunk("IEND", {});
    const QByteArray bytes = OneValueBuffer("Thumbnail", "QPixmap", png);

    CVXVariantMapTree tree;
    ASSERT_TRUE(tree.ParseFromQByteArray(bytes));
    EXPECT_TRUE(tree.Get<QPixmap>(QStringLiteral("Thumbnail")).isNull());
    EXPECT_TRUE(tree.LazyEntries().contains(QStringLiteral("Thumbnail")));
    EXPECT_EQ(tree.SerializeAsQByteArray(), bytes);
}

TEST(StateTreePixmap, ParsedOffTheGuiThreadIsReadOnIt)
{
    CVXVariantMapTree source;
    source.Set(QStringLiteral("Thumbnail"), TestPixmap());
    const QByteArray bytes = source.SerializeAsQByteArray();

    CVXVariantMapTree tree;
    bool parsed = false;
    std::thread worker([&] { parsed = tree.ParseFromQByteArray(bytes); });
    worker.join();
    ASSERT_TRUE(parsed);
    EXPECT_TRUE(tree.LazyEntries().contains(QStringLiteral("Thumbnail")));
    EXPECT_EQ(tree.Get<QPixmap>(QStringLiteral("Thumbnail")).size(), QSize(8, 6));
    EXPECT_TRUE(tree.LazyEntries().isEmpty());
}

// ---- text forms ------------------------------------------------------------------------------

TEST(StateTreeText, EachStoredTypeHasItsForm)
{
    EXPECT_EQ(TVXVariantToStringHelper<int>(QVariant(-42)), QStringLiteral("-42"));
    EXPECT_EQ(TVXVariantToStringHelper<bool>(QVariant(true)), QStringLiteral("1"));
    EXPECT_EQ(TVXVariantToStringHelper<bool>(QVariant(false)), QStringLiteral("0"));
    EXPECT_EQ(TVXVariantToStringHelper<qulonglong>(QVariant(qulonglong(ULLONG_MAX))),
              QStringLiteral("18446744073709551615"));
    EXPECT_EQ(TVXVariantToStringHelper<qlonglong>(QVariant(qlonglong(-9000000000ll))),
              QStringLiteral("-9000000000"));
    EXPECT_EQ(TVXVariantToStringHelper<QString>(QVariant(QStringLiteral("abc"))), QStringLiteral("abc"));
    EXPECT_EQ(TVXVariantToStringHelper<QByteArray>(QVariant(QByteArray("raw"))), QStringLiteral("raw"));
    // Qt 5's QVariant has no conversion from a rectangle or a pixmap to a string.
    EXPECT_EQ(TVXVariantToStringHelper<QRect>(QVariant(QRect(1, 2, 3, 4))), QString());
    EXPECT_EQ(TVXVariantToStringHelper<QPixmap>(QVariant(TestPixmap())), QString());
    EXPECT_EQ(TVXVariantToStringHelper<QList<QString>>(
                  QVariant::fromValue(QList<QString>{QStringLiteral("a"), QStringLiteral("b")})),
              QStringLiteral("size:2 [a,b,]"));
    EXPECT_EQ(TVXVariantToStringHelper<QStringList>(QVariant(QStringList{QStringLiteral("c")})),
              QStringLiteral("size:1 [c,]"));
    EXPECT_EQ(TVXVariantToStringHelper<QVector<QString>>(QVariant::fromValue(QVector<QString>())),
              QStringLiteral("size:0 []"));
    EXPECT_EQ(TVXVariantToStringHelper<QVector<qlonglong>>(QVariant::fromValue(QVector<qlonglong>{1, -2})),
              QStringLiteral("size:2 [1,-2,]"));
    const QMap<QString, int> map{{QStringLiteral("y"), 2}, {QStringLiteral("x"), 1}};
    EXPECT_EQ(TVXVariantToStringHelper<StringIntMap>(QVariant::fromValue(map)),
              QStringLiteral("size:2 [{x,1},{y,2},]"));
    CVXVariantMapTree tree;
    tree.Set(QStringLiteral("k"), 1);
    EXPECT_EQ(TVXVariantToStringHelper<CVXVariantMapTree>(QVariant::fromValue(tree)), QString());
    EXPECT_EQ(TVXVariantToStringHelper<QVector<CVXVariantMapTree>>(
                  QVariant::fromValue(QVector<CVXVariantMapTree>(3))),
              QStringLiteral("size:3"));
    EXPECT_EQ(TVXVariantToStringHelper<VXPanelBoxType>(QVariant::fromValue(VXPanelBoxType_CombinationBox)),
              QStringLiteral("1"));
}

TEST(StateTreeText, OnlyTheExactTypeIsFormatted)
{
    EXPECT_EQ(TVXVariantToStringHelper<int>(QVariant(qlonglong(5))), QString());
    EXPECT_EQ(TVXVariantToStringHelper<QString>(QVariant(5)), QString());
    EXPECT_EQ(TVXVariantToStringHelper<QList<QString>>(QVariant(QStringList{QStringLiteral("a")})),
              QString());
    EXPECT_EQ(TVXVariantToStringHelper<int>(QVariant::fromValue(VXPanelBoxType_CombinationBox)), QString());
    EXPECT_EQ(TVXVariantToStringHelper<int>(QVariant()), QString());
}

TEST(StateTreeText, RegisteredFormsServeTheLogs)
{
    RegisterStateTreeTypes();
    EXPECT_EQ(CVXVariantMapTree::ValueToString(QVariant(7)), QStringLiteral("7"));
    EXPECT_EQ(CVXVariantMapTree::ValueToString(QVariant::fromValue(VXPanelBoxType_CombinationBox)),
              QStringLiteral("1"));
    EXPECT_EQ(CVXVariantMapTree::ValueToString(QVariant::fromValue(QVector<qlonglong>{9})),
              QStringLiteral("size:1 [9,]"));
}

} // namespace
