#include "apps/Workspace/App/WorkspaceLoginDialog.h"

#include "Platform/Core/Langx.h"

#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace vx_ws {

CVXWorkspaceLoginDialog* CVXWorkspaceLoginDialog::Ask(QWidget* parent, unsigned long long lastUserId,
                                                      std::function<void(unsigned long long)> done)
{
    auto* dialog = new CVXWorkspaceLoginDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->m_done = std::move(done);
    if (lastUserId != 0) {
        dialog->m_edit->setText(QString::number(lastUserId));
        dialog->m_edit->selectAll();
    }
    dialog->UpdateConfirm();
    dialog->open();
    dialog->m_edit->setFocus();
    return dialog;
}

CVXWorkspaceLoginDialog::CVXWorkspaceLoginDialog(QWidget* parent) : vx_std_ui::VDialog(parent)
{
    setTitle(core::langx::tr(970503, "登录"));
    auto* label = new QLabel(core::langx::tr(970504, "用户 ID"), this);
    m_edit = new QLineEdit(this);
    m_edit->setObjectName(QString::fromLatin1(kUserEditName));
    m_edit->setPlaceholderText(core::langx::tr(970505, "请输入数字 ID"));
    // Ids are positive and travel as signed 64-bit numbers: at most 18 digits keeps every one valid.
    m_edit->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[1-9][0-9]{0,17}")), m_edit));
    m_edit->setMinimumWidth(260);
    contentLayout()->addWidget(label);
    contentLayout()->addWidget(m_edit);

    vx_std_ui::VButton* cancel =
        addButton(core::langx::tr(970506, "取消"), vx_std_ui::VButton::Style::Secondary,
                  QStringLiteral("Cancel_Button"));
    m_confirm = addButton(core::langx::tr(970507, "登录"), vx_std_ui::VButton::Style::Primary,
                          QStringLiteral("Confirm_Button"));
    setDefaultButton(m_confirm);
    connect(cancel, &QAbstractButton::clicked, this, &CVXWorkspaceLoginDialog::reject);
    connect(m_confirm, &QAbstractButton::clicked, this, [this]() {
        if (const unsigned long long id = UserId())
            Finish(id);
    });
    connect(m_edit, &QLineEdit::textChanged, this, &CVXWorkspaceLoginDialog::UpdateConfirm);
}

CVXWorkspaceLoginDialog::~CVXWorkspaceLoginDialog() = default;

unsigned long long CVXWorkspaceLoginDialog::UserId() const
{
    bool ok = false;
    const unsigned long long id = m_edit->text().toULongLong(&ok);
    return ok && m_edit->hasAcceptableInput() ? id : 0;
}

void CVXWorkspaceLoginDialog::UpdateConfirm()
{
    m_confirm->setEnabled(UserId() != 0);
}

void CVXWorkspaceLoginDialog::reject()
{
    Finish(0);
}

void CVXWorkspaceLoginDialog::Finish(unsigned long long userId)
{
    if (m_finished)
        return;
    m_finished = true;
    if (userId != 0)
        accept();
    else
        vx_std_ui::VDialog::reject();
    if (m_done)
        m_done(userId);
}

} // namespace vx_ws
