#pragma once

// Mouse input through a widget's window, in the widget's own coordinates. QTest's widget
// overloads do not deliver mouse moves on this Qt, the window overloads do.

#include <QCoreApplication>
#include <QPoint>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace vxtest {

inline QWindow* WindowOf(QWidget* widget)
{
    return widget->window()->windowHandle();
}

inline QPoint InWindow(QWidget* widget, QPoint local)
{
    return widget->mapTo(widget->window(), local);
}

inline void Press(QWidget* w, QPoint local, Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    QTest::mousePress(WindowOf(w), Qt::LeftButton, mods, InWindow(w, local));
}

inline void MoveTo(QWidget* w, QPoint local)
{
    QTest::mouseMove(WindowOf(w), InWindow(w, local));
}

inline void Release(QWidget* w, QPoint local)
{
    QTest::mouseRelease(WindowOf(w), Qt::LeftButton, Qt::NoModifier, InWindow(w, local));
}

// Press at `from`, move in four steps by `delta`, release; `from` in `w`'s coordinates at the
// start (the widget may move under the mouse meanwhile, the window does not).
inline void Drag(QWidget* w, QPoint from, QPoint delta)
{
    QWindow* window = WindowOf(w);
    const QPoint start = InWindow(w, from);
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, start);
    for (int step = 1; step <= 4; ++step)
        QTest::mouseMove(window, start + delta * step / 4);
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, start + delta);
    QCoreApplication::processEvents();
}

} // namespace vxtest
