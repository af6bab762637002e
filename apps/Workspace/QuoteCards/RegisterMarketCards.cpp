#include "apps/Workspace/Cards/RegisterCards.h"

#include "apps/Workspace/QuoteCards/KLineCard.h"
#include "apps/Workspace/QuoteCards/StockHeaderCard.h"
#include "apps/Workspace/QuoteCards/TicksCard.h"
#include "apps/Workspace/QuoteCards/TicksStatisticCard.h"

#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"

#include <memory>

namespace vx_ws {

void RegisterMarketCards()
{
    CVXCardFactoryMgr& registry = CVXCardFactoryMgr::Instance();
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXStockHeaderCard>>(), false);
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXKLineCard>>(), false);
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXTicksCard>>(), false);
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXTicksStatisticCard>>(), false);
}

} // namespace vx_ws
