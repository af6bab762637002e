#include "UIFrame/TabFrame/TabFramePageUtil.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/PanelBox/PanelBaseBox.h"
#include "UIFrame/TabFrame/TabFrameBase.h"
#include "UIFrame/TabFrame/TabFramePageBase.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/PluginCenter.h"
#include "Platform/Core/VariantMapTree.h"
#include "Platform/Core/message_body.pb.h"

#include <QApplication>
#include <QWidget>

IMainFrameModuleUtil::~IMainFrameModuleUtil() = default;

namespace {

template <typename T> T* NearestAncestor(QWidget* widget)
{
    for (QWidget* current = widget; current; current = current->parentWidget()) {
        if (auto* found = dynamic_cast<T*>(current))
            return found;
    }
    return nullptr;
}

std::unique_ptr<ITabFramePageUtil>& InstanceSlot()
{
    static std::unique_ptr<ITabFramePageUtil> instance;
    return instance;
}

} // namespace

ITabFramePageUtil& ITabFramePageUtil::Instance()
{
    std::unique_ptr<ITabFramePageUtil>& slot = InstanceSlot();
    if (!slot)
        slot.reset(new ITabFramePageUtil);
    return *slot;
}

void ITabFramePageUtil::ResetForTest()
{
    InstanceSlot().reset();
    Instance();
}

ITabFramePageUtil::ITabFramePageUtil()
{
    core::__CMessageDispatch::Instance().Bind(
        kMsgTabFrameNotify,
        [this](unsigned int msgId, unsigned long long param, const core::CMessageBody& body) {
            OnMsgNotifyProc(msgId, param, body);
        },
        this);
}

ITabFramePageUtil::~ITabFramePageUtil()
{
    core::__CMessageDispatch::Instance().UnBind(kMsgTabFrameNotify, this);
}

CVXTabFrameBase* ITabFramePageUtil::GetTabFrameByChildWidget(QWidget* widget) const
{
    return NearestAncestor<CVXTabFrameBase>(widget);
}

CVXTabFramePageBase* ITabFramePageUtil::GetTabFramePageByChildWidget(QWidget* widget) const
{
    return NearestAncestor<CVXTabFramePageBase>(widget);
}

CVXCardObjBase* ITabFramePageUtil::GetCardObjByChildWidget(QWidget* widget) const
{
    return NearestAncestor<CVXCardObjBase>(widget);
}

CVXPanelBaseBox* ITabFramePageUtil::GetPanelBoxFromChildWidget(QWidget* widget) const
{
    return NearestAncestor<CVXPanelBaseBox>(widget);
}

CVXPanelScrollView* ITabFramePageUtil::GetPanelScrollViewFromChildWidget(QWidget* widget) const
{
    return NearestAncestor<CVXPanelScrollView>(widget);
}

unsigned long long ITabFramePageUtil::GetTabFrameStockIDByChildWidget(QWidget* widget) const
{
    const CVXTabFrameBase* frame = GetTabFrameByChildWidget(widget);
    return frame ? frame->GetStockID() : 0;
}

QWidget* ITabFramePageUtil::GetExpandedRegionByChildWidget(QWidget* widget) const
{
    const CVXTabFrameBase* frame = GetTabFrameByChildWidget(widget);
    return frame ? frame->GetExpandedRegion() : nullptr;
}

bool ITabFramePageUtil::InTheSamePanelBoxWithFocusWidget(QWidget* widget) const
{
    const CVXPanelBaseBox* box = GetPanelBoxFromChildWidget(widget);
    if (!box)
        return false;
    return box == GetPanelBoxFromChildWidget(QApplication::focusWidget());
}

bool ITabFramePageUtil::CanRecordFootPrintInfo(QWidget* widget) const
{
    const CVXTabFrameBase* frame = GetTabFrameByChildWidget(widget);
    if (!VX_ASSERT(frame))
        return false;
    return frame->CanRecordFootPrint();
}

void ITabFramePageUtil::ClearJumpFromTabFrameKey(EnVXTabFrameKey key)
{
    // Reopening the remembered frame itself keeps the way back; only reaching another frame
    // forgets it.
    if (m_enJumpFromKey == TabFrameKey_None || key == TabFrameKey_None || m_enJumpFromKey == key)
        return;
    m_enJumpFromKey = TabFrameKey_None;
}

void ITabFramePageUtil::OpenTabFrameWithJumpData(EnVXTabFrameKey key, const CVXVariantMapTree& jumpData)
{
    core::CMessageBody body;
    const QByteArray bytes = jumpData.SerializeAsQByteArray();
    body.set_exdata(bytes.constData(), static_cast<size_t>(bytes.size()));
    core::__CMessageDispatch::Instance().Send(kMsgOpenTabFrame, key, body, true);
}

std::shared_ptr<IMainFrameModuleUtil> ITabFramePageUtil::GetMainFrame() const
{
    // Asking the centre for an unregistered interface logs a warning; no main frame is normal
    // in tools and tests.
    if (!core::IVXPluginCenter::Instance().Has(IMainFrameModuleUtil::InterfaceName()))
        return nullptr;
    return core::IVXPluginCenter::CreateInterface<IMainFrameModuleUtil>();
}

void ITabFramePageUtil::OnMsgNotifyProc(unsigned int msgId, unsigned long long param,
                                        const core::CMessageBody& body)
{
    (void)msgId;
    (void)body;
    if (param != kNotifySwitchBack || m_enJumpFromKey == TabFrameKey_None)
        return;
    const std::shared_ptr<IMainFrameModuleUtil> mainFrame = GetMainFrame();
    if (!mainFrame || !mainFrame->IsMainFrameExist())
        return;
    const EnVXTabFrameKey key = m_enJumpFromKey;
    mainFrame->SwitchTabFrame(key, CVXVariantMapTree());
    VXLOG_INFO("ITabFramePageUtil::OnMsgNofityProc SwitchTab enTabFrameKey:{}",
               static_cast<unsigned int>(key));
}
