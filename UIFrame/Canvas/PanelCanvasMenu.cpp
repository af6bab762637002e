#include "UIFrame/Canvas/PanelCanvasMenu.h"

#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/PanelBox/PanelBoxMenu.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/Menu.h"

namespace panel_canvas_menu {

const QVector<AddEntry>& AddComponentEntries()
{
    // One table for the canvas and the box menus: the box menu's, which also carries the number
    // each entry reports.
    static const QVector<AddEntry> s_entries = [] {
        QVector<AddEntry> entries;
        for (const panelbox_menu::AddComponentEntry& entry : panelbox_menu::AddComponentEntries())
            entries.push_back({entry.nTextId, entry.szFallback, entry.szCardType});
        return entries;
    }();
    return s_entries;
}

vx_std_ui::VMenu* Build(QWidget* parent, const Actions& actions)
{
    auto* menu = new vx_std_ui::VMenu(parent);
    vx_std_ui::VMenu* add = menu->addSubMenu(core::langx::tr(kTextAddComponent, "添加组件"));
    const CVXCardFactoryMgr& factories = CVXCardFactoryMgr::Instance();
    for (const AddEntry& entry : AddComponentEntries()) {
        const QString cardType = QString::fromLatin1(entry.cardType);
        if (!factories.HasFactory(cardType))
            continue;
        QAction* action = add->addActionWithData(core::langx::tr(entry.textId, entry.fallback), cardType);
        if (actions.addCard)
            QObject::connect(action, &QAction::triggered, menu,
                             [addCard = actions.addCard, cardType]() { addCard(cardType); });
    }
    add->setEnabled(!add->actions().isEmpty());

    menu->addSeparator();
    struct Plain
    {
        int textId;
        const char* fallback;
        const std::function<void()>& call;
        bool enabled;
    };
    const Plain plain[] = {
        {kTextPaste, "粘贴", actions.paste, actions.canPaste},
        {kTextUndo, "撤销", actions.undo, actions.canUndo},
        {kTextRedo, "重做", actions.redo, actions.canRedo},
    };
    for (const Plain& p : plain) {
        QAction* action = menu->addActionWithData(core::langx::tr(p.textId, p.fallback), p.textId);
        action->setEnabled(p.enabled && p.call);
        if (p.call)
            QObject::connect(action, &QAction::triggered, menu, [call = p.call]() { call(); });
    }
    return menu;
}

} // namespace panel_canvas_menu
