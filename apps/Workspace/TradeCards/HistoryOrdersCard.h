#pragma once

// CVXHistoryOrdersCard ("TradeHistoryOrders"): finished orders of the card's account, of
// earlier days and today, newest first, with their calendar date, behind period tabs (today /
// last 7 days / all; saved in the card's state as "HistoryPeriod").

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/TradeCards/AccountRows.h"
#include "apps/Workspace/TradeCards/OrderTableCard.h"

#include "UIFrame/CardBaseStyle.h"

#include <QDate>

namespace vx_ws {

class CVXHistoryOrdersCard : public TplVXWorkspaceCard<CVXHistoryOrdersCard, CVXOrderTableCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "TradeHistoryOrders";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXHistoryOrdersCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXHistoryOrdersCard() override;

    void GetCardObjRestoreData(CVXVariantMapTree* data) const override;
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override;

    EnHistoryPeriod Period() const { return m_enPeriod; }
    void SetPeriod(EnHistoryPeriod period);
    // The day the date column counts from: the system's date when the card last rebuilt.
    QDate Today() const { return m_today; }

protected:
    void OnAccountDataChanged() override;
    void OnSegmentClicked(int index) override;

private:
    void Rebuild();

    EnHistoryPeriod m_enPeriod = EnHistoryPeriod::Week;
    QDate m_today;
};

} // namespace vx_ws
