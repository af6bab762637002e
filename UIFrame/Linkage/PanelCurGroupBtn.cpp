#include "UIFrame/Linkage/PanelCurGroupBtn.h"

#include "UIFrame/Linkage/PanelColorManager.h"
#include "UIFrame/Linkage/PanelColorPicker.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QPainter>

namespace {

constexpr int kSide = 22;
constexpr qreal kRadius = 4.0;
// Translucent group colours are light on the page: dark text reads better on them.
constexpr int kOpaqueEnoughForLightText = 200;

} // namespace

CVXPanelCurGroupBtn::CVXPanelCurGroupBtn(QWidget* parent) : CVXPanelHoverButton(kSide, parent)
{
    setObjectName(QStringLiteral("CVXPanelCurGroupBtn"));
    setToolTip(core::langx::tr(251623, "联动分组"));
}

CVXPanelCurGroupBtn::~CVXPanelCurGroupBtn() = default;

void CVXPanelCurGroupBtn::SetGroup(const QString& groupId)
{
    if (m_groupId == groupId)
        return;
    m_groupId = groupId;
    setText(groupId);
    update();
}

QString CVXPanelCurGroupBtn::GetGroup() const
{
    return m_groupId;
}

void CVXPanelCurGroupBtn::SetColor(const QString& colorKey)
{
    if (m_colorKey == colorKey)
        return;
    m_colorKey = colorKey;
    update();
}

QString CVXPanelCurGroupBtn::GetColor() const
{
    return m_colorKey;
}

QColor CVXPanelCurGroupBtn::ResolvedGroupColor() const
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    const QString key = CVXPanelColorPicker::ConvertLegacyColor(m_colorKey);
    if (!key.isEmpty() && theme.HasColor(key))
        return theme.GetColor(key);
    // A group without a colour of its own still needs to be told apart from the others at a
    // glance: group n shows the n-th tab group colour (other names by hash).
    const QStringList colors = CVXPanelColorManager::GetInstance().GetTabColorTexts();
    if (!m_groupId.isEmpty() && !colors.isEmpty()) {
        bool numeric = false;
        const int number = m_groupId.toInt(&numeric);
        const int index = numeric && number > 0 ? (number - 1) % colors.size()
                                                : static_cast<int>(qHash(m_groupId) % uint(colors.size()));
        if (theme.HasColor(colors.at(index)))
            return theme.GetColor(colors.at(index));
    }
    return theme.GetColor(QStringLiteral("ct_selected"));
}

void CVXPanelCurGroupBtn::paintEvent(QPaintEvent*)
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect());

    if (m_groupId.isEmpty()) {
        if (IsHovered() || isDown()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(theme.GetColor(QLatin1String(isDown() ? "ct_pressed" : "ct_hover")));
            painter.drawRoundedRect(area, kRadius, kRadius);
        }
        const qreal side = kSide / 2.0;
        const QRectF box(QPointF((width() - side) / 2, (height() - side) / 2), QSizeF(side, side));
        painter.setPen(QPen(theme.GetColor(QStringLiteral("ct_text_secondary")), 1.4));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(vx_std_ui::IconGlyphPath(vx_std_ui::IconGlyph::Link, box));
        return;
    }

    const QColor color = ResolvedGroupColor();
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(area.adjusted(2, 2, -2, -2), kRadius, kRadius);
    if (IsHovered() || isDown()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme.GetColor(QStringLiteral("ct_focus")), 1));
        painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), kRadius + 1, kRadius + 1);
    }
    QFont font = this->font();
    font.setBold(true);
    font.setPixelSize(11);
    painter.setFont(font);
    const bool lightText = color.alpha() >= kOpaqueEnoughForLightText;
    painter.setPen(theme.GetColor(QLatin1String(lightText ? "ct_text_on_accent" : "ct_text_primary")));
    painter.drawText(rect(), Qt::AlignCenter, m_groupId);
}
