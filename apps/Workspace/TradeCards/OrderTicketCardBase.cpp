#include "apps/Workspace/TradeCards/OrderTicketCardBase.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"

#include "UIFrame/CardEvents.h"

#include "Platform/Core/Langx.h"

#include <QPainter>

namespace vx_ws {

using vx_trade::EnOrderSide;
using vx_trade::EnOrderStatus;
using vx_trade::Order;

CVXOrderTicketCardBase::CVXOrderTicketCardBase(EnVXCardPos pos, QWidget* parent)
    : CVXWorkspaceCardBase(pos, parent)
{
    m_pAccountSelector = new CVXAccountSelector(this);
    connect(m_pAccountSelector, &CVXAccountSelector::AccountPicked, this,
            &CVXOrderTicketCardBase::OnAccountPicked);
    Service();
}

CVXOrderTicketCardBase::~CVXOrderTicketCardBase() = default;

vx_trade::CVXSimTradeService* CVXOrderTicketCardBase::Service()
{
    vx_trade::CVXSimTradeService* service = TradeService();
    if (service != m_pService.data()) {
        if (m_pService)
            disconnect(m_pService.data(), nullptr, this, nullptr);
        m_pService = service;
        if (service) {
            connect(service, &vx_trade::CVXSimTradeService::AccountChanged, this,
                    [this](unsigned long long accountId) {
                        if (accountId == m_u64AccountID)
                            OnAccountDataChanged();
                    });
        }
        m_u64AccountID = 0;
    }
    if (service && (m_u64AccountID == 0 || !service->HasAccount(m_u64AccountID))) {
        const unsigned long long wanted = service->HasAccount(m_u64RequestedAccountID)
                                              ? m_u64RequestedAccountID
                                              : service->DefaultAccountID();
        m_u64AccountID = wanted;
        m_pAccountSelector->SetAccountID(wanted);
    }
    return service;
}

unsigned long long CVXOrderTicketCardBase::AccountID()
{
    return Service() ? m_u64AccountID : 0;
}

void CVXOrderTicketCardBase::SetAccountInfo(const CVXVariantMapTree& info)
{
    CVXWorkspaceCardBase::SetAccountInfo(info);
    const unsigned long long id = vx_trade::CVXSimTradeService::AccountIDFromTree(info);
    if (id == 0)
        return;
    m_u64RequestedAccountID = id;
    vx_trade::CVXSimTradeService* service = Service();
    if (service && service->HasAccount(id) && id != m_u64AccountID)
        UseAccount(id);
}

void CVXOrderTicketCardBase::OnAccountPicked(unsigned long long accountId)
{
    vx_trade::CVXSimTradeService* service = Service();
    if (!service || !service->HasAccount(accountId))
        return;
    m_u64RequestedAccountID = accountId;
    UseAccount(accountId);
    CardEventAccountInfoChanged event(vx_trade::CVXSimTradeService::MakeAccountTree(accountId));
    core::ui_event::DispatchCardEvent(this, &event, true);
}

void CVXOrderTicketCardBase::UseAccount(unsigned long long accountId)
{
    m_u64AccountID = accountId;
    m_pAccountSelector->SetAccountID(accountId);
    SetResult(QString(), false);
    OnAccountDataChanged();
}

void CVXOrderTicketCardBase::OnAccountDataChanged()
{
    update();
}

void CVXOrderTicketCardBase::SetResult(const QString& text, bool error)
{
    m_strResult = text;
    m_bResultError = error;
    update();
}

void CVXOrderTicketCardBase::ShowOrdersResult(const std::vector<Order>& orders, double tickSize)
{
    bool error = false;
    for (const Order& order : orders)
        error = error || order.status == EnOrderStatus::Rejected;
    SetResult(DescribeOrders(orders, tickSize), error);
}

QString CVXOrderTicketCardBase::DescribeOrders(const std::vector<Order>& orders, double tickSize)
{
    if (orders.empty())
        return QString();
    for (const Order& order : orders) {
        if (order.status == EnOrderStatus::Rejected)
            return core::langx::tr(970324, "已拒绝：%1").arg(QString::fromStdString(order.rejectReason));
    }
    if (orders.size() > 1) {
        double net = 0.0;
        for (const Order& order : orders)
            net += (order.side == EnOrderSide::Buy ? 1.0 : -1.0) * order.averageFillPrice *
                   static_cast<double>(order.filledQuantity);
        return core::langx::tr(970326, "组合已成交：%1 腿，净额 %2")
            .arg(orders.size())
            .arg(QString::number(net, 'f', 2));
    }
    const Order& order = orders.front();
    const QString side =
        order.side == EnOrderSide::Buy ? core::langx::tr(970321, "买入") : core::langx::tr(970322, "卖出");
    switch (order.status) {
    case EnOrderStatus::Filled:
    case EnOrderStatus::PartFilled:
        return core::langx::tr(970320, "已成交：%1 %2 @ %3")
            .arg(side)
            .arg(order.filledQuantity)
            .arg(FormatPrice(order.averageFillPrice, tickSize));
    case EnOrderStatus::Working:
        return core::langx::tr(970323, "已委托 #%1：%2 %3 @ %4，等待成交")
            .arg(order.orderId)
            .arg(side)
            .arg(order.quantity)
            .arg(FormatPrice(order.price, tickSize));
    case EnOrderStatus::Cancelled:
        return core::langx::tr(970325, "已撤单 #%1").arg(order.orderId);
    case EnOrderStatus::Rejected:
        break;
    }
    return QString();
}

void CVXOrderTicketCardBase::PaintResult(QPainter& painter, const QRect& rect) const
{
    if (m_strResult.isEmpty())
        return;
    painter.setPen(ThemeColor(m_bResultError ? "ct_rise" : "ct_link"));
    painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(m_strResult, Qt::ElideRight, rect.width()));
}

} // namespace vx_ws
