#include "apps/Workspace/Cards/RegisterCards.h"

#include "apps/Workspace/TradeCards/BookTraderCard.h"
#include "apps/Workspace/TradeCards/ComboOptionPanelCard.h"
#include "apps/Workspace/TradeCards/PlaceOrderSecuritiesPanelCard.h"

#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"

namespace vx_ws {

void RegisterOrderEntryCards()
{
    CVXCardFactoryMgr& registry = CVXCardFactoryMgr::Instance();
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXPlaceOrderSecuritiesPanelCard>>(), false);
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXComboOptionPanelCard>>(), false);
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CVXBookTraderCard>>(), false);
}

} // namespace vx_ws
