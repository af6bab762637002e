#include "UIFrame/Linkage/PanelTabGroupSetting.h"

#include "UIFrame/Linkage/PanelColorButton.h"
#include "UIFrame/Linkage/PanelColorManager.h"
#include "UIFrame/Linkage/PanelPopupChoice.h"

#include "Platform/Core/Langx.h"

#include <QButtonGroup>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr int kTitleHeight = 18;
constexpr int kSpacing = 6;
constexpr int kOneLineTextHeight = 30;
constexpr int kTwoLineTextHeight = 46;
constexpr int kLeftRightMargin = 4;
constexpr int kTallEnough = 1 << 16;

} // namespace

int CVXPanelTabGroupSetting::GroupedTextHeight(const QFontMetrics& metrics, const QString& text, int width)
{
    const QRect wrapped = metrics.boundingRect(QRect(0, 0, width, kTallEnough), Qt::TextWordWrap, text);
    // One line is metrics.height() high; lineSpacing() can be smaller (negative leading).
    return wrapped.height() > metrics.height() ? kTwoLineTextHeight : kOneLineTextHeight;
}

CVXPanelTabGroupSetting::CVXPanelTabGroupSetting(QWidget* parent) : vx_std_ui::VPopup(parent)
{
    setObjectName(QStringLiteral("CVXPanelTabGroupSetting"));
    setFixedSize(kWidth, kBaseHeight);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kLeftRightMargin, 8, kLeftRightMargin, 12);
    layout->setSpacing(kSpacing);

    auto* title = new QLabel(core::langx::tr(264046, "标签分组颜色"), this);
    title->setObjectName(QStringLiteral("CVXPanelTabGroupSettingTitle"));
    title->setFixedHeight(kTitleHeight);
    title->setContentsMargins(4, 0, 0, 0);
    layout->addWidget(title);

    // Nine buttons of 24 px fill 216 of the 228 px between the margins: one pixel apart, centred.
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    row->addStretch(1);
    m_group = new QButtonGroup(this);
    m_group->setExclusive(true);
    QStringList colors{QString()};
    colors += CVXPanelColorManager::GetInstance().GetTabColorTexts();
    for (const QString& color : colors) {
        auto* button = new CVXPanelColorButton(this);
        button->SetColor(color);
        row->addWidget(button);
        m_group->addButton(button);
        m_buttons.append(button);
        connect(button, &QAbstractButton::clicked, this, [this, button] { OnButtonClicked(button); });
    }
    row->addStretch(1);
    layout->addLayout(row);

    m_text = new QLabel(this);
    m_text->setObjectName(QStringLiteral("CustomizePanelTabGroupedColorText"));
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_text->setContentsMargins(4, 0, 4, 0);
    m_text->setForegroundRole(QPalette::PlaceholderText);
    m_text->hide();
    layout->addWidget(m_text);
}

CVXPanelTabGroupSetting::~CVXPanelTabGroupSetting() = default;

void CVXPanelTabGroupSetting::UpdateGroupColor(const QString& colorText)
{
    const QString text = colorText == QLatin1String("0") ? QString() : colorText;
    CVXPanelColorButton* button = FindButton(text);
    if (!button && !text.isEmpty())
        button = FindButton(CVXPanelColorManager::GetInstance().GetRealColor(text));
    panel_group_setting::CheckOnly(m_group, button);
}

void CVXPanelTabGroupSetting::UpdateGroupedColorTabText(const QString& text)
{
    if (text.isEmpty()) {
        m_text->clear();
        m_text->hide();
        setFixedSize(kWidth, kBaseHeight);
        return;
    }
    const int textWidth =
        kWidth - 2 * kLeftRightMargin - m_text->contentsMargins().left() - m_text->contentsMargins().right();
    const int height = GroupedTextHeight(m_text->fontMetrics(), text, textWidth);
    m_text->setText(text);
    m_text->setFixedHeight(height);
    m_text->show();
    setFixedSize(kWidth, kBaseHeight + kSpacing + height);
}

QString CVXPanelTabGroupSetting::GetSelectedColor() const
{
    auto* checked = static_cast<CVXPanelColorButton*>(m_group->checkedButton());
    return checked ? checked->GetColor() : QString();
}

bool CVXPanelTabGroupSetting::HasSelectedColor() const
{
    return m_group->checkedButton() != nullptr;
}

QList<CVXPanelColorButton*> CVXPanelTabGroupSetting::GetColorButtons() const
{
    return m_buttons;
}

QLabel* CVXPanelTabGroupSetting::GetGroupedColorTextLabel() const
{
    return m_text;
}

CVXPanelColorButton* CVXPanelTabGroupSetting::FindButton(const QString& colorText) const
{
    return panel_group_setting::FindColorButton(m_buttons, colorText);
}

void CVXPanelTabGroupSetting::OnButtonClicked(CVXPanelColorButton* button)
{
    panel_group_setting::ChooseAndClose(
        this, [this, button] { Q_EMIT GroupColorChanged(button->GetColor()); },
        panel_group_setting::kColorOption);
}
