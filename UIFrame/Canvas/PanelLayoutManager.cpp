#include "UIFrame/Canvas/PanelLayoutManager.h"

#include "UIFrame/Canvas/PanelLayoutCatalogue.h"
#include "UIFrame/Canvas/PanelLayoutCloudSync.h"
#include "UIFrame/Canvas/PanelLayoutFiles.h"
#include "UIFrame/Canvas/PanelLayoutManager_p.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Environment.h"
#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/LoginState.h"
#include "Platform/Core/Post.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/Core/TimeDate.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMutexLocker>

#include <atomic>

namespace {

using core::ErrorCode::Code;
using ErrorValue = core::ErrorCode::CommonErrorValue;

CVXPanelLayoutManager* s_instance = nullptr;
std::atomic<unsigned long long> s_defaultKeyCounter{0};

const QString kShortcutIdKey = QStringLiteral("ShortcutId");

QList<CVXPanelLayoutTemplate> LoadCustomizedFrom(const QString& folder, QString* error)
{
    QList<CVXPanelLayoutTemplate> layouts;
    auto files = panel_layout_files::ListLayoutFiles(folder);
    if (files.HasError()) {
        *error = files.Error().message;
        return layouts;
    }
    for (const QString& path : files.Value()) {
        CVXPanelLayoutTemplate layout;
        if (!CVXPanelLayoutManager::LoadPanelLayoutFromFile(&layout, path, true))
            continue;
        if (layout.isCustomized())
            layouts.append(layout);
    }
    return layouts;
}

// Runs on a worker: writes (or deletes, for an empty template) the user file of `key` unless a
// newer request for the same key was made meanwhile.
core::ErrorOrValue<bool, ErrorValue>
WriteUserFileIfNewest(const std::shared_ptr<VXPanelLayoutFileTickets>& tickets, quint64 ticket,
                      unsigned long long key, const CVXPanelLayoutTemplate& layout, const QString& folder,
                      const QString& path)
{
    QMutexLocker lock(&tickets->mutex);
    if (tickets->newest.value(key) != ticket)
        return true;
    if (layout.isEmpty()) {
        if (QFile::exists(path) && !QFile::remove(path))
            return ErrorValue(Code::IoError, QStringLiteral("删除自定义模板文件失败: ") + path);
        return true;
    }
    if (folder.isEmpty() || !QDir(folder).exists())
        return ErrorValue(Code::NotFound, QStringLiteral("用户文件夹不存在: ") + folder);
    if (!CVXPanelLayoutManager::SavePanelLayoutToFile(layout, path))
        return ErrorValue(Code::IoError, QStringLiteral("保存模板文件失败: ") + path);
    return true;
}

} // namespace

CVXPanelLayoutManager::CVXPanelLayoutManager() : d(std::make_unique<Impl>()) {}

CVXPanelLayoutManager::~CVXPanelLayoutManager() = default;

CVXPanelLayoutManager& CVXPanelLayoutManager::Instance()
{
    if (!s_instance)
        s_instance = new CVXPanelLayoutManager();
    return *s_instance;
}

void CVXPanelLayoutManager::ResetForTest()
{
    delete s_instance;
    s_instance = nullptr;
    s_defaultKeyCounter.store(0);
    SetFileDialogProviderForTest(nullptr);
}

unsigned long long CVXPanelLayoutManager::GenerateLayoutKey()
{
    return static_cast<unsigned long long>(core::time_date::GetServerTimeMs());
}

unsigned long long CVXPanelLayoutManager::GenerateDefaultLayoutKey()
{
    return s_defaultKeyCounter.fetch_add(1);
}

QString CVXPanelLayoutManager::GetPanelLayoutExtension()
{
    return QStringLiteral(".vxl");
}

int CVXPanelLayoutManager::MaximumLayoutCount()
{
    return 50;
}

void CVXPanelLayoutManager::InitData()
{
    QElapsedTimer timer;
    timer.start();
    SetUserID(static_cast<unsigned long>(core::CLoginState::Instance().GetUserID()));
    ClearAllPanelLayouts();
    AsyncLoadAllDefaultPanelLayoutEntriesAndLayouts();
    AsyncLoadCustomizedPanelLayouts();
    const auto recent = ReadRecentlyExportedLayoutFolder();
    // A user who never exported has no such file yet: that is worth a line, not a warning.
    if (recent.HasError() && recent.Error().code == core::ErrorCode::Code::NotFound)
        VXLOG_INFO("读取最近的模板导出路径失败: {}", recent.Error().message);
    else if (recent.HasError())
        VXLOG_WARN("读取最近的模板导出路径失败: {}", recent.Error().message);
    else
        SetRecentlyExportedPanelLayoutFolder(recent.Value(), false);
    VXLOG_INFO("[StartupCost] Panel Layout Manager Init Data, Cost Time =  {} ms", timer.elapsed());
}

