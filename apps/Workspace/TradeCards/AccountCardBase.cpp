#include "apps/Workspace/TradeCards/AccountCardBase.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"

#include "UIFrame/CardEvents.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QLocale>

#include <cmath>

namespace vx_ws {

CVXAccountCardBase::CVXAccountCardBase(EnVXCardPos pos, QWidget* parent) : CVXWorkspaceCardBase(pos, parent)
{
    m_pSelector = new CVXAccountSelector(this);
    connect(m_pSelector, &CVXAccountSelector::AccountPicked, this, &CVXAccountCardBase::RaiseAccountChange);
    // What a card shows carries theme colours: rebuild it in the new theme.
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this,
            [this](vx_ui_res::Theme) {
                if (m_bRefreshedOnce)
                    OnAccountDataChanged();
            });
}

CVXAccountCardBase::~CVXAccountCardBase() = default;

void CVXAccountCardBase::SetAccountInfo(const CVXVariantMapTree& info)
{
    CVXWorkspaceCardBase::SetAccountInfo(info);
    m_u64BoxAccountID = vx_trade::CVXSimTradeService::AccountIDFromTree(info);
    RefreshIfStale();
}

unsigned long long CVXAccountCardBase::AccountID() const
{
    const vx_trade::CVXSimTradeService* service = TradeService();
    if (!service)
        return 0;
    if (m_u64BoxAccountID != 0 && service->HasAccount(m_u64BoxAccountID))
        return m_u64BoxAccountID;
    return service->DefaultAccountID();
}

void CVXAccountCardBase::RaiseAccountChange(unsigned long long accountId)
{
    CardEventAccountInfoChanged event(vx_trade::CVXSimTradeService::MakeAccountTree(accountId));
    core::ui_event::DispatchCardEvent(this, &event, true);
}

vx_trade::CVXSimTradeService* CVXAccountCardBase::Service()
{
    vx_trade::CVXSimTradeService* service = TradeService();
    if (service != m_pService) {
        if (m_pService)
            disconnect(m_pService, nullptr, this, nullptr);
        m_pService = service;
        if (service)
            connect(service, &vx_trade::CVXSimTradeService::AccountChanged, this,
                    &CVXAccountCardBase::OnServiceAccountChanged);
    }
    return service;
}

void CVXAccountCardBase::RefreshIfStale()
{
    const vx_trade::CVXSimTradeService* before = m_pService;
    Service();
    if (!m_bRefreshedOnce || before != m_pService || AccountID() != m_u64RefreshedAccountID)
        Refresh();
}

void CVXAccountCardBase::PostRefreshIfStale()
{
    if (m_bRefreshPosted)
        return;
    const bool stale =
        !m_bRefreshedOnce || TradeService() != m_pService || AccountID() != m_u64RefreshedAccountID;
    if (!stale)
        return;
    m_bRefreshPosted = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_bRefreshPosted = false;
            RefreshIfStale();
        },
        Qt::QueuedConnection);
}

void CVXAccountCardBase::Refresh()
{
    m_bRefreshedOnce = true;
    m_u64RefreshedAccountID = AccountID();
    m_pSelector->SetAccountID(m_u64RefreshedAccountID);
    OnAccountDataChanged();
    update();
}

void CVXAccountCardBase::showEvent(QShowEvent* event)
{
    CVXWorkspaceCardBase::showEvent(event);
    RefreshIfStale();
}

void CVXAccountCardBase::OnServiceAccountChanged(unsigned long long accountId)
{
    if (accountId == AccountID())
        Refresh();
}

QString CVXAccountCardBase::FormatMoney(double value)
{
    // Rounded first so that -0.004 does not print as "-0.00".
    const double rounded = std::round(value * 100.0) / 100.0;
    return QLocale(QLocale::English).toString(rounded == 0.0 ? 0.0 : rounded, 'f', 2);
}

QString CVXAccountCardBase::FormatSignedMoney(double value)
{
    const QString text = FormatMoney(value);
    return text.startsWith(QLatin1Char('-')) || std::round(value * 100.0) == 0.0 ? text
                                                                                 : QLatin1Char('+') + text;
}

} // namespace vx_ws
