#pragma once

// What the linkage popups (colour picker, group setting, tab group colour) share about their
// exclusive button row: checking the current choice and answering a click.

#include "UIFrame/Linkage/PanelGroupSettingReport.h"

#include <QList>
#include <QPointer>
#include <QString>

class CVXPanelColorButton;
class QAbstractButton;
class QButtonGroup;

namespace panel_group_setting {

// Checks `button`; a null one leaves no button of the exclusive `group` checked.
void CheckOnly(QButtonGroup* group, QAbstractButton* button);

// The first of `buttons` whose colour key is `colorKey`, null when none is.
CVXPanelColorButton* FindColorButton(const QList<CVXPanelColorButton*>& buttons, const QString& colorKey);

// Answers a click on a choice: `emitChoice` emits the popup's signal, then the click is reported
// as `optionName` and the popup closes unless a receiver deleted it.
template <typename Popup, typename Emit>
void ChooseAndClose(Popup* popup, Emit emitChoice, const char* optionName)
{
    QPointer<Popup> self(popup);
    emitChoice();
    ReportPopupClick(optionName);
    if (self)
        popup->close();
}

} // namespace panel_group_setting
