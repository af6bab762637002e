#pragma once

// VLightScrollArea: a scroll container that costs a single widget until it has to scroll. It
// holds one inner widget at the inner widget's own size (the area never resizes it), shows it
// from the scroll position, and creates a scroll bar only when the inner widget is larger than
// the area along that axis (as QScrollArea does with scroll bars as needed and no frame); a hidden
// area makes them when shown. Wheel events that the inner widget leaves reach the area and
// scroll it.

#include "Platform/StdUI/StdUIExport.h"

#include <QPointer>
#include <QWidget>

class QScrollBar;

namespace vx_std_ui {

class VXSTDUI_EXPORT VLightScrollArea : public QWidget
{
    Q_OBJECT
public:
    explicit VLightScrollArea(QWidget* parent = nullptr);
    ~VLightScrollArea() override;

    // The area takes ownership of the widget and deletes any widget it held before.
    void setWidget(QWidget* widget);
    QWidget* widget() const;

    // The bars, null while the area never needed them; a bar that is not needed is hidden.
    QScrollBar* horizontalScrollBar() const;
    QScrollBar* verticalScrollBar() const;
    // The part of the area that shows the inner widget (the area less its visible bars).
    QSize viewportSize() const;
    // How far the inner widget is scrolled (its top-left corner sits at minus this point).
    QPoint scrollPosition() const;
    void setScrollPosition(const QPoint& position);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void updateBars();
    void placeWidget();
    QScrollBar* makeBar(Qt::Orientation orientation);

    QPointer<QWidget> m_widget;
    QScrollBar* m_hBar = nullptr;
    QScrollBar* m_vBar = nullptr;
    bool m_barsPending = false; // bars wanted while hidden, made on show
};

} // namespace vx_std_ui
