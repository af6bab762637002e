#pragma once

// The embedded configuration store behind CConfigCloudClient: one SQLite connection to a
// database file that any number of clients (threads or processes) share. Rows are per user;
// every write takes the next value of a store-wide change sequence, so a client finds the rows
// others wrote since the sequence it last saw. Not thread-safe: one thread uses one store.
// Failures come back as errors carrying the SQLite message and the file path; the file is never
// deleted or rewritten to "repair" it.

#include "Platform/Core/Concurrency.h"
#include "Platform/Core/ConfigCloud.h"

#include <QByteArray>
#include <QString>

#include <vector>

struct sqlite3;

namespace core::config_cloud {

struct StoredItem
{
    ConfigKey key;
    QByteArray bytes;
};

struct StoredChange
{
    ConfigKey key;
    QByteArray bytes;
    long long sequence = 0;
    QString writer;
};

class CConfigCloudStore
{
public:
    using Error = ErrorCode::CommonErrorValue;

    // writerId names the client in the rows it writes (other clients announce those rows).
    CConfigCloudStore(QString databasePath, QString writerId);
    ~CConfigCloudStore();
    CConfigCloudStore(const CConfigCloudStore&) = delete;
    CConfigCloudStore& operator=(const CConfigCloudStore&) = delete;

    // Opens the file on first use (creating file and tables); a failed open is tried again by
    // the next call.
    ErrorOrValue<bool> Open();

    // The bytes of each key, in the order asked (empty bytes for a key without a row).
    ErrorOrValue<std::vector<StoredItem>> Read(unsigned long long userId, const std::vector<ConfigKey>& keys);
    // Writes one row in one transaction; returns the row's change sequence.
    ErrorOrValue<long long> Write(unsigned long long userId, const ConfigKey& key, const QByteArray& bytes);
    // The highest change sequence written so far (0 for a new store).
    ErrorOrValue<long long> LatestSequence();
    // The user's rows written after `sequence`, in sequence order (rows of every writer).
    ErrorOrValue<std::vector<StoredChange>> ChangesSince(unsigned long long userId, long long sequence);

    QString WriterId() const { return m_writerId; }

private:
    Error SqlError(const char* what, int rc) const;
    ErrorOrValue<bool> Exec(const char* sql, const char* what);
    // Exec that waits out another connection's lock (up to the busy timeout).
    ErrorOrValue<bool> ExecWaiting(const char* sql, const char* what);

    QString m_path;
    QString m_writerId;
    sqlite3* m_db = nullptr;
};

} // namespace core::config_cloud
