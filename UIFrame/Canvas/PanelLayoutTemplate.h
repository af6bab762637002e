#pragma once

// CVXPanelLayoutTemplate: one saved panel layout (a canvas record with its name, remarks,
// preview and bookkeeping) as a state tree under fixed keys. An empty tree is no template.
// CVXPanelLayoutData: the plain record of the older layout file format, kept only to read old
// files and convert them.

#include "Platform/Core/VariantMapTree.h"
#include "UIFrame/UIFrameExport.h"

#include <QPixmap>
#include <QString>

class QDataStream;

class UIFRAME_EXPORT CVXPanelLayoutTemplate : public CVXVariantMapTree
{
public:
    static const QString kLayoutKey;       // "PanelLayoutKey"
    static const QString kTitle;           // "PanelLayoutTitle"
    static const QString kRemarks;         // "PanelLayoutRemarks"
    static const QString kRestoreData;     // "PanelLayoutData"
    static const QString kPreviewPixmap;   // "PanelLayoutPixmap"
    static const QString kUpdateTimestamp; // "PanelLayoutUpdateTimestamp"
    static const QString kIsCustomized;    // "PanelLayoutIsCustomized"
    static const QString kIsUploaded;      // "PanelLayoutIsUploaded"

    CVXPanelLayoutTemplate() = default;
    CVXPanelLayoutTemplate(const CVXVariantMapTree& tree) : CVXVariantMapTree(tree) {}
    CVXPanelLayoutTemplate(const CVXPanelLayoutTemplate&) = default;
    CVXPanelLayoutTemplate& operator=(const CVXPanelLayoutTemplate&) = default;

    // No entry at all: treated as no template everywhere.
    bool isEmpty() const { return IsEmpty(); }

    // Getters of absent keys return 0, empty or false.
    unsigned long long layoutKey() const;
    void setLayoutKey(unsigned long long key);
    QString title() const;
    void setTitle(const QString& title);
    QString remarks() const;
    void setRemarks(const QString& remarks);
    CVXVariantMapTree restoreData() const;
    void setRestoreData(const CVXVariantMapTree& data);
    QPixmap previewPixmap() const;
    void setPreviewPixmap(const QPixmap& pixmap);
    unsigned long long updateTimestamp() const;
    void setUpdateTimestamp(unsigned long long timestamp);
    bool isCustomized() const;
    void setIsCustomized(bool customized);
    bool isUploaded() const;
    void setIsUploaded(bool uploaded);
};

Q_DECLARE_METATYPE(CVXPanelLayoutTemplate)

// The old file format: these eight fields in this order, each in the data stream's own encoding.
// Older files end after bIsCustomized; bIsUploaded is then false.
class UIFRAME_EXPORT CVXPanelLayoutData
{
public:
    unsigned long long u64LayoutKey = 0;
    QString strTitle;
    QString strRemarks;
    CVXVariantMapTree restoreData;
    QPixmap previewPixmap;
    unsigned long long u64UpdateTimestamp = 0;
    bool bIsCustomized = false;
    bool bIsUploaded = false;

    // Reads the eight fields; false when the stream reports an error before is-customised was
    // read (a missing trailing is-uploaded flag is not an error). The stream's status is left as
    // it was after the last field that was present.
    bool ReadFrom(QDataStream& stream);
    // Writes the eight fields (tests and tools that make old-format files).
    void WriteTo(QDataStream& stream, bool withUploadedFlag = true) const;

    // Writes all eight fields into the template under its keys.
    void convertToPanelLayoutTemplate(CVXPanelLayoutTemplate* target) const;
};

UIFRAME_EXPORT QDataStream& operator>>(QDataStream& stream, CVXPanelLayoutData& data);
UIFRAME_EXPORT QDataStream& operator<<(QDataStream& stream, const CVXPanelLayoutData& data);
