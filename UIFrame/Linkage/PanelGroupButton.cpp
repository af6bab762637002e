#include "UIFrame/Linkage/PanelGroupButton.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QPainter>

namespace {

constexpr int kSide = 24;
constexpr qreal kRadius = 4.0;

} // namespace

CVXPanelGroupButton::CVXPanelGroupButton(QWidget* parent) : QAbstractButton(parent)
{
    setObjectName(QStringLiteral("CVXPanelGroupSettingButton"));
    setCheckable(true);
    setFixedSize(kSide, kSide);
    setFocusPolicy(Qt::NoFocus);
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this, [this] { update(); });
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

QSize CVXPanelGroupButton::sizeHint() const
{
    return QSize(kSide, kSide);
}

void CVXPanelGroupButton::paintEvent(QPaintEvent*)
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    QString bgKey = QStringLiteral("ct_bg_secondary");
    QString textKey = QStringLiteral("ct_text_primary");
    if (isChecked() || isDown()) {
        bgKey = QStringLiteral("ct_selected");
        textKey = QStringLiteral("ct_text_on_accent");
    } else if (m_hovered) {
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

void CVXPanelGroupButton::enterEvent(QEvent* event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void CVXPanelGroupButton::leaveEvent(QEvent* event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}
