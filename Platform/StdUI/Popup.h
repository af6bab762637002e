#pragma once

// VPopup: the base of the toolkit's small popups. A frameless Qt::Popup window painted with the
// theme's background and a one-pixel border, shown next to a point of the screen and kept
// inside the screen's available area. Like any Qt popup it closes on Escape and on a click
// outside it; Closed fires once each time a shown popup goes away, however it was closed.

#include "Platform/StdUI/StdUIExport.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QWidget>

namespace vx_std_ui {

// Where a popup of `size` anchored at `anchor` (its preferred top-left corner) goes so that it
// stays inside `available`: pushed left when it would leave the right side, flipped above the
// anchor when it would leave the bottom (or pushed up when there is no room above either), and
// never left of or above the area. A popup larger than the area keeps to its top-left corner.
VXSTDUI_EXPORT QPoint PopupTopLeft(const QPoint& anchor, const QSize& size, const QRect& available);

class VXSTDUI_EXPORT VPopup : public QWidget
{
    Q_OBJECT
public:
    // The parent only owns the popup; it is always a window of its own.
    explicit VPopup(QWidget* parent = nullptr);
    ~VPopup() override;

    // Moves the popup next to `globalPos` (see PopupTopLeft, on the screen holding the point or
    // the primary screen) and shows it.
    void ShowAt(const QPoint& globalPos);

Q_SIGNALS:
    void Closed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    bool m_open = false;
};

} // namespace vx_std_ui
