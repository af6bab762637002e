#pragma once

// CVXPanelTabGroupSetting: the popup in which the user picks the tab group colour of a layout
// page: a row of nine colour buttons ("no colour", then the eight tab group colours of
// CVXPanelColorManager in colour order) under a title, and below them an optional line of text
// describing the page's group. The popup is 236 x 68; the text line makes it 104 high (one line
// of text, 30 px) or 120 (two lines, 46 px). A click emits GroupColorChanged with the colour
// text (empty for "no colour"), sends a usage report and closes the popup.

#include "UIFrame/UIFrameExport.h"

#include "Platform/StdUI/Popup.h"

#include <QList>
#include <QString>

class CVXPanelColorButton;
class QButtonGroup;
class QFontMetrics;
class QLabel;

class UIFRAME_EXPORT CVXPanelTabGroupSetting : public vx_std_ui::VPopup
{
    Q_OBJECT
public:
    static constexpr int kWidth = 236;
    static constexpr int kBaseHeight = 68;

    // The height of the group text line for `text` wrapped at `width` with `metrics`: 30 for one
    // line, 46 for more (a text longer than that line holds is cut at its bottom).
    static int GroupedTextHeight(const QFontMetrics& metrics, const QString& text, int width);

    explicit CVXPanelTabGroupSetting(QWidget* parent = nullptr);
    ~CVXPanelTabGroupSetting() override;

    // Checks the button of the page's colour: empty or "0" is "no colour"; a legacy colour text
    // is converted through the colour manager; any other text leaves no button checked.
    void UpdateGroupColor(const QString& colorText);
    // Shows `text` under the colours and grows the popup to fit it; an empty text hides the line.
    void UpdateGroupedColorTabText(const QString& text);

    // The text of the checked button, empty for "no colour" and when none is checked.
    QString GetSelectedColor() const;
    bool HasSelectedColor() const;
    QList<CVXPanelColorButton*> GetColorButtons() const;
    QLabel* GetGroupedColorTextLabel() const;

Q_SIGNALS:
    void GroupColorChanged(QString colorText);

private:
    CVXPanelColorButton* FindButton(const QString& colorText) const;
    void OnButtonClicked(CVXPanelColorButton* button);

    QButtonGroup* m_group = nullptr;
    QList<CVXPanelColorButton*> m_buttons;
    QLabel* m_text = nullptr;
};
