#include "Platform/Core/ConfigCloudStore.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QThread>

#include <sqlite3.h>

#include <utility>

namespace core::config_cloud {
namespace {

// Another process holding the write lock makes us wait this long before a request fails.
constexpr int kBusyTimeoutMs = 5000;

const char* const kSchema =
    "CREATE TABLE IF NOT EXISTS config_items ("
    " user_id INTEGER NOT NULL,"
    " item_id INTEGER NOT NULL,"
    " sub_item INTEGER NOT NULL,"
    " bytes BLOB NOT NULL,"
    " sequence INTEGER NOT NULL,"
    " writer TEXT NOT NULL,"
    " updated_ms INTEGER NOT NULL,"
    " PRIMARY KEY (user_id, item_id, sub_item));"
    "CREATE INDEX IF NOT EXISTS config_items_by_sequence ON config_items (user_id, sequence);"
    "CREATE TABLE IF NOT EXISTS config_meta (name TEXT PRIMARY KEY, value INTEGER NOT NULL);"
    "INSERT OR IGNORE INTO config_meta (name, value) VALUES ('sequence', 0);";

class Statement
{
public:
    Statement() = default;
    ~Statement() { sqlite3_finalize(m_stmt); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    sqlite3_stmt** Out() { return &m_stmt; }
    sqlite3_stmt* Get() const { return m_stmt; }

private:
    sqlite3_stmt* m_stmt = nullptr;
};

QByteArray ColumnBytes(sqlite3_stmt* stmt, int column)
{
    const void* data = sqlite3_column_blob(stmt, column);
    const int size = sqlite3_column_bytes(stmt, column);
    return data && size > 0 ? QByteArray(static_cast<const char*>(data), size) : QByteArray();
}

ErrorCode::Code CodeOf(int rc)
{
    switch (rc & 0xff) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return ErrorCode::Code::ParseError;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ErrorCode::Code::Timeout;
    default:
        return ErrorCode::Code::IoError;
    }
}

} // namespace

CConfigCloudStore::CConfigCloudStore(QString databasePath, QString writerId)
    : m_path(std::move(databasePath)), m_writerId(std::move(writerId))
{
}

CConfigCloudStore::~CConfigCloudStore()
{
    sqlite3_close(m_db);
}

CConfigCloudStore::Error CConfigCloudStore::SqlError(const char* what, int rc) const
{
    const char* text = m_db ? sqlite3_errmsg(m_db) : sqlite3_errstr(rc);
    return Error(CodeOf(rc), QStringLiteral("%1 failed for the store %2: %3 (SQLite code %4)")
                                 .arg(QString::fromUtf8(what), m_path, QString::fromUtf8(text))
                                 .arg(rc));
}

ErrorOrValue<bool> CConfigCloudStore::Exec(const char* sql, const char* what)
{
    const int rc = sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK)
        return SqlError(what, rc);
    return true;
}

ErrorOrValue<bool> CConfigCloudStore::ExecWaiting(const char* sql, const char* what)
{
    // Switching to WAL while another connection opens the same new file reports "locked" at
    // once, without going through the busy handler: wait here as the busy handler would.
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        const int rc = sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr);
        if (rc == SQLITE_OK)
            return true;
        const int primary = rc & 0xff;
        if ((primary != SQLITE_BUSY && primary != SQLITE_LOCKED) || waited.elapsed() > kBusyTimeoutMs)
            return SqlError(what, rc);
        QThread::msleep(5);
    }
}

