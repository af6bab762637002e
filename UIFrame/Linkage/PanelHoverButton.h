#pragma once

// CVXPanelHoverButton: the square, unfocusable button the linkage popups and the title strip's
// group button paint themselves; it tracks the mouse hover and repaints on hover changes and on
// theme changes. Subclasses only paint.

#include "UIFrame/UIFrameExport.h"

#include <QAbstractButton>

class UIFRAME_EXPORT CVXPanelHoverButton : public QAbstractButton
{
    Q_OBJECT
public:
    // Fixed at `side` x `side`.
    CVXPanelHoverButton(int side, QWidget* parent);
    ~CVXPanelHoverButton() override;

    bool IsHovered() const { return m_hovered; }
    QSize sizeHint() const override;

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    int m_side = 0;
    bool m_hovered = false;
};
