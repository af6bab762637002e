#include "Platform/Core/Report.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/Core/TimeDate.h"

#include <json/writer.h>

#include <QElapsedTimer>
#include <QFile>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

namespace core::report {
namespace {

constexpr size_t kMaxKeptLinesPerFile = 10000;

// A report waiting for the writer; it is turned into text on the writer's thread, so reporting
// costs the main thread only the building of the JSON object.
struct Line
{
    QString path;
    Json::Value value;
};

std::string ToLine(const Json::Value& value);

// The single writer: one thread appends queued lines in the order they were reported.
class FileWriter
{
public:
    ~FileWriter()
    {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_thread.joinable())
                return;
            m_stop = true;
        }
        m_wake.notify_all();
        m_thread.join();
    }

    void Enqueue(Line line)
    {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_thread.joinable())
                m_thread = std::thread([this] { Run(); });
            m_queue.push_back(std::move(line));
        }
        m_wake.notify_one();
    }

    void Flush()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_idle.wait(lock, [this] { return m_queue.empty() && !m_busy; });
    }

    void DropKeptLines()
    {
        Flush();
        std::lock_guard<std::mutex> lock(m_keptMutex);
        m_kept.clear();
        m_failing.clear();
    }

private:
    void Run()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        for (;;) {
            m_wake.wait(lock, [this] { return m_stop || !m_queue.empty(); });
            if (m_queue.empty())
                return; // stopping, and nothing left to write
            std::deque<Line> batch;
            batch.swap(m_queue);
            m_busy = true;
            lock.unlock();
            WriteBatch(batch);
            lock.lock();
            m_busy = false;
            m_idle.notify_all();
        }
    }

    void WriteBatch(const std::deque<Line>& batch)
    {
        std::lock_guard<std::mutex> lock(m_keptMutex);
        // Consecutive lines for one file are written with one open.
        for (size_t i = 0; i < batch.size();) {
            const QString& path = batch[i].path;
            std::vector<std::string>& lines = m_kept[path];
            for (; i < batch.size() && batch[i].path == path; ++i)
                lines.push_back(ToLine(batch[i].value));
            WriteKept(path, lines);
            if (lines.empty())
                m_kept.erase(path);
        }
    }

    // Appends `lines` to the file and clears them; on failure they stay for the next attempt.
    void WriteKept(const QString& path, std::vector<std::string>& lines)
    {
        QFile file(path);
        bool ok = file.open(QIODevice::WriteOnly | QIODevice::Append);
        QByteArray bytes;
        if (ok) {
            for (const std::string& line : lines) {
                bytes.append(line.data(), static_cast<int>(line.size()));
                bytes.append('\n');
            }
            ok = file.write(bytes) == bytes.size();
            if (!file.flush())
                ok = false;
        }
        if (ok) {
            if (m_failing.erase(path))
                VXLOG_INFO("report: {} is writable again, {} kept lines written", path, lines.size());
            lines.clear();
            return;
        }
        if (m_failing.insert(path).second)
            VXLOG_ERROR("report: cannot write {}: {}; lines are kept until it can be written", path,
                        file.errorString());
        if (lines.size() > kMaxKeptLinesPerFile) {
            const size_t dropped = lines.size() - kMaxKeptLinesPerFile;
            lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(dropped));
            VXLOG_WARN("report: dropped the {} oldest lines kept for {}", dropped, path);
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::deque<Line> m_queue;
    bool m_busy = false;
    bool m_stop = false;
    std::thread m_thread;

    std::mutex m_keptMutex; // held by the writer thread while writing
    std::map<QString, std::vector<std::string>> m_kept;
    std::set<QString> m_failing;
};

FileWriter& TheFileWriter()
{
    // Destroyed at exit: its destructor writes what is still queued.
    static FileWriter writer;
    return writer;
}

struct Timer
{
    std::string name;
    QElapsedTimer clock;
};

struct State
{
    std::mutex mutex;
    Writer writer;
    std::map<unsigned long long, Timer> timers;
    unsigned long long nextHandle = 1;
};

State& S()
{
    static State s;
    return s;
}

std::string ToLine(const Json::Value& value)
{
    // Strings are escaped, so the text never contains a line break.
    thread_local const std::unique_ptr<Json::StreamWriter> writer = [] {
        Json::StreamWriterBuilder builder;
        builder["indentation"] = "";
        builder["emitUTF8"] = true;
        return std::unique_ptr<Json::StreamWriter>(builder.newStreamWriter());
    }();
    std::ostringstream out;
    writer->write(value, &out);
    return out.str();
}

Json::Value FieldsOrEmpty(const Json::Value& fields)
{
    return fields.isNull() ? Json::Value(Json::objectValue) : fields;
}

void Emit(Json::Value value)
{
    value["time"] = Json::Int64(time_date::GetServerTimeMs());
    Writer writer;
    {
        std::lock_guard<std::mutex> lock(S().mutex);
        writer = S().writer;
    }
    if (writer) {
        writer(ToLine(value));
        return;
    }
    // The folder is resolved now: the user may log out before the line is written.
    const QString path = product_path::GetCurrentUserFolder() + QStringLiteral("/reports.jsonl");
    TheFileWriter().Enqueue({path, std::move(value)});
}

} // namespace

void ClickReport(const std::string& name, const Json::Value& fields)
{
    if (name.empty()) {
        VXLOG_ERROR("report::ClickReport: empty name");
        return;
    }
    Json::Value value(Json::objectValue);
    value["kind"] = "click";
    value["name"] = name;
    value["fields"] = FieldsOrEmpty(fields);
    Emit(std::move(value));
}

unsigned long long TimerStart(const std::string& name)
{
    if (name.empty() || name == kstrUnknownTabType)
        return 0;
    std::lock_guard<std::mutex> lock(S().mutex);
    const unsigned long long handle = S().nextHandle++;
    Timer& timer = S().timers[handle];
    timer.name = name;
    timer.clock.start();
    return handle;
}

void TimerEnd(unsigned long long handle, int type, const Json::Value& fields, int value)
{
    Timer timer;
    {
        std::lock_guard<std::mutex> lock(S().mutex);
        auto it = S().timers.find(handle);
        if (it == S().timers.end())
            return;
        timer = std::move(it->second);
        S().timers.erase(it);
    }
    Json::Value line(Json::objectValue);
    line["kind"] = "timer";
    line["name"] = timer.name;
    line["type"] = type;
    line["fields"] = FieldsOrEmpty(fields);
    line["value"] = value;
    line["ms"] = Json::Int64(timer.clock.elapsed());
    Emit(std::move(line));
}

void TimerCancel(unsigned long long handle)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    S().timers.erase(handle);
}

bool IsTimerRunning(unsigned long long handle)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    return S().timers.count(handle) != 0;
}

void SetWriter(Writer writer)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    S().writer = std::move(writer);
}

void Flush()
{
    TheFileWriter().Flush();
}

void ResetForTest()
{
    {
        std::lock_guard<std::mutex> lock(S().mutex);
        S().writer = nullptr;
        S().timers.clear();
    }
    TheFileWriter().DropKeptLines();
}

} // namespace core::report
