// VToast: shown over the parent's bottom centre, gone by itself after its time, replaced by a
// newer toast, and refused without a parent.

#include "Platform/StdUI/Toast.h"

#include "tests/common/TestSupport.h"

#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

using namespace vx_std_ui;

TEST(ToastTest, ShowsOverTheBottomCentreAndGoesAwayByItself)
{
    QWidget parent;
    parent.resize(600, 400);
    parent.show();

    QPointer<VToast> toast = VToast::Show(&parent, QStringLiteral("Layout saved"), 100);
    ASSERT_TRUE(toast);
    EXPECT_EQ(toast->parentWidget(), &parent);
    EXPECT_FALSE(toast->isWindow());
    EXPECT_TRUE(toast->isVisible());
    EXPECT_EQ(toast->text(), QStringLiteral("Layout saved"));
    EXPECT_EQ(toast->objectName(), QStringLiteral("VToast"));
    // Centred horizontally, in the lower part, inside the parent.
    EXPECT_LE(std::abs(toast->geometry().center().x() - 300), 1);
    EXPECT_GT(toast->geometry().top(), 200);
    EXPECT_LE(toast->geometry().bottom(), 400);
    EXPECT_GT(toast->width(), toast->fontMetrics().horizontalAdvance(toast->text()));

    // It follows a resized parent.
    parent.resize(800, 400);
    EXPECT_LE(std::abs(toast->geometry().center().x() - 400), 1);

    QTRY_VERIFY_WITH_TIMEOUT(toast.isNull(), 10000);
}

TEST(ToastTest, NewToastReplacesTheOneStillShown)
{
    QWidget parent;
    parent.resize(600, 400);
    parent.show();
    QPointer<VToast> first = VToast::Show(&parent, QStringLiteral("first"), 60000);
    QPointer<VToast> second = VToast::Show(&parent, QStringLiteral("second"), 100);
    EXPECT_FALSE(first->isVisible());
    EXPECT_TRUE(second->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(first.isNull() && second.isNull(), 10000);
}

TEST(ToastTest, NoParentNoToast)
{
    vxtest::ExpectError("VToast::Show: no parent");
    EXPECT_EQ(VToast::Show(nullptr, QStringLiteral("lost"), 100), nullptr);
}
