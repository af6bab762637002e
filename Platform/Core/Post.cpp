#include "Platform/Core/Post.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <QThreadPool>
#include <QTimer>

namespace core::post {
namespace {

// Runs a function on the main thread through the event loop.
void Invoke(std::function<void()> fn)
{
    QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return;
    QMetaObject::invokeMethod(app, std::move(fn), Qt::QueuedConnection);
}

} // namespace

bool IsMainThread()
{
    QCoreApplication* app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

void ToMain(std::function<void()> fn)
{
    Invoke(std::move(fn));
}

void ToMain(const QObject* context, std::function<void()> fn)
{
    QPointer<const QObject> guard(context);
    Invoke([guard, fn = std::move(fn)] {
        if (guard)
            fn();
    });
}

void ToMainDelay(std::function<void()> fn, int ms)
{
    if (ms <= 0) {
        ToMain(std::move(fn));
        return;
    }
    // The timer must be created on the main thread.
    Invoke([fn = std::move(fn), ms]() mutable {
        QTimer::singleShot(ms, QCoreApplication::instance(), std::move(fn));
    });
}

void ToMainDelay(const QObject* context, std::function<void()> fn, int ms)
{
    QPointer<const QObject> guard(context);
    ToMainDelay(
        [guard, fn = std::move(fn)] {
            if (guard)
                fn();
        },
        ms);
}

void ToThreadPool(std::function<void()> fn)
{
    QThreadPool::globalInstance()->start(std::move(fn));
}

} // namespace core::post
