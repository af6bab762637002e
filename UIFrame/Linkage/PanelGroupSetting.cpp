#include "UIFrame/Linkage/PanelGroupSetting.h"

#include "UIFrame/Linkage/PanelGroupButton.h"
#include "UIFrame/Linkage/PanelPopupChoice.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/StdUI/IconButton.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace {

constexpr int kTitleHeight = 30;
constexpr int kEditHeight = 24;

} // namespace

CVXPanelGroupSetting::CVXPanelGroupSetting(QWidget* parent) : vx_std_ui::VPopup(parent)
{
    setObjectName(QStringLiteral("CVXPanelGroupSetting"));
    setFixedSize(192, 136);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 12);
    layout->setSpacing(0);

    m_title = new QLabel(core::langx::tr(251623, "联动分组"), this);
    m_title->setObjectName(QStringLiteral("CVXPanelGroupSettingTitle"));
    m_title->setFixedHeight(kTitleHeight);
    m_title->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    QFont titleFont = m_title->font();
    titleFont.setBold(true);
    m_title->setFont(titleFont);
    layout->addWidget(m_title);

    m_grid = new QGridLayout;
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(1);
    m_grid->setVerticalSpacing(4);
    m_grid->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    layout->addLayout(m_grid);
    layout->addStretch(1);

    m_group = new QButtonGroup(this);
    m_group->setExclusive(true);

    auto* editRow = new QHBoxLayout;
    editRow->setContentsMargins(0, 0, 0, 0);
    editRow->setSpacing(4);
    m_edit = new QLineEdit(this);
    m_edit->setObjectName(QStringLiteral("CVXPanelGroupSettingEdit"));
    m_edit->setFixedHeight(kEditHeight);
    m_edit->setMaxLength(2);
    m_edit->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[A-Za-z0-9]*")), m_edit));
    m_edit->setPlaceholderText(core::langx::tr(251624, "编号"));
    editRow->addWidget(m_edit, 1);
    m_add = new vx_std_ui::VIconButton(vx_std_ui::IconGlyph::Add, core::langx::tr(246314, "添加"), this);
    m_add->setObjectName(QStringLiteral("CVXPanelGroupSettingAddButton"));
    m_add->SetGlyphColorKey(QStringLiteral("ct_selected"));
    m_add->hide();
    editRow->addWidget(m_add);
    layout->addLayout(editRow);

    connect(m_edit, &QLineEdit::textChanged, this, &CVXPanelGroupSetting::OnEditTextChanged);
    connect(m_edit, &QLineEdit::returnPressed, this, &CVXPanelGroupSetting::OnAddClicked);
    connect(m_add, &QAbstractButton::clicked, this, &CVXPanelGroupSetting::OnAddClicked);
}

CVXPanelGroupSetting::~CVXPanelGroupSetting() = default;

void CVXPanelGroupSetting::ShowGroup(const QStringList& groupIds, const QString& currentGroupId,
                                     const QPoint& globalPos)
{
    UpdateGroupIDList(groupIds, currentGroupId);
    m_edit->clear();
    ShowAt(globalPos);
    m_edit->setFocus(Qt::PopupFocusReason);
}

void CVXPanelGroupSetting::UpdateGroupIDList(const QStringList& groupIds, const QString& currentGroupId)
{
    SetGroupIDList(groupIds);
    m_currentGroupId = currentGroupId;
    CheckGroup(currentGroupId);
}

void CVXPanelGroupSetting::SetGroupIDList(const QStringList& groupIds)
{
    QStringList ids = groupIds;
    if (ids.size() > kMaxGroups) {
        VXLOG_WARN("CVXPanelGroupSetting::SetGroupIDList: {} groups, only the first {} are shown", ids.size(),
                   kMaxGroups);
        ids = ids.mid(0, kMaxGroups);
    }
    m_groupIds = ids;
    while (m_buttons.size() < ids.size()) {
        const int index = m_buttons.size();
        auto* button = new CVXPanelGroupButton(this);
        m_grid->addWidget(button, index / kColumns, index % kColumns);
        m_group->addButton(button);
        m_buttons.append(button);
        connect(button, &QAbstractButton::clicked, this, [this, button] { OnGroupButtonClicked(button); });
    }
    for (int i = 0; i < m_buttons.size(); ++i) {
        m_buttons[i]->SetGroup(i < ids.size() ? ids[i] : QString());
        m_buttons[i]->setVisible(i < ids.size());
    }
    // A button that now carries another group must not stay checked for the old one.
    CheckGroup(m_currentGroupId);
}

CVXPanelGroupButton* CVXPanelGroupSetting::GetGroupBtnByGroupNumber(const QString& groupId) const
{
    if (groupId.isEmpty())
        return nullptr;
    for (int i = 0; i < m_groupIds.size(); ++i)
        if (m_buttons[i]->GetGroup() == groupId)
            return m_buttons[i];
    return nullptr;
}

QStringList CVXPanelGroupSetting::GetGroupIDList() const
{
    return m_groupIds;
}

QString CVXPanelGroupSetting::GetCurrentGroupID() const
{
    return m_currentGroupId;
}

QString CVXPanelGroupSetting::GetCheckedGroupID() const
{
    auto* checked = static_cast<CVXPanelGroupButton*>(m_group->checkedButton());
    return checked ? checked->GetGroup() : QString();
}

QLineEdit* CVXPanelGroupSetting::GetGroupNumberEdit() const
{
    return m_edit;
}

vx_std_ui::VIconButton* CVXPanelGroupSetting::GetAddButton() const
{
    return m_add;
}

void CVXPanelGroupSetting::CheckGroup(const QString& groupId)
{
    panel_group_setting::CheckOnly(m_group, GetGroupBtnByGroupNumber(groupId));
}

void CVXPanelGroupSetting::OnGroupButtonClicked(CVXPanelGroupButton* button)
{
    const QString groupId = button->GetGroup();
    m_currentGroupId = groupId;
    panel_group_setting::ChooseAndClose(
        this, [this, &groupId] { Q_EMIT GroupIDChanged(groupId); }, panel_group_setting::kGroupOption);
}

void CVXPanelGroupSetting::OnEditTextChanged(const QString& text)
{
    const QString upper = text.toUpper();
    if (upper != text) {
        const int cursor = m_edit->cursorPosition();
        m_edit->setText(upper); // comes back here once with nothing left to change
        m_edit->setCursorPosition(cursor);
        return;
    }
    m_add->setVisible(!text.isEmpty());
}

void CVXPanelGroupSetting::OnAddClicked()
{
    const QString groupId = m_edit->text();
    if (groupId.isEmpty())
        return;
    QPointer<CVXPanelGroupSetting> self(this);
    Q_EMIT GroupIDAdded(groupId);
    if (self)
        m_edit->clear();
}
