#pragma once

// CVXPanelLayoutManager: the process-wide owner of all panel layouts (built-in ones shipped with
// the application and the user's own). Loads them off the main thread, keeps them in memory in
// load order, stores user layouts as one "<key>.vxl" file each in the user folder, exports and
// imports single layout files and announces every change through its signals. The layout list
// changes only on the main thread; file work runs in the shared thread pool and its completions
// are dropped once the manager is gone.

#include "Platform/Core/Concurrency.h"
#include "UIFrame/Canvas/PanelLayoutTemplate.h"
#include "UIFrame/UIFrameExport.h"

#include <QFlags>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>

class CVXPanelLayoutCloudSync;
class CVXTabWidgetRestore;

class UIFRAME_EXPORT CVXPanelLayoutManager : public QObject
{
    Q_OBJECT
public:
    enum UpdateOption
    {
        ObjectData = 0, // memory only
        LocalData = 1,  // also write the user-folder file
        CloudData = 2,  // also start cloud sync
        AllData = 3,
    };
    Q_DECLARE_FLAGS(UpdateOptions, UpdateOption)

    struct DefaultLayoutEntry
    {
        QString strLayoutFilePath;
        QString strPreviewImagePath;
        int nNameLangID = -1;
        int nRemarksLangID = -1;
    };

    using ErrorValue = core::ErrorCode::CommonErrorValue;
    using DefaultLayoutList = QList<QPair<DefaultLayoutEntry, CVXPanelLayoutTemplate>>;

    // The file-name choice of export and import. Tests replace it; the default shows Qt's
    // non-native file dialogs. Returns the chosen path or an empty string (cancelled).
    enum class FileDialogKind
    {
        Save,
        Open,
    };
    using FileDialogProvider = std::function<QString(QWidget* parent, FileDialogKind kind,
                                                     const QString& caption, const QString& proposedPath)>;
    static void SetFileDialogProviderForTest(FileDialogProvider provider);

    static CVXPanelLayoutManager& Instance();
    // Destroys the instance (its cloud sync, pending completions) and restarts the default-key
    // counter at 0; the next Instance() is a fresh manager.
    static void ResetForTest();

    // Layout keys: user layouts get the server time in milliseconds; built-in layouts 0, 1, 2, …
    static unsigned long long GenerateLayoutKey();
    static unsigned long long GenerateDefaultLayoutKey();

    static QString GetPanelLayoutExtension(); // ".vxl"
    static int MaximumLayoutCount();          // 50, the cloud's limit

    // Start-up after login: user id, clear, asynchronous loads, recently exported folder.
    void InitData();

    unsigned long long GetUserID() const;
    // A different id is stored and empties the delete set.
    void SetUserID(unsigned long userId);

    // Queries.
    QList<CVXPanelLayoutTemplate> GetPanelLayoutDataList() const;
    const QList<CVXPanelLayoutTemplate>& GetPanelLayoutDataListRef() const;
    CVXPanelLayoutTemplate GetPanelLayoutData(unsigned long long key) const; // empty when absent
    CVXPanelLayoutTemplate GetPanelLayoutData(const QString& title) const;   // user layouts only
    bool HasPanelLayoutData(unsigned long long key) const;
    bool HasPanelLayoutData(const QString& title) const;                           // all layouts
    const DefaultLayoutEntry* GetDefaultLayoutEntry(unsigned long long key) const; // null: no built-in
    int GetCustomPanelLayoutCount() const;
    bool SearchTemplateOfShortcutId(const QString& shortcutId, long long& key) const;

    // Changes. Signals fire once per change, after the list changed.
    void AddOrUpdatePanelLayoutData(const CVXPanelLayoutTemplate& layout, UpdateOptions options);
    void RemovePanelLayoutData(unsigned long long key);
    void ClearAllPanelLayouts();

    // Keys of user layouts deleted locally and not yet deleted in the cloud.
    const QSet<unsigned long long>& GetDeleteLayoutKeySet() const;
    // The cloud sync calls this once the deletion reached the cloud.
    void RemoveDeleteLayoutKey(unsigned long long key);

    // Created on first use as a child of the manager.
    CVXPanelLayoutCloudSync* CloudSync();

