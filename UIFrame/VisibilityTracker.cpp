#include "UIFrame/VisibilityTracker.h"

#include <QEvent>
#include <QWidget>

CVXVisibilityTracker& CVXVisibilityTracker::Instance()
{
    // Never destroyed: watched widgets may outlive static destruction order at exit.
    static auto* tracker = new CVXVisibilityTracker;
    return *tracker;
}

CVXVisibilityTracker::CVXVisibilityTracker() = default;

void CVXVisibilityTracker::Watch(QWidget* widget, Callback callback)
{
    if (!widget)
        return;
    const bool known = m_watched.contains(widget);
    m_watched[widget] = Entry{std::move(callback), widget->isVisible()};
    if (known)
        return;
    widget->installEventFilter(this);
    connect(widget, &QObject::destroyed, this, [this](QObject* object) { m_watched.remove(object); });
}

void CVXVisibilityTracker::Unwatch(QWidget* widget)
{
    if (!widget || !m_watched.remove(widget))
        return;
    widget->removeEventFilter(this);
    disconnect(widget, &QObject::destroyed, this, nullptr);
}

bool CVXVisibilityTracker::IsWatched(const QWidget* widget) const
{
    return m_watched.contains(widget);
}

bool CVXVisibilityTracker::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::Show && type != QEvent::Hide)
        return QObject::eventFilter(watched, event);
    auto it = m_watched.find(watched);
    if (it == m_watched.end())
        return false;
    const bool visible = type == QEvent::Show;
    if (it->bVisible == visible)
        return false;
    it->bVisible = visible;
    // A copy: the callback may unwatch (or destroy) the widget.
    const Callback callback = it->callback;
    if (callback)
        callback(visible);
    return false;
}
