#include "apps/Workspace/App/WorkspacePreferences.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/ProductPath.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace vx_ws {

QString CVXWorkspacePreferences::DataRoot()
{
    // product_path only names user folders; their grandparent is the data root.
    return QDir::cleanPath(core::product_path::GetUserFolder(0) + QStringLiteral("/../.."));
}

QString CVXWorkspacePreferences::FilePath()
{
    return QDir(DataRoot()).filePath(QStringLiteral("workspace-preferences.json"));
}

QString CVXWorkspacePreferences::DefaultStorePath()
{
    return QDir(DataRoot()).filePath(QStringLiteral("cloud-store.sqlite"));
}

CVXWorkspacePreferences CVXWorkspacePreferences::Load(const QString& path)
{
    CVXWorkspacePreferences prefs;
    QFile file(path);
    if (!file.exists())
        return prefs;
    if (!file.open(QIODevice::ReadOnly) || file.size() > 64 * 1024) {
        VXLOG_WARN("CVXWorkspacePreferences::Load: cannot read {}", path);
        return prefs;
    }
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll());
    if (!doc.isObject()) {
        VXLOG_WARN("CVXWorkspacePreferences::Load: {} is not a JSON object; defaults used", path);
        return prefs;
    }
    const QJsonObject o = doc.object();
    bool ok = false;
    const unsigned long long user = o.value(QStringLiteral("lastUser")).toString().toULongLong(&ok);
    if (ok)
        prefs.lastUserId = user;
    const QString theme = o.value(QStringLiteral("theme")).toString();
    if (theme == QLatin1String("light") || theme == QLatin1String("dark"))
        prefs.theme = theme;
    const QString language = o.value(QStringLiteral("language")).toString();
    if (language == QLatin1String("zh_CN") || language == QLatin1String("en"))
        prefs.language = language;
    return prefs;
}

bool CVXWorkspacePreferences::Save(const QString& path) const
{
    QJsonObject o;
    o.insert(QStringLiteral("lastUser"), QString::number(lastUserId));
    o.insert(QStringLiteral("theme"), theme);
    o.insert(QStringLiteral("language"), language);
    QSaveFile file(path);
    const QByteArray bytes = QJsonDocument(o).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        VXLOG_WARN("CVXWorkspacePreferences::Save: cannot write {}: {}", path, file.errorString());
        return false;
    }
    return true;
}

} // namespace vx_ws
