#pragma once

// ComputeInThreadPool: run work on the shared pool and hand its result to a completion on the
// main thread, but only while the guard object still lives. The completion never runs inside
// the call, even when the pool is idle.

#include "Platform/Core/Post.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <utility>
#include <variant>

namespace core {

namespace ErrorCode {

enum class Code : int
{
    Ok = 0,
    Unknown = 1,
    Cancelled = 2,
    InvalidArgument = 3,
    NotFound = 4,
    IoError = 5,
    ParseError = 6,
    Timeout = 7,
};

// An error: its code and the message that explains it to a maintainer (file paths included),
// ready to be logged.
struct CommonErrorValue
{
    Code code = Code::Unknown;
    QString message;

    CommonErrorValue() = default;
    CommonErrorValue(Code c, QString text = QString()) : code(c), message(std::move(text)) {}
    bool operator==(const CommonErrorValue& other) const
    {
        return code == other.code && message == other.message;
    }
};

} // namespace ErrorCode

// Either an error code or a value.
template <typename T, typename E = ErrorCode::CommonErrorValue> class ErrorOrValue
{
public:
    ErrorOrValue(T value) : m_data(std::in_place_index<1>, std::move(value)) {}
    ErrorOrValue(E error) : m_data(std::in_place_index<0>, error) {}

    bool HasValue() const { return m_data.index() == 1; }
    bool HasError() const { return m_data.index() == 0; }
    explicit operator bool() const { return HasValue(); }

    const T& Value() const& { return std::get<1>(m_data); }
    T& Value() & { return std::get<1>(m_data); }
    T&& Value() && { return std::get<1>(std::move(m_data)); }
    E Error() const { return HasError() ? std::get<0>(m_data) : E{}; }

    T ValueOr(T fallback) const { return HasValue() ? std::get<1>(m_data) : std::move(fallback); }

private:
    std::variant<E, T> m_data;
};

namespace concurrency {

// `work` returns T or ErrorOrValue<T>; `done` receives ErrorOrValue<T> on the main thread,
// and is dropped when `guard` was destroyed before the result arrived.
template <typename T, typename Work, typename Done>
void ComputeInThreadPool(QPointer<QObject> guard, Work work, Done done)
{
    using Result = ErrorOrValue<T, ErrorCode::CommonErrorValue>;
    auto task = [guard, work = std::move(work), done = std::move(done)]() mutable {
        auto result = std::make_shared<Result>(Result(work()));
        post::ToMain([guard, done = std::move(done), result]() mutable {
            if (guard.isNull())
                return;
            done(std::move(*result));
        });
    };
    post::ToThreadPool(std::move(task));
}

} // namespace concurrency
} // namespace core
