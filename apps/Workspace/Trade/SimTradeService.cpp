#include "apps/Workspace/Trade/SimTradeService.h"

namespace vx_trade {

struct CVXSimTradeService::Impl
{
    vx_md::CVXSimMarketData* marketData = nullptr;
};

CVXSimTradeService::CVXSimTradeService(vx_md::CVXSimMarketData* marketData, QObject* parent)
    : QObject(parent), d(std::make_unique<Impl>())
{
    d->marketData = marketData;
}

CVXSimTradeService::~CVXSimTradeService() = default;

} // namespace vx_trade
