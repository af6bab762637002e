#include "Platform/Core/ConfigCloud.h"

#include "Platform/Core/ConfigCloudStore.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/Post.h"
#include "Platform/Core/message_body.pb.h"

#include <QHash>
#include <QPair>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <QUuid>

#include <atomic>
#include <functional>
#include <utility>

namespace core::config_cloud {
namespace {

constexpr int kDefaultPollIntervalMs = 500;

using CacheKey = QPair<unsigned int, unsigned int>;

std::atomic<unsigned long long> g_lastRequestId{0};

unsigned long long NextRequestId()
{
    return ++g_lastRequestId;
}

QPointer<CConfigCloudClient>& DefaultClientRef()
{
    static QPointer<CConfigCloudClient> client;
    return client;
}

// Results and announcements go out on the main thread, where the caller's handlers live.
void SendResult(unsigned int msgId, unsigned long long requestId, const ErrorCode::CommonErrorValue* error)
{
    CMessageBody body;
    body.set_p1(requestId);
    if (error) {
        // Never 0: a failure with result 0 reads as a success to some receivers.
        const int code = static_cast<int>(error->code);
        body.set_p2(code != 0 ? static_cast<unsigned long long>(code) : 1ULL);
        body.set_exparam(error->message.toStdString());
    }
    __CMessageDispatch::Instance().Send(msgId, requestId, body, true);
}

void PostFailure(unsigned int msgId, unsigned long long requestId, ErrorCode::CommonErrorValue error)
{
    post::ToMain([msgId, requestId, error = std::move(error)] { SendResult(msgId, requestId, &error); });
}

} // namespace

// The worker lives on the client's own thread and owns the store connection there; every
// request is one task on that thread's queue, so a client's requests run in order.
class StoreWorker : public QObject
{
public:
    StoreWorker(const QString& path, const QString& writerId) : store(path, writerId) {}

    CConfigCloudStore store;
    // Worker-thread state: whose changes are followed and the last sequence seen for them.
    unsigned long long followedUser = 0;
    long long lastSequence = -1;
    // A store that keeps failing is logged once, not at every poll.
    bool pollFailing = false;
};

struct CConfigCloudClient::Impl
{
    QString path;
    QString writerId;
    unsigned long long userId = 0;
    QHash<CacheKey, QByteArray> cache;
    QThread thread;
    StoreWorker* worker = nullptr;
    QTimer pollTimer;
    int pollsInFlight = 0;

