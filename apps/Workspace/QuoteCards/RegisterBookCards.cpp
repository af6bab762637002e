#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/QuoteCards/BrokersCard.h"
#include "apps/Workspace/QuoteCards/OptionChainsPanelCard.h"
#include "apps/Workspace/QuoteCards/OrderBookCard.h"
#include "apps/Workspace/QuoteCards/WatchlistCard.h"

#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"

#include <memory>

namespace vx_ws {

void RegisterBookCards()
{
    CVXCardFactoryMgr& factories = CVXCardFactoryMgr::Instance();
    factories.RegisterFactory(std::make_shared<TplVXCardFactory<CVXOrderBookCard>>(), false);
    factories.RegisterFactory(std::make_shared<TplVXCardFactory<CVXBrokersCard>>(), false);
    factories.RegisterFactory(std::make_shared<TplVXCardFactory<CVXWatchlistCard>>(), false);
    factories.RegisterFactory(std::make_shared<TplVXCardFactory<CVXOptionChainsPanelCard>>(), false);
}

} // namespace vx_ws
