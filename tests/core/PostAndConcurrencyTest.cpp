// Posting to the main thread and the pool, and ComputeInThreadPool's contract: work off the main
// thread, completion on it, never inside the call, and never once the guard is gone.

#include "Platform/Core/Concurrency.h"
#include "Platform/Core/Post.h"
#include "tests/common/TestSupport.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QStringList>
#include <QTest>
#include <QThread>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

namespace {

using core::ErrorOrValue;
using core::ErrorCode::Code;
using core::ErrorCode::CommonErrorValue;

QThread* MainThread()
{
    return QCoreApplication::instance()->thread();
}

TEST(PostTest, ToMainRunsOnTheMainThreadWhenPostedFromAWorker)
{
    QThread* ranOn = nullptr;
    bool workerSawMain = true;
    std::thread worker([&] {
        workerSawMain = core::post::IsMainThread();
        core::post::ToMain([&] { ranOn = QThread::currentThread(); });
    });
    worker.join();

    EXPECT_FALSE(workerSawMain);
    EXPECT_TRUE(core::post::IsMainThread());
    ASSERT_TRUE(QTest::qWaitFor([&] { return ranOn != nullptr; }, 5000));
    EXPECT_EQ(ranOn, MainThread());
}

TEST(PostTest, DelayedCallsRunByDeadlineAfterPlainOnes)
{
    std::string order;
    core::post::ToMainDelay([&] { order += 'a'; }, 300);
    core::post::ToMainDelay([&] { order += 'b'; }, 10);
    core::post::ToMain([&] { order += 'c'; });
    core::post::ToMainDelay([&] { order += 'd'; }, 0);
    EXPECT_EQ(order, "");

    ASSERT_TRUE(QTest::qWaitFor([&] { return order.size() == 4; }, 5000));
    EXPECT_EQ(order, "cdba");
}

TEST(PostTest, CallsForADestroyedContextAreDropped)
{
    auto* alive = new QObject;
    auto* doomed = new QObject;
    QStringList ran;
    core::post::ToMain(doomed, [&] { ran << QStringLiteral("doomed"); });
    core::post::ToMainDelay(
        doomed, [&] { ran << QStringLiteral("doomed-delayed"); }, 10);
    core::post::ToMain(alive, [&] { ran << QStringLiteral("alive"); });
    core::post::ToMainDelay(
        alive, [&] { ran << QStringLiteral("alive-delayed"); }, 100);
    delete doomed;

    // The delayed call for the live context is due last: once it ran, every other one was due.
    ASSERT_TRUE(QTest::qWaitFor([&] { return ran.contains(QStringLiteral("alive-delayed")); }, 5000));
    EXPECT_EQ(ran, (QStringList{QStringLiteral("alive"), QStringLiteral("alive-delayed")}));
    delete alive;
}

TEST(PostTest, ToThreadPoolRunsOffTheMainThread)
{
    std::atomic<QThread*> ranOn{nullptr};
    core::post::ToThreadPool([&] { ranOn = QThread::currentThread(); });
    ASSERT_TRUE(QThreadPool::globalInstance()->waitForDone(5000));
    ASSERT_NE(ranOn.load(), nullptr);
    EXPECT_NE(ranOn.load(), MainThread());
}

TEST(ComputeInThreadPoolTest, WorkRunsOnThePoolAndDoneOnTheMainThread)
{
    QObject guard;
    std::atomic<QThread*> workThread{nullptr};
    QThread* doneThread = nullptr;
    int doneCalls = 0;
    QStringList result;

    core::concurrency::ComputeInThreadPool<QStringList>(
        QPointer<QObject>(&guard),
        [&] {
            workThread = QThread::currentThread();
            return QStringList{QStringLiteral("600519"), QStringLiteral("000001")};
        },
        [&](ErrorOrValue<QStringList> value) {
            ++doneCalls;
            doneThread = QThread::currentThread();
            ASSERT_TRUE(value.HasValue());
            result = value.Value();
        });

    ASSERT_TRUE(QTest::qWaitFor([&] { return doneCalls > 0; }, 5000));
    EXPECT_EQ(doneCalls, 1);
    EXPECT_NE(workThread.load(), MainThread());
    EXPECT_EQ(doneThread, MainThread());
    EXPECT_EQ(result, (QStringList{QStringLiteral("600519"), QStringLiteral("000001")}));
}

TEST(ComputeInThreadPoolTest, DoneNeverRunsInsideTheCallEvenWhenTheWorkIsFinished)
{
    QObject guard;
    int doneCalls = 0;
    core::concurrency::ComputeInThreadPool<int>(
        QPointer<QObject>(&guard), [] { return 42; }, [&](ErrorOrValue<int> v) { doneCalls += v.Value(); });

    ASSERT_TRUE(QThreadPool::globalInstance()->waitForDone(5000));
    EXPECT_EQ(doneCalls, 0);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(doneCalls, 42);
}

TEST(ComputeInThreadPoolTest, DoneIsDroppedWhenTheGuardDiesBeforeTheResult)
{
    auto* guard = new QObject;
    QSemaphore release;
    std::atomic<bool> workFinished{false};
    bool doneCalled = false;

    core::concurrency::ComputeInThreadPool<int>(
        QPointer<QObject>(guard),
        [&] {
            release.acquire(); // hold the work until the guard is gone
            workFinished = true;
            return 1;
        },
        [&](ErrorOrValue<int>) { doneCalled = true; });

    delete guard;
    release.release();
    ASSERT_TRUE(QThreadPool::globalInstance()->waitForDone(5000));
    ASSERT_TRUE(workFinished);
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(doneCalled);
}

TEST(ComputeInThreadPoolTest, WorkReportingAnErrorReachesDoneAsAnError)
{
    QObject guard;
    bool doneCalled = false;
    CommonErrorValue error(Code::Ok);
    int fallback = 0;

    core::concurrency::ComputeInThreadPool<int>(
        QPointer<QObject>(&guard),
        [] {
            return ErrorOrValue<int>(CommonErrorValue(Code::NotFound, QStringLiteral("no such file: /x")));
        },
        [&](ErrorOrValue<int> value) {
            doneCalled = true;
            EXPECT_FALSE(value.HasValue());
            EXPECT_FALSE(static_cast<bool>(value));
            error = value.Error();
            fallback = value.ValueOr(-1);
        });

    ASSERT_TRUE(QTest::qWaitFor([&] { return doneCalled; }, 5000));
    EXPECT_EQ(error.code, Code::NotFound);
    EXPECT_EQ(error.message, QStringLiteral("no such file: /x"));
    EXPECT_EQ(fallback, -1);
}

} // namespace