unsigned long long CVXPanelLayoutManager::GetUserID() const
{
    return d->userId;
}

void CVXPanelLayoutManager::SetUserID(unsigned long userId)
{
    if (d->userId == userId)
        return;
    d->userId = userId;
    d->deleteSet.clear();
}

QList<CVXPanelLayoutTemplate> CVXPanelLayoutManager::GetPanelLayoutDataList() const
{
    return d->layouts;
}

const QList<CVXPanelLayoutTemplate>& CVXPanelLayoutManager::GetPanelLayoutDataListRef() const
{
    return d->layouts;
}

CVXPanelLayoutTemplate CVXPanelLayoutManager::GetPanelLayoutData(unsigned long long key) const
{
    const int index = d->IndexOf(key);
    return index < 0 ? CVXPanelLayoutTemplate() : d->layouts.at(index);
}

CVXPanelLayoutTemplate CVXPanelLayoutManager::GetPanelLayoutData(const QString& title) const
{
    for (const CVXPanelLayoutTemplate& layout : d->layouts)
        if (layout.isCustomized() && layout.title() == title)
            return layout;
    return CVXPanelLayoutTemplate();
}

bool CVXPanelLayoutManager::HasPanelLayoutData(unsigned long long key) const
{
    return d->IndexOf(key) >= 0;
}

bool CVXPanelLayoutManager::HasPanelLayoutData(const QString& title) const
{
    for (const CVXPanelLayoutTemplate& layout : d->layouts)
        if (layout.title() == title)
            return true;
    return false;
}

const CVXPanelLayoutManager::DefaultLayoutEntry*
CVXPanelLayoutManager::GetDefaultLayoutEntry(unsigned long long key) const
{
    const auto it = d->defaultEntries.constFind(key);
    return it == d->defaultEntries.constEnd() ? nullptr : &it.value();
}

int CVXPanelLayoutManager::GetCustomPanelLayoutCount() const
{
    int count = 0;
    for (const CVXPanelLayoutTemplate& layout : d->layouts)
        count += layout.isCustomized() ? 1 : 0;
    return count;
}

bool CVXPanelLayoutManager::SearchTemplateOfShortcutId(const QString& shortcutId, long long& key) const
{
    for (const CVXPanelLayoutTemplate& layout : d->layouts) {
        const QString restoreShortcutId = layout.restoreData().Get<QString>(kShortcutIdKey);
        VXLOG_INFO("[CVXPanelLayoutManager] Search template, restoreShortcutId = {}, shortcutId = {}",
                   restoreShortcutId, shortcutId);
        if (!shortcutId.isEmpty() && restoreShortcutId == shortcutId) {
            key = static_cast<long long>(layout.layoutKey());
            return true;
        }
    }
    return false;
}

void CVXPanelLayoutManager::AddOrUpdatePanelLayoutData(const CVXPanelLayoutTemplate& layout,
                                                       UpdateOptions options)
{
    if (layout.isEmpty()) {
        VXLOG_WARN("[自定义面板] {} = 保存或更新无效数据", __func__);
        return;
    }
    const unsigned long long key = layout.layoutKey();
    const int index = d->IndexOf(key);
    if (index >= 0) {
        d->layouts[index] = layout;
        Q_EMIT LayoutDataUpdated(key);
    } else {
        d->layouts.append(layout);
        d->keys.append(key);
        Q_EMIT LayoutDataAdded(key);
    }
    if (options.testFlag(LocalData))
        AsyncSavePanelLayoutToUserFolder(layout);
    if (options.testFlag(CloudData))
        StartCloudSync();
}

void CVXPanelLayoutManager::RemovePanelLayoutData(unsigned long long key)
{
    const int index = d->IndexOf(key);
    if (index < 0 || d->defaultEntries.contains(key) || !d->layouts.at(index).isCustomized())
        return;
    d->layouts.removeAt(index);
    d->keys.removeAt(index);

    ScheduleUserFileWork(key, CVXPanelLayoutTemplate(), [](core::ErrorOrValue<bool, ErrorValue> result) {
        if (result.HasError())
            VXLOG_ERROR("CVXPanelLayoutManager::RemovePanelLayoutData: {}", result.Error().message);
    });

    d->deleteSet.insert(key);
    Q_EMIT LayoutDataRemoved(key);
    StartCloudSync();
}

