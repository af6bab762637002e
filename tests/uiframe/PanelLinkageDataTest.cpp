// The linkage store: which tree a read consults and in which order, which trees a write lands
// in, what a clear zeroes, and the seeding from saved pages and pop-out windows. Each test
// starts from empty trees and inspects them directly as well as through the getters.

#include "UIFrame/Linkage/PanelLinkageData.h"

#include "UIFrame/Linkage/PanelColorManager.h"
#include "UIFrame/VariantMapTreeAccess.h"
#include "tests/common/TestSupport.h"

#include <gtest/gtest.h>

namespace {

const QString kIndigo = QStringLiteral("ck_indigo450");
const QString kCyan = QStringLiteral("ck_cyan500");
const QString kUngrouped = QString::fromLatin1(kPanelLinkageDataUngroupedColorKey);
const QString kStock = QStringLiteral("StockID");
const QString kAccount = QStringLiteral("AccountInfo");

CVXVariantMapTree Account(const QString& id)
{
    CVXVariantMapTree tree;
    tree.Set<QString>(QStringLiteral("AccountID"), id);
    return tree;
}

QString AccountId(const CVXVariantMapTree& tree)
{
    return tree.Get<QString>(QStringLiteral("AccountID"));
}

// The value stored in a tree itself, not through the getters' fallback.
unsigned long long StoredStock(const CVXVariantMapTree& tree, const QString& scope, const QString& group)
{
    return tree.Child(scope).Child(group).Get<unsigned long long>(kStock, 0);
}

class PanelLinkageDataTest : public ::testing::Test
{
protected:
    void SetUp() override { data().ResetForTest(); }
    void TearDown() override
    {
        data().ResetForTest();
        CVXPanelColorManager::GetInstance().ResetForTest();
    }
    static CVXPanelLinkageData& data() { return CVXPanelLinkageData::GetInstance(); }
    static bool TreesEmpty()
    {
        return data().PageTree().Keys().isEmpty() && !data().PageTree().HasChild(kIndigo) &&
               !data().PageTree().HasChild(kUngrouped) && !data().PopTree().HasChild(kIndigo) &&
               !data().PopTree().HasChild(kUngrouped) && data().PageTree() == CVXVariantMapTree() &&
               data().PopTree() == CVXVariantMapTree();
    }
};

TEST_F(PanelLinkageDataTest, EmptyGroupIdNeitherReadsNorWrites)
{
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, QString(), 600000);
    data().SetStockID(PanelLinkageDataSourceType_Pop, QString(), QString(), 600000);
    data().SetAccountInfo(PanelLinkageDataSourceType_Page, kIndigo, QString(), Account("A1"));
    data().SetComboOptionInfo(PanelLinkageDataSourceType_Pop, kIndigo, QString(), Account("A1"));
    data().SetOptionIndexInfo(PanelLinkageDataSourceType_Page, kIndigo, QString(), Account("A1"));
    data().ClearLinkageData(PanelLinkageDataSourceType_Pop, kIndigo, QString());
    EXPECT_TRUE(TreesEmpty());

    // With values present under a group, an empty group id still reads nothing.
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, QStringLiteral("1"), 700);
    EXPECT_EQ(data().GetStockID(kIndigo, QString()), 0u);
    EXPECT_TRUE(data().GetAccountInfo(kIndigo, QString()).IsEmpty());
    EXPECT_EQ(data().GetStockID(kIndigo, QStringLiteral("1")), 700u);
}

TEST_F(PanelLinkageDataTest, StockWriteLandsInItsOwnTreeAndOnlyOverwritesTheOther)
{
    const QString group = QStringLiteral("2");

    // The pop tree has nothing for (indigo, 2): a page write stays in the page tree.
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, group, 600000);
    EXPECT_EQ(StoredStock(data().PageTree(), kIndigo, group), 600000u);
    EXPECT_FALSE(data().PopTree().HasChild(kIndigo));
    EXPECT_EQ(data().GetStockID(kIndigo, group), 600000u);

    // Once the pop tree holds a non-zero id there, a page write overwrites it as well.
    data().SetStockID(PanelLinkageDataSourceType_Pop, kIndigo, group, 700001);
    EXPECT_EQ(StoredStock(data().PopTree(), kIndigo, group), 700001u);
    EXPECT_EQ(StoredStock(data().PageTree(), kIndigo, group), 700001u);
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, group, 600036);
    EXPECT_EQ(StoredStock(data().PageTree(), kIndigo, group), 600036u);
    EXPECT_EQ(StoredStock(data().PopTree(), kIndigo, group), 600036u);

    // A pop write into a scope the page tree does not know stays in the pop tree; a page-scoped
    // read then falls back to the pop window of the same colour.
    data().SetStockID(PanelLinkageDataSourceType_Pop, kCyan, group, 5);
    EXPECT_FALSE(data().PageTree().HasChild(kCyan));
    EXPECT_EQ(data().GetStockID(kCyan, group), 5u);
    // Another group of the same scope is a separate entry.
    EXPECT_EQ(data().GetStockID(kCyan, QStringLiteral("3")), 0u);
}

