// VLightScrollArea against QScrollArea (scroll bars as needed, no frame, inner widget not
// resized), the reference it stands in for: the same sizes must give the same bars and ranges.
// Then the user's side: the wheel, dragging a bar, content that grows and shrinks.

#include "Platform/StdUI/LightScrollArea.h"

#include "tests/common/TestSupport.h"

#include <QApplication>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

using vx_std_ui::VLightScrollArea;

namespace {

// What a user sees of one scroll bar: whether it is there and how far it scrolls.
struct BarState
{
    bool visible = false;
    int maximum = 0;
    int pageStep = 0;
    bool operator==(const BarState& other) const
    {
        // The range and page of a hidden bar do not show.
        return visible == other.visible &&
               (!visible || (maximum == other.maximum && pageStep == other.pageStep));
    }
};

// Both areas are shown when asked; QScrollArea keeps its bars in containers that it hides.
BarState StateOf(const QScrollBar* bar)
{
    if (!bar || !bar->isVisible())
        return BarState{};
    return BarState{true, bar->maximum(), bar->pageStep()};
}

std::ostream& operator<<(std::ostream& out, const BarState& state)
{
    return out << (state.visible ? "shown, max " : "hidden") << (state.visible ? state.maximum : 0)
               << " page " << state.pageStep;
}

// A wheel notch as a child that ignores it hands it to the area: the area's answer is whether the
// event was accepted (an ignored one would go on to the area's parents).
bool WheelAccepted(QWidget* area, QPoint delta)
{
    const QPoint pos(5, 5);
    QWheelEvent wheel(QPointF(pos), QPointF(area->mapToGlobal(pos)), QPoint(), delta, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(area, &wheel);
    return wheel.isAccepted();
}

} // namespace

class LightScrollAreaTest : public ::testing::Test
{
protected:
    // Shows `area` at 300 x 200 holding a new widget of `content` size, which it returns.
    static QWidget* ShowWithContent(VLightScrollArea& area, QSize content)
    {
        area.resize(300, 200);
        auto* inner = new QWidget;
        inner->resize(content);
        area.setWidget(inner);
        area.show();
        return inner;
    }
};

TEST_F(LightScrollAreaTest, BarsAndRangesMatchQScrollAreaForTheSameSizes)
{
    const int extent = QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    // (area, inner): fitting, one axis over, both over, and the cases where one bar's width makes
    // the other axis overflow.
    const struct
    {
        QSize area;
        QSize inner;
    } rows[] = {
        {{300, 200}, {300, 200}},          {{300, 200}, {100, 50}},
        {{300, 200}, {301, 200}},          {{300, 200}, {300, 201}},
        {{300, 200}, {900, 700}},          {{300, 200}, {600, 200 - extent + 1}},
        {{300, 200}, {600, 200 - extent}}, {{300, 200}, {300 - extent + 1, 500}},
        {{300, 200}, {300 - extent, 500}}, {{120, 80}, {121, 81}},
    };
    for (const auto& row : rows) {
        QScrollArea reference;
        reference.setFrameShape(QFrame::NoFrame);
        reference.setWidgetResizable(false);
        auto* referenceInner = new QWidget;
        referenceInner->resize(row.inner);
        reference.setWidget(referenceInner);
        reference.resize(row.area);
        reference.show();

        VLightScrollArea light;
        auto* inner = new QWidget;
        inner->resize(row.inner);
        light.setWidget(inner);
        light.resize(row.area);
        light.show();
        // QScrollArea settles its bars through queued calls.
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();

        const std::string where =
            "area " + std::to_string(row.area.width()) + "x" + std::to_string(row.area.height()) +
            ", inner " + std::to_string(row.inner.width()) + "x" + std::to_string(row.inner.height());
        EXPECT_EQ(StateOf(light.horizontalScrollBar()), StateOf(reference.horizontalScrollBar())) << where;
        EXPECT_EQ(StateOf(light.verticalScrollBar()), StateOf(reference.verticalScrollBar())) << where;
        EXPECT_EQ(light.viewportSize(), reference.viewport()->size()) << where;
        EXPECT_EQ(inner->size(), row.inner) << "the area never resizes its widget; " << where;
        EXPECT_EQ(light.findChildren<QWidget*>().size(),
                  1 + (light.horizontalScrollBar() ? 1 : 0) + (light.verticalScrollBar() ? 1 : 0))
            << "one widget besides the bars it needed; " << where;
    }
}

TEST_F(LightScrollAreaTest, BarsComeAndGoWithTheContentSize)
{
    VLightScrollArea area;
    QWidget* inner = ShowWithContent(area, QSize(200, 100));
    EXPECT_EQ(area.horizontalScrollBar(), nullptr);
    EXPECT_EQ(area.verticalScrollBar(), nullptr);
    EXPECT_EQ(area.viewportSize(), QSize(300, 200));

    inner->resize(200, 500);
    ASSERT_NE(area.verticalScrollBar(), nullptr);
    EXPECT_TRUE(area.verticalScrollBar()->isVisible());
    EXPECT_EQ(area.horizontalScrollBar(), nullptr);
    EXPECT_EQ(area.verticalScrollBar()->maximum(), 500 - 200);

    area.setScrollPosition(QPoint(40, 120));
    EXPECT_EQ(area.scrollPosition(), QPoint(0, 120)) << "no horizontal bar, nothing to scroll sideways";
    EXPECT_EQ(inner->pos(), QPoint(0, -120));

    // Shrinking the content below the area hides the bar and brings the content home.
    inner->resize(200, 150);
    EXPECT_FALSE(area.verticalScrollBar()->isVisible());
    EXPECT_EQ(area.scrollPosition(), QPoint(0, 0));
    EXPECT_EQ(inner->pos(), QPoint(0, 0));

    // A new widget replaces (and deletes) the old one and starts unscrolled.
    QPointer<QWidget> old = inner;
    auto* next = new QWidget;
    next->resize(900, 900);
    area.setWidget(next);
    EXPECT_TRUE(old.isNull());
    EXPECT_EQ(area.widget(), next);
    EXPECT_EQ(next->pos(), QPoint(0, 0));
    ASSERT_NE(area.horizontalScrollBar(), nullptr);
    EXPECT_TRUE(area.horizontalScrollBar()->isVisible());
    EXPECT_TRUE(area.verticalScrollBar()->isVisible());
    EXPECT_TRUE(next->geometry().intersects(area.verticalScrollBar()->geometry()));
    EXPECT_EQ(area.childAt(area.verticalScrollBar()->geometry().center()), area.verticalScrollBar())
        << "the bars stay above the content";
}

TEST_F(LightScrollAreaTest, WheelScrollsTheAreaAndPassesOnWhenThereIsNothingToScroll)
{
    VLightScrollArea area;
    QWidget* inner = ShowWithContent(area, QSize(250, 600));

    EXPECT_TRUE(WheelAccepted(&area, QPoint(0, -120)));
    const int afterOne = area.scrollPosition().y();
    // Three lines of QScrollArea's 20 px step per notch.
    EXPECT_EQ(afterOne, QApplication::wheelScrollLines() * 20);
    EXPECT_EQ(inner->pos(), QPoint(0, -afterOne));
    EXPECT_TRUE(WheelAccepted(&area, QPoint(0, 120)));
    EXPECT_EQ(area.scrollPosition().y(), 0);

    // At the top a notch up has nothing to do here; sideways there is no bar at all.
    EXPECT_FALSE(WheelAccepted(&area, QPoint(0, 120)));
    EXPECT_FALSE(WheelAccepted(&area, QPoint(-120, 0)));
    EXPECT_EQ(area.scrollPosition(), QPoint(0, 0));
}

TEST_F(LightScrollAreaTest, DraggingTheHandleWithTheMouseMovesTheContent)
{
    VLightScrollArea area;
    QWidget* inner = ShowWithContent(area, QSize(280, 1000));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&area));
    QScrollBar* bar = area.verticalScrollBar();
    ASSERT_NE(bar, nullptr);

    // The handle starts just below the bar's top arrow; dragging it down scrolls the content up.
    const int arrow = bar->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, bar);
    const QPoint handle = bar->mapTo(&area, QPoint(bar->width() / 2, arrow + 4));
    QWindow* window = area.windowHandle();
    QTest::mouseMove(window, handle);
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, handle);
    for (int dy = 10; dy <= 60; dy += 10)
        QTest::mouseMove(window, handle + QPoint(0, dy));
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, handle + QPoint(0, 60));
    EXPECT_GT(area.scrollPosition().y(), 60) << "the content moves faster than the handle";
    EXPECT_LT(area.scrollPosition().y(), bar->maximum());
    EXPECT_EQ(inner->pos(), QPoint(0, -area.scrollPosition().y()));
}
