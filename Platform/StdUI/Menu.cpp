#include "Platform/StdUI/Menu.h"

#include "Platform/StdUI/ThemeResource.h"

#include "Platform/Core/Log.h"

#include <QActionEvent>
#include <QActionGroup>
#include <QHash>
#include <QPointer>

#include <vector>

namespace vx_std_ui {

struct VMenu::Impl
{
    QPointer<VMenu> parentMenu;
    QHash<QAction*, QMetaObject::Connection> connections;
    QHash<QString, QActionGroup*> groups;
};

VMenu::VMenu(QWidget* parent) : QMenu(parent), d(std::make_unique<Impl>())
{
    vx_ui_res::Provider::Instance().FollowTheme(this);
}

VMenu::VMenu(const QString& title, QWidget* parent) : VMenu(parent)
{
    setTitle(title);
}

VMenu::~VMenu()
{
    // QWidget's destructor removes the actions after d is gone; drop the hooks first.
    for (const QMetaObject::Connection& c : qAsConst(d->connections))
        disconnect(c);
    d->connections.clear();
}

QAction* VMenu::addActionWithData(const QString& text, const QVariant& data)
{
    QAction* action = addAction(text);
    action->setData(data);
    return action;
}

QAction* VMenu::addActionWithData(const QIcon& icon, const QString& text, const QVariant& data)
{
    QAction* action = addAction(icon, text);
    action->setData(data);
    return action;
}

QAction* VMenu::addCheckableAction(const QString& text, const QVariant& data, bool checked)
{
    QAction* action = addActionWithData(text, data);
    action->setCheckable(true);
    action->setChecked(checked);
    return action;
}

QAction* VMenu::addRadioAction(const QString& group, const QString& text, const QVariant& data, bool checked)
{
    QActionGroup*& actionGroup = d->groups[group];
    if (!actionGroup) {
        actionGroup = new QActionGroup(this);
        actionGroup->setExclusive(true);
    }
    QAction* action = addCheckableAction(text, data, false);
    actionGroup->addAction(action);
    if (checked)
        action->setChecked(true);
    return action;
}

QAction* VMenu::checkedAction(const QString& group) const
{
    QActionGroup* actionGroup = d->groups.value(group);
    return actionGroup ? actionGroup->checkedAction() : nullptr;
}

VMenu* VMenu::addSubMenu(const QString& text)
{
    auto* sub = new VMenu(text, this);
    addMenu(sub);
    return sub;
}

VMenu* VMenu::addSubMenu(const QIcon& icon, const QString& text)
{
    VMenu* sub = addSubMenu(text);
    sub->setIcon(icon);
    return sub;
}

VMenu* VMenu::parentMenu() const
{
    return d->parentMenu;
}

QAction* VMenu::findAction(const QVariant& data, bool recursive) const
{
    const QList<QAction*> all = actions();
    for (QAction* action : all)
        if (!action->menu() && !action->isSeparator() && action->data() == data)
            return action;
    if (!recursive)
        return nullptr;
    for (QAction* action : all)
        if (auto* sub = qobject_cast<VMenu*>(action->menu()))
            if (QAction* found = sub->findAction(data, true))
                return found;
    return nullptr;
}

void VMenu::actionEvent(QActionEvent* event)
{
    QMenu::actionEvent(event);
    QAction* action = event->action();
    if (event->type() == QEvent::ActionAdded) {
        if (auto* sub = qobject_cast<VMenu*>(action->menu())) {
            sub->d->parentMenu = this;
            return;
        }
        if (!d->connections.contains(action))
            d->connections.insert(action, connect(action, &QAction::triggered, this,
                                                  [this, action] { OnActionTriggered(action); }));
    } else if (event->type() == QEvent::ActionRemoved) {
        if (auto* sub = qobject_cast<VMenu*>(action->menu())) {
            if (sub->d->parentMenu == this)
                sub->d->parentMenu = nullptr;
        }
        const auto it = d->connections.find(action);
        if (it != d->connections.end()) {
            disconnect(*it);
            d->connections.erase(it);
        }
    }
}

void VMenu::OnActionTriggered(QAction* action)
{
    // Handlers may delete menus of the chain; collect it first and skip the dead ones.
    std::vector<QPointer<VMenu>> chain;
    for (VMenu* menu = this; menu; menu = menu->parentMenu())
        chain.emplace_back(menu);
    QPointer<QAction> guard(action);
    for (const QPointer<VMenu>& menu : chain) {
        if (!guard)
            return;
        if (menu)
            Q_EMIT menu->Triggered(action);
    }
}

} // namespace vx_std_ui
