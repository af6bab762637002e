#pragma once

// ITabFramePageUtil: how any widget finds its surroundings (frame, page, card, box, canvas,
// expanded region), the frame the user jumped from, and how a frame is opened with jump data.
// Built on first use; it listens to message 20050 (parameter 1202: go back to the frame the
// user jumped from, through the main frame module).

#include "UIFrame/ModuleInterfaces.h"
#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/UIFrameExport.h"

#include <memory>

class QWidget;
class CVXTabFrameBase;
class CVXTabFramePageBase;
class CVXCardObjBase;
class CVXPanelBaseBox;
class CVXPanelScrollView;
class CVXVariantMapTree;

namespace core {
class CMessageBody;
}

class UIFRAME_EXPORT ITabFramePageUtil
{
public:
    static constexpr unsigned int kMsgTabFrameNotify = 20050;
    static constexpr unsigned long long kNotifySwitchBack = 1202;
    static constexpr unsigned int kMsgOpenTabFrame = 20160;

    static ITabFramePageUtil& Instance();
    // A fresh instance: no remembered key, 20050 bound again (after the bus was reset).
    static void ResetForTest();

    ~ITabFramePageUtil();

    // Nearest ancestors of `widget` (the widget itself included); null when none.
    CVXTabFrameBase* GetTabFrameByChildWidget(QWidget* widget) const;
    CVXTabFramePageBase* GetTabFramePageByChildWidget(QWidget* widget) const;
    CVXCardObjBase* GetCardObjByChildWidget(QWidget* widget) const;
    CVXPanelBaseBox* GetPanelBoxFromChildWidget(QWidget* widget) const;
    CVXPanelScrollView* GetPanelScrollViewFromChildWidget(QWidget* widget) const;
    // The stock id of the widget's frame; 0 without one.
    unsigned long long GetTabFrameStockIDByChildWidget(QWidget* widget) const;
    // The expanded region of the widget's frame; null without frame or region.
    QWidget* GetExpandedRegionByChildWidget(QWidget* widget) const;
    // True when the widget and the application's focus widget have the same panel box above
    // them (false when either has none).
    bool InTheSamePanelBoxWithFocusWidget(QWidget* widget) const;
    // The frame's CanRecordFootPrint(); a widget outside any frame is an assertion failure and
    // gives false.
    bool CanRecordFootPrintInfo(QWidget* widget) const;

    void SetJumpFromTabFrameKey(EnVXTabFrameKey key) { m_enJumpFromKey = key; }
    EnVXTabFrameKey GetJumpFromTabFrameKey() const { return m_enJumpFromKey; }
    // Forgets the remembered key only when it and `key` are both set and differ; otherwise
    // nothing happens.
    void ClearJumpFromTabFrameKey(EnVXTabFrameKey key);

    // Sends 20160 (parameter: the key; body exdata: the serialised jump tree), immediately.
    void OpenTabFrameWithJumpData(EnVXTabFrameKey key, const CVXVariantMapTree& jumpData);

    // The main frame module from the plug-in centre; null when none is registered.
    std::shared_ptr<IMainFrameModuleUtil> GetMainFrame() const;

private:
    ITabFramePageUtil();
    void OnMsgNotifyProc(unsigned int msgId, unsigned long long param, const core::CMessageBody& body);

    EnVXTabFrameKey m_enJumpFromKey = TabFrameKey_None;
};
