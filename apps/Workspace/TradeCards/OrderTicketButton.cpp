#include "apps/Workspace/TradeCards/OrderTicketButton.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QPainter>
#include <QPainterPath>

namespace vx_ws {

namespace {
QColor Color(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QString::fromLatin1(key));
}
} // namespace

CVXOrderTicketButton::CVXOrderTicketButton(const QString& text, const char* accentKey, QWidget* parent)
    : QAbstractButton(parent), m_accentKey(accentKey)
{
    setText(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this,
            [this](vx_ui_res::Theme) { update(); });
}

void CVXOrderTicketButton::SetAccentKey(const char* accentKey)
{
    m_accentKey = accentKey;
    update();
}

void CVXOrderTicketButton::SetSolid(bool solid)
{
    m_solid = solid;
    update();
}

QSize CVXOrderTicketButton::sizeHint() const
{
    const QFontMetrics metrics(font());
    return QSize(metrics.horizontalAdvance(text()) + 20, metrics.height() + 10);
}

QSize CVXOrderTicketButton::minimumSizeHint() const
{
    return QSize(24, QFontMetrics(font()).height() + 4);
}

void CVXOrderTicketButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath path;
    path.addRoundedRect(box, 3, 3);

    QColor accent = Color(m_accentKey);
    const bool filled = m_solid || isChecked();
    if (!isEnabled()) {
        painter.fillPath(path, Color("ct_bg_tertiary"));
        painter.setPen(Color("ct_text_disabled"));
    } else if (filled) {
        if (m_hover || isDown())
            accent = accent.lighter(isDown() ? 95 : 110);
        painter.fillPath(path, accent);
        painter.setPen(Color("ct_text_on_accent"));
    } else {
        painter.fillPath(path, m_hover ? Color("ct_hover") : Color("ct_bg_secondary"));
        painter.setPen(QPen(Color("ct_border"), 1));
        painter.drawPath(path);
        painter.setPen(m_hover ? accent : Color("ct_text_secondary"));
    }
    QFont f = font();
    f.setBold(filled);
    painter.setFont(f);
    painter.drawText(rect(), Qt::AlignCenter, fontMetrics().elidedText(text(), Qt::ElideRight, width() - 6));
    if (hasFocus() && !filled) {
        painter.setPen(QPen(Color("ct_focus"), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(box.adjusted(1, 1, -1, -1), 2, 2);
    }
}

void CVXOrderTicketButton::enterEvent(QEvent* event)
{
    m_hover = true;
    update();
    QAbstractButton::enterEvent(event);
}

void CVXOrderTicketButton::leaveEvent(QEvent* event)
{
    m_hover = false;
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace vx_ws
