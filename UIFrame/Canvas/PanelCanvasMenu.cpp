#include "UIFrame/Canvas/PanelCanvasMenu.h"

#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardTypes.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/Menu.h"

namespace panel_canvas_menu {

const QVector<AddEntry>& AddComponentEntries()
{
    static const QVector<AddEntry> s_entries = {
        {236231, "报价摘要", quote_card_type::StockHeader},
        {236232, "走势图", quote_card_type::KLine},
        {236233, "逐笔明细", quote_card_type::Ticks},
        {236246, "期权链", quote_card_type::OptionChainsPanel},
        {236237, "自选", quote_card_type::Watchlist},
        {250213, "交易", trade_card_type::TradePlaceOrderSecuritiesPanel},
        {250217, "持仓", trade_card_type::SecuritiesTradePosition},
        {236241, "订单", trade_card_type::SecuritiesTradeOrders},
        {236244, "交易历史", trade_card_type::TradeHistoryOrders},
        {250218, "账户", trade_card_type::SecuritiesAccInfo},
        {259423, "期权交易", trade_card_type::TradePlaceOrderComboOptionPanel},
        {292863, "点价交易", trade_card_type::TradePlaceOrderBookTraderPanel},
    };
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
