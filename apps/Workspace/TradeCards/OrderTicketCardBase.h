#pragma once

// CVXOrderTicketCardBase: what the three order-entry cards share. It owns the account picker and
// the card's account (the one it was told, else the service's default), raises
// CardEventAccountInfoChanged from the card when the user picks another account (so the box and
// its linkage group follow), follows the trade service's AccountChanged for that account, and
// keeps the one-line result of the last order the card sent (accepted, filled or refused).
//
// The trade service may be missing (vx_ws::TradeService() null): the card shows its empty state
// and picks the service up when it is installed, on the next repaint or action.

#include "apps/Workspace/Cards/WorkspaceCardBase.h"
#include "apps/Workspace/Trade/SimTradeService.h"

#include <QPointer>

class QPainter;

#include <vector>

namespace vx_ws {

class CVXAccountSelector;

class CVXOrderTicketCardBase : public CVXWorkspaceCardBase
{
    Q_OBJECT
public:
    explicit CVXOrderTicketCardBase(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXOrderTicketCardBase() override;

    // The account the card trades in; 0 while there is no service or no account.
    unsigned long long AccountID();
    CVXAccountSelector* AccountSelector() const { return m_pAccountSelector; }
    // The last result line and whether it reports a refusal.
    QString ResultText() const { return m_strResult; }
    bool IsResultError() const { return m_bResultError; }

    void SetAccountInfo(const CVXVariantMapTree& info) override;

    // "Filled: Buy 300 @ 12.35", "Working: ...", "Rejected: <reason>"; several orders (combo
    // legs) are summed up in one line.
    static QString DescribeOrders(const std::vector<vx_trade::Order>& orders, double tickSize);

protected:
    // The service now (null when missing); reconnects AccountChanged when it was replaced.
    vx_trade::CVXSimTradeService* Service();
    // The account's orders, cash or positions changed, or the card's account did. Default: update().
    virtual void OnAccountDataChanged();
    // The user picked an account: the card follows and raises the event.
    void OnAccountPicked(unsigned long long accountId);
    void SetResult(const QString& text, bool error);
    void ShowOrdersResult(const std::vector<vx_trade::Order>& orders, double tickSize);
    // Paints the result line in `rect` (elided), refusals in the alert colour.
    void PaintResult(QPainter& painter, const QRect& rect) const;

private:
    void UseAccount(unsigned long long accountId);

    CVXAccountSelector* m_pAccountSelector = nullptr;
    QPointer<vx_trade::CVXSimTradeService> m_pService;
    unsigned long long m_u64AccountID = 0;
    unsigned long long m_u64RequestedAccountID = 0;
    QString m_strResult;
    bool m_bResultError = false;
};

} // namespace vx_ws
