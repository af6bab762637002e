#pragma once

// CVXPanelLayoutCloudSync keeps the user's own layouts the same on every device of the user:
// each of the 50 configuration items of type 3000095 holds one serialised layout; a sync pass
// downloads them all, merges them with the manager's customised layouts by key and update time
// stamp, and sends the uploads and cloud deletions the merge decides. Built-in layouts never take
// part. Main thread only: requests go through core::config_cloud's default client and their
// results arrive as bus messages 10300-10304, bound for the object's whole life.
// Failures are only logged; a layout that cannot be uploaded stays local, a failed cloud deletion
// stays in the manager's delete set and is retried by the next pass.

#include "Platform/Core/ConfigCloud.h"
#include "UIFrame/Canvas/PanelLayoutTemplate.h"
#include "UIFrame/UIFrameExport.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>

#include <functional>
#include <string>
#include <vector>

class CVXPanelLayoutManager;

namespace core {
class CMessageBody;
}

// One download request: idle → requesting → succeeded / failed, with the transport's request id
// and the number of tries since the last success.
class UIFRAME_EXPORT CVXPanelLayoutCloudSyncRequest
{
public:
    enum RequestState
    {
        Idle = 0,
        Requesting = 1,
        Succeeded = 2,
        Failed = 3,
    };

    // Calls `send`, keeps its result as the request key, counts a try, and is requesting.
    void TryRequest(std::function<unsigned long()> send);
    void OnSucceeded(); // requesting → succeeded; the try count restarts at 0
    void OnFailed();    // requesting → failed

    RequestState State() const { return m_state; }
    unsigned long long RequestKey() const { return m_requestKey; }
    int TryTimes() const { return m_tryTimes; }

private:
    RequestState m_state = Idle;
    unsigned long long m_requestKey = 0;
    int m_tryTimes = 0;
};

class UIFRAME_EXPORT CVXPanelLayoutCloudSync : public QObject
{
    Q_OBJECT
public:
    static constexpr unsigned int kPanelLayoutConfigType = 3000095;

    // A child of the manager whose layouts it syncs (the manager creates it in CloudSync()).
    explicit CVXPanelLayoutCloudSync(CVXPanelLayoutManager* manager);
    ~CVXPanelLayoutCloudSync() override;

    static int MaximumLayoutCount(); // 50 items
    // (3000095, 1), (3000095, 2), … (3000095, 50).
    static std::vector<core::config_cloud::ConfigKey> GetAllConfigKeys();

    // A new pass: Clear() and DownloadAllFromCloud(). Asked for during a merge, the pass starts
    // when the merge has ended.
    void SyncPanelLayouts();
    // Sends the download of all items unless one is requesting already.
    void DownloadAllFromCloud();

    // Both refuse an item id outside 1..50 (logged). A deletion is an upload of empty bytes.
    void UploadPanelLayout(unsigned int itemId, const CVXPanelLayoutTemplate& layout);
    void DeletePanelLayout(unsigned int itemId, const CVXPanelLayoutTemplate& layout);

    // The cloud payload: the template's state tree in its byte-array form. Serialising an empty
    // template gives false; a payload that does not parse gives an empty template.
    static bool SerializeCustomPanelLayout(const CVXPanelLayoutTemplate& layout, std::string& payload);
    static CVXPanelLayoutTemplate DeserializeCustomPanelLayout(const std::string& payload);

    // The pass state, for tests and diagnostics.
    const CVXPanelLayoutCloudSyncRequest& DownloadRequest() const { return m_downloadRequest; }
    int PendingUploadCount() const { return m_uploadRequests.count(); }
    int PendingDeleteCount() const { return m_deleteRequests.count(); }

    // Empties the pass: cloud layouts, their item ids and the free item ids.
    void Clear();
    // Reads the 50 cached items into the pass. A non-empty item that does not parse is logged
    // and left alone: it is not free, and while one exists no local layout is deleted as
    // "deleted on another device" (it may be the one in that item).
    void FetchAllCloudPanelLayouts();
    // The merge of the fetched items with the manager's layouts; ends the pass.
    void UpdatePanelLayouts();

private:
    void OnUpdateConfig(unsigned int msgId, unsigned long long requestId, const core::CMessageBody& body);
    void OnDownloadConfigSuccess(unsigned int msgId, unsigned long long requestId,
                                 const core::CMessageBody& body);
    void OnDownloadConfigFailed(unsigned int msgId, unsigned long long requestId,
                                const core::CMessageBody& body);
    void OnUploadConfigSuccess(unsigned int msgId, unsigned long long requestId,
                               const core::CMessageBody& body);
    void OnUploadConfigFail(unsigned int msgId, unsigned long long requestId, const core::CMessageBody& body);

    void OnDownloaded();
    void MergeLocalLayouts();
    void MergeCloudOnlyLayouts();
    // Sends `payload` to the item and remembers the request in `pending`; false when refused.
    bool SendToItem(unsigned int itemId, const QByteArray& payload, unsigned long long layoutKey,
                    QHash<unsigned long long, unsigned long long>& pending);

    CVXPanelLayoutManager* m_manager = nullptr;
    CVXPanelLayoutCloudSyncRequest m_downloadRequest;

    // The pass.
    QMap<unsigned int, CVXPanelLayoutTemplate> m_cloudLayouts; // item id → cloud layout
    QMap<unsigned long long, unsigned int> m_layoutItemKey;    // layout key → item id
    QList<unsigned int> m_freeItemIds;                         // ascending
    // Items whose bytes do not parse: any of them may hold a layout that looks deleted.
    int m_unreadableItemCount = 0;

    // Requests in flight: request id → layout key.
    QHash<unsigned long long, unsigned long long> m_uploadRequests;
    QHash<unsigned long long, unsigned long long> m_deleteRequests;

    bool m_merging = false;
    bool m_syncAfterMerge = false;
};
