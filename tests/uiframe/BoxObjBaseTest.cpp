// The box side of the object model: appending cards, combined card sizes, lookups by tab and
// property forwarding by card type.

#include "tests/uiframe/FoundationTestSupport.h"

#include "UIFrame/BoxObjBase.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "tests/common/TestSupport.h"

#include <gtest/gtest.h>

using namespace uiframe_test;

namespace {

// A card of another type that records forwarded properties.
class CPropertyCard : public CTestCard
{
    Q_OBJECT
public:
    CPropertyCard(const char* type, QSize minimum, QSize maximum) : m_strType(QString::fromLatin1(type))
    {
        minSize = minimum;
        maxSize = maximum;
    }
    QString GetCardObjType() override { return m_strType; }
    QString GetCardStaticTitle() override { return m_strType + QStringLiteral(" title"); }
    void SetObjProperty(const QString& cardType, const CVXVariantMapTree& property) override
    {
        properties.emplace_back(cardType, property.Get<int>(QStringLiteral("Value"), -1));
    }

    std::vector<std::pair<QString, int>> properties;

private:
    QString m_strType;
};

} // namespace

class BoxObjBaseTest : public FoundationTest
{
};

TEST_F(BoxObjBaseTest, AppendGivesTheCardItsBoxContext)
{
    QWidget host;
    auto* box = new CTestBox(&host);
    box->SetObjKey(0xB0C5);
    box->SetStockID(321);
    CVXVariantMapTree account;
    account.Set<QString>(QStringLiteral("AccountID"), QStringLiteral("acc-9"));
    box->SetAccountInfo(account);

    auto* first = new CPropertyCard("KLine", QSize(50, 50), QSize(5000, 5000));
    ASSERT_TRUE(box->AppendCardWithIndex(first, 0, true));
    EXPECT_EQ(box->GetTabCount(), 1);
    EXPECT_EQ(box->GetTabWidget()->tabText(0), QStringLiteral("KLine title"));
    EXPECT_EQ(first->GetParentBox(), box);
    EXPECT_EQ(first->GetObjKey(), 0xB0C5u);
    EXPECT_EQ(first->GetStockID(), 321u);
    EXPECT_EQ(first->GetAccountInfo().Get<QString>(QStringLiteral("AccountID")), QStringLiteral("acc-9"));
    EXPECT_EQ(box->recalCount, 1);

    // Without applyStockID the card keeps its own id; an index past the end appends, 0 prepends.
    auto* second = new CPropertyCard("Ticks", QSize(50, 50), QSize(5000, 5000));
    second->SetStockID(5);
    ASSERT_TRUE(box->AppendCardWithIndex(second, 99, false));
    auto* third = new CPropertyCard("OrderBook", QSize(50, 50), QSize(5000, 5000));
    ASSERT_TRUE(box->AppendCardWithIndex(third, 0, true));
    EXPECT_EQ(second->GetStockID(), 5u);
    EXPECT_EQ(box->GetCardByIndex(0), third);
    EXPECT_EQ(box->GetCardByIndex(1), first);
    EXPECT_EQ(box->GetCardByIndex(2), second);
    EXPECT_EQ(box->GetCardByIndex(3), nullptr);
    EXPECT_EQ(box->GetCardByIndex(-1), nullptr);
    EXPECT_EQ(box->GetTabName(), QStringLiteral("OrderBook"));
    EXPECT_EQ(box->recalCount, 3);

    box->SetCurrentTabIndex(2);
    EXPECT_EQ(box->GetCurrentTabIndex(), 2);
    EXPECT_EQ(box->GetCurrentCard(), second);
    EXPECT_EQ(box->GetTabBar(), box->GetTabWidget()->tabBar());

    // Remove hands the card back when it is not deleted.
    box->Remove(1, false);
    EXPECT_EQ(box->GetTabCount(), 2);
    EXPECT_EQ(first->GetParentBox(), nullptr);
    delete first;

    box->ClearAllTab();
    EXPECT_EQ(box->GetTabCount(), 0);
    EXPECT_TRUE(box->GetTabName().isEmpty());
}