    // Files (any thread).
    static bool LoadPanelLayoutFromFile(CVXPanelLayoutTemplate* target, const QString& path,
                                        bool rewriteOldFormat);
    // Atomic: a failed write leaves the previous file as it was.
    static bool SavePanelLayoutToFile(const CVXPanelLayoutTemplate& layout, const QString& path);
    core::ErrorOrValue<bool, ErrorValue>
    SavePanelLayoutToUserFolder(const CVXPanelLayoutTemplate& layout) const;
    QString GetUserFolder() const;
    QString GetPanelLayoutFilePath(unsigned long long key) const;
    core::ErrorOrValue<bool, ErrorValue>
    GetAllCustomizedPanelLayoutFileNames(QList<QString>* fileNames) const;
    core::ErrorOrValue<QList<DefaultLayoutEntry>, ErrorValue> LoadAllDefaultPanelLayoutEntries() const;
    core::ErrorOrValue<QList<CVXPanelLayoutTemplate>, ErrorValue> LoadCustomizedPanelLayouts() const;
    static DefaultLayoutList UpdateLayoutsFromLayoutEntries(const QList<DefaultLayoutEntry>& entries);

    // Asynchronous forms: the synchronous work in the thread pool, the result applied (or logged)
    // on the main thread while the manager lives. `done`, when given, runs after that.
    void AsyncLoadAllDefaultPanelLayoutEntriesAndLayouts(std::function<void()> done = {});
    void AsyncLoadCustomizedPanelLayouts(std::function<void()> done = {});
    void AsyncSavePanelLayoutToUserFolder(const CVXPanelLayoutTemplate& layout,
                                          std::function<void(bool)> done = {});
    void AsyncReadRecentlyExportedLayoutFolder(std::function<void()> done = {});
    void AsyncWriteRecentlyExportedLayoutFolder(const QString& folder, std::function<void(bool)> done = {});

    // Export and import of single layout files; the page at `index` is a CVXPanelScrollView.
    // The file work runs in the thread pool: false when nothing was started (no page, no file
    // chosen); the outcome arrives as PanelLayoutExported / PanelLayoutImported.
    bool ExportPanelLayout(CVXTabWidgetRestore* tabWidget, int index);
    bool ExportDefaultPanelLayout(CVXTabWidgetRestore* tabWidget, int index);
    bool ImportPanelLayout(CVXTabWidgetRestore* tabWidget, int index);

    // The folder last used for export (start folder of import), kept in the user folder.
    QString GetRecentlyExportedPanelLayoutFolder() const;
    void SetRecentlyExportedPanelLayoutFolder(const QString& folder, bool write);
    core::ErrorOrValue<QString, ErrorValue> ReadRecentlyExportedLayoutFolder() const;
    core::ErrorOrValue<bool, ErrorValue> WriteRecentlyExportedLayoutFolder(const QString& folder) const;
    QString GetRecentlyExportedConfigFilePath() const;

    // File work started by this manager whose completion has not run yet (saves, deletions,
    // exports, imports, loads).
    int PendingFileWorkCount() const;

Q_SIGNALS:
    void LayoutDataAdded(unsigned long long key);
    void LayoutDataUpdated(unsigned long long key);
    void LayoutDataRemoved(unsigned long long key);
    // Export finished: the layout file (and previews) written to `path`, or not.
    void PanelLayoutExported(const QString& path, bool ok);
    // Import finished: the layout opened as a new page at `index`, or the file was refused.
    void PanelLayoutImported(int index, bool ok);

private:
    CVXPanelLayoutManager();
    ~CVXPanelLayoutManager() override;

    bool ExportPanelLayoutImpl(CVXTabWidgetRestore* tabWidget, int index, bool asDefault);
    void ApplyDefaultLayouts(const DefaultLayoutList& layouts);
    void StartCloudSync();
    // Writes (or, for an empty template, deletes) the layout's user-folder file on the pool; a
    // later request for the same key supersedes an earlier one still waiting.
    void ScheduleUserFileWork(unsigned long long key, const CVXPanelLayoutTemplate& layout,
                              std::function<void(core::ErrorOrValue<bool, ErrorValue>)> done);

    struct Impl;
    std::unique_ptr<Impl> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(CVXPanelLayoutManager::UpdateOptions)
