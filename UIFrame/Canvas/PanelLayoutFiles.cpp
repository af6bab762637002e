#include "UIFrame/Canvas/PanelLayoutFiles.h"

#include "Platform/Core/Log.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace panel_layout_files {

namespace {

using core::ErrorCode::Code;

const QString kRecentFolderKey = QStringLiteral("RecentlyExportedFolder");

// Every layout file is written and read with the same stream version, whatever Qt runs.
constexpr QDataStream::Version kStreamVersion = QDataStream::Qt_5_15;

bool ReadCurrentFormat(const QByteArray& bytes, CVXPanelLayoutTemplate* out)
{
    QDataStream stream(bytes);
    stream.setVersion(kStreamVersion);
    CVXVariantMapTree tree;
    stream >> tree;
    if (stream.status() != QDataStream::Ok)
        return false;
    *out = CVXPanelLayoutTemplate(tree);
    return !out->isEmpty();
}

bool ReadOldFormat(const QByteArray& bytes, CVXPanelLayoutTemplate* out)
{
    QDataStream stream(bytes);
    stream.setVersion(kStreamVersion);
    CVXPanelLayoutData data;
    if (!data.ReadFrom(stream))
        return false;
    CVXPanelLayoutTemplate converted;
    data.convertToPanelLayoutTemplate(&converted);
    *out = converted;
    return !out->isEmpty();
}

} // namespace

ReadResult ReadLayoutFile(CVXPanelLayoutTemplate* target, const QString& path, const char* caller)
{
    if (!target || path.isEmpty())
        return ReadResult::Failed;
    QFile file(path);
    if (!file.exists())
        return ReadResult::Failed;
    if (!file.open(QIODevice::ReadOnly)) {
        VXLOG_WARN("CVXPanelLayoutManager::{}: cannot open the layout file {}: {}", caller, path,
                   file.errorString());
        return ReadResult::Failed;
    }
    // Layout files are small (a canvas record and a thumbnail); reading the whole file once lets
    // both formats start from the same bytes.
    const QByteArray bytes = file.readAll();
    file.close();

    CVXPanelLayoutTemplate read;
    if (ReadCurrentFormat(bytes, &read)) {
        *target = read;
        return ReadResult::CurrentFormat;
    }
    VXLOG_INFO("[自定义面板] {} - 尝试按照旧格式的模版文件来读取: file = {}", caller, path);
    if (ReadOldFormat(bytes, &read)) {
        *target = read;
        return ReadResult::OldFormat;
    }
    VXLOG_WARN(
        "CVXPanelLayoutManager::{}: not a layout file (neither format could be read), file = {}, size = {}",
        caller, path, bytes.size());
    return ReadResult::Failed;
}

bool WriteLayoutFile(const CVXPanelLayoutTemplate& layout, const QString& path)
{
    if (path.isEmpty())
        return false;
    if (layout.isEmpty()) {
        VXLOG_WARN("CVXPanelLayoutManager::SavePanelLayoutToFile: empty template refused, file = {}", path);
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        VXLOG_ERROR("CVXPanelLayoutManager::SavePanelLayoutToFile: cannot open {} for writing: {}", path,
                    file.errorString());
        return false;
    }
    QDataStream stream(&file);
    stream.setVersion(kStreamVersion);
    stream << static_cast<const CVXVariantMapTree&>(layout);
    if (stream.status() != QDataStream::Ok) {
        // Cancelling leaves the previous file in place; only the temporary file goes.
        file.cancelWriting();
        file.commit();
        VXLOG_ERROR("CVXPanelLayoutManager::SavePanelLayoutToFile: writing {} failed: {}", path,
                    file.errorString());
        return false;
    }
    if (!file.commit()) {
        VXLOG_ERROR("CVXPanelLayoutManager::SavePanelLayoutToFile: committing {} failed: {}", path,
                    file.errorString());
        return false;
    }
    return true;
}

core::ErrorOrValue<QList<QString>, ErrorValue> ListLayoutFiles(const QString& folder)
{
    QDir dir(folder);
    if (folder.isEmpty() || !dir.exists())
        return ErrorValue(Code::NotFound, QStringLiteral("用户文件夹不存在: ") + folder);
    QList<QString> paths;
    const QStringList names =
        dir.entryList(QStringList{QStringLiteral("*.vxl")}, QDir::Files | QDir::Readable, QDir::Name);
    for (const QString& name : names)
        paths.append(dir.filePath(name));
    return paths;
}

QString RecentFolderConfigName()
{
    return QStringLiteral("PanelLayoutExport.json");
}

core::ErrorOrValue<QString, ErrorValue> ReadRecentFolder(const QString& configPath)
{
    QFile file(configPath);
    if (configPath.isEmpty() || !file.exists())
        return ErrorValue(Code::NotFound, QStringLiteral("文件不存在：") + configPath);
    if (!file.open(QIODevice::ReadOnly))
        return ErrorValue(Code::IoError, QStringLiteral("文件无法打开：") + configPath);
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject() ||
        !document.object().value(kRecentFolderKey).isString())
        return ErrorValue(Code::ParseError, QStringLiteral("文件无法读取: ") + configPath);
    return document.object().value(kRecentFolderKey).toString();
}

core::ErrorOrValue<bool, ErrorValue> WriteRecentFolder(const QString& configPath, const QString& folder)
{
    if (folder.isEmpty() || !QDir(folder).exists())
        return ErrorValue(Code::InvalidArgument,
                          QStringLiteral("保存的为空文件夹，请确保文件夹存在: ") + folder);
    const QFileInfo info(configPath);
    if (configPath.isEmpty() || !info.absoluteDir().exists())
        return ErrorValue(Code::NotFound, QStringLiteral("保存的配置文件路径不存在: ") + configPath);
    QSaveFile file(configPath);
    if (!file.open(QIODevice::WriteOnly))
        return ErrorValue(Code::IoError, QStringLiteral("配置文件打开失败: ") + configPath);
    QJsonObject object;
    object.insert(kRecentFolderKey, folder);
    file.write(QJsonDocument(object).toJson(QJsonDocument::Compact));
    if (!file.commit())
        return ErrorValue(Code::IoError, QStringLiteral("配置文件打开失败: ") + configPath);
    return true;
}

} // namespace panel_layout_files
