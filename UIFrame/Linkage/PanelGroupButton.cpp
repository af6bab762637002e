#include "UIFrame/Linkage/PanelGroupButton.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QPainter>

namespace {

constexpr int kSide = 24;
constexpr qreal kRadius = 4.0;

} // namespace

CVXPanelGroupButton::CVXPanelGroupButton(QWidget* parent) : CVXPanelHoverButton(kSide, parent)
{
    setObjectName(QStringLiteral("CVXPanelGroupSettingButton"));
    setCheckable(true);
}

CVXPanelGroupButton::~CVXPanelGroupButton() = default;

void CVXPanelGroupButton::SetGroup(const QString& groupId)
{
    if (m_groupId == groupId)
        return;
    m_groupId = groupId;
    setText(groupId);
    update();
}

QString CVXPanelGroupButton::GetGroup() const
{
    return m_groupId;
}

void CVXPanelGroupButton::paintEvent(QPaintEvent*)
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    QString bgKey = QStringLiteral("ct_bg_secondary");
    QString textKey = QStringLiteral("ct_text_primary");
    if (isChecked() || isDown()) {
        bgKey = QStringLiteral("ct_selected");
        textKey = QStringLiteral("ct_text_on_accent");
    } else if (IsHovered()) {
        bgKey = QStringLiteral("ct_hover");
    }

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.GetColor(bgKey));
    painter.drawRoundedRect(QRectF(rect()), kRadius, kRadius);

    QFont font = this->font();
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(theme.GetColor(textKey));
    painter.drawText(rect(), Qt::AlignCenter, m_groupId);
}
