#pragma once

// The four small modal dialogs of the layout workflow: the save dialog (a layout's name and
// remarks), the replace question (a layout of that name exists), the delete question and the
// close question (the canvas has unsaved changes). Each is opened through its static function,
// which shows the dialog with open() and returns at once; the completion callback runs exactly
// once, when the user has chosen, and the dialog deletes itself afterwards. The returned
// pointer is for tests and may be ignored.

#include "UIFrame/UIFrameExport.h"

#include "Platform/StdUI/Dialog.h"

#include <QString>

#include <functional>

class QLabel;
class QLineEdit;

class UIFRAME_EXPORT CVXPanelLayoutSaveDialog : public vx_std_ui::VDialog
{
    Q_OBJECT
    Q_PROPERTY(QString name READ GetName WRITE SetName)
    Q_PROPERTY(QString remarks READ GetRemarks WRITE SetRemarks)
public:
    enum class Choice
    {
        Confirmed,
        Cancelled,
    };
    struct Result
    {
        Choice choice = Choice::Cancelled;
        QString name;    // trimmed
        QString remarks; // as typed
    };
    using Callback = std::function<void(const CVXPanelLayoutSaveDialog::Result&)>;

    static constexpr int kMaxNameLength = 32;
    static constexpr int kMaxRemarksLength = 100;

    // The dialog's fields and tool tip carry these object names.
    static constexpr const char* kNameEditName = "Name_Edit";
    static constexpr const char* kRemarksEditName = "Remarks_Edit";
    static constexpr const char* kErrorToolTipName = "Error_ToolTip";

    // A new layout: confirming with a name that no layout has while the user already has the
    // maximum number of layouts keeps the dialog open with the limit message.
    static CVXPanelLayoutSaveDialog*
    AreYouWantToSave(QWidget* parent, const QString& name, const QString& remarks,
                     std::function<void(const CVXPanelLayoutSaveDialog::Result&)> done);
    // Renaming an existing layout: `check` is asked whether the entered name may be used; a
    // refused name keeps the dialog open with the "name in use" message.
    static CVXPanelLayoutSaveDialog*
    AreYouWantToEdit(QWidget* parent, const QString& name, const QString& remarks,
                     std::function<bool(const QString&)> check,
                     std::function<void(const CVXPanelLayoutSaveDialog::Result&)> done);

    explicit CVXPanelLayoutSaveDialog(QWidget* parent = nullptr);
    ~CVXPanelLayoutSaveDialog() override;

    QString GetName() const;
    void SetName(const QString& name);
    QString GetRemarks() const;
    void SetRemarks(const QString& remarks);

    // Shows `message` as a tool tip under the name field; the dialog stays open. The tip goes
    // away when the name is edited.
    void ShowErrorToolTip(const QString& message);
    // The tool tip shown now, empty when none.
    QString ErrorToolTipText() const;

Q_SIGNALS:
    void ConfirmButtonClicked();
    void CancelButtonClicked();

protected:
    void reject() override;

private:
    enum class Mode
    {
        Save,
        Edit,
    };
    // What is wrong with the entered name (empty when it may be used).
    QString ValidateName(const QString& name) const;
    void OnConfirm();
    void Finish(Choice choice);

    Mode m_mode = Mode::Save;
    std::function<bool(const QString&)> m_check;
    Callback m_done;
    bool m_finished = false;
    QLineEdit* m_pNameEdit = nullptr;
    QLineEdit* m_pRemarksEdit = nullptr;
    QLabel* m_pErrorTip = nullptr;
};

// A question on the toolkit dialog, with "Confirm_Button", an optional "Discard_Button" (when
// discardText is not empty) and "Cancel_Button", in this order. The answer is reported once;
// Escape and the title bar's close button answer "cancel".
class UIFRAME_EXPORT CVXPanelLayoutQuestionDialog : public vx_std_ui::VDialog
{
    Q_OBJECT
public:
    CVXPanelLayoutQuestionDialog(QWidget* parent, const QString& title, const QString& question,
                                 const QString& confirmText, const QString& cancelText,
                                 const QString& discardText = QString());
    ~CVXPanelLayoutQuestionDialog() override;

    QString Question() const;

Q_SIGNALS:
    // 1: confirm, 2: discard, 0: cancel.
    void Answered(int answer);

protected:
    void Answer(int answer);
    void reject() override;

private:
    QLabel* m_pQuestion = nullptr;
    bool m_answered = false;
};

class UIFRAME_EXPORT CVXPanelLayoutReplaceDialog : public CVXPanelLayoutQuestionDialog
{
    Q_OBJECT
public:
    enum class Result
    {
        Replace,
        Cancel,
    };

    // Asks whether the layout `name` is to be replaced.
    static CVXPanelLayoutReplaceDialog*
    AreYouWantToReplace(QWidget* parent, const QString& name,
                        std::function<void(CVXPanelLayoutReplaceDialog::Result)> done);

    CVXPanelLayoutReplaceDialog(QWidget* parent, const QString& name);
};

class UIFRAME_EXPORT CVXPanelLayoutDeleteDialog : public CVXPanelLayoutQuestionDialog
{
    Q_OBJECT
public:
    enum class Result
    {
        Delete,
        Cancel,
    };

    static CVXPanelLayoutDeleteDialog*
    AreYouWantToDelete(QWidget* parent, std::function<void(CVXPanelLayoutDeleteDialog::Result)> done);

    explicit CVXPanelLayoutDeleteDialog(QWidget* parent);
};

// The canvas has unsaved changes: save them, close without saving, or keep the canvas open.
// The buttons are "Confirm_Button" (save), "Discard_Button" and "Cancel_Button".
class UIFRAME_EXPORT CVXPanelLayoutCloseDialog : public CVXPanelLayoutQuestionDialog
{
    Q_OBJECT
public:
    enum class Result
    {
        Save,
        Discard,
        Cancel,
    };

    static CVXPanelLayoutCloseDialog*
    AreYouWantToContinueClosing(QWidget* parent, std::function<void(CVXPanelLayoutCloseDialog::Result)> done);

    explicit CVXPanelLayoutCloseDialog(QWidget* parent);
};
