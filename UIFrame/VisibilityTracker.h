#pragma once

// One event filter shared by every watched widget: it tells each widget's callback when the
// widget becomes visible or hidden (Show / Hide events, including those caused by a parent),
// once per change. A destroyed widget is forgotten by itself.

#include "UIFrame/UIFrameExport.h"

#include <QHash>
#include <QObject>

#include <functional>

class QWidget;

class UIFRAME_EXPORT CVXVisibilityTracker : public QObject
{
    Q_OBJECT
public:
    using Callback = std::function<void(bool visible)>;

    static CVXVisibilityTracker& Instance();

    // Replaces an earlier callback of the same widget.
    void Watch(QWidget* widget, Callback callback);
    void Unwatch(QWidget* widget);
    bool IsWatched(const QWidget* widget) const;
    int WatchedCount() const { return m_watched.size(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    CVXVisibilityTracker();

    struct Entry
    {
        Callback callback;
        bool bVisible = false;
    };
    QHash<const QObject*, Entry> m_watched;
};
