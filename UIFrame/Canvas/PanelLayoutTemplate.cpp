#include "UIFrame/Canvas/PanelLayoutTemplate.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include <QDataStream>

const QString CVXPanelLayoutTemplate::kLayoutKey = QStringLiteral("PanelLayoutKey");
const QString CVXPanelLayoutTemplate::kTitle = QStringLiteral("PanelLayoutTitle");
const QString CVXPanelLayoutTemplate::kRemarks = QStringLiteral("PanelLayoutRemarks");
const QString CVXPanelLayoutTemplate::kRestoreData = QStringLiteral("PanelLayoutData");
const QString CVXPanelLayoutTemplate::kPreviewPixmap = QStringLiteral("PanelLayoutPixmap");
const QString CVXPanelLayoutTemplate::kUpdateTimestamp = QStringLiteral("PanelLayoutUpdateTimestamp");
const QString CVXPanelLayoutTemplate::kIsCustomized = QStringLiteral("PanelLayoutIsCustomized");
const QString CVXPanelLayoutTemplate::kIsUploaded = QStringLiteral("PanelLayoutIsUploaded");

unsigned long long CVXPanelLayoutTemplate::layoutKey() const
{
    return Get<qulonglong>(kLayoutKey, 0);
}

void CVXPanelLayoutTemplate::setLayoutKey(unsigned long long key)
{
    Set<qulonglong>(kLayoutKey, key);
}

QString CVXPanelLayoutTemplate::title() const
{
    return Get<QString>(kTitle);
}

void CVXPanelLayoutTemplate::setTitle(const QString& title)
{
    Set<QString>(kTitle, title);
}

QString CVXPanelLayoutTemplate::remarks() const
{
    return Get<QString>(kRemarks);
}

void CVXPanelLayoutTemplate::setRemarks(const QString& remarks)
{
    Set<QString>(kRemarks, remarks);
}

CVXVariantMapTree CVXPanelLayoutTemplate::restoreData() const
{
    return Get<CVXVariantMapTree>(kRestoreData);
}

void CVXPanelLayoutTemplate::setRestoreData(const CVXVariantMapTree& data)
{
    Set<CVXVariantMapTree>(kRestoreData, data);
}

QPixmap CVXPanelLayoutTemplate::previewPixmap() const
{
    return Get<QPixmap>(kPreviewPixmap);
}

void CVXPanelLayoutTemplate::setPreviewPixmap(const QPixmap& pixmap)
{
    Set<QPixmap>(kPreviewPixmap, pixmap);
}

unsigned long long CVXPanelLayoutTemplate::updateTimestamp() const
{
    return Get<qulonglong>(kUpdateTimestamp, 0);
}

void CVXPanelLayoutTemplate::setUpdateTimestamp(unsigned long long timestamp)
{
    Set<qulonglong>(kUpdateTimestamp, timestamp);
}

bool CVXPanelLayoutTemplate::isCustomized() const
{
    return Get<bool>(kIsCustomized, false);
}

void CVXPanelLayoutTemplate::setIsCustomized(bool customized)
{
    Set<bool>(kIsCustomized, customized);
}

bool CVXPanelLayoutTemplate::isUploaded() const
{
    return Get<bool>(kIsUploaded, false);
}

void CVXPanelLayoutTemplate::setIsUploaded(bool uploaded)
{
    Set<bool>(kIsUploaded, uploaded);
}

bool CVXPanelLayoutData::ReadFrom(QDataStream& stream)
{
    CVXPanelLayoutData read;
    quint64 key = 0;
    quint64 timestamp = 0;
    stream >> key >> read.strTitle >> read.strRemarks >> read.restoreData >> read.previewPixmap >>
        timestamp >> read.bIsCustomized;
    if (stream.status() != QDataStream::Ok)
        return false;
    // Older files end after is-customised: reaching the end here is not an error.
    if (!stream.atEnd()) {
        bool uploaded = false;
        stream >> uploaded;
        if (stream.status() != QDataStream::Ok)
            return false;
        read.bIsUploaded = uploaded;
    }
    read.u64LayoutKey = key;
    read.u64UpdateTimestamp = timestamp;
    *this = read;
    return true;
}

void CVXPanelLayoutData::WriteTo(QDataStream& stream, bool withUploadedFlag) const
{
    stream << quint64(u64LayoutKey) << strTitle << strRemarks << restoreData << previewPixmap
           << quint64(u64UpdateTimestamp) << bIsCustomized;
    if (withUploadedFlag)
        stream << bIsUploaded;
}

void CVXPanelLayoutData::convertToPanelLayoutTemplate(CVXPanelLayoutTemplate* target) const
{
    if (!target)
        return;
    target->setLayoutKey(u64LayoutKey);
    target->setTitle(strTitle);
    target->setRemarks(strRemarks);
    target->setRestoreData(restoreData);
    target->setPreviewPixmap(previewPixmap);
    target->setUpdateTimestamp(u64UpdateTimestamp);
    target->setIsCustomized(bIsCustomized);
    target->setIsUploaded(bIsUploaded);
}

QDataStream& operator>>(QDataStream& stream, CVXPanelLayoutData& data)
{
    data.ReadFrom(stream);
    return stream;
}

QDataStream& operator<<(QDataStream& stream, const CVXPanelLayoutData& data)
{
    data.WriteTo(stream, true);
    return stream;
}
