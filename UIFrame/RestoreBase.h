#pragma once

// The save/restore contract of every object of the frame. An object either writes its own keys
// into a state tree (the tree forms), or hands over one opaque blob (the byte-array forms),
// which the default tree forms keep under "CVXObjBaseProtoData".
//
// A class that overrides only one form of an overloaded pair adds
// `using CVXRestoreBase::GetObjRestoreData;` (or SetObjRestoreData) to keep the other visible.

#include "UIFrame/UIFrameExport.h"

#include <QByteArray>
#include <QString>

class CVXVariantMapTree;

class UIFRAME_EXPORT CVXRestoreBase
{
public:
    // The key of the byte-array form inside a tree.
    static const QString& ProtoDataKey();

    virtual QByteArray GetObjRestoreData() const;
    virtual void SetObjRestoreData(const QByteArray& data);
    // Default: a non-empty byte-array form is stored under ProtoDataKey(); nothing else.
    virtual void GetObjRestoreData(CVXVariantMapTree* data) const;
    // Default: the QByteArray under ProtoDataKey(), when present, goes to the byte-array form.
    virtual void SetObjRestoreData(const CVXVariantMapTree& data);
    // Navigation history; defaults do nothing.
    virtual void GetObjFootPrintData(CVXVariantMapTree* data) const;
    virtual void SetObjFootPrintData(const CVXVariantMapTree& data);

    virtual ~CVXRestoreBase();
};
