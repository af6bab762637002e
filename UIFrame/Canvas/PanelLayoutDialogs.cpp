#include "UIFrame/Canvas/PanelLayoutDialogs.h"

#include "UIFrame/Canvas/PanelLayoutManager.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QVBoxLayout>

using vx_std_ui::VButton;
using vx_std_ui::VDialog;

namespace {

constexpr int kSaveDialogWidth = 400;
constexpr int kQuestionDialogWidth = 360;

// Texts of the dialogs. The fallbacks are the catalogue's Chinese texts.
QString TextSaveTitle()
{
    return core::langx::tr(236218, "保存布局");
}
QString TextName()
{
    return core::langx::tr(253024, "布局名称");
}
QString TextRemarks()
{
    return core::langx::tr(236219, "备注");
}
QString TextSave()
{
    return core::langx::tr(236221, "保存");
}
QString TextCancel()
{
    return core::langx::tr(236220, "取消");
}
QString TextLimitReached()
{
    return core::langx::tr(265495, "自定义布局已达上限（50个），请删除部分布局后再保存");
}
QString TextReplaceQuestion()
{
    return core::langx::tr(236223, "已存在名为“{{name}}”的布局，是否替换？");
}
QString TextReplaceTitle()
{
    return core::langx::tr(900101, "替换布局");
}
QString TextReplace()
{
    return core::langx::tr(900102, "替换");
}
QString TextDeleteTitle()
{
    return core::langx::tr(900103, "删除布局");
}
QString TextDeleteQuestion()
{
    return core::langx::tr(900104, "删除后将无法恢复，确定删除该布局吗？");
}
QString TextDelete()
{
    return core::langx::tr(900105, "删除");
}
QString TextCloseTitle()
{
    return core::langx::tr(900106, "关闭布局");
}
QString TextCloseQuestion()
{
    return core::langx::tr(900107, "当前布局有未保存的修改，关闭前是否保存？");
}
QString TextDiscard()
{
    return core::langx::tr(900108, "不保存");
}
QString TextNameEmpty()
{
    return core::langx::tr(900109, "请输入布局名称");
}
QString TextNameInUse()
{
    return core::langx::tr(900110, "该名称已被其他布局使用");
}

// The dialog is modal to its parent's window, or to the application without a parent.
void OpenModal(QDialog* dialog)
{
    if (dialog->parentWidget()) {
        dialog->open();
    } else {
        dialog->setWindowModality(Qt::ApplicationModal);
        dialog->show();
    }
}

// Opens a question dialog whose answer `toResult` turns into the result handed to `done`, if any.
template <typename Dialog>
Dialog* AskModal(Dialog* dialog, std::function<void(typename Dialog::Result)> done,
                 typename Dialog::Result (*toResult)(int answer))
{
    QObject::connect(dialog, &CVXPanelLayoutQuestionDialog::Answered, dialog,
                     [done = std::move(done), toResult](int answer) {
                         if (done)
                             done(toResult(answer));
                     });
    OpenModal(dialog);
    return dialog;
}

QLabel* MakeFieldLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText,
                     vx_ui_res::Provider::Instance().GetColor(QStringLiteral("ct_text_secondary")));
    label->setPalette(palette);
    return label;
}

} // namespace

// ---------------------------------------------------------------------------------------------

CVXPanelLayoutSaveDialog::CVXPanelLayoutSaveDialog(QWidget* parent) : VDialog(parent, Frame::Titled)
{
    setObjectName(QStringLiteral("CVXPanelLayoutSaveDialog"));
    setTitle(TextSaveTitle());
    setFixedWidth(kSaveDialogWidth);

    QVBoxLayout* content = contentLayout();
    content->addWidget(MakeFieldLabel(TextName(), this));
    m_pNameEdit = new QLineEdit(this);
    m_pNameEdit->setObjectName(QString::fromLatin1(kNameEditName));
    m_pNameEdit->setMaxLength(kMaxNameLength);
    m_pNameEdit->setMinimumHeight(30);
    content->addWidget(m_pNameEdit);
    content->addSpacing(4);
    content->addWidget(MakeFieldLabel(TextRemarks(), this));
    m_pRemarksEdit = new QLineEdit(this);
    m_pRemarksEdit->setObjectName(QString::fromLatin1(kRemarksEditName));
    m_pRemarksEdit->setMaxLength(kMaxRemarksLength);
    m_pRemarksEdit->setMinimumHeight(30);
    content->addWidget(m_pRemarksEdit);

    VButton* confirm = addButton(TextSave(), VButton::Style::Primary, QStringLiteral("Confirm_Button"));
    VButton* cancel = addButton(TextCancel(), VButton::Style::Secondary, QStringLiteral("Cancel_Button"));
    setDefaultButton(confirm);
    connect(confirm, &QPushButton::clicked, this, [this] {
        Q_EMIT ConfirmButtonClicked();
        OnConfirm();
    });
    connect(cancel, &QPushButton::clicked, this, [this] {
        Q_EMIT CancelButtonClicked();
        Finish(Choice::Cancelled);
    });

    // The tool tip is a child label rather than a QToolTip window: it stays with the dialog
    // when the dialog moves and goes with it.
    m_pErrorTip = new QLabel(this);
    m_pErrorTip->setObjectName(QString::fromLatin1(kErrorToolTipName));
    m_pErrorTip->setAutoFillBackground(true);
    m_pErrorTip->setMargin(6);
    m_pErrorTip->setWordWrap(true);
    QPalette tipPalette = m_pErrorTip->palette();
    tipPalette.setColor(QPalette::Window,
                        vx_ui_res::Provider::Instance().GetColor(QStringLiteral("ct_bg_tooltip")));
    tipPalette.setColor(QPalette::WindowText,
                        vx_ui_res::Provider::Instance().GetColor(QStringLiteral("ct_text_tooltip")));
    m_pErrorTip->setPalette(tipPalette);
    m_pErrorTip->hide();
    connect(m_pNameEdit, &QLineEdit::textEdited, m_pErrorTip, &QWidget::hide);

    m_pNameEdit->setFocus();
}

