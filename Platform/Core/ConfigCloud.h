#pragma once

// The user's cloud configuration: items named by (id, sub-item) holding opaque bytes, kept per
// user in a store shared by every device of that user. The default store is embedded: a SQLite
// database file at a configurable path; every client pointed at the same file is another device
// of the same users (two running programs, or two clients in one process).
//
// Results never come from inside a call: each request returns a request id (non-zero, never
// reused in the process) at once, and its result is announced later on the main thread as a bus
// message carrying the request id in p1:
//   10301 download done, 10302 download failed (body exparam: the error text; p2: the result code),
//   10303 upload done,   10304 upload failed (likewise).
// A change written by another client is announced as 10300 with the item id in p1 and the
// sub-item in p2, after the client's cache holds the new bytes.

#include "Platform/Core/CoreExport.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace core::config_cloud {

inline constexpr unsigned int kMsgConfigChanged = 10300;
inline constexpr unsigned int kMsgDownloadSucceeded = 10301;
inline constexpr unsigned int kMsgDownloadFailed = 10302;
inline constexpr unsigned int kMsgUploadSucceeded = 10303;
inline constexpr unsigned int kMsgUploadFailed = 10304;

struct ConfigKey
{
    unsigned int id = 0;
    unsigned int subItem = 0;
    bool operator==(const ConfigKey& o) const { return id == o.id && subItem == o.subItem; }
};

// One device's connection to the store, for one user at a time. Requests run off the main
// thread; the cache is read on the main thread.
class VXCORE_EXPORT CConfigCloudClient : public QObject
{
    Q_OBJECT
public:
    // databasePath: the store's SQLite file (created when missing).
    explicit CConfigCloudClient(const QString& databasePath, QObject* parent = nullptr);
    ~CConfigCloudClient() override;

    QString DatabasePath() const;
    // Whose rows this client reads and writes; 0 = nobody (every request fails). Changing the
    // user empties the cache.
    void SetUserID(unsigned long long userId);
    unsigned long long UserID() const;

    // Fetches the items into the cache (an item with no row caches as empty bytes).
    unsigned long long DownloadPartConfigFromServer(const std::vector<ConfigKey>& keys);
    // The cached bytes of an item (empty when never downloaded, or empty in the store).
    QByteArray GetConfig(unsigned int id, unsigned int subItem) const;
    // Writes the item (empty bytes clear it) in one transaction and updates the cache.
    unsigned long long UploadConfigToServer(const ConfigKey& item, const QByteArray& bytes);

    // How often the client looks for changes written by other clients (default 500 ms; 0 stops).
    void SetChangePollInterval(int ms);
    // Looks for other clients' changes now (tests); announcements are posted as usual.
    void PollChangesNow();

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

// The process's client: created by the host program after login (SetDefaultClient), used by the
// free functions below. Without one, requests fail (their failure messages are still posted).
VXCORE_EXPORT void SetDefaultClient(CConfigCloudClient* client);
VXCORE_EXPORT CConfigCloudClient* DefaultClient();

VXCORE_EXPORT unsigned long long DownloadPartConfigFromServer(const std::vector<ConfigKey>& keys);
VXCORE_EXPORT QByteArray GetConfig(unsigned int id, unsigned int subItem);
VXCORE_EXPORT unsigned long long UploadConfigToServer(const ConfigKey& item, const QByteArray& bytes);

} // namespace core::config_cloud