void CVXPanelLayoutManager::ClearAllPanelLayouts()
{
    ++d->loadGeneration;
    const QList<CVXPanelLayoutTemplate> held = d->layouts;
    for (const CVXPanelLayoutTemplate& layout : held)
        Q_EMIT LayoutDataRemoved(layout.layoutKey());
    d->layouts.clear();
    d->keys.clear();
    d->defaultEntries.clear();
    d->builtInCount = 0;
}

const QSet<unsigned long long>& CVXPanelLayoutManager::GetDeleteLayoutKeySet() const
{
    return d->deleteSet;
}

void CVXPanelLayoutManager::RemoveDeleteLayoutKey(unsigned long long key)
{
    d->deleteSet.remove(key);
}

CVXPanelLayoutCloudSync* CVXPanelLayoutManager::CloudSync()
{
    if (!d->cloudSync)
        d->cloudSync = new CVXPanelLayoutCloudSync(this);
    return d->cloudSync;
}

void CVXPanelLayoutManager::StartCloudSync()
{
    CloudSync()->SyncPanelLayouts();
}

bool CVXPanelLayoutManager::LoadPanelLayoutFromFile(CVXPanelLayoutTemplate* target, const QString& path,
                                                    bool rewriteOldFormat)
{
    if (!target || path.isEmpty() || !QFile::exists(path))
        return false;
    const auto result = panel_layout_files::ReadLayoutFile(target, path, __func__);
    if (result == panel_layout_files::ReadResult::Failed)
        return false;
    if (result == panel_layout_files::ReadResult::OldFormat && rewriteOldFormat) {
        VXLOG_INFO("[自定义面板] {} - 将旧格式的模板文件保存为新格式: file = {}", __func__, path);
        SavePanelLayoutToFile(*target, path);
    }
    return true;
}

bool CVXPanelLayoutManager::SavePanelLayoutToFile(const CVXPanelLayoutTemplate& layout, const QString& path)
{
    return panel_layout_files::WriteLayoutFile(layout, path);
}

QString CVXPanelLayoutManager::GetUserFolder() const
{
    return d->userId != 0 ? core::product_path::GetUserFolder(d->userId)
                          : core::product_path::GetCurrentUserFolder();
}

QString CVXPanelLayoutManager::GetPanelLayoutFilePath(unsigned long long key) const
{
    return QDir(GetUserFolder()).filePath(QString::number(key) + GetPanelLayoutExtension());
}

core::ErrorOrValue<bool, ErrorValue>
CVXPanelLayoutManager::SavePanelLayoutToUserFolder(const CVXPanelLayoutTemplate& layout) const
{
    const QString folder = GetUserFolder();
    if (folder.isEmpty() || !QDir(folder).exists())
        return ErrorValue(Code::NotFound, QStringLiteral("用户文件夹不存在: ") + folder);
    const QString path = GetPanelLayoutFilePath(layout.layoutKey());
    if (!SavePanelLayoutToFile(layout, path))
        return ErrorValue(Code::IoError, QStringLiteral("保存模板文件失败: ") + path);
    return true;
}

core::ErrorOrValue<bool, ErrorValue>
CVXPanelLayoutManager::GetAllCustomizedPanelLayoutFileNames(QList<QString>* fileNames) const
{
    auto files = panel_layout_files::ListLayoutFiles(GetUserFolder());
    if (files.HasError())
        return files.Error();
    if (fileNames)
        *fileNames = files.Value();
    return true;
}

core::ErrorOrValue<QList<CVXPanelLayoutManager::DefaultLayoutEntry>, ErrorValue>
CVXPanelLayoutManager::LoadAllDefaultPanelLayoutEntries() const
{
    const QString catalogue = panel_layout_catalogue::CatalogueFileName(
        core::environment::IsBankEdition(), core::environment::GetFirstMainBrokerId());
    return panel_layout_catalogue::ReadCatalogue(
        panel_layout_catalogue::TemplatesFolder(core::product_path::GetAppFolder()), catalogue);
}

core::ErrorOrValue<QList<CVXPanelLayoutTemplate>, ErrorValue>
CVXPanelLayoutManager::LoadCustomizedPanelLayouts() const
{
    QString error;
    QList<CVXPanelLayoutTemplate> layouts = LoadCustomizedFrom(GetUserFolder(), &error);
    if (!error.isEmpty())
        return ErrorValue(Code::NotFound, error);
    return layouts;
}