    void RunOnWorker(std::function<void()> task)
    {
        QMetaObject::invokeMethod(worker, std::move(task), Qt::QueuedConnection);
    }
};

CConfigCloudClient::CConfigCloudClient(const QString& databasePath, QObject* parent)
    : QObject(parent), d(std::make_unique<Impl>())
{
    d->path = databasePath;
    d->writerId = QUuid::createUuid().toString(QUuid::WithoutBraces);
    d->worker = new StoreWorker(databasePath, d->writerId);
    d->worker->moveToThread(&d->thread);
    d->thread.setObjectName(QStringLiteral("ConfigCloudClient"));
    d->thread.start();

    d->pollTimer.setInterval(kDefaultPollIntervalMs);
    connect(&d->pollTimer, &QTimer::timeout, this, [this] {
        // A slow store (another process holding the lock) must not pile up polls.
        if (d->pollsInFlight == 0)
            PollChangesNow();
    });
}

CConfigCloudClient::~CConfigCloudClient()
{
    if (DefaultClientRef() == this)
        DefaultClientRef() = nullptr;
    d->pollTimer.stop();
    // Queued after every pending request: those still run (and post their results) before the
    // thread ends and the connection closes.
    StoreWorker* worker = d->worker;
    QThread* thread = &d->thread;
    QMetaObject::invokeMethod(
        worker,
        [worker, thread] {
            worker->moveToThread(nullptr);
            thread->quit();
        },
        Qt::QueuedConnection);
    d->thread.wait();
    delete worker;
}

QString CConfigCloudClient::DatabasePath() const
{
    return d->path;
}

void CConfigCloudClient::SetUserID(unsigned long long userId)
{
    if (userId == d->userId)
        return;
    d->userId = userId;
    d->cache.clear();
    StoreWorker* worker = d->worker;
    d->RunOnWorker([worker, userId] {
        worker->followedUser = userId;
        worker->lastSequence = -1;
        if (userId == 0)
            return;
        // Changes are those written after this point; what was there before is fetched by
        // downloads.
        auto latest = worker->store.LatestSequence();
        if (latest)
            worker->lastSequence = latest.Value();
        else
            VXLOG_ERROR("CConfigCloudClient::SetUserID: {}", latest.Error().message);
    });
    if (userId != 0 && d->pollTimer.interval() > 0)
        d->pollTimer.start();
    else
        d->pollTimer.stop();
}

unsigned long long CConfigCloudClient::UserID() const
{
    return d->userId;
}

unsigned long long CConfigCloudClient::DownloadPartConfigFromServer(const std::vector<ConfigKey>& keys)
{
    const unsigned long long requestId = NextRequestId();
    const unsigned long long userId = d->userId;
    if (userId == 0) {
        VXLOG_WARN("CConfigCloudClient::DownloadPartConfigFromServer: no user, request {} fails", requestId);
        PostFailure(
            kMsgDownloadFailed, requestId,
            {ErrorCode::Code::InvalidArgument, QStringLiteral("no user is set on the configuration client")});
        return requestId;
    }
    StoreWorker* worker = d->worker;
    QPointer<CConfigCloudClient> guard(this);
    d->RunOnWorker([worker, guard, requestId, userId, keys] {
        auto read = worker->store.Read(userId, keys);
        if (!read) {
            VXLOG_ERROR("CConfigCloudClient::DownloadPartConfigFromServer: request {}: {}", requestId,
                        read.Error().message);
            PostFailure(kMsgDownloadFailed, requestId, read.Error());
            return;
        }
        auto items = std::make_shared<std::vector<StoredItem>>(std::move(read).Value());
        post::ToMain([guard, requestId, userId, items] {
            // The cache belongs to the user who asked; a result for a previous user only reports.
            if (guard && guard->d->userId == userId) {
                for (const StoredItem& item : *items)
                    guard->d->cache.insert(CacheKey(item.key.id, item.key.subItem), item.bytes);
            }
            SendResult(kMsgDownloadSucceeded, requestId, nullptr);
        });
    });
    return requestId;
}

QByteArray CConfigCloudClient::GetConfig(unsigned int id, unsigned int subItem) const
{
    return d->cache.value(CacheKey(id, subItem));
}

unsigned long long CConfigCloudClient::UploadConfigToServer(const ConfigKey& item, const QByteArray& bytes)
{
    const unsigned long long requestId = NextRequestId();
    const unsigned long long userId = d->userId;
    if (userId == 0) {
        VXLOG_WARN("CConfigCloudClient::UploadConfigToServer: no user, request {} fails", requestId);
        PostFailure(
            kMsgUploadFailed, requestId,
            {ErrorCode::Code::InvalidArgument, QStringLiteral("no user is set on the configuration client")});
        return requestId;
    }
    StoreWorker* worker = d->worker;
    QPointer<CConfigCloudClient> guard(this);
    d->RunOnWorker([worker, guard, requestId, userId, item, bytes] {
        auto written = worker->store.Write(userId, item, bytes);
        if (!written) {
            VXLOG_ERROR("CConfigCloudClient::UploadConfigToServer: request {}: {}", requestId,
                        written.Error().message);
            PostFailure(kMsgUploadFailed, requestId, written.Error());
            return;
        }
        post::ToMain([guard, requestId, userId, item, bytes] {
            if (guard && guard->d->userId == userId)
                guard->d->cache.insert(CacheKey(item.id, item.subItem), bytes);
            SendResult(kMsgUploadSucceeded, requestId, nullptr);
        });
    });
    return requestId;
}

void CConfigCloudClient::SetChangePollInterval(int ms)
{
    if (ms <= 0) {
        d->pollTimer.stop();
        d->pollTimer.setInterval(0);
        return;
    }
    d->pollTimer.setInterval(ms);
    if (d->userId != 0)
        d->pollTimer.start();
}

void CConfigCloudClient::PollChangesNow()
{
    if (d->userId == 0)
        return;
    ++d->pollsInFlight;
    StoreWorker* worker = d->worker;
    QPointer<CConfigCloudClient> guard(this);
    d->RunOnWorker([worker, guard] {
        auto finish = [guard](std::shared_ptr<std::vector<StoredChange>> changes, unsigned long long userId) {
            post::ToMain([guard, changes, userId] {
                if (!guard)
                    return;
                --guard->d->pollsInFlight;
                if (!changes || guard->d->userId != userId)
                    return;
                // The cache first: a receiver of the announcement reads the new bytes.
                for (const StoredChange& change : *changes)
                    guard->d->cache.insert(CacheKey(change.key.id, change.key.subItem), change.bytes);
                for (const StoredChange& change : *changes) {
                    CMessageBody body;
                    body.set_p1(change.key.id);
                    body.set_p2(change.key.subItem);
                    __CMessageDispatch::Instance().Send(kMsgConfigChanged, change.key.id, body, true);
                }
            });
        };
        const unsigned long long userId = worker->followedUser;
        if (userId == 0 || worker->lastSequence < 0) {
            // The starting point could not be read yet: take it now, announce nothing.
            if (userId != 0) {
                auto latest = worker->store.LatestSequence();
                if (latest)
                    worker->lastSequence = latest.Value();
            }
            finish(nullptr, userId);
            return;
        }
        auto changes = worker->store.ChangesSince(userId, worker->lastSequence);
        if (!changes) {
            if (!worker->pollFailing)
                VXLOG_ERROR("CConfigCloudClient::PollChangesNow: {}", changes.Error().message);
            worker->pollFailing = true;
            finish(nullptr, userId);
            return;
        }
        worker->pollFailing = false;
        auto others = std::make_shared<std::vector<StoredChange>>();
        for (StoredChange& change : changes.Value()) {
            worker->lastSequence = std::max(worker->lastSequence, change.sequence);
            // Our own writes are in the cache already and are no news to this device.
            if (change.writer != worker->store.WriterId())
                others->push_back(std::move(change));
        }
        finish(others, userId);
    });
}

void SetDefaultClient(CConfigCloudClient* client)
{
    DefaultClientRef() = client;
}

CConfigCloudClient* DefaultClient()
{
    return DefaultClientRef().data();
}

unsigned long long DownloadPartConfigFromServer(const std::vector<ConfigKey>& keys)
{
    if (CConfigCloudClient* client = DefaultClient())
        return client->DownloadPartConfigFromServer(keys);
    const unsigned long long requestId = NextRequestId();
    VXLOG_WARN("config_cloud::DownloadPartConfigFromServer: no configuration client, request {} fails",
               requestId);
    PostFailure(kMsgDownloadFailed, requestId,
                {ErrorCode::Code::NotFound, QStringLiteral("no configuration client is set")});
    return requestId;
}

QByteArray GetConfig(unsigned int id, unsigned int subItem)
{
    if (CConfigCloudClient* client = DefaultClient())
        return client->GetConfig(id, subItem);
    return QByteArray();
}

unsigned long long UploadConfigToServer(const ConfigKey& item, const QByteArray& bytes)
{
    if (CConfigCloudClient* client = DefaultClient())
        return client->UploadConfigToServer(item, bytes);
    const unsigned long long requestId = NextRequestId();
    VXLOG_WARN("config_cloud::UploadConfigToServer: no configuration client, request {} fails", requestId);
    PostFailure(kMsgUploadFailed, requestId,
                {ErrorCode::Code::NotFound, QStringLiteral("no configuration client is set")});
    return requestId;
}

} // namespace core::config_cloud