ErrorOrValue<bool> CConfigCloudStore::Open()
{
    if (m_db)
        return true;
    if (m_path.isEmpty())
        return Error(ErrorCode::Code::InvalidArgument, QStringLiteral("the store has no database path"));
    const QByteArray path = m_path.toUtf8();
    const int rc = sqlite3_open_v2(path.constData(), &m_db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    ErrorOrValue<bool> result = true;
    if (rc != SQLITE_OK) {
        result = SqlError("opening", rc);
    } else {
        sqlite3_busy_timeout(m_db, kBusyTimeoutMs);
        // WAL lets readers of one process go on while another process writes.
        result = ExecWaiting("PRAGMA journal_mode=WAL;", "switching to WAL");
        if (result)
            result = Exec("PRAGMA synchronous=NORMAL;", "setting the sync mode");
        if (result)
            result = ExecWaiting(kSchema, "creating the tables");
    }
    if (!result) {
        // Closed so that the next request tries again; the file itself is left as it is.
        sqlite3_close(m_db);
        m_db = nullptr;
    }
    return result;
}

ErrorOrValue<std::vector<StoredItem>> CConfigCloudStore::Read(unsigned long long userId,
                                                              const std::vector<ConfigKey>& keys)
{
    const auto opened = Open();
    if (!opened)
        return opened.Error();
    Statement stmt;
    int rc = sqlite3_prepare_v2(
        m_db, "SELECT bytes FROM config_items WHERE user_id = ?1 AND item_id = ?2 AND sub_item = ?3", -1,
        stmt.Out(), nullptr);
    if (rc != SQLITE_OK)
        return SqlError("reading", rc);
    // One read transaction: the items come from one state of the store.
    auto begun = Exec("BEGIN;", "starting a read");
    if (!begun)
        return begun.Error();
    std::vector<StoredItem> items;
    items.reserve(keys.size());
    for (const ConfigKey& key : keys) {
        sqlite3_reset(stmt.Get());
        sqlite3_bind_int64(stmt.Get(), 1, static_cast<sqlite3_int64>(userId));
        sqlite3_bind_int64(stmt.Get(), 2, key.id);
        sqlite3_bind_int64(stmt.Get(), 3, key.subItem);
        rc = sqlite3_step(stmt.Get());
        if (rc != SQLITE_ROW && rc != SQLITE_DONE) {
            Error error = SqlError("reading", rc);
            Exec("ROLLBACK;", "ending a read");
            return error;
        }
        items.push_back({key, rc == SQLITE_ROW ? ColumnBytes(stmt.Get(), 0) : QByteArray()});
    }
    sqlite3_reset(stmt.Get());
    Exec("COMMIT;", "ending a read");
    return items;
}

ErrorOrValue<long long> CConfigCloudStore::Write(unsigned long long userId, const ConfigKey& key,
                                                 const QByteArray& bytes)
{
    const auto opened = Open();
    if (!opened)
        return opened.Error();
    // IMMEDIATE takes the write lock at once (waiting up to the busy timeout), so the sequence
    // read below is not raced by another writer.
    auto begun = Exec("BEGIN IMMEDIATE;", "starting a write");
    if (!begun)
        return begun.Error();
    auto fail = [this](const char* what, int rc) -> Error {
        Error error = SqlError(what, rc);
        Exec("ROLLBACK;", "abandoning a write");
        return error;
    };

    int rc = sqlite3_exec(m_db, "UPDATE config_meta SET value = value + 1 WHERE name = 'sequence';", nullptr,
                          nullptr, nullptr);
    if (rc != SQLITE_OK)
        return fail("advancing the change sequence", rc);
    long long sequence = 0;
    {
        Statement select;
        rc = sqlite3_prepare_v2(m_db, "SELECT value FROM config_meta WHERE name = 'sequence'", -1,
                                select.Out(), nullptr);
        if (rc == SQLITE_OK)
            rc = sqlite3_step(select.Get());
        if (rc != SQLITE_ROW)
            return fail("reading the change sequence", rc);
        sequence = sqlite3_column_int64(select.Get(), 0);
    }
    {
        Statement insert;
        rc = sqlite3_prepare_v2(m_db,
                                "INSERT OR REPLACE INTO config_items"
                                " (user_id, item_id, sub_item, bytes, sequence, writer, updated_ms)"
                                " VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)",
                                -1, insert.Out(), nullptr);
        if (rc != SQLITE_OK)
            return fail("writing an item", rc);
        const QByteArray writer = m_writerId.toUtf8();
        sqlite3_bind_int64(insert.Get(), 1, static_cast<sqlite3_int64>(userId));
        sqlite3_bind_int64(insert.Get(), 2, key.id);
        sqlite3_bind_int64(insert.Get(), 3, key.subItem);
        // A zero-length blob, not NULL: an emptied item is a row too, so the clearing reaches
        // the other clients as a change.
        sqlite3_bind_blob(insert.Get(), 4, bytes.isEmpty() ? "" : bytes.constData(), bytes.size(),
                          SQLITE_TRANSIENT);
        sqlite3_bind_int64(insert.Get(), 5, sequence);
        sqlite3_bind_text(insert.Get(), 6, writer.constData(), writer.size(), SQLITE_TRANSIENT);
        sqlite3_bind_int64(insert.Get(), 7, QDateTime::currentMSecsSinceEpoch());
        rc = sqlite3_step(insert.Get());
        if (rc != SQLITE_DONE)
            return fail("writing an item", rc);
    }
    rc = sqlite3_exec(m_db, "COMMIT;", nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK)
        return fail("committing a write", rc);
    return sequence;
}

ErrorOrValue<long long> CConfigCloudStore::LatestSequence()
{
    const auto opened = Open();
    if (!opened)
        return opened.Error();
    Statement stmt;
    int rc = sqlite3_prepare_v2(m_db, "SELECT value FROM config_meta WHERE name = 'sequence'", -1, stmt.Out(),
                                nullptr);
    if (rc == SQLITE_OK)
        rc = sqlite3_step(stmt.Get());
    if (rc == SQLITE_DONE)
        return 0LL;
    if (rc != SQLITE_ROW)
        return SqlError("reading the change sequence", rc);
    return static_cast<long long>(sqlite3_column_int64(stmt.Get(), 0));
}

ErrorOrValue<std::vector<StoredChange>> CConfigCloudStore::ChangesSince(unsigned long long userId,
                                                                        long long sequence)
{
    const auto opened = Open();
    if (!opened)
        return opened.Error();
    Statement stmt;
    int rc = sqlite3_prepare_v2(m_db,
                                "SELECT item_id, sub_item, bytes, sequence, writer FROM config_items"
                                " WHERE user_id = ?1 AND sequence > ?2 ORDER BY sequence",
                                -1, stmt.Out(), nullptr);
    if (rc != SQLITE_OK)
        return SqlError("looking for changes", rc);
    sqlite3_bind_int64(stmt.Get(), 1, static_cast<sqlite3_int64>(userId));
    sqlite3_bind_int64(stmt.Get(), 2, sequence);
    std::vector<StoredChange> changes;
    while ((rc = sqlite3_step(stmt.Get())) == SQLITE_ROW) {
        StoredChange change;
        change.key.id = static_cast<unsigned int>(sqlite3_column_int64(stmt.Get(), 0));
        change.key.subItem = static_cast<unsigned int>(sqlite3_column_int64(stmt.Get(), 1));
        change.bytes = ColumnBytes(stmt.Get(), 2);
        change.sequence = sqlite3_column_int64(stmt.Get(), 3);
        change.writer = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt.Get(), 4)));
        changes.push_back(std::move(change));
    }
    if (rc != SQLITE_DONE)
        return SqlError("looking for changes", rc);
    return changes;
}

} // namespace core::config_cloud
