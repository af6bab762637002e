#pragma once

// CVXTabFrameBase: a main-frame tab frame (watch list, market, panel workspace, ...), made of
// pages. It is a restorable object, a UI event handler and a stop of the card-event walk; the
// page and expanded-region machinery is added by the frames that have them.

#include "UIFrame/ObjBase.h"
#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/UIEvent.h"
#include "UIFrame/UIEventContainer.h"
#include "UIFrame/UIFrameExport.h"

#include <QWidget>

class UIFRAME_EXPORT CVXTabFrameBase : public QWidget,
                                       public CVXObjBase,
                                       public VUIEventHandler,
                                       public IVXUIEventContainer
{
    Q_OBJECT
public:
    explicit CVXTabFrameBase(QWidget* parent = nullptr);
    ~CVXTabFrameBase() override;

    void SetTabFrameKey(EnVXTabFrameKey key) { m_enTabFrameKey = key; }
    EnVXTabFrameKey GetTabFrameKey() const { return m_enTabFrameKey; }

    // The frame's collapsible side region; null for frames without one.
    virtual QWidget* GetExpandedRegion() const;
    // Whether the frame's pages record navigation footprints.
    virtual bool CanRecordFootPrint() const;

    EnVXUIEventContainerKind ContainerKind() const override;
    QWidget* CurrentExpandedRegion() const override;

private:
    EnVXTabFrameKey m_enTabFrameKey = TabFrameKey_None;
};
