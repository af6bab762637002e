#include "UIFrame/Linkage/PanelColorPicker.h"

#include "UIFrame/Linkage/PanelColorButton.h"
#include "UIFrame/Linkage/PanelPopupChoice.h"

#include <QButtonGroup>
#include <QGridLayout>

namespace {

constexpr const char* kStylePrefix = "style_skin_panel_group_setting/";
constexpr int kColumns = 7;

const char* const kColorWords[] = {
    "blue_opacity", "cyan_opacity", "lime_opacity", "yellow_opacity", "purple_opacity", "red_opacity", "gray",
    "blue",         "cyan",         "lime",         "yellow",         "purple",         "red",
};

QString StyleKey(const char* word)
{
    return QLatin1String(kStylePrefix) + QLatin1String(word);
}

} // namespace

QString CVXPanelColorPicker::ConvertLegacyColor(const QString& color)
{
    static const struct
    {
        const char* legacy;
        const char* word;
    } kLegacy[] = {
        {"ck_blue450_40", "blue_opacity"},     {"ck_cyan200_40", "cyan_opacity"},
        {"ck_lime250_40", "lime_opacity"},     {"ck_yellow300_40", "yellow_opacity"},
        {"ck_purple300_40", "purple_opacity"}, {"ck_red300_40", "red_opacity"},
    };
    for (const auto& row : kLegacy)
        if (color == QLatin1String(row.legacy))
            return StyleKey(row.word);
    return color;
}

CVXPanelColorPicker::CVXPanelColorPicker(QWidget* parent) : vx_std_ui::VPopup(parent)
{
    setObjectName(QStringLiteral("CVXPanelColorPicker"));
    setFixedSize(184, 64);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 8, 8, 8);
    grid->setSpacing(0);
    m_group = new QButtonGroup(this);
    m_group->setExclusive(true);
    int index = 0;
    for (const char* word : kColorWords) {
        auto* button = new CVXPanelColorButton(this);
        button->SetColor(StyleKey(word));
        grid->addWidget(button, index / kColumns, index % kColumns);
        m_group->addButton(button);
        m_buttons.append(button);
        connect(button, &QAbstractButton::clicked, this, [this, button] { OnButtonClicked(button); });
        ++index;
    }
}

CVXPanelColorPicker::~CVXPanelColorPicker() = default;

void CVXPanelColorPicker::UpdateSelectedColor(const QString& colorKey)
{
    panel_group_setting::CheckOnly(m_group, GetColorButton(ConvertLegacyColor(colorKey)));
}

QString CVXPanelColorPicker::GetSelectedColor() const
{
    auto* checked = static_cast<CVXPanelColorButton*>(m_group->checkedButton());
    return checked ? checked->GetColor() : QString();
}

QList<CVXPanelColorButton*> CVXPanelColorPicker::GetColorButtons() const
{
    return m_buttons;
}

CVXPanelColorButton* CVXPanelColorPicker::GetColorButton(const QString& colorKey) const
{
    if (colorKey.isEmpty())
        return nullptr;
    return panel_group_setting::FindColorButton(m_buttons, colorKey);
}

void CVXPanelColorPicker::OnButtonClicked(CVXPanelColorButton* button)
{
    panel_group_setting::ChooseAndClose(
        this, [this, button] { Q_EMIT ColorChanged(button->GetColor()); }, panel_group_setting::kColorOption);
}
