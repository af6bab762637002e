#include "UIFrame/PanelBox/PanelBoxMenu.h"

#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/CardTypes.h"
#include "UIFrame/Linkage/PanelColorManager.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/Report.h"
#include "Platform/StdUI/Menu.h"

#include <QAction>
#include <QPainter>
#include <QPixmap>

namespace panelbox_menu {

const std::vector<AddComponentEntry>& AddComponentEntries()
{
    static const std::vector<AddComponentEntry> entries = {
        {236231, "报价摘要", quote_card_type::StockHeader, 1},
        {236232, "走势图", quote_card_type::KLine, 2},
        {236233, "逐笔明细", quote_card_type::Ticks, 3},
        {236246, "期权链", quote_card_type::OptionChainsPanel, 4},
        {236237, "自选", quote_card_type::Watchlist, 5},
        {250213, "交易", trade_card_type::TradePlaceOrderSecuritiesPanel, 6},
        {250217, "持仓", trade_card_type::SecuritiesTradePosition, 7},
        {236241, "订单", trade_card_type::SecuritiesTradeOrders, 8},
        {236244, "交易历史", trade_card_type::TradeHistoryOrders, 9},
        {250218, "账户", trade_card_type::SecuritiesAccInfo, 10},
        {259423, "期权交易", trade_card_type::TradePlaceOrderComboOptionPanel, 11},
        {292863, "点价交易", trade_card_type::TradePlaceOrderBookTraderPanel, 12},
    };
    return entries;
}

const std::vector<SwitchCardSection>& SwitchCardSections()
{
    static const std::vector<SwitchCardSection> sections = {
        {QStringLiteral("quote"),
         {quote_card_type::StockHeader, quote_card_type::KLine, quote_card_type::Ticks,
          quote_card_type::TicksStatistic, quote_card_type::OrderBook, quote_card_type::Brokers,
          quote_card_type::Watchlist, quote_card_type::Recent, quote_card_type::OptionChainsPanel,
          quote_card_type::CapitalFlows, quote_card_type::CompanyInformation}},
        {QStringLiteral("trade"),
         {trade_card_type::TradePlaceOrderSecuritiesPanel, trade_card_type::TradePlaceOrderComboOptionPanel,
          trade_card_type::TradePlaceOrderBookTraderPanel, trade_card_type::SecuritiesTradePosition,
          trade_card_type::SecuritiesTradeOrders, trade_card_type::TradeHistoryOrders,
          trade_card_type::SecuritiesAccInfo}},
    };
    return sections;
}

namespace {

bool IsJapaneseWording()
{
    return core::langx::GetLanguage().startsWith(QStringLiteral("ja"));
}

QString CardTitle(const QString& cardType)
{
    CVXCardBaseStyle style;
    if (CVXCardFactoryMgr::Instance().GetCardStyle(cardType, &style) && !style.title.isEmpty())
        return style.title;
    return cardType;
}

QIcon Swatch(const QColor& color)
{
    QPixmap pixmap(12, 12);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(QRectF(1, 1, 10, 10));
    return QIcon(pixmap);
}

void AddCardEntries(vx_std_ui::VMenu* menu, const MenuContext& context)
{
    if (!context.pCurrentCard)
        return;
    const int before = menu->actions().size();
    context.pCurrentCard->GetCardMenu(menu);
    if (menu->actions().size() > before)
        menu->addSeparator();
    // The combination entries come from the card; without any the entry is left out.
    vx_std_ui::VMenu combination(core::langx::tr(344344, "组合"));
    context.pCurrentCard->GetCombinationMenu(&combination);
    if (!combination.actions().isEmpty()) {
        vx_std_ui::VMenu* sub = menu->addSubMenu(combination.title());
        context.pCurrentCard->GetCombinationMenu(sub);
        menu->addSeparator();
    }
}

void AddColorMenu(vx_std_ui::VMenu* menu, const MenuContext& context)
{
    vx_std_ui::VMenu* sub = menu->addSubMenu(core::langx::tr(251625, "颜色设置"));
    CVXPanelColorManager& colors = CVXPanelColorManager::GetInstance();
    const QStringList texts = colors.GetTabColorTexts();
    for (int i = 0; i < texts.size(); ++i) {
        const QString color = texts[i];
        QAction* action = sub->addRadioAction(QStringLiteral("PanelBoxColor"), QString::number(i + 1), color,
                                              color == context.strCurrentColor);
        action->setIcon(Swatch(colors.GetTabColor(color)));
        QObject::connect(action, &QAction::triggered, sub, [setColor = context.setColor, color]() {
            if (setColor)
                setColor(color);
        });
    }
}

void AddSwitchMenu(vx_std_ui::VMenu* menu, const MenuContext& context)
{
    const CVXCardFactoryMgr& factories = CVXCardFactoryMgr::Instance();
    std::vector<QStringList> sections;
    for (const SwitchCardSection& section : SwitchCardSections()) {
        QStringList available;
        for (const QString& type : section.cardTypes) {
            if (type != context.strCurrentCardType && factories.HasFactory(type))
                available.append(type);
        }
        if (!available.isEmpty())
            sections.push_back(available);
    }
    if (sections.empty())
        return;
    vx_std_ui::VMenu* sub = menu->addSubMenu(core::langx::tr(344389, "切换组件"));
    for (size_t i = 0; i < sections.size(); ++i) {
        if (i > 0)
            sub->addSeparator();
        for (const QString& type : sections[i]) {
            QAction* action = sub->addActionWithData(CardTitle(type), type);
            QObject::connect(action, &QAction::triggered, sub, [switchCard = context.switchCard, type]() {
                if (switchCard)
                    switchCard(type);
            });
        }
    }
}

void AddComponentMenu(vx_std_ui::VMenu* menu, const MenuContext& context)
{
    vx_std_ui::VMenu* sub = menu->addSubMenu(core::langx::tr(236260, "添加组件"));
    const CVXCardFactoryMgr& factories = CVXCardFactoryMgr::Instance();
    for (const AddComponentEntry& entry : AddComponentEntries()) {
        QString text = core::langx::tr(entry.nTextId, entry.szFallback);
        if (entry.nTextId == 250217 && IsJapaneseWording())
            text = core::langx::tr(271427, "保有·建玉");
        const QString type = QString::fromLatin1(entry.szCardType);
        QAction* action = sub->addActionWithData(text, type);
        action->setEnabled(factories.HasFactory(type));
        const int number = entry.nOptionNumber;
        QObject::connect(action, &QAction::triggered, sub, [addCard = context.addCard, type, number]() {
            Json::Value fields(Json::objectValue);
            fields["option_name"] = std::to_string(number);
            core::report::ClickReport(kAddComponentReportName, fields);
            if (addCard)
                addCard(type);
        });
    }
}

} // namespace

void Build(vx_std_ui::VMenu* menu, const MenuContext& context)
{
    if (!menu)
        return;
    AddCardEntries(menu, context);
    AddColorMenu(menu, context);
    AddSwitchMenu(menu, context);
    AddComponentMenu(menu, context);
}

} // namespace panelbox_menu