TEST_F(PanelLinkageDataTest, NoWriteWhenTheIdIsUnchanged)
{
    // Writing 0 where there is nothing equals the old value (none): not even an entry is made.
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, QStringLiteral("1"), 0);
    data().SetStockID(PanelLinkageDataSourceType_Pop, kIndigo, QStringLiteral("1"), 0);
    EXPECT_TRUE(TreesEmpty());

    // Writing the same id twice leaves the trees exactly as after the first write.
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, QStringLiteral("1"), 42);
    const QByteArray once = data().PageTree().SerializeAsQByteArray();
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, QStringLiteral("1"), 42);
    EXPECT_EQ(data().PageTree().SerializeAsQByteArray(), once);
    EXPECT_FALSE(data().PopTree().HasChild(kIndigo));

    // A page write of 0 over 42 is a change and lands.
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, QStringLiteral("1"), 0);
    EXPECT_EQ(data().GetStockID(kIndigo, QStringLiteral("1")), 0u);
    EXPECT_TRUE(data().PageTree().Child(kIndigo).Child(QStringLiteral("1")).Contains(kStock));
}

TEST_F(PanelLinkageDataTest, EmptyScopeUsesOnlyTheUngroupedPopBucket)
{
    const QString group = QStringLiteral("3");
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, group, 9);
    data().SetStockID(PanelLinkageDataSourceType_Pop, QString(), group, 11);
    EXPECT_EQ(StoredStock(data().PopTree(), kUngrouped, group), 11u);
    // The empty scope reads the ungrouped bucket and never the page tree.
    EXPECT_EQ(data().GetStockID(QString(), group), 11u);
    EXPECT_EQ(data().GetStockID(kIndigo, group), 9u);

    // A page write with an empty scope has no page entry to go to; it reaches the ungrouped
    // bucket only because that already holds an id.
    data().SetStockID(PanelLinkageDataSourceType_Page, QString(), group, 12);
    EXPECT_EQ(StoredStock(data().PopTree(), kUngrouped, group), 12u);
    EXPECT_FALSE(data().PageTree().HasChild(QString()));
    data().SetStockID(PanelLinkageDataSourceType_Page, QString(), QStringLiteral("4"), 13);
    EXPECT_FALSE(data().PopTree().Child(kUngrouped).HasChild(QStringLiteral("4")));
}

