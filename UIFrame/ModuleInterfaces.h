#pragma once

// Interfaces of other modules of the client that this library calls through the plug-in
// centre (core::IVXPluginCenter::CreateInterface<T>()). Absent implementations are skipped.

#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/UIFrameExport.h"

class QWidget;
class IVUIEventTypeBase;

// The quote module: sees every card event before it is dispatched to the card's surroundings
// (it may react, e.g. remember the last security the user looked at); dispatch goes on in any
// case.
class UIFRAME_EXPORT IQuoteModuleUtil
{
public:
    static const char* InterfaceName() { return "IQuoteModuleUtil"; }

    virtual ~IQuoteModuleUtil();
    virtual void OnCardEvent(QWidget* source, const IVUIEventTypeBase* event) = 0;
};

class CVXVariantMapTree;

// The main frame's business module: shortcuts and other entries of the main frame that a page
// of this library asks for. AddShortcut takes the shortcut's parameters (for a panel layout
// "PanelShortcutId") and returns whether the shortcut exists afterwards.
class UIFRAME_EXPORT IBaseBusinessModuleUtil
{
public:
    static const char* InterfaceName() { return "IBaseBusinessModuleUtil"; }

    virtual ~IBaseBusinessModuleUtil();
    virtual bool AddShortcut(const CVXVariantMapTree& params) = 0;
};

// The main frame module: the window that holds the tab frames. The tab frame utilities ask it
// whether the main frame exists, make it switch to a frame (handing the frame jump data), and
// ask whether its expanded region is hidden.
class UIFRAME_EXPORT IMainFrameModuleUtil
{
public:
    static const char* InterfaceName() { return "IMainFrameModuleUtil"; }

    virtual ~IMainFrameModuleUtil();
    virtual bool IsMainFrameExist() const = 0;
    virtual void SwitchTabFrame(EnVXTabFrameKey key, const CVXVariantMapTree& jumpData) = 0;
    virtual bool IsExpandedRegionHidden() const = 0;
};
