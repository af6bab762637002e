#pragma once

// VMenu: a popup menu themed by the theme provider (palette, no style sheet), with helpers for
// actions that carry data, checkable and exclusive items, and submenus. Triggered reports each
// action of the menu and of its submenus once per trigger, whether the user chose it with the
// mouse or the keyboard or the code called QAction::trigger().

#include "Platform/StdUI/StdUIExport.h"

#include <QMenu>
#include <QVariant>

#include <memory>

class QActionEvent;

namespace vx_std_ui {

class VXSTDUI_EXPORT VMenu : public QMenu
{
    Q_OBJECT
public:
    explicit VMenu(QWidget* parent = nullptr);
    explicit VMenu(const QString& title, QWidget* parent = nullptr);
    ~VMenu() override;

    // The actions are owned by the menu.
    QAction* addActionWithData(const QString& text, const QVariant& data = QVariant());
    QAction* addActionWithData(const QIcon& icon, const QString& text, const QVariant& data = QVariant());
    QAction* addCheckableAction(const QString& text, const QVariant& data, bool checked);
    // Checkable actions sharing `group` are exclusive: checking one unchecks the others.
    QAction* addRadioAction(const QString& group, const QString& text, const QVariant& data, bool checked);
    // The checked action of an exclusive group, nullptr when none is checked or no such group.
    QAction* checkedAction(const QString& group) const;

    // A submenu owned by this menu; its actions are reported by this menu's Triggered too.
    VMenu* addSubMenu(const QString& text);
    VMenu* addSubMenu(const QIcon& icon, const QString& text);
    // The VMenu this menu was added to as a submenu, or nullptr.
    VMenu* parentMenu() const;

    // The first action whose data equals `data`, searching submenus depth-first when
    // `recursive`; nullptr when none has it.
    QAction* findAction(const QVariant& data, bool recursive = true) const;

Q_SIGNALS:
    void Triggered(QAction* action);

protected:
    void actionEvent(QActionEvent* event) override;

private:
    void OnActionTriggered(QAction* action);

    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_std_ui