TEST_F(PanelLinkageDataTest, RecordsAreWrittenWithoutComparingAndReadWithFallback)
{
    const QString group = QStringLiteral("1");

    data().SetAccountInfo(PanelLinkageDataSourceType_Page, kIndigo, group, Account("A1"));
    EXPECT_EQ(AccountId(data().GetAccountInfo(kIndigo, group)), QStringLiteral("A1"));
    EXPECT_FALSE(data().PopTree().HasChild(kIndigo));

    // The pop side gets a record, after which page writes reach both trees.
    data().SetAccountInfo(PanelLinkageDataSourceType_Pop, kIndigo, group, Account("P1"));
    EXPECT_EQ(AccountId(data().PageTree().Child(kIndigo).Child(group).Get<CVXVariantMapTree>(kAccount)),
              QStringLiteral("P1"));
    data().SetAccountInfo(PanelLinkageDataSourceType_Page, kIndigo, group, Account("A2"));
    EXPECT_EQ(AccountId(data().PopTree().Child(kIndigo).Child(group).Get<CVXVariantMapTree>(kAccount)),
              QStringLiteral("A2"));

    // An empty record is written too (no comparison): the page record is emptied and the pop
    // tree, holding a non-empty one, is emptied as well; reads then find nothing.
    data().SetAccountInfo(PanelLinkageDataSourceType_Page, kIndigo, group, CVXVariantMapTree());
    EXPECT_TRUE(data().GetAccountInfo(kIndigo, group).IsEmpty());

    // A page scope without a record of its own reads the pop window's of the same colour.
    data().SetOptionIndexInfo(PanelLinkageDataSourceType_Pop, kCyan, group, Account("IDX"));
    EXPECT_EQ(AccountId(data().GetOptionIndexInfo(kCyan, group)), QStringLiteral("IDX"));
    data().SetOptionIndexInfo(PanelLinkageDataSourceType_Page, kCyan, QStringLiteral("9"), Account("PAGE"));
    EXPECT_FALSE(data().PopTree().Child(kCyan).HasChild(QStringLiteral("9")));

    // The four kinds are separate values of the same group record.
    data().SetComboOptionInfo(PanelLinkageDataSourceType_Page, kIndigo, group, Account("COMBO"));
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, group, 77);
    EXPECT_EQ(AccountId(data().GetComboOptionInfo(kIndigo, group)), QStringLiteral("COMBO"));
    EXPECT_TRUE(data().GetOptionIndexInfo(kIndigo, group).IsEmpty());
    EXPECT_TRUE(data().GetAccountInfo(kIndigo, group).IsEmpty());
    EXPECT_EQ(data().GetStockID(kIndigo, group), 77u);
}

TEST_F(PanelLinkageDataTest, ClearZeroesOnlyTheStockIdOfItsSide)
{
    const QString group = QStringLiteral("2");
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, group, 100);
    data().SetAccountInfo(PanelLinkageDataSourceType_Page, kIndigo, group, Account("A1"));
    data().SetStockID(PanelLinkageDataSourceType_Pop, QString(), group, 200);
    data().SetAccountInfo(PanelLinkageDataSourceType_Pop, QString(), group, Account("P1"));

    // Source 1 with an empty scope: nothing changes.
    const QByteArray pageBefore = data().PageTree().SerializeAsQByteArray();
    const QByteArray popBefore = data().PopTree().SerializeAsQByteArray();
    data().ClearLinkageData(PanelLinkageDataSourceType_Page, QString(), group);
    EXPECT_EQ(data().PageTree().SerializeAsQByteArray(), pageBefore);
    EXPECT_EQ(data().PopTree().SerializeAsQByteArray(), popBefore);

    // Source 2 with an empty scope zeroes the ungrouped pop entry, and keeps its account.
    data().ClearLinkageData(PanelLinkageDataSourceType_Pop, QString(), group);
    EXPECT_EQ(data().GetStockID(QString(), group), 0u);
    EXPECT_EQ(AccountId(data().GetAccountInfo(QString(), group)), QStringLiteral("P1"));
    EXPECT_EQ(StoredStock(data().PageTree(), kIndigo, group), 100u);

    // Source 1 with a scope zeroes the page entry only.
    data().ClearLinkageData(PanelLinkageDataSourceType_Page, kIndigo, group);
    EXPECT_EQ(data().GetStockID(kIndigo, group), 0u);
    EXPECT_EQ(AccountId(data().GetAccountInfo(kIndigo, group)), QStringLiteral("A1"));
}

TEST_F(PanelLinkageDataTest, ClearWithAnUnknownSourceAssertsAndDoesNothing)
{
    data().SetStockID(PanelLinkageDataSourceType_Page, kIndigo, QStringLiteral("1"), 100);
    data().SetStockID(PanelLinkageDataSourceType_Pop, kIndigo, QStringLiteral("1"), 100);
    const QByteArray pageBefore = data().PageTree().SerializeAsQByteArray();
    const QByteArray popBefore = data().PopTree().SerializeAsQByteArray();

    vxtest::ExpectAssertion("PanelLinkageDataSourceType_Page");
    data().ClearLinkageData(static_cast<PanelLinkageDataSourceType>(3), kIndigo, QStringLiteral("1"));
    EXPECT_EQ(vxtest::CountAssertions("PanelLinkageDataSourceType_Page"), 1);
    EXPECT_EQ(data().PageTree().SerializeAsQByteArray(), pageBefore);
    EXPECT_EQ(data().PopTree().SerializeAsQByteArray(), popBefore);
}

