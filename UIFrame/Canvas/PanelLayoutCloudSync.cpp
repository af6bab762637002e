#include "UIFrame/Canvas/PanelLayoutCloudSync.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"

#include <QScopedValueRollback>

namespace {

constexpr int kItemCount = 50;

bool IsValidItemId(unsigned int itemId)
{
    return itemId >= 1 && itemId <= static_cast<unsigned int>(kItemCount);
}

// A cloud layout may only ever stand for a user layout: one without a key, or not marked as the
// user's, would take the place of a built-in layout.
bool IsUserLayout(const CVXPanelLayoutTemplate& layout)
{
    return layout.isCustomized() && layout.layoutKey() != 0;
}

} // namespace

void CVXPanelLayoutCloudSyncRequest::TryRequest(std::function<unsigned long()> send)
{
    m_requestKey = send ? send() : 0;
    ++m_tryTimes;
    m_state = Requesting;
}

void CVXPanelLayoutCloudSyncRequest::OnSucceeded()
{
    if (m_state != Requesting)
        return;
    m_state = Succeeded;
    m_tryTimes = 0;
}

void CVXPanelLayoutCloudSyncRequest::OnFailed()
{
    if (m_state == Requesting)
        m_state = Failed;
}

CVXPanelLayoutCloudSync::CVXPanelLayoutCloudSync(CVXPanelLayoutManager* manager)
    : QObject(manager), m_manager(manager)
{
    VX_ASSERT(m_manager);
    using namespace core::config_cloud;
    auto& bus = core::__CMessageDispatch::Instance();
    auto bind = [this, &bus](unsigned int msgId, auto handler) {
        bus.Bind(
            msgId,
            [this, handler](unsigned int id, unsigned long long param, const core::CMessageBody& body) {
                (this->*handler)(id, param, body);
            },
            this);
    };
    bind(kMsgConfigChanged, &CVXPanelLayoutCloudSync::OnUpdateConfig);
    bind(kMsgDownloadSucceeded, &CVXPanelLayoutCloudSync::OnDownloadConfigSuccess);
    bind(kMsgDownloadFailed, &CVXPanelLayoutCloudSync::OnDownloadConfigFailed);
    bind(kMsgUploadSucceeded, &CVXPanelLayoutCloudSync::OnUploadConfigSuccess);
    bind(kMsgUploadFailed, &CVXPanelLayoutCloudSync::OnUploadConfigFail);
}

CVXPanelLayoutCloudSync::~CVXPanelLayoutCloudSync()
{
    core::__CMessageDispatch::Instance().UnBindAll(this);
}

int CVXPanelLayoutCloudSync::MaximumLayoutCount()
{
    return kItemCount;
}

std::vector<core::config_cloud::ConfigKey> CVXPanelLayoutCloudSync::GetAllConfigKeys()
{
    std::vector<core::config_cloud::ConfigKey> keys;
    keys.reserve(kItemCount);
    for (unsigned int itemId = 1; itemId <= static_cast<unsigned int>(kItemCount); ++itemId)
        keys.push_back({kPanelLayoutConfigType, itemId});
    return keys;
}

void CVXPanelLayoutCloudSync::SyncPanelLayouts()
{
    if (m_merging) {
        // The merge itself changes the manager (a local deletion asks for a new pass); clearing
        // the pass under it would drop the cloud layouts it has not reached yet.
        m_syncAfterMerge = true;
        return;
    }
    Clear();
    DownloadAllFromCloud();
}

void CVXPanelLayoutCloudSync::DownloadAllFromCloud()
{
    if (m_downloadRequest.State() == CVXPanelLayoutCloudSyncRequest::Requesting)
        return;
    VXLOG_INFO("[自定义面板] {} - 请求下载自定义面板的模板数据", __func__);
    m_downloadRequest.TryRequest([] {
        return static_cast<unsigned long>(
            core::config_cloud::DownloadPartConfigFromServer(GetAllConfigKeys()));
    });
}

bool CVXPanelLayoutCloudSync::SerializeCustomPanelLayout(const CVXPanelLayoutTemplate& layout,
                                                         std::string& payload)
{
    if (layout.isEmpty()) {
        payload.clear();
        return false;
    }
    const QByteArray bytes = layout.SerializeAsQByteArray();
    payload.assign(bytes.constData(), static_cast<size_t>(bytes.size()));
    return true;
}

CVXPanelLayoutTemplate CVXPanelLayoutCloudSync::DeserializeCustomPanelLayout(const std::string& payload)
{
    CVXPanelLayoutTemplate layout;
    if (payload.empty())
        return layout;
    if (!layout.ParseFromQByteArray(QByteArray(payload.data(), static_cast<int>(payload.size()))))
        return CVXPanelLayoutTemplate();
    return layout;
}