CVXPanelLayoutManager::DefaultLayoutList
CVXPanelLayoutManager::UpdateLayoutsFromLayoutEntries(const QList<DefaultLayoutEntry>& entries)
{
    DefaultLayoutList loaded;
    for (const DefaultLayoutEntry& entry : entries) {
        CVXPanelLayoutTemplate layout;
        if (!LoadPanelLayoutFromFile(&layout, entry.strLayoutFilePath, true)) {
            VXLOG_WARN("CVXPanelLayoutManager::UpdateLayoutsFromLayoutEntries: built-in layout not loaded, "
                       "file = {}",
                       entry.strLayoutFilePath);
            continue;
        }
        if (!layout.isCustomized()) {
            layout.setLayoutKey(GenerateDefaultLayoutKey());
            CVXVariantMapTree restore = layout.restoreData();
            restore.Remove(kShortcutIdKey);
            restore.Set<QString>(kShortcutIdKey,
                                 QStringLiteral("Default_Panel_ShortcutId_%1").arg(entry.nNameLangID));
            layout.setRestoreData(restore);
            layout.setTitle(core::langx::tr(entry.nNameLangID, layout.title()));
        }
        loaded.append(qMakePair(entry, layout));
    }
    return loaded;
}

void CVXPanelLayoutManager::ApplyDefaultLayouts(const DefaultLayoutList& layouts)
{
    for (const auto& pair : layouts) {
        const unsigned long long key = pair.second.layoutKey();
        d->defaultEntries.insert(key, pair.first);
        const int index = d->IndexOf(key);
        if (index >= 0) {
            d->layouts[index] = pair.second;
            Q_EMIT LayoutDataUpdated(key);
            continue;
        }
        // Built-in layouts stay in front of the user's, whichever load finished first.
        d->layouts.insert(d->builtInCount, pair.second);
        d->keys.insert(d->builtInCount, key);
        ++d->builtInCount;
        Q_EMIT LayoutDataAdded(key);
    }
}

void CVXPanelLayoutManager::AsyncLoadAllDefaultPanelLayoutEntriesAndLayouts(std::function<void()> done)
{
    const QString folder = panel_layout_catalogue::TemplatesFolder(core::product_path::GetAppFolder());
    const QString catalogue = panel_layout_catalogue::CatalogueFileName(
        core::environment::IsBankEdition(), core::environment::GetFirstMainBrokerId());
    const quint64 generation = d->loadGeneration;
    ++d->pendingFileWork;
    core::concurrency::ComputeInThreadPool<DefaultLayoutList>(
        QPointer<QObject>(this),
        [folder, catalogue]() -> core::ErrorOrValue<DefaultLayoutList, ErrorValue> {
            auto entries = panel_layout_catalogue::ReadCatalogue(folder, catalogue);
            if (entries.HasError())
                return entries.Error();
            return UpdateLayoutsFromLayoutEntries(entries.Value());
        },
        [this, generation, done](core::ErrorOrValue<DefaultLayoutList, ErrorValue> result) {
            --d->pendingFileWork;
            if (result.HasError())
                VXLOG_ERROR("读取系统模板失败: {}", result.Error().message);
            else if (generation == d->loadGeneration)
                ApplyDefaultLayouts(result.Value());
            if (done)
                done();
        });
}

void CVXPanelLayoutManager::AsyncLoadCustomizedPanelLayouts(std::function<void()> done)
{
    const QString folder = GetUserFolder();
    const quint64 generation = d->loadGeneration;
    ++d->pendingFileWork;
    core::concurrency::ComputeInThreadPool<QList<CVXPanelLayoutTemplate>>(
        QPointer<QObject>(this),
        [folder]() -> core::ErrorOrValue<QList<CVXPanelLayoutTemplate>, ErrorValue> {
            QString error;
            QList<CVXPanelLayoutTemplate> layouts = LoadCustomizedFrom(folder, &error);
            if (!error.isEmpty())
                return ErrorValue(Code::NotFound, error);
            return layouts;
        },
        [this, generation, done](core::ErrorOrValue<QList<CVXPanelLayoutTemplate>, ErrorValue> result) {
            --d->pendingFileWork;
            if (result.HasError()) {
                VXLOG_ERROR("加载自定义面板数据失败: {}", result.Error().message);
            } else if (generation == d->loadGeneration) {
                for (const CVXPanelLayoutTemplate& layout : result.Value())
                    AddOrUpdatePanelLayoutData(layout, ObjectData);
                StartCloudSync();
            }
            if (done)
                done();
        });
}

