#pragma once

// CVXWorkspaceCardPage: the page of a classic tab frame (watch list, account): cards made
// through the card factories, arranged in nested splitters. The cards of a page follow one
// another through the card events' dispatch (the frame passes a card's event on to its current
// page); the page remembers the last security one of its cards picked, which is what it saves
// and what a jump into the frame changes.
//
// A page of account cards reads as one account: the first card's account selector is the
// page's picker (the others are hidden) and a pick there hands the account to every card of
// the page, whichever splitter holds it.

#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/TabFrame/TabFramePageBase.h"

#include <QList>
#include <QString>
#include <QVector>

class CVXCardObjBase;
class QSplitter;

namespace vx_ws {
class CVXAccountSelector;
}

namespace vx_ws {

class CVXWorkspaceCardPage : public CVXTabFramePageBase
{
    Q_OBJECT
public:
    // A card (cardType set) or a splitter of children with their initial sizes.
    struct Node
    {
        QString cardType;
        Qt::Orientation orientation = Qt::Horizontal;
        QVector<Node> children;
        QList<int> sizes;
    };

    // The watch list on the left; quote header and chart over book and ticks on the right.
    static Node WatchListArrangement();
    // Account summary over positions on the left; today's orders over the order history on the
    // right, where the wider tables have the room.
    static Node AccountArrangement();
    // Registers the page factories of the watch-list and account frames.
    static void RegisterPageFactories();
    static void UnRegisterPageFactories();

    CVXWorkspaceCardPage(EnVXTabFrameKey key, Node arrangement, QWidget* parent = nullptr);
    ~CVXWorkspaceCardPage() override;

    // Makes the splitters and cards; a card type without a factory leaves an empty place (logged).
    void Init() override;

    QList<CVXCardObjBase*> Cards() const;
    CVXCardObjBase* FindCard(const QString& cardType) const;
    // The security the page's cards were last told (0 before any).
    unsigned long long CurrentStockID() const { return m_stockId; }
    // Tells every card of the page (a jump into the frame, a restored state).
    void ShowStock(unsigned long long stockId);
    // The page's account picker (null on a page without account cards) and the account it
    // last handed the cards (0 before any pick).
    CVXAccountSelector* AccountPicker() const { return m_pAccountPicker; }
    unsigned long long CurrentAccountID() const { return m_accountId; }
    // Tells every card of the page to show the account.
    void ShowAccount(unsigned long long accountId);

protected:
    void OnCardEventStockIDChanged(unsigned long long stockID) override;
    void OnCardEventAccountInfoChanged(const CVXVariantMapTree& accountInfo) override;

private:
    QWidget* Build(const Node& node, QWidget* parent);
    void SetUpAccountPicker();

    EnVXTabFrameKey m_key;
    Node m_arrangement;
    QList<CVXCardObjBase*> m_cards;
    unsigned long long m_stockId = 0;
    unsigned long long m_accountId = 0;
    CVXAccountSelector* m_pAccountPicker = nullptr;
};

} // namespace vx_ws
