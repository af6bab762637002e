#pragma once

// CVXBrokersCard ("Brokers"): the broker queue of the shown security. The bid side on the left in
// the buy colour, the ask side on the right in the sell colour; each side a grid of cells read
// row by row: a level marker, then the brokers queued at that level, front of the queue first,
// then the next level, as many as fit.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/QuoteCards/BrokerQueueModel.h"

#include "UIFrame/CardBaseStyle.h"

#include <QRect>

#include <vector>

namespace vx_ws {

class CVXBrokersCard : public TplVXWorkspaceCard<CVXBrokersCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "Brokers";
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXBrokersCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXBrokersCard() override;

    // The cells painted now on one side (bid: true), in reading order.
    std::vector<BrokerQueueCell> VisibleCells(bool bidSide) const;
    // The rectangle of the i-th cell of a side.
    QRect CellRect(bool bidSide, int index) const;
    // How many cells one side holds at the current size.
    int CellCapacity() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect SideRect(bool bidSide) const;
    int Columns() const;
};

} // namespace vx_ws
