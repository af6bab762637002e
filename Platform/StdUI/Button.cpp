#include "Platform/StdUI/Button.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QPainter>
#include <QPainterPath>

namespace vx_std_ui {

namespace {
constexpr int kHeight = 28;
constexpr int kMinWidth = 72;
constexpr int kPaddingX = 16;
constexpr qreal kRadius = 4.0;

QColor Themed(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QString::fromLatin1(key));
}
} // namespace

VButton::VButton(QWidget* parent) : QPushButton(parent)
{
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
}

VButton::VButton(const QString& text, Style style, QWidget* parent) : VButton(parent)
{
    setText(text);
    m_style = style;
}

VButton::~VButton() = default;

void VButton::setButtonStyle(Style style)
{
    if (m_style == style)
        return;
    m_style = style;
    update();
}

QSize VButton::sizeHint() const
{
    const int textWidth = fontMetrics().horizontalAdvance(text());
    return {std::max(kMinWidth, textWidth + 2 * kPaddingX), kHeight};
}

QSize VButton::minimumSizeHint() const
{
    return sizeHint();
}

void VButton::enterEvent(QEvent* event)
{
    m_hovered = true;
    update();
    QPushButton::enterEvent(event);
}

void VButton::leaveEvent(QEvent* event)
{
    m_hovered = false;
    update();
    QPushButton::leaveEvent(event);
}

void VButton::paintEvent(QPaintEvent* event)
{
    (void)event;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath path;
    path.addRoundedRect(frame, kRadius, kRadius);

    QColor fill;
    QColor border;
    QColor textColour;
    if (m_style == Style::Primary) {
        fill = Themed("ct_selected");
        border = fill;
        textColour = Themed("ct_text_on_accent");
        if (isDown())
            fill = fill.darker(115);
        else if (m_hovered)
            fill = fill.lighter(112);
    } else {
        fill = Themed("ct_bg_primary");
        border = Themed("ct_border");
        textColour = Themed("ct_text_primary");
        if (isDown())
            fill = Themed("ct_pressed");
        else if (m_hovered)
            fill = Themed("ct_hover");
    }
    if (!isEnabled()) {
        fill.setAlphaF(fill.alphaF() * 0.5);
        border.setAlphaF(border.alphaF() * 0.5);
        textColour = Themed("ct_text_disabled");
    }
    painter.fillPath(path, fill);
    painter.setPen(QPen(border, 1.0));
    painter.drawPath(path);
    if (hasFocus() && m_style == Style::Secondary) {
        painter.setPen(QPen(Themed("ct_focus"), 1.0));
        painter.drawRoundedRect(frame.adjusted(1, 1, -1, -1), kRadius - 1, kRadius - 1);
    }
    painter.setPen(textColour);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace vx_std_ui
