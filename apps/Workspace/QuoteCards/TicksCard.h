#pragma once

// CVXTicksCard ("Ticks"): the shown security's latest trades, newest on top: time, price (in the
// rise or fall colour against the previous close), volume and a buy/sell marker from the trade's
// side. As many rows as the card's height holds; each feed step pushes new trades in at the top.

#include "apps/Workspace/Cards/WorkspaceCard.h"
#include "apps/Workspace/MarketData/MarketTypes.h"

#include "UIFrame/CardTypes.h"

class QPainter;

namespace vx_ws {

class CVXTicksCard : public TplVXWorkspaceCard<CVXTicksCard>
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = quote_card_type::Ticks;
    static constexpr int kHeaderHeight = 22;
    static constexpr int kRowHeight = 18;
    static CVXCardBaseStyle StaticCardStyle();

    explicit CVXTicksCard(EnVXCardPos pos, QWidget* parent = nullptr);
    ~CVXTicksCard() override;

    // Whole rows that fit below the header.
    int RowCapacity() const;
    // The trades on show, newest first (at most RowCapacity()).
    std::vector<vx_md::Tick> ShownTicks() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Columns;
    void PaintHeader(QPainter& p, const Columns& columns, const QFont& font);
    void PaintTick(QPainter& p, const Columns& columns, int top, const vx_md::Tick& tick,
                   const vx_md::SecurityInfo& info, const QFont& font);
};

} // namespace vx_ws
