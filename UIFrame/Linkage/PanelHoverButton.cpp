#include "UIFrame/Linkage/PanelHoverButton.h"

#include "Platform/StdUI/ThemeResource.h"

CVXPanelHoverButton::CVXPanelHoverButton(int side, QWidget* parent) : QAbstractButton(parent), m_side(side)
{
    setFixedSize(side, side);
    setFocusPolicy(Qt::NoFocus);
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this, [this] { update(); });
}

CVXPanelHoverButton::~CVXPanelHoverButton() = default;

QSize CVXPanelHoverButton::sizeHint() const
{
    return QSize(m_side, m_side);
}

void CVXPanelHoverButton::enterEvent(QEvent* event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void CVXPanelHoverButton::leaveEvent(QEvent* event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}
