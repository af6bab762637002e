#pragma once

// The broker queue of one side of a book as the brokers card lays it out: for each level that
// has brokers, a level marker followed by the brokers queued there, front of the queue first,
// cut to the number of cells that fit. A marker is never left as the last cell: it would name a
// level none of whose brokers is shown.

#include "apps/Workspace/MarketData/MarketTypes.h"

#include <QString>

#include <vector>

namespace vx_ws {

struct BrokerQueueCell
{
    int level = 0;           // 1: the best price of the side
    bool isMarker = false;   // the level's marker cell, not a broker
    unsigned int broker = 0; // broker number (0 for a marker)
};

std::vector<BrokerQueueCell> MakeBrokerQueue(const std::vector<vx_md::BookLevel>& levels, int capacity);

// A short fictitious firm name made from the broker number, always the same for one number.
QString BrokerShortName(unsigned int broker);

} // namespace vx_ws
