#include "UIFrame/TabFrame/TabFramePageBase.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/TabFrame/TabFrameBase.h"
#include "UIFrame/TabFrame/TabFramePageUtil.h"

#include <QSet>

bool IsHideExpandedRegion(EnVXTabFrameKey key)
{
    static const QSet<unsigned int> hiding = {
        TabFrameKey_Quantitative, TabFrameKey_Discovery,    TabFrameKey_Shortcut,
        TabFrameKey_Information,  TabFrameKey_PaperTrading, TabFrameKey_Module20101,
        TabFrameKey_Module20102,  TabFrameKey_Module20103,  TabFrameKey_Module20104,
    };
    return hiding.contains(key);
}

CVXTabFramePageBase::CVXTabFramePageBase(QWidget* parent) : QWidget(parent)
{
    RegisterUIEventHandler<CardEventStockIDChanged>(this, &CVXTabFramePageBase::HandleStockIDChanged);
    RegisterUIEventHandler<CardEventAccountInfoChanged>(this, &CVXTabFramePageBase::HandleAccountInfoChanged);
    RegisterUIEventHandler<CardEventOptionIndexChanged>(this, &CVXTabFramePageBase::HandleOptionIndexChanged);
}

CVXTabFramePageBase::~CVXTabFramePageBase() = default;

void CVXTabFramePageBase::Init() {}

void CVXTabFramePageBase::SetHideExpandedRegion(bool hide)
{
    m_bHideExpandedRegion = hide;
}

bool CVXTabFramePageBase::IsHideExpandedRegion() const
{
    if (m_bHideExpandedRegion)
        return true;
    auto* self = const_cast<CVXTabFramePageBase*>(this);
    const CVXTabFrameBase* frame = ITabFramePageUtil::Instance().GetTabFrameByChildWidget(self);
    if (frame) {
        if (::IsHideExpandedRegion(frame->GetTabFrameKey()))
            return true;
        const QWidget* region = frame->GetExpandedRegion();
        return region ? region->isHidden() : false;
    }
    const std::shared_ptr<IMainFrameModuleUtil> mainFrame = ITabFramePageUtil::Instance().GetMainFrame();
    return mainFrame && mainFrame->IsMainFrameExist() && mainFrame->IsExpandedRegionHidden();
}

bool CVXTabFramePageBase::IsOutSideMode() const
{
    auto* self = const_cast<CVXTabFramePageBase*>(this);
    const CVXTabFrameBase* frame = ITabFramePageUtil::Instance().GetTabFrameByChildWidget(self);
    return frame && frame->IsOutSideMode();
}

void CVXTabFramePageBase::OnCardEventStockIDChanged(unsigned long long stockID)
{
    (void)stockID;
}

void CVXTabFramePageBase::OnCardEventAccountInfoChanged(const CVXVariantMapTree& accountInfo)
{
    (void)accountInfo;
}

void CVXTabFramePageBase::OnCardEventOptionIndexChanged(const CVXVariantMapTree& optionIndexInfo)
{
    (void)optionIndexInfo;
}

void CVXTabFramePageBase::HandleStockIDChanged(const CardEventStockIDChanged* event)
{
    OnCardEventStockIDChanged(event->u64StockID);
}

void CVXTabFramePageBase::HandleAccountInfoChanged(const CardEventAccountInfoChanged* event)
{
    OnCardEventAccountInfoChanged(event->accountInfo);
}

void CVXTabFramePageBase::HandleOptionIndexChanged(const CardEventOptionIndexChanged* event)
{
    OnCardEventOptionIndexChanged(event->optionIndexInfo);
}
