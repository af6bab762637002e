#include "UIFrame/Linkage/PanelColorButton.h"

#include "Platform/Core/Log.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QPainter>

namespace {

constexpr int kSide = 24;
constexpr int kSwatch = 16;

} // namespace

CVXPanelColorButton::CVXPanelColorButton(QWidget* parent) : CVXPanelHoverButton(kSide, parent)
{
    setObjectName(QStringLiteral("CVXPanelGroupSettingButton"));
    setCheckable(true);
}

CVXPanelColorButton::~CVXPanelColorButton() = default;

void CVXPanelColorButton::SetColor(const QString& colorKey)
{
    if (m_colorKey == colorKey)
        return;
    m_colorKey = colorKey;
    if (!colorKey.isEmpty() && !vx_ui_res::Provider::Instance().HasColor(colorKey))
        VXLOG_WARN("CVXPanelColorButton::SetColor: the theme has no colour \"{}\"", colorKey);
    update();
}

QString CVXPanelColorButton::GetColor() const
{
    return m_colorKey;
}

QColor CVXPanelColorButton::ResolvedColor() const
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    if (m_colorKey.isEmpty() || !theme.HasColor(m_colorKey))
        return QColor();
    return theme.GetColor(m_colorKey);
}

QRect CVXPanelColorButton::SwatchRect()
{
    const int margin = (kSide - kSwatch) / 2;
    return QRect(margin, margin, kSwatch, kSwatch);
}

void CVXPanelColorButton::paintEvent(QPaintEvent*)
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    if (IsHovered() && !isChecked()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.GetColor(QStringLiteral("ct_hover")));
        painter.drawRoundedRect(QRectF(rect()), 4, 4);
    }

    const QRectF swatch = QRectF(SwatchRect());
    const QColor color = ResolvedColor();
    if (color.isValid()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRoundedRect(swatch, 3, 3);
    } else {
        // "No colour": a ring struck through, in the secondary text colour.
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme.GetColor(QStringLiteral("ct_text_secondary")), 1.5));
        const QRectF ring = swatch.adjusted(1, 1, -1, -1);
        painter.drawEllipse(ring);
        painter.drawLine(ring.bottomLeft() + QPointF(2.5, -2.5), ring.topRight() + QPointF(-2.5, 2.5));
    }

    if (isChecked()) {
        // The selection ring sits in the 4 px between the swatch and the button's edge, so that
        // translucent swatches keep their own look.
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme.GetColor(QStringLiteral("ct_selected")), 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 5, 5);
    }
}
