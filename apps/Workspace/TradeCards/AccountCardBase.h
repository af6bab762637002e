#pragma once

// CVXAccountCardBase: the base of the account cards. A card shows one account: the one its box
// gives it (SetAccountInfo), else the trade service's default account. It follows the service's
// AccountChanged for that account (OnAccountDataChanged), carries an account selector whose
// choice is raised as CardEventAccountInfoChanged from the card (so the box's linkage group
// follows), and picks up a service installed after the card was made on its next refresh or
// repaint. Without a service the account is 0 and the card shows an empty state.

#include "apps/Workspace/Cards/WorkspaceCardBase.h"

#include <QPointer>

namespace vx_trade {
class CVXSimTradeService;
}

namespace vx_ws {

class CVXAccountSelector;

class CVXAccountCardBase : public CVXWorkspaceCardBase
{
    Q_OBJECT
public:
    explicit CVXAccountCardBase(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXAccountCardBase() override;

    void SetAccountInfo(const CVXVariantMapTree& info) override;
    // The account shown: the box's, else the service's default; 0 without a service.
    unsigned long long AccountID() const;
    CVXAccountSelector* AccountSelector() const { return m_pSelector; }
    // What the selector does on a user's choice: raise the account change from the card.
    void RaiseAccountChange(unsigned long long accountId);

    // Shared number formats: "1,234.50", "+1,234.50" / "-12.00".
    static QString FormatMoney(double value);
    static QString FormatSignedMoney(double value);

protected:
    // The service, connected to this card (null when none is installed).
    vx_trade::CVXSimTradeService* Service();
    // The account's data or the shown account changed: rebuild what the card shows. Called with
    // a null service too (empty state).
    virtual void OnAccountDataChanged() = 0;
    // Calls OnAccountDataChanged when the service or account differs from the last refresh.
    void RefreshIfStale();
    // For paintEvent: the same, posted, since a refresh changes child widgets and geometry.
    void PostRefreshIfStale();
    void showEvent(QShowEvent* event) override;

private:
    void OnServiceAccountChanged(unsigned long long accountId);
    void Refresh();

    unsigned long long m_u64BoxAccountID = 0;
    QPointer<vx_trade::CVXSimTradeService> m_pService;
    unsigned long long m_u64RefreshedAccountID = 0;
    bool m_bRefreshedOnce = false;
    bool m_bRefreshPosted = false;
    CVXAccountSelector* m_pSelector = nullptr;
};

} // namespace vx_ws
