#include "UIFrame/PanelBox/PanelBoxMask.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QEvent>
#include <QPainter>

namespace {
constexpr int kGroupBandHeight = 2;
}

CVXPanelBoxMask::CVXPanelBoxMask(QWidget* box) : QWidget(box)
{
    setObjectName(QStringLiteral("CVXPanelBoxMask"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    if (box) {
        setGeometry(box->rect());
        box->installEventFilter(this);
    }
    hide();
}

CVXPanelBoxMask::~CVXPanelBoxMask() = default;

void CVXPanelBoxMask::SetSelected(bool selected)
{
    if (m_bSelected == selected)
        return;
    m_bSelected = selected;
    UpdateVisibility();
}

void CVXPanelBoxMask::SetDragging(bool dragging)
{
    if (m_bDragging == dragging)
        return;
    m_bDragging = dragging;
    UpdateVisibility();
}

void CVXPanelBoxMask::SetDropHighlight(const QRect& rect)
{
    if (m_rcDropHighlight == rect)
        return;
    m_rcDropHighlight = rect;
    UpdateVisibility();
}

void CVXPanelBoxMask::SetGroupColor(const QString& color)
{
    if (m_strGroupColor == color)
        return;
    m_strGroupColor = color;
    UpdateVisibility();
}

QColor CVXPanelBoxMask::ResolvedGroupColor() const
{
    if (m_strGroupColor.isEmpty())
        return QColor();
    vx_ui_res::Provider& provider = vx_ui_res::Provider::Instance();
    // Asking the provider for a key it lacks logs a warning; colour names are not keys.
    if (provider.HasColor(m_strGroupColor))
        return provider.GetColor(m_strGroupColor);
    return QColor(m_strGroupColor);
}

void CVXPanelBoxMask::UpdateVisibility()
{
    const bool wanted =
        m_bSelected || m_bDragging || !m_rcDropHighlight.isEmpty() || ResolvedGroupColor().isValid();
    if (wanted) {
        if (parentWidget())
            setGeometry(parentWidget()->rect());
        // Later children of the box (grips, popups) must not cover the frame.
        raise();
    }
    setVisible(wanted);
    update();
}

bool CVXPanelBoxMask::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget()) {
        if (event->type() == QEvent::Resize)
            setGeometry(parentWidget()->rect());
        else if (event->type() == QEvent::ChildAdded && isVisible())
            raise();
    }
    return QWidget::eventFilter(watched, event);
}

void CVXPanelBoxMask::paintEvent(QPaintEvent* event)
{
    (void)event;
    QPainter painter(this);
    const QColor group = ResolvedGroupColor();
    if (group.isValid())
        painter.fillRect(QRect(0, 0, width(), kGroupBandHeight), group);
    vx_ui_res::Provider& provider = vx_ui_res::Provider::Instance();
    if (!m_rcDropHighlight.isEmpty()) {
        QColor fill = provider.GetColor(QStringLiteral("ct_focus"));
        fill.setAlphaF(0.25);
        painter.fillRect(m_rcDropHighlight, fill);
    }
    if (m_bSelected || m_bDragging) {
        QColor frame = provider.GetColor(QStringLiteral("ct_focus"));
        if (m_bDragging && !m_bSelected)
            frame.setAlphaF(0.6);
        QPen pen(frame);
        pen.setWidth(2);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}
