#pragma once

// CVXPanelColorPicker: the popup in which the user picks a linkage group's colour. Thirteen
// colour buttons, seven to a row, of which one at most is checked: six translucent colours
// (blue, cyan, lime, yellow, purple, red) and seven plain ones (gray, blue, cyan, lime, yellow,
// purple, red), all theme keys under "style_skin_panel_group_setting/". A click emits
// ColorChanged with the colour key, sends a usage report and closes the popup.

#include "UIFrame/UIFrameExport.h"

#include "Platform/StdUI/Popup.h"

#include <QList>
#include <QString>

class CVXPanelColorButton;
class QButtonGroup;

class UIFRAME_EXPORT CVXPanelColorPicker : public vx_std_ui::VPopup
{
    Q_OBJECT
public:
    // Legacy group colour keys ("ck_red300_40", ...) as their style keys; case-sensitive; any
    // other text, the empty one included, comes back unchanged.
    static QString ConvertLegacyColor(const QString& color);

    explicit CVXPanelColorPicker(QWidget* parent = nullptr);
    ~CVXPanelColorPicker() override;

    // Checks the button of `colorKey` (legacy keys converted first); an unknown or empty key
    // leaves no button checked.
    void UpdateSelectedColor(const QString& colorKey);
    // The key of the checked button, empty when none is.
    QString GetSelectedColor() const;

    // The colour buttons in grid order, row by row.
    QList<CVXPanelColorButton*> GetColorButtons() const;
    CVXPanelColorButton* GetColorButton(const QString& colorKey) const;

Q_SIGNALS:
    void ColorChanged(QString colorKey);

private:
    void OnButtonClicked(CVXPanelColorButton* button);

    QButtonGroup* m_group = nullptr;
    QList<CVXPanelColorButton*> m_buttons;
};