CVXPanelLayoutSaveDialog::~CVXPanelLayoutSaveDialog() = default;

CVXPanelLayoutSaveDialog*
CVXPanelLayoutSaveDialog::AreYouWantToSave(QWidget* parent, const QString& name, const QString& remarks,
                                           std::function<void(const CVXPanelLayoutSaveDialog::Result&)> done)
{
    auto* dialog = new CVXPanelLayoutSaveDialog(parent);
    dialog->m_mode = Mode::Save;
    dialog->m_done = std::move(done);
    dialog->SetName(name);
    dialog->SetRemarks(remarks);
    OpenModal(dialog);
    dialog->m_pNameEdit->setFocus();
    dialog->m_pNameEdit->selectAll();
    return dialog;
}

CVXPanelLayoutSaveDialog*
CVXPanelLayoutSaveDialog::AreYouWantToEdit(QWidget* parent, const QString& name, const QString& remarks,
                                           std::function<bool(const QString&)> check,
                                           std::function<void(const CVXPanelLayoutSaveDialog::Result&)> done)
{
    auto* dialog = new CVXPanelLayoutSaveDialog(parent);
    dialog->m_mode = Mode::Edit;
    dialog->m_check = std::move(check);
    dialog->m_done = std::move(done);
    dialog->SetName(name);
    dialog->SetRemarks(remarks);
    OpenModal(dialog);
    dialog->m_pNameEdit->setFocus();
    dialog->m_pNameEdit->selectAll();
    return dialog;
}

QString CVXPanelLayoutSaveDialog::GetName() const
{
    return m_pNameEdit->text();
}

void CVXPanelLayoutSaveDialog::SetName(const QString& name)
{
    m_pNameEdit->setText(name);
}

QString CVXPanelLayoutSaveDialog::GetRemarks() const
{
    return m_pRemarksEdit->text();
}

void CVXPanelLayoutSaveDialog::SetRemarks(const QString& remarks)
{
    m_pRemarksEdit->setText(remarks);
}

void CVXPanelLayoutSaveDialog::ShowErrorToolTip(const QString& message)
{
    m_pErrorTip->setText(message);
    m_pErrorTip->setFixedWidth(m_pNameEdit->width());
    m_pErrorTip->adjustSize();
    const QPoint below = m_pNameEdit->mapTo(this, QPoint(0, m_pNameEdit->height() + 2));
    m_pErrorTip->move(below);
    m_pErrorTip->show();
    m_pErrorTip->raise();
    m_pNameEdit->setFocus();
}

QString CVXPanelLayoutSaveDialog::ErrorToolTipText() const
{
    return m_pErrorTip->isHidden() ? QString() : m_pErrorTip->text();
}

QString CVXPanelLayoutSaveDialog::ValidateName(const QString& name) const
{
    if (name.isEmpty())
        return TextNameEmpty();
    if (m_mode == Mode::Edit)
        return !m_check || m_check(name) ? QString() : TextNameInUse();
    // An existing name is accepted here: the caller asks whether to replace that layout.
    const CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    if (!manager.HasPanelLayoutData(name) &&
        manager.GetCustomPanelLayoutCount() >= CVXPanelLayoutManager::MaximumLayoutCount())
        return TextLimitReached();
    return {};
}

void CVXPanelLayoutSaveDialog::OnConfirm()
{
    const QString error = ValidateName(GetName().trimmed());
    if (!error.isEmpty()) {
        ShowErrorToolTip(error);
        return;
    }
    Finish(Choice::Confirmed);
}

void CVXPanelLayoutSaveDialog::reject()
{
    Finish(Choice::Cancelled);
}

