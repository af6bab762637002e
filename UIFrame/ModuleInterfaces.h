#pragma once

// Interfaces of other modules of the client that this library calls through the plug-in
// centre (core::IVXPluginCenter::CreateInterface<T>()). Absent implementations are skipped.

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
