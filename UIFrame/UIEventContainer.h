#pragma once

// The role of a widget at which the upward walk of DispatchCardEvent stops (or, for an
// expanded region, which it remembers and passes). Boxes are recognised as CVXBoxObjBase; every
// other holder implements this interface next to QWidget.

#include "UIFrame/UIFrameExport.h"

class QWidget;
class IVUIEventTypeBase;

enum class EnVXUIEventContainerKind
{
    Canvas,              // the panel canvas (CVXPanelScrollView)
    TabFrame,            // a main-frame tab frame (CVXTabFrameBase)
    MainFrame,           // the main frame (CVXMainFrameBase)
    StackedTabFramePage, // a tab-frame page that hosts inner jump pages
    SplitterPage,        // a tab-frame page made of splitter boxes
    ExpandedRegion,      // the collapsible side region of a page: remembered, not a stop
};

class UIFRAME_EXPORT IVXUIEventContainer
{
public:
    virtual ~IVXUIEventContainer();

    virtual EnVXUIEventContainerKind ContainerKind() const = 0;

    // Tab frames: the page currently shown (null when none or when the frame has no pages).
    virtual QWidget* CurrentPage() const { return nullptr; }
    // Tab frames: asked after the frame's own part of the dispatch; true keeps the event away
    // from the current page.
    virtual bool IsEventConsumed(const IVUIEventTypeBase* event) const
    {
        (void)event;
        return false;
    }
    // Holders that show an expanded region: the region shown now, or null.
    virtual QWidget* CurrentExpandedRegion() const { return nullptr; }
    // Expanded regions: the content they show now, or null.
    virtual QWidget* CurrentRegionContent() const { return nullptr; }
};