void CVXPanelLayoutSaveDialog::Finish(Choice choice)
{
    if (m_finished)
        return;
    m_finished = true;
    Result result;
    result.choice = choice;
    result.name = GetName().trimmed();
    result.remarks = GetRemarks();
    Callback done = std::move(m_done);
    // Closed before the callback: the callback may open the next dialog over the same parent.
    QDialog::done(choice == Choice::Confirmed ? QDialog::Accepted : QDialog::Rejected);
    deleteLater();
    if (done)
        done(result);
}

// ---------------------------------------------------------------------------------------------

CVXPanelLayoutQuestionDialog::CVXPanelLayoutQuestionDialog(QWidget* parent, const QString& title,
                                                           const QString& question,
                                                           const QString& confirmText,
                                                           const QString& cancelText,
                                                           const QString& discardText)
    : VDialog(parent, Frame::Titled)
{
    setTitle(title);
    setFixedWidth(kQuestionDialogWidth);
    m_pQuestion = new QLabel(question, this);
    m_pQuestion->setObjectName(QStringLiteral("Question_Label"));
    m_pQuestion->setWordWrap(true);
    m_pQuestion->setMinimumHeight(40);
    contentLayout()->addWidget(m_pQuestion);

    VButton* confirm = addButton(confirmText, VButton::Style::Primary, QStringLiteral("Confirm_Button"));
    connect(confirm, &QPushButton::clicked, this, [this] { Answer(1); });
    if (!discardText.isEmpty()) {
        VButton* discard =
            addButton(discardText, VButton::Style::Secondary, QStringLiteral("Discard_Button"));
        connect(discard, &QPushButton::clicked, this, [this] { Answer(2); });
    }
    VButton* cancel = addButton(cancelText, VButton::Style::Secondary, QStringLiteral("Cancel_Button"));
    connect(cancel, &QPushButton::clicked, this, [this] { Answer(0); });
    setDefaultButton(confirm);
}

CVXPanelLayoutQuestionDialog::~CVXPanelLayoutQuestionDialog() = default;

QString CVXPanelLayoutQuestionDialog::Question() const
{
    return m_pQuestion->text();
}

void CVXPanelLayoutQuestionDialog::Answer(int answer)
{
    if (m_answered)
        return;
    m_answered = true;
    QDialog::done(answer == 1 ? QDialog::Accepted : QDialog::Rejected);
    deleteLater();
    Q_EMIT Answered(answer);
}

void CVXPanelLayoutQuestionDialog::reject()
{
    Answer(0);
}

// ---------------------------------------------------------------------------------------------

CVXPanelLayoutReplaceDialog::CVXPanelLayoutReplaceDialog(QWidget* parent, const QString& name)
    : CVXPanelLayoutQuestionDialog(parent, TextReplaceTitle(),
                                   TextReplaceQuestion().replace(QStringLiteral("{{name}}"), name),
                                   TextReplace(), TextCancel())
{
    setObjectName(QStringLiteral("CVXPanelLayoutReplaceDialog"));
}

CVXPanelLayoutReplaceDialog* CVXPanelLayoutReplaceDialog::AreYouWantToReplace(
    QWidget* parent, const QString& name, std::function<void(CVXPanelLayoutReplaceDialog::Result)> done)
{
    return AskModal(new CVXPanelLayoutReplaceDialog(parent, name), std::move(done),
                    [](int answer) { return answer == 1 ? Result::Replace : Result::Cancel; });
}

CVXPanelLayoutDeleteDialog::CVXPanelLayoutDeleteDialog(QWidget* parent)
    : CVXPanelLayoutQuestionDialog(parent, TextDeleteTitle(), TextDeleteQuestion(), TextDelete(),
                                   TextCancel())
{
    setObjectName(QStringLiteral("CVXPanelLayoutDeleteDialog"));
}

CVXPanelLayoutDeleteDialog*
CVXPanelLayoutDeleteDialog::AreYouWantToDelete(QWidget* parent,
                                               std::function<void(CVXPanelLayoutDeleteDialog::Result)> done)
{
    return AskModal(new CVXPanelLayoutDeleteDialog(parent), std::move(done),
                    [](int answer) { return answer == 1 ? Result::Delete : Result::Cancel; });
}

CVXPanelLayoutCloseDialog::CVXPanelLayoutCloseDialog(QWidget* parent)
    : CVXPanelLayoutQuestionDialog(parent, TextCloseTitle(), TextCloseQuestion(), TextSave(), TextCancel(),
                                   TextDiscard())
{
    setObjectName(QStringLiteral("CVXPanelLayoutCloseDialog"));
}

CVXPanelLayoutCloseDialog* CVXPanelLayoutCloseDialog::AreYouWantToContinueClosing(
    QWidget* parent, std::function<void(CVXPanelLayoutCloseDialog::Result)> done)
{
    return AskModal(new CVXPanelLayoutCloseDialog(parent), std::move(done), [](int answer) {
        return answer == 1 ? Result::Save : answer == 2 ? Result::Discard : Result::Cancel;
    });
}
