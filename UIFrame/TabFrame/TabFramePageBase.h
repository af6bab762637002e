#pragma once

// CVXTabFramePageBase: a page inside a tab frame. It is a restorable object and listens to the
// context events of its cards (security, account, option index), each forwarded to a virtual
// handler that derived pages override. Whether the frame's expanded region is hidden for this
// page is answered from the page's own flag, the frame key's hiding set, the region itself, or
// the main frame.

#include "UIFrame/ObjBase.h"
#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/UIEvent.h"
#include "UIFrame/UIFrameExport.h"

#include <QWidget>

class CardEventStockIDChanged;
class CardEventAccountInfoChanged;
class CardEventOptionIndexChanged;

// Frames whose pages never show the expanded region: 20005, 20009, 20010, 20017, 20019 and
// 20101-20104.
UIFRAME_EXPORT bool IsHideExpandedRegion(EnVXTabFrameKey key);

class UIFRAME_EXPORT CVXTabFramePageBase : public QWidget, public CVXObjBase, public VUIEventHandler
{
    Q_OBJECT
public:
    explicit CVXTabFramePageBase(QWidget* parent = nullptr);
    ~CVXTabFramePageBase() override;

    // Builds the page's content; called once by whoever creates the page. Default: nothing.
    virtual void Init();

    // The page asks for the expanded region to be hidden while it is shown.
    void SetHideExpandedRegion(bool hide);
    bool GetHideExpandedRegionFlag() const { return m_bHideExpandedRegion; }
    // True when the page's own flag is set or its frame's key is in the hiding set; else,
    // inside a frame with an expanded region, whether that region is hidden; else, without a
    // frame, what the main frame says about its region; false without a main frame.
    bool IsHideExpandedRegion() const;
    // The frame's answer (CVXTabFrameBase::IsOutSideMode); false without a frame.
    bool IsOutSideMode() const;

protected:
    // The context pushed by a card of the page. Defaults do nothing.
    virtual void OnCardEventStockIDChanged(unsigned long long stockID);
    virtual void OnCardEventAccountInfoChanged(const CVXVariantMapTree& accountInfo);
    virtual void OnCardEventOptionIndexChanged(const CVXVariantMapTree& optionIndexInfo);

private:
    void HandleStockIDChanged(const CardEventStockIDChanged* event);
    void HandleAccountInfoChanged(const CardEventAccountInfoChanged* event);
    void HandleOptionIndexChanged(const CardEventOptionIndexChanged* event);

    bool m_bHideExpandedRegion = false;
};
