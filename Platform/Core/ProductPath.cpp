#include "Platform/Core/ProductPath.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/LoginState.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>

#include <mutex>

#ifndef VX_SOURCE_RESOURCES_DIR
#error "VX_SOURCE_RESOURCES_DIR must name the source tree's resources folder"
#endif

namespace core::product_path {
namespace {

struct Overrides
{
    std::mutex mutex;
    QString root;
    QString appFolder;
};

Overrides& O()
{
    static Overrides o;
    return o;
}

QString DataRoot()
{
    QString root;
    {
        std::lock_guard<std::mutex> lock(O().mutex);
        root = O().root;
    }
    if (!root.isEmpty())
        return root + QStringLiteral("/data");
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

QString UserFolderNamed(const QString& name)
{
    const QString folder = DataRoot() + QStringLiteral("/users/") + name;
    // Asked on every report and file operation: touch the file system only the first time (and
    // again when the folder has gone).
    static std::mutex s_mutex;
    static QSet<QString> s_made;
    std::lock_guard<std::mutex> lock(s_mutex);
    if (s_made.contains(folder) && QFileInfo::exists(folder))
        return folder;
    if (!QDir().mkpath(folder))
        VXLOG_ERROR("product_path::GetUserFolder: cannot create {}", folder);
    else
        s_made.insert(folder);
    return folder;
}

} // namespace

QString GetAppFolder()
{
    {
        std::lock_guard<std::mutex> lock(O().mutex);
        if (!O().appFolder.isEmpty())
            return O().appFolder;
        if (!O().root.isEmpty())
            return O().root + QStringLiteral("/app");
    }
    if (QCoreApplication::instance())
        return QCoreApplication::applicationDirPath();
    return QDir::currentPath();
}

QString GetResourceFolder()
{
    const QString installed = GetAppFolder() + QStringLiteral("/resources");
    if (QFileInfo(installed).isDir())
        return installed;
    return QStringLiteral(VX_SOURCE_RESOURCES_DIR);
}

QString GetUserFolder(unsigned long long userId)
{
    if (userId == 0)
        return UserFolderNamed(QStringLiteral("guest"));
    return UserFolderNamed(QString::number(userId));
}

QString GetCurrentUserFolder()
{
    return GetUserFolder(CLoginState::Instance().GetUserID());
}

void SetRootOverride(const QString& root)
{
    std::lock_guard<std::mutex> lock(O().mutex);
    O().root = root;
}

void SetAppFolderOverride(const QString& folder)
{
    std::lock_guard<std::mutex> lock(O().mutex);
    O().appFolder = folder;
}

void ResetForTest()
{
    std::lock_guard<std::mutex> lock(O().mutex);
    O().root.clear();
    O().appFolder.clear();
}

} // namespace core::product_path