CVXVariantMapTree BoxRecord(const QString& group, unsigned long long stock, const CVXVariantMapTree& account)
{
    CVXVariantMapTree box;
    box.Set<QString>(QStringLiteral("strGroupID"), group);
    box.Set<unsigned long long>(kStock, stock);
    box.Set<CVXVariantMapTree>(kAccount, account);
    return box;
}

TEST_F(PanelLinkageDataTest, SeedingFromSavedPages)
{
    CVXVariantMapTree withCombo = BoxRecord(QStringLiteral("5"), 0, Account("A5"));
    withCombo.Set<CVXVariantMapTree>(QStringLiteral("ComboOptionInfo"), Account("C5"));
    const QVector<CVXVariantMapTree> boxes{
        BoxRecord(QString(), 111, Account("NOGROUP")),          // no group: skipped
        BoxRecord(QStringLiteral("1"), 0, CVXVariantMapTree()), // nothing to seed
        BoxRecord(QStringLiteral("2"), 600000, Account("A2")),
        withCombo, // account only; combination options are not seeded
    };
    CVXVariantMapTree page;
    page.Set<QString>(QStringLiteral("TabGroupColor"), kCyan);
    page.Set<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData"), boxes);
    QVector<CVXVariantMapTree> pages{page};
    data().SetPanelPageLinkageData(pages);

    EXPECT_FALSE(data().PageTree().Child(kCyan).HasChild(QString()));
    EXPECT_FALSE(data().PageTree().Child(kCyan).HasChild(QStringLiteral("1")));
    EXPECT_EQ(data().GetStockID(kCyan, QStringLiteral("2")), 600000u);
    EXPECT_EQ(AccountId(data().GetAccountInfo(kCyan, QStringLiteral("2"))), QStringLiteral("A2"));
    EXPECT_EQ(data().GetStockID(kCyan, QStringLiteral("5")), 0u);
    EXPECT_EQ(AccountId(data().GetAccountInfo(kCyan, QStringLiteral("5"))), QStringLiteral("A5"));
    EXPECT_TRUE(data().GetComboOptionInfo(kCyan, QStringLiteral("5")).IsEmpty());
    EXPECT_FALSE(data().PopTree().HasChild(kCyan));
}

TEST_F(PanelLinkageDataTest, SeedingFromPopOutWindowsUsesTheCurrentColourName)
{
    // A group record already holding a combination option keeps it.
    data().SetComboOptionInfo(PanelLinkageDataSourceType_Pop, kIndigo, QStringLiteral("1"), Account("C1"));

    const auto window = [](const QString& color, const CVXVariantMapTree& box) {
        CVXVariantMapTree pop;
        pop.Set<QString>(QStringLiteral("TitleBarColor"), color);
        pop.Set<CVXVariantMapTree>(QStringLiteral("BoxData"), box);
        return pop;
    };
    QVector<CVXVariantMapTree> pops{
        window(QStringLiteral("ck_purple300"), BoxRecord(QStringLiteral("1"), 700, Account("P1"))), // legacy
        window(QString(), BoxRecord(QStringLiteral("2"), 800, CVXVariantMapTree())),
        window(kCyan, CVXVariantMapTree()),                     // empty box
        window(kCyan, BoxRecord(QString(), 900, Account("X"))), // no group
    };
    data().SetPanelPopLinkageData(pops);

    // The legacy name lands under its present one.
    EXPECT_FALSE(data().PopTree().HasChild(QStringLiteral("ck_purple300")));
    EXPECT_EQ(StoredStock(data().PopTree(), kIndigo, QStringLiteral("1")), 700u);
    EXPECT_EQ(AccountId(data().GetAccountInfo(kIndigo, QStringLiteral("1"))), QStringLiteral("P1"));
    EXPECT_EQ(AccountId(data().GetComboOptionInfo(kIndigo, QStringLiteral("1"))), QStringLiteral("C1"));
    // A window without a colour is in the ungrouped bucket.
    EXPECT_EQ(data().GetStockID(QString(), QStringLiteral("2")), 800u);
    EXPECT_FALSE(data().PopTree().HasChild(kCyan));
    EXPECT_FALSE(data().PageTree().HasChild(kIndigo));
}

} // namespace
