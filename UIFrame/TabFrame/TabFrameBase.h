#pragma once

// CVXTabFrameBase: a main-frame tab frame (watch list, market, panel workspace, ...), made of
// pages. It is a restorable object, a UI event handler and a stop of the card-event walk. It
// holds its key, its current stock id (CVXObjBase's own id), an optional expanded region (a
// side widget it does not own unless it is its child) and its page, made by the page factory
// registered for its key or given directly.

#include "UIFrame/ObjBase.h"
#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/UIEvent.h"
#include "UIFrame/UIEventContainer.h"
#include "UIFrame/UIFrameExport.h"

#include <QPointer>
#include <QWidget>

class CVXTabFramePageBase;

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
    void SetExpandedRegion(QWidget* region);
    // Whether the frame's pages record navigation footprints.
    virtual bool CanRecordFootPrint() const;
    // Whether the frame is shown outside the main window (a detached frame). Default false.
    virtual bool IsOutSideMode() const;
    // The frame's own stock id only: a frame is the end of the stock id fallback chain.
    unsigned long long GetStockID() const override;

    // Creates the page through CVXTabFramePageFactory for the frame's key, calls its Init() and
    // shows it; false (logged) when no factory is registered or it made no page.
    bool CreatePageFromFactory();
    // Shows `page` as the frame's page (owned by the frame); an earlier page is deleted.
    void SetPage(CVXTabFramePageBase* page);
    CVXTabFramePageBase* GetPage() const;

    // The page's data under "page".
    using CVXRestoreBase::GetObjRestoreData;
    using CVXRestoreBase::SetObjRestoreData;
    void GetObjRestoreData(CVXVariantMapTree* data) const override;
    void SetObjRestoreData(const CVXVariantMapTree& data) override;
    void GetObjFootPrintData(CVXVariantMapTree* data) const override;
    void SetObjFootPrintData(const CVXVariantMapTree& data) override;

    EnVXUIEventContainerKind ContainerKind() const override;
    QWidget* CurrentPage() const override;
    QWidget* CurrentExpandedRegion() const override;

private:
    EnVXTabFrameKey m_enTabFrameKey = TabFrameKey_None;
    QPointer<QWidget> m_pExpandedRegion;
    QPointer<CVXTabFramePageBase> m_pPage;
};