void CVXPanelLayoutCloudSync::Clear()
{
    m_cloudLayouts.clear();
    m_layoutItemKey.clear();
    m_freeItemIds.clear();
    m_unreadableItemCount = 0;
}

void CVXPanelLayoutCloudSync::FetchAllCloudPanelLayouts()
{
    Clear();
    for (unsigned int itemId = 1; itemId <= static_cast<unsigned int>(kItemCount); ++itemId) {
        const QByteArray bytes = core::config_cloud::GetConfig(kPanelLayoutConfigType, itemId);
        if (bytes.isEmpty()) {
            m_freeItemIds.append(itemId);
            continue;
        }
        CVXPanelLayoutTemplate layout = DeserializeCustomPanelLayout(bytes.toStdString());
        if (layout.isEmpty()) {
            // Not free either: overwriting bytes we cannot read could destroy another device's
            // layout (a newer program's format, or a write that went wrong there).
            VXLOG_ERROR("[自定义面板] {} - 云端模板数据无法解析, 已跳过: itemId = {}, size = {}", __func__,
                        itemId, bytes.size());
            ++m_unreadableItemCount;
            continue;
        }
        layout.setIsUploaded(true);
        m_layoutItemKey.insert(layout.layoutKey(), itemId);
        m_cloudLayouts.insert(itemId, layout);
    }
}

void CVXPanelLayoutCloudSync::UpdatePanelLayouts()
{
    {
        const QScopedValueRollback<bool> merging(m_merging, true);
        MergeLocalLayouts();
        MergeCloudOnlyLayouts();
        VX_ASSERT(m_cloudLayouts.count() == m_layoutItemKey.count());
        Clear();
    }
    if (m_syncAfterMerge) {
        m_syncAfterMerge = false;
        SyncPanelLayouts();
    }
}

void CVXPanelLayoutCloudSync::MergeLocalLayouts()
{
    QList<unsigned long long> deletedElsewhere;
    // A copy: replacing a layout below changes the manager's list.
    const QList<CVXPanelLayoutTemplate> locals = m_manager->GetPanelLayoutDataList();
    for (const CVXPanelLayoutTemplate& local : locals) {
        if (!local.isCustomized() || local.layoutKey() == 0)
            continue;
        const unsigned int itemId = m_layoutItemKey.take(local.layoutKey());
        if (IsValidItemId(itemId)) {
            const CVXPanelLayoutTemplate cloud = m_cloudLayouts.take(itemId);
            if (cloud.isUploaded() && IsUserLayout(cloud) && cloud.updateTimestamp() != 0 &&
                cloud.layoutKey() == local.layoutKey() &&
                cloud.updateTimestamp() != local.updateTimestamp()) {
                if (local.updateTimestamp() >= cloud.updateTimestamp()) {
                    UploadPanelLayout(itemId, local);
                } else {
                    VXLOG_INFO("[自定义面板] {} - 从云端更新模板到本地: layoutKey = {}, name = {}", __func__,
                               cloud.layoutKey(), cloud.title());
                    m_manager->AddOrUpdatePanelLayoutData(cloud, CVXPanelLayoutManager::LocalData);
                }
            }
        } else if (local.isUploaded() && m_unreadableItemCount > 0) {
            VXLOG_WARN("[自定义面板] {} - 云端有无法解析的模板数据, 暂不删除本地模板: layoutKey = {}",
                       __func__, local.layoutKey());
        } else if (local.isUploaded()) {
            deletedElsewhere.append(local.layoutKey());
        } else if (!m_freeItemIds.isEmpty()) {
            UploadPanelLayout(m_freeItemIds.takeFirst(), local);
        } else {
            VXLOG_WARN(
                "[自定义面板] {} - 云端最多只能上传 {} 个模板数据, 模板上传失败: layoutKey = {}, name = {}",
                __func__, kItemCount, local.layoutKey(), local.title());
        }
    }
    for (unsigned long long key : deletedElsewhere) {
        VXLOG_INFO("[自定义面板] {} - 云端同步删除本地模板: layoutKey = {}", __func__, key);
        m_manager->RemovePanelLayoutData(key);
    }
}

