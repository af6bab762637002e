// The layout template as a keyed state tree, and the old record format read from data streams.

#include "tests/uiframe/PanelLayoutTestSupport.h"

#include <QBuffer>

using namespace layout_test;

namespace {

bool SamePixels(const QPixmap& a, const QPixmap& b)
{
    return a.toImage().convertToFormat(QImage::Format_ARGB32) ==
           b.toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

TEST(PanelLayoutTemplate, AbsentKeysGiveDefaultsAndAnEmptyTreeIsNoTemplate)
{
    const CVXPanelLayoutTemplate empty;
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(empty.layoutKey(), 0u);
    EXPECT_TRUE(empty.title().isEmpty());
    EXPECT_TRUE(empty.remarks().isEmpty());
    EXPECT_TRUE(empty.restoreData().IsEmpty());
    EXPECT_TRUE(empty.previewPixmap().isNull());
    EXPECT_EQ(empty.updateTimestamp(), 0u);
    EXPECT_FALSE(empty.isCustomized());
    EXPECT_FALSE(empty.isUploaded());

    CVXPanelLayoutTemplate onlyFlag;
    onlyFlag.setIsUploaded(false);
    EXPECT_FALSE(onlyFlag.isEmpty()) << "any entry makes a template";
}

TEST(PanelLayoutTemplate, EachAccessorUsesItsFixedKey)
{
    // Files and cloud payloads of other clients carry these key names.
    CVXPanelLayoutTemplate layout =
        MakeLayout(1700000000123ull, QStringLiteral("Morning"), true, 1700000000999ull);
    layout.setIsUploaded(true);
    const CVXVariantMapTree& tree = layout;
    EXPECT_EQ(tree.Get<qulonglong>(QStringLiteral("PanelLayoutKey")), 1700000000123ull);
    EXPECT_EQ(tree.Get<QString>(QStringLiteral("PanelLayoutTitle")), QStringLiteral("Morning"));
    EXPECT_EQ(tree.Get<QString>(QStringLiteral("PanelLayoutRemarks")), QStringLiteral("remarks of Morning"));
    EXPECT_EQ(
        tree.Get<CVXVariantMapTree>(QStringLiteral("PanelLayoutData")).Get<int>(QStringLiteral("BoxCount")),
        2);
    EXPECT_FALSE(tree.Get<QPixmap>(QStringLiteral("PanelLayoutPixmap")).isNull());
    EXPECT_EQ(tree.Get<qulonglong>(QStringLiteral("PanelLayoutUpdateTimestamp")), 1700000000999ull);
    EXPECT_TRUE(tree.Get<bool>(QStringLiteral("PanelLayoutIsCustomized")));
    EXPECT_TRUE(tree.Get<bool>(QStringLiteral("PanelLayoutIsUploaded")));
    EXPECT_EQ(tree.Keys().size(), 8);

    // A tree written by someone else under the same keys reads back through the accessors.
    CVXVariantMapTree foreign;
    foreign.Set<qulonglong>(QStringLiteral("PanelLayoutKey"), 42);
    foreign.Set<QString>(QStringLiteral("PanelLayoutTitle"), QStringLiteral("Foreign"));
    const CVXPanelLayoutTemplate read(foreign);
    EXPECT_EQ(read.layoutKey(), 42u);
    EXPECT_EQ(read.title(), QStringLiteral("Foreign"));
}

TEST(PanelLayoutTemplate, CopiesAreValuesAndCompareAsTrees)
{
    CVXPanelLayoutTemplate a = MakeLayout(7, QStringLiteral("A"), true);
    CVXPanelLayoutTemplate b = a;
    EXPECT_TRUE(a == b);
    b.setTitle(QStringLiteral("B"));
    EXPECT_EQ(a.title(), QStringLiteral("A")) << "a copy never sees later writes";
    EXPECT_FALSE(a == b);

    CVXPanelLayoutTemplate c;
    c = a;
    EXPECT_TRUE(c == a);

    // The byte-array form (cloud payload) gives back an equal template.
    CVXVariantMapTree parsed;
    ASSERT_TRUE(parsed.ParseFromQByteArray(a.SerializeAsQByteArray()));
    EXPECT_TRUE(CVXPanelLayoutTemplate(parsed) == a);
    EXPECT_EQ(CVXPanelLayoutTemplate(parsed).title(), QStringLiteral("A"));
}

class PanelLayoutDataRead : public ::testing::TestWithParam<bool>
{
};

TEST_P(PanelLayoutDataRead, OldRecordReadsWithAndWithoutTheTrailingFlag)
{
    const bool withFlag = GetParam();
    OldFields f;
    f.key = 1650000000001ull;
    f.title = QStringLiteral("旧模板");
    f.remarks = QStringLiteral("old remarks");
    f.restore = CanvasRecord(3, QStringLiteral("sc_1"));
    f.preview = SmallPreview(Qt::red, Qt::green);
    f.stamp = 1650000000777ull;
    f.customized = true;
    f.uploaded = true;
    const QByteArray bytes = OldFormatBytes(f, withFlag);

    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_5_15);
    CVXPanelLayoutData data;
    stream >> data;
    EXPECT_EQ(stream.status(), QDataStream::Ok);
    EXPECT_EQ(data.u64LayoutKey, f.key);
    EXPECT_EQ(data.strTitle, f.title);
    EXPECT_EQ(data.strRemarks, f.remarks);
    EXPECT_TRUE(data.restoreData == f.restore);
    EXPECT_TRUE(SamePixels(data.previewPixmap, f.preview));
    EXPECT_EQ(data.u64UpdateTimestamp, f.stamp);
    EXPECT_TRUE(data.bIsCustomized);
    // Older files end after is-customised: the missing flag reads as false.
    EXPECT_EQ(data.bIsUploaded, withFlag);

    CVXPanelLayoutTemplate converted;
    data.convertToPanelLayoutTemplate(&converted);
    EXPECT_EQ(converted.layoutKey(), f.key);
    EXPECT_EQ(converted.title(), f.title);
    EXPECT_EQ(converted.remarks(), f.remarks);
    EXPECT_TRUE(converted.restoreData() == f.restore);
    EXPECT_TRUE(SamePixels(converted.previewPixmap(), f.preview));
    EXPECT_EQ(converted.updateTimestamp(), f.stamp);
    EXPECT_TRUE(converted.isCustomized());
    EXPECT_EQ(converted.isUploaded(), withFlag);
    EXPECT_EQ(converted.Keys().size(), 8) << "all eight fields are written, false ones included";
}

INSTANTIATE_TEST_SUITE_P(TrailingFlag, PanelLayoutDataRead, ::testing::Bool());

TEST(PanelLayoutDataReadFailures, TruncatedRecordsAreRefusedAndLeaveTheRecordAsItWas)
{
    OldFields f;
    f.key = 9;
    f.title = QStringLiteral("T");
    f.restore = CanvasRecord(1);
    f.stamp = 5;
    f.customized = true;
    const QByteArray full = OldFormatBytes(f, false);
    // Each cut ends inside one of the fields before is-customised (the last byte).
    for (int cut : {0, 4, 8, 12, full.size() / 2, full.size() - 1}) {
        SCOPED_TRACE(cut);
        QDataStream stream(full.left(cut));
        stream.setVersion(QDataStream::Qt_5_15);
        CVXPanelLayoutData data;
        data.strTitle = QStringLiteral("untouched");
        EXPECT_FALSE(data.ReadFrom(stream));
        EXPECT_NE(stream.status(), QDataStream::Ok);
        EXPECT_EQ(data.strTitle, QStringLiteral("untouched"));
        EXPECT_EQ(data.u64LayoutKey, 0u);
    }

    CVXPanelLayoutData nothing;
    nothing.convertToPanelLayoutTemplate(nullptr); // a null target is ignored
}

TEST(PanelLayoutDataWrite, WriterMatchesTheFieldByFieldEncoding)
{
    CVXPanelLayoutData data;
    data.u64LayoutKey = 77;
    data.strTitle = QStringLiteral("W");
    data.strRemarks = QStringLiteral("r");
    data.restoreData = CanvasRecord(1);
    data.u64UpdateTimestamp = 88;
    data.bIsCustomized = true;
    data.bIsUploaded = true;

    OldFields f;
    f.key = 77;
    f.title = data.strTitle;
    f.remarks = data.strRemarks;
    f.restore = data.restoreData;
    f.stamp = 88;
    f.customized = true;
    f.uploaded = true;
    for (bool withFlag : {true, false}) {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_5_15);
        data.WriteTo(stream, withFlag);
        EXPECT_EQ(bytes, OldFormatBytes(f, withFlag)) << withFlag;
    }
}
