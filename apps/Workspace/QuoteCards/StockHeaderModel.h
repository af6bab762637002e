#pragma once

// What the quote summary card shows, worked out from the feed's values: the texts of the last
// price, the change and every statistic with the direction that colours it, for the wide layout
// (two rows of four statistics) or the narrow one (four). Also how a typed code or name is
// resolved to a security, and the completion entries offered while typing.

#include "apps/Workspace/MarketData/MarketTypes.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace vx_ws {

struct StockHeaderStat
{
    QString label;
    QString value;
    // Colours the value: > 0 rise, < 0 fall, 0 flat; neutral fields are not coloured at all.
    double direction = 0.0;
    bool neutral = true;
};

struct StockHeaderView
{
    QString code;
    QString name;
    QString market;
    QString last;
    QString change;        // "+0.12" / "-0.12" / "0.00"
    QString changePercent; // "+1.23%"
    double direction = 0.0;
    // The time of the last trade, "--" before the first.
    QString time;
    // Row-major; the wide layout has two rows of four, the narrow one two rows of two.
    std::vector<StockHeaderStat> stats;
};

// A security with no trade yet shows "--" for the day's open, high and low.
StockHeaderView BuildStockHeaderView(const vx_md::SecurityInfo& info, const vx_md::Quote& quote, bool wide);

// The security a typed text names: an exact code (any letter case), an entry as the completion
// offers it ("code  name"), or an exact name. 0 when nothing matches.
unsigned long FindSecurityByInput(const std::vector<vx_md::SecurityInfo>& universe, const QString& text);

// One "code  name" entry per security, in universe order.
QStringList CompletionEntries(const std::vector<vx_md::SecurityInfo>& universe);

} // namespace vx_ws
