#pragma once

// CVXPanelGroupSetting: the popup in which the user puts a panel box into a linkage group. It
// shows the existing groups as buttons (seven to a row, two rows; the current group checked) and
// an edit for a new group number of up to two letters or digits, upper-cased as typed, with an
// add button that shows only while the edit holds text.
// Clicking a group emits GroupIDChanged, sends a usage report and closes the popup; adding emits
// GroupIDAdded and empties the edit, leaving the popup open for the owner to update the list.
// The popup only chooses: the box applies the choice.

#include "UIFrame/UIFrameExport.h"

#include "Platform/StdUI/Popup.h"

#include <QList>
#include <QStringList>

class CVXPanelGroupButton;
class QButtonGroup;
class QGridLayout;
class QLabel;
class QLineEdit;

namespace vx_std_ui {
class VIconButton;
}

class UIFRAME_EXPORT CVXPanelGroupSetting : public vx_std_ui::VPopup
{
    Q_OBJECT
public:
    // Two rows of seven fill the popup's fixed height; further ids are left out with a warning.
    static constexpr int kColumns = 7;
    static constexpr int kMaxGroups = 14;

    explicit CVXPanelGroupSetting(QWidget* parent = nullptr);
    ~CVXPanelGroupSetting() override;

    // Fills the grid, checks the current group, empties the edit and shows the popup at `globalPos`.
    void ShowGroup(const QStringList& groupIds, const QString& currentGroupId, const QPoint& globalPos);
    // The same without emptying the edit or showing.
    void UpdateGroupIDList(const QStringList& groupIds, const QString& currentGroupId);
    // Puts the ids, in order, on the buttons at successive grid positions; unused buttons hide.
    void SetGroupIDList(const QStringList& groupIds);
    // The shown button of the group, nullptr when no shown button has it (or the id is empty).
    CVXPanelGroupButton* GetGroupBtnByGroupNumber(const QString& groupId) const;

    QStringList GetGroupIDList() const;
    QString GetCurrentGroupID() const;
    // The checked group, empty when none is checked.
    QString GetCheckedGroupID() const;

    QLineEdit* GetGroupNumberEdit() const;
    vx_std_ui::VIconButton* GetAddButton() const;

Q_SIGNALS:
    void GroupIDChanged(QString groupId);
    void GroupIDAdded(QString groupId);

private:
    void CheckGroup(const QString& groupId);
    void OnGroupButtonClicked(CVXPanelGroupButton* button);
    void OnEditTextChanged(const QString& text);
    void OnAddClicked();

    QLabel* m_title = nullptr;
    QGridLayout* m_grid = nullptr;
    QButtonGroup* m_group = nullptr;
    QList<CVXPanelGroupButton*> m_buttons;
    QLineEdit* m_edit = nullptr;
    vx_std_ui::VIconButton* m_add = nullptr;
    QStringList m_groupIds;
    QString m_currentGroupId;
};
