#include "UIFrame/RestoreBase.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include <optional>

const QString& CVXRestoreBase::ProtoDataKey()
{
    static const QString key = QStringLiteral("CVXObjBaseProtoData");
    return key;
}

QByteArray CVXRestoreBase::GetObjRestoreData() const
{
    return {};
}

void CVXRestoreBase::SetObjRestoreData(const QByteArray& data)
{
    (void)data;
}

void CVXRestoreBase::GetObjRestoreData(CVXVariantMapTree* data) const
{
    if (!data)
        return;
    const QByteArray bytes = GetObjRestoreData();
    if (!bytes.isEmpty())
        data->Set<QByteArray>(ProtoDataKey(), bytes);
}

void CVXRestoreBase::SetObjRestoreData(const CVXVariantMapTree& data)
{
    std::optional<QByteArray> bytes;
    data.GetImp<QByteArray>(ProtoDataKey(), &bytes);
    if (bytes)
        SetObjRestoreData(*bytes);
}

void CVXRestoreBase::GetObjFootPrintData(CVXVariantMapTree* data) const
{
    (void)data;
}

void CVXRestoreBase::SetObjFootPrintData(const CVXVariantMapTree& data)
{
    (void)data;
}

CVXRestoreBase::~CVXRestoreBase() = default;
