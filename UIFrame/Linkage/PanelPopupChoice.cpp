#include "UIFrame/Linkage/PanelPopupChoice.h"

#include "UIFrame/Linkage/PanelColorButton.h"

#include <QButtonGroup>

namespace panel_group_setting {

void CheckOnly(QButtonGroup* group, QAbstractButton* button)
{
    if (button) {
        button->setChecked(true);
        return;
    }
    // An exclusive group refuses to uncheck its checked button.
    group->setExclusive(false);
    if (QAbstractButton* checked = group->checkedButton())
        checked->setChecked(false);
    group->setExclusive(true);
}

CVXPanelColorButton* FindColorButton(const QList<CVXPanelColorButton*>& buttons, const QString& colorKey)
{
    for (CVXPanelColorButton* button : buttons)
        if (button->GetColor() == colorKey)
            return button;
    return nullptr;
}

} // namespace panel_group_setting
