#include "apps/Workspace/Cards/RegisterCards.h"

#include "apps/Workspace/TradeCards/AccInfoCard.h"
#include "apps/Workspace/TradeCards/HistoryOrdersCard.h"
#include "apps/Workspace/TradeCards/OrdersCard.h"
#include "apps/Workspace/TradeCards/PositionCard.h"

#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"

namespace vx_ws {

void RegisterAccountCards()
{
    CVXCardFactoryMgr& registry = CVXCardFactoryMgr::Instance();
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXPositionCard>>(), false);
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXOrdersCard>>(), false);
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXHistoryOrdersCard>>(), false);
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXAccInfoCard>>(), false);
}

} // namespace vx_ws