void CVXPanelLayoutManager::AsyncSavePanelLayoutToUserFolder(const CVXPanelLayoutTemplate& layout,
                                                             std::function<void(bool)> done)
{
    if (layout.isEmpty()) {
        // An empty template would delete the file: refused here, reported like a failed save.
        const ErrorValue error(Code::InvalidArgument, QStringLiteral("empty template: ") +
                                                          GetPanelLayoutFilePath(layout.layoutKey()));
        core::post::ToMain(this, [error, done] {
            VXLOG_ERROR("保存自定义模板到用户文件夹失败: {}", error.message);
            if (done)
                done(false);
        });
        return;
    }
    ScheduleUserFileWork(layout.layoutKey(), layout, [done](core::ErrorOrValue<bool, ErrorValue> result) {
        if (result.HasError())
            VXLOG_ERROR("保存自定义模板到用户文件夹失败: {}", result.Error().message);
        if (done)
            done(result.HasValue());
    });
}

void CVXPanelLayoutManager::ScheduleUserFileWork(
    unsigned long long key, const CVXPanelLayoutTemplate& layout,
    std::function<void(core::ErrorOrValue<bool, ErrorValue>)> done)
{
    const quint64 ticket = d->tickets->Issue(key);
    const auto tickets = d->tickets;
    const QString folder = GetUserFolder();
    const QString path = GetPanelLayoutFilePath(key);
    ++d->pendingFileWork;
    core::concurrency::ComputeInThreadPool<bool>(
        QPointer<QObject>(this),
        [tickets, ticket, key, layout, folder, path] {
            return WriteUserFileIfNewest(tickets, ticket, key, layout, folder, path);
        },
        [this, done = std::move(done)](core::ErrorOrValue<bool, ErrorValue> result) {
            --d->pendingFileWork;
            done(std::move(result));
        });
}

int CVXPanelLayoutManager::PendingFileWorkCount() const
{
    return d->pendingFileWork;
}

QString CVXPanelLayoutManager::GetRecentlyExportedPanelLayoutFolder() const
{
    return d->recentFolder;
}

void CVXPanelLayoutManager::SetRecentlyExportedPanelLayoutFolder(const QString& folder, bool write)
{
    d->recentFolder = folder;
    if (write)
        AsyncWriteRecentlyExportedLayoutFolder(folder);
}

QString CVXPanelLayoutManager::GetRecentlyExportedConfigFilePath() const
{
    return QDir(GetUserFolder()).filePath(panel_layout_files::RecentFolderConfigName());
}

core::ErrorOrValue<QString, ErrorValue> CVXPanelLayoutManager::ReadRecentlyExportedLayoutFolder() const
{
    return panel_layout_files::ReadRecentFolder(GetRecentlyExportedConfigFilePath());
}

core::ErrorOrValue<bool, ErrorValue>
CVXPanelLayoutManager::WriteRecentlyExportedLayoutFolder(const QString& folder) const
{
    return panel_layout_files::WriteRecentFolder(GetRecentlyExportedConfigFilePath(), folder);
}

void CVXPanelLayoutManager::AsyncReadRecentlyExportedLayoutFolder(std::function<void()> done)
{
    const QString configPath = GetRecentlyExportedConfigFilePath();
    ++d->pendingFileWork;
    core::concurrency::ComputeInThreadPool<QString>(
        QPointer<QObject>(this), [configPath] { return panel_layout_files::ReadRecentFolder(configPath); },
        [this, done](core::ErrorOrValue<QString, ErrorValue> result) {
            --d->pendingFileWork;
            if (result.HasError())
                VXLOG_WARN("读取最近的模板导出路径失败: {}", result.Error().message);
            else
                SetRecentlyExportedPanelLayoutFolder(result.Value(), false);
            if (done)
                done();
        });
}

void CVXPanelLayoutManager::AsyncWriteRecentlyExportedLayoutFolder(const QString& folder,
                                                                   std::function<void(bool)> done)
{
    const QString configPath = GetRecentlyExportedConfigFilePath();
    ++d->pendingFileWork;
    core::concurrency::ComputeInThreadPool<bool>(
        QPointer<QObject>(this),
        [configPath, folder] { return panel_layout_files::WriteRecentFolder(configPath, folder); },
        [this, done](core::ErrorOrValue<bool, ErrorValue> result) {
            --d->pendingFileWork;
            if (result.HasError())
                VXLOG_ERROR("写入最近导出模板位置失败: {}", result.Error().message);
            if (done)
                done(result.HasValue());
        });
}
