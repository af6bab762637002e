#pragma once

// CVXObjBase: the identity of a restorable object inside a page: its type and key, the tab
// frame page it belongs to, the security it shows, and its account / option context.

#include "UIFrame/RestoreBase.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QList>
#include <QPointer>
#include <QString>

class CVXTabFrameBase;

// One level of navigation history (footprint): the name of the level and its own data.
struct UIFRAME_EXPORT FootPrintSubDir
{
    QString strName;
    CVXVariantMapTree data;
};

class UIFRAME_EXPORT CVXObjBase : public CVXRestoreBase
{
public:
    CVXObjBase();
    ~CVXObjBase() override;

    virtual void SetObjType(int type);
    virtual void SetObjKey(unsigned long long key);
    virtual void SetTabFramePageKey(unsigned long long key);
    virtual unsigned long long GetTabFramePageKey() const;
    virtual void SetStockID(const unsigned long long& stockID);
    // The own stock id when non-zero; else the tab frame's, except in the panel workspace
    // frame (20004), whose boxes each follow their own security; else 0.
    virtual unsigned long long GetStockID() const;
    virtual void SetObjProperty(const QString& cardType, const CVXVariantMapTree& property);
    virtual void SetAccountInfo(const CVXVariantMapTree& info);
    virtual CVXVariantMapTree GetAccountInfo();
    virtual void SetComboOptionInfo(const CVXVariantMapTree& info);
    virtual CVXVariantMapTree GetComboOptionInfo();
    virtual void SetOptionIndexInfo(const CVXVariantMapTree& info);
    virtual CVXVariantMapTree GetOptionIndexInfo();
    virtual void SetTabFrame(CVXTabFrameBase* frame);
    // While set, the object raises no sync-up events for context pushed into it.
    virtual bool IsBlockObjSyncUpEvent();
    virtual void BlockObjSyncUpEvent(bool block);
    virtual void SetFootPrint(QList<FootPrintSubDir> footPrint);

    int GetObjType() const { return m_nObjType; }
    unsigned long long GetObjKey() const { return m_u64ObjKey; }
    // The stock id stored on this object, without the tab frame fallback.
    unsigned long long GetOwnStockID() const { return m_u64StockID; }
    // The frame set with SetTabFrame; else, for a widget, the nearest CVXTabFrameBase above it.
    CVXTabFrameBase* GetTabFrame() const;

private:
    int m_nObjType = 0;
    unsigned long long m_u64ObjKey = 0;
    unsigned long long m_u64TabFramePageKey = 0;
    unsigned long long m_u64StockID = 0;
    QPointer<QObject> m_pTabFrame; // a CVXTabFrameBase; guarded, the frame may go first
    bool m_bBlockObjSyncUpEvent = false;
};