void CVXPanelLayoutCloudSync::MergeCloudOnlyLayouts()
{
    for (auto it = m_cloudLayouts.cbegin(); it != m_cloudLayouts.cend(); ++it) {
        const CVXPanelLayoutTemplate& cloud = it.value();
        if (m_manager->GetDeleteLayoutKeySet().contains(cloud.layoutKey())) {
            DeletePanelLayout(it.key(), cloud);
            continue;
        }
        const CVXPanelLayoutTemplate held = m_manager->GetPanelLayoutData(cloud.layoutKey());
        if (!IsUserLayout(cloud) || (!held.isEmpty() && !held.isCustomized())) {
            VXLOG_WARN("[自定义面板] {} - 云端模板不是用户模板, 已跳过: itemId = {}, layoutKey = {}",
                       __func__, it.key(), cloud.layoutKey());
            continue;
        }
        VXLOG_INFO("[自定义面板] {} - 从云端同步模板到本地: layoutKey = {}, name = {}", __func__,
                   cloud.layoutKey(), cloud.title());
        m_manager->AddOrUpdatePanelLayoutData(cloud, CVXPanelLayoutManager::LocalData);
    }
}

bool CVXPanelLayoutCloudSync::SendToItem(unsigned int itemId, const QByteArray& payload,
                                         unsigned long long layoutKey,
                                         QHash<unsigned long long, unsigned long long>& pending)
{
    const unsigned long long requestId =
        core::config_cloud::UploadConfigToServer({kPanelLayoutConfigType, itemId}, payload);
    if (requestId == 0)
        return false;
    pending.insert(requestId, layoutKey);
    return true;
}

void CVXPanelLayoutCloudSync::UploadPanelLayout(unsigned int itemId, const CVXPanelLayoutTemplate& layout)
{
    if (!IsValidItemId(itemId)) {
        VXLOG_WARN(
            "[自定义面板] {} - 自定义模板数据上传失败，ItemId 错误：ItemId = {}, layoutKey = {}, name = {}, "
            "itemId = {}",
            __func__, itemId, layout.layoutKey(), layout.title(), itemId);
        return;
    }
    CVXPanelLayoutTemplate copy = layout;
    copy.setIsUploaded(true);
    std::string payload;
    const bool serialised = SerializeCustomPanelLayout(copy, payload);
    VXLOG_INFO("[自定义面板] {} - 开始上传自定义模板: layoutKey = {}, name = {}, itemId = {}", __func__,
               layout.layoutKey(), layout.title(), itemId);
    if (!serialised ||
        !SendToItem(itemId, QByteArray::fromStdString(payload), layout.layoutKey(), m_uploadRequests)) {
        VXLOG_WARN("[自定义面板] {} - 自定义模板数据上传失败：layoutKey = {}, name = {}, itemId = {}",
                   __func__, layout.layoutKey(), layout.title(), itemId);
    }
}

void CVXPanelLayoutCloudSync::DeletePanelLayout(unsigned int itemId, const CVXPanelLayoutTemplate& layout)
{
    if (!IsValidItemId(itemId)) {
        VXLOG_WARN("[自定义面板] {} - 删除云端自定义模板数据失败，ItemId 错误：ItemId = {}, layoutKey = {}, "
                   "name = {}, "
                   "itemId = {}",
                   __func__, itemId, layout.layoutKey(), layout.title(), itemId);
        return;
    }
    VXLOG_INFO("[自定义面板] {} - 开始删除云端自定义模板数据: layoutKey = {}, name = {}, itemId = {}",
               __func__, layout.layoutKey(), layout.title(), itemId);
    if (!SendToItem(itemId, QByteArray(), layout.layoutKey(), m_deleteRequests)) {
        VXLOG_WARN("[自定义面板] {} - 删除云端自定义模板数据失败：layoutKey = {}, name = {}, itemId = {}",
                   __func__, layout.layoutKey(), layout.title(), itemId);
    }
}

void CVXPanelLayoutCloudSync::OnDownloadConfigSuccess(unsigned int, unsigned long long,
                                                      const core::CMessageBody& body)
{
    // A result counts once: a late duplicate for a request already settled is no new pass.
    if (body.p1() != m_downloadRequest.RequestKey() ||
        m_downloadRequest.State() != CVXPanelLayoutCloudSyncRequest::Requesting)
        return;
    OnDownloaded();
}

void CVXPanelLayoutCloudSync::OnDownloadConfigFailed(unsigned int, unsigned long long,
                                                     const core::CMessageBody& body)
{
    if (body.p1() != m_downloadRequest.RequestKey() ||
        m_downloadRequest.State() != CVXPanelLayoutCloudSyncRequest::Requesting)
        return;
    // Result 0 is the service's "nothing went wrong" even on the failure message.
    if (body.p2() == 0) {
        OnDownloaded();
        return;
    }
    m_downloadRequest.OnFailed();
    VXLOG_WARN("[自定义面板] {} - 下载自定义面板的模板数据失败：error = {}", __func__, body.exparam());
}

