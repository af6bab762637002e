#pragma once

// CVXWorkspaceLoginDialog: asks for the user id (digits only, prefilled with the last id) with
// OK and Cancel. Opened with Ask(), which returns at once; `done` runs once with the id, or 0
// when the user cancelled (Escape and the close button cancel too). The dialog deletes itself.

#include "Platform/StdUI/Dialog.h"

#include <functional>

class QLineEdit;

namespace vx_ws {

class CVXWorkspaceLoginDialog : public vx_std_ui::VDialog
{
    Q_OBJECT
public:
    static constexpr const char* kUserEditName = "UserId_Edit";

    static CVXWorkspaceLoginDialog* Ask(QWidget* parent, unsigned long long lastUserId,
                                        std::function<void(unsigned long long)> done);

    explicit CVXWorkspaceLoginDialog(QWidget* parent = nullptr);
    ~CVXWorkspaceLoginDialog() override;

    // 0 while the field holds no valid id.
    unsigned long long UserId() const;

protected:
    void reject() override;

private:
    void Finish(unsigned long long userId);
    void UpdateConfirm();

    QLineEdit* m_edit = nullptr;
    vx_std_ui::VButton* m_confirm = nullptr;
    std::function<void(unsigned long long)> m_done;
    bool m_finished = false;
};

} // namespace vx_ws