TEST_F(BoxObjBaseTest, AppendRefusesNullCardsAndBoxesWithoutTabWidget)
{
    CTestBox box;
    EXPECT_FALSE(box.AppendCardWithIndex(nullptr, 0, true));
    EXPECT_EQ(box.recalCount, 0);

    CTestBox bare(nullptr, false);
    CTestCard card;
    EXPECT_FALSE(bare.AppendCardWithIndex(&card, 0, true));
    EXPECT_EQ(card.GetParentBox(), nullptr);
    EXPECT_EQ(bare.GetTabCount(), 0);
    EXPECT_EQ(bare.GetCurrentTabIndex(), -1);
    EXPECT_EQ(bare.GetCurrentCard(), nullptr);
    EXPECT_EQ(bare.GetTabBar(), nullptr);
    EXPECT_TRUE(bare.GetTabName().isEmpty());
}

TEST_F(BoxObjBaseTest, CardSizesCombineComponentWise)
{
    CTestBox bare(nullptr, false);
    EXPECT_EQ(bare.GetCardMinSize(), QSize(-1, -1));
    EXPECT_EQ(bare.GetCardMaxSize(), QSize(-1, -1));

    CTestBox box;
    EXPECT_EQ(box.GetCardMinSize(), QSize(0, 0));
    EXPECT_EQ(box.GetCardMaxSize(), QSize(0, 0));

    box.AppendCardWithIndex(new CPropertyCard("A", QSize(200, 60), QSize(800, 3000)), -1, false);
    box.AppendCardWithIndex(new CPropertyCard("B", QSize(120, 140), QSize(1200, 900)), -1, false);
    EXPECT_EQ(box.GetCardMinSize(), QSize(200, 140));
    EXPECT_EQ(box.GetCardMaxSize(), QSize(1200, 3000));
    EXPECT_EQ(box.GetBoxMinSize(), QSize(200, 140));
    EXPECT_EQ(box.GetBoxMaxSize(), QSize(1200, 3000));

    // A card that keeps the base sizes counts as 50 x 50 .. 5000 x 5000.
    auto* plain = new CVXCardObjBase(CardPos_PanelBox);
    box.AppendCardWithIndex(plain, -1, false);
    EXPECT_EQ(box.GetCardMinSize(), QSize(200, 140));
    EXPECT_EQ(box.GetCardMaxSize(), QSize(5000, 5000));
}

TEST_F(BoxObjBaseTest, PropertiesGoToCardsOfTheNamedTypeOnly)
{
    CTestBox box;
    auto* klineA = new CPropertyCard("KLine", QSize(50, 50), QSize(5000, 5000));
    auto* ticks = new CPropertyCard("Ticks", QSize(50, 50), QSize(5000, 5000));
    auto* klineB = new CPropertyCard("KLine", QSize(50, 50), QSize(5000, 5000));
    for (CPropertyCard* card : {klineA, ticks, klineB})
        box.AppendCardWithIndex(card, -1, false);

    CVXVariantMapTree property;
    property.Set<int>(QStringLiteral("Value"), 17);
    box.SetObjProperty(QStringLiteral("KLine"), property);
    const std::vector<std::pair<QString, int>> expected = {{QStringLiteral("KLine"), 17}};
    EXPECT_EQ(klineA->properties, expected);
    EXPECT_EQ(klineB->properties, expected);
    EXPECT_TRUE(ticks->properties.empty());

    box.SetObjProperty(QString(), property);
    EXPECT_EQ(klineA->properties.size(), 1u);
}

TEST_F(BoxObjBaseTest, BoxKeepsItsOwnContextTrees)
{
    CTestBox box;
    EXPECT_TRUE(box.GetAccountInfo().IsEmpty());
    CVXVariantMapTree optionIndex;
    optionIndex.Set<int>(QStringLiteral("Index"), 3);
    box.SetOptionIndexInfo(optionIndex);
    EXPECT_EQ(box.GetOptionIndexInfo().Get<int>(QStringLiteral("Index")), 3);
    optionIndex.Set<int>(QStringLiteral("Index"), 4);
    EXPECT_EQ(box.GetOptionIndexInfo().Get<int>(QStringLiteral("Index")), 3);
}

#include "BoxObjBaseTest.moc"