void CVXPanelLayoutCloudSync::OnDownloaded()
{
    m_downloadRequest.OnSucceeded();
    VXLOG_INFO("[自定义面板] {} - 云模板数据下载成功", __func__);
    FetchAllCloudPanelLayouts();
    UpdatePanelLayouts();
}

void CVXPanelLayoutCloudSync::OnUploadConfigSuccess(unsigned int, unsigned long long,
                                                    const core::CMessageBody& body)
{
    const unsigned long long requestId = body.p1();
    if (m_deleteRequests.contains(requestId)) {
        const unsigned long long key = m_deleteRequests.take(requestId);
        VXLOG_INFO("[自定义面板] {} - 删除云端自定义模板成功: layoutKey = {}", __func__, key);
        m_manager->RemoveDeleteLayoutKey(key);
        return;
    }
    if (!m_uploadRequests.contains(requestId))
        return;
    const unsigned long long key = m_uploadRequests.take(requestId);
    VXLOG_INFO("[自定义面板] {} - 上传自定义模板到云端成功: layoutKey = {}", __func__, key);
    CVXPanelLayoutTemplate local = m_manager->GetPanelLayoutData(key);
    if (!local.isEmpty() && !local.isUploaded()) {
        local.setIsUploaded(true);
        m_manager->AddOrUpdatePanelLayoutData(local, CVXPanelLayoutManager::LocalData);
        VXLOG_INFO("[自定义面板] {} - 上传自定义模板到云端成功并更新 isUploaded 标记: layoutKey = {}",
                   __func__, key);
    }
}

void CVXPanelLayoutCloudSync::OnUploadConfigFail(unsigned int, unsigned long long,
                                                 const core::CMessageBody& body)
{
    const unsigned long long requestId = body.p1();
    if (m_deleteRequests.contains(requestId)) {
        // The key stays in the delete set: the next pass tries again.
        VXLOG_WARN("[自定义面板] {} - 删除云端自定义模板失败: layoutKey = {}", __func__,
                   m_deleteRequests.take(requestId));
        return;
    }
    if (m_uploadRequests.contains(requestId))
        VXLOG_WARN("[自定义面板] {} - 上传自定义模板到云端失败: layoutKey = {}", __func__,
                   m_uploadRequests.take(requestId));
}

void CVXPanelLayoutCloudSync::OnUpdateConfig(unsigned int, unsigned long long, const core::CMessageBody& body)
{
    if (body.p1() != kPanelLayoutConfigType)
        return;
    const unsigned int itemId = static_cast<unsigned int>(body.p2());
    const QByteArray bytes = core::config_cloud::GetConfig(kPanelLayoutConfigType, itemId);
    // An emptied item is another device's deletion: the next pass sees it.
    if (bytes.isEmpty())
        return;
    CVXPanelLayoutTemplate cloud = DeserializeCustomPanelLayout(bytes.toStdString());
    if (cloud.isEmpty()) {
        VXLOG_ERROR("[自定义面板] {} - 云端模板数据无法解析, 已跳过: itemId = {}, size = {}", __func__,
                    itemId, bytes.size());
        return;
    }
    cloud.setIsUploaded(true);
    if (m_manager->GetDeleteLayoutKeySet().contains(cloud.layoutKey()))
        return;
    const CVXPanelLayoutTemplate held = m_manager->GetPanelLayoutData(cloud.layoutKey());
    if (!IsUserLayout(cloud) || (!held.isEmpty() && !held.isCustomized())) {
        VXLOG_WARN("[自定义面板] {} - 云端模板不是用户模板, 已跳过: itemId = {}, layoutKey = {}", __func__,
                   itemId, cloud.layoutKey());
        return;
    }
    if (held.isEmpty()) {
        m_manager->AddOrUpdatePanelLayoutData(cloud, CVXPanelLayoutManager::LocalData);
        VXLOG_INFO("[自定义面板] {} - 云端模板数据同步到本地: layoutKey = {}, name = {}", __func__,
                   cloud.layoutKey(), cloud.title());
    } else if (held.updateTimestamp() != cloud.updateTimestamp()) {
        m_manager->AddOrUpdatePanelLayoutData(cloud, CVXPanelLayoutManager::LocalData);
        VXLOG_INFO("[自定义面板] {} - 云端模板数据更新，同步到本地: layoutKey = {}, name = {}", __func__,
                   cloud.layoutKey(), cloud.title());
    }
}
