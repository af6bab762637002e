#include "UIFrame/Canvas/PanelLayoutCatalogue.h"

#include "Platform/Core/Log.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace panel_layout_catalogue {

using core::ErrorCode::Code;

QString CatalogueFileName(bool bankEdition, int firstMainBrokerId)
{
    if (bankEdition)
        return QStringLiteral("DefaultPanelLayoutEleBank.json");
    if (firstMainBrokerId == kJapanBrokerId)
        return QStringLiteral("DefaultPanelLayoutJP.json");
    return QStringLiteral("DefaultPanelLayout.json");
}

QString TemplatesFolder(const QString& appFolder)
{
    return appFolder + QStringLiteral("/LayoutTemplates/");
}

core::ErrorOrValue<QList<Entry>, ErrorValue> ReadCatalogue(const QString& templatesFolder,
                                                           const QString& catalogueFileName)
{
    const QDir folder(templatesFolder);
    if (templatesFolder.isEmpty() || !folder.exists())
        return ErrorValue(Code::NotFound, QStringLiteral("程序数据文件夹不存在: ") + templatesFolder);
    const QString cataloguePath = folder.filePath(catalogueFileName);
    QFile file(cataloguePath);
    if (!file.exists())
        return ErrorValue(Code::NotFound, QStringLiteral("系统模板配置文件不存在：") + cataloguePath);
    if (!file.open(QIODevice::ReadOnly))
        return ErrorValue(Code::IoError, QStringLiteral("系统模板文件打开失败：") + cataloguePath);
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return ErrorValue(Code::ParseError,
                          QStringLiteral("系统模板文件解析失败：") + parseError.errorString());
    if (!document.isArray())
        return ErrorValue(Code::ParseError, QStringLiteral("系统模板文件解析失败：") +
                                                QStringLiteral("not an array: ") + cataloguePath);

    QList<Entry> entries;
    const QJsonArray array = document.array();
    for (const QJsonValue& value : array) {
        const QJsonObject object = value.toObject();
        Entry entry;
        entry.strLayoutFilePath = folder.filePath(object.value(QStringLiteral("File")).toString());
        entry.strPreviewImagePath = folder.filePath(object.value(QStringLiteral("Image")).toString());
        entry.nNameLangID = object.value(QStringLiteral("NameLangID")).toInt(-1);
        entry.nRemarksLangID = object.value(QStringLiteral("RemarksLangID")).toInt(-1);
        if (entry.nNameLangID == -1)
            continue;
        if (entry.nRemarksLangID == -1)
            VXLOG_INFO("加载的系统面板{}没有标注", entry.strLayoutFilePath);
        entries.append(entry);
    }
    return entries;
}

} // namespace panel_layout_catalogue
