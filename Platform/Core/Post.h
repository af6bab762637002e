#pragma once

// Posting work: to the main thread (now or after a delay) or to the shared thread pool.
// The overloads taking a context object drop the call when the context has been destroyed.

#include "Platform/Core/CoreExport.h"

#include <functional>

class QObject;

namespace core::post {

VXCORE_EXPORT void ToMain(std::function<void()> fn);
VXCORE_EXPORT void ToMain(const QObject* context, std::function<void()> fn);
VXCORE_EXPORT void ToMainDelay(std::function<void()> fn, int ms);
VXCORE_EXPORT void ToMainDelay(const QObject* context, std::function<void()> fn, int ms);
VXCORE_EXPORT void ToThreadPool(std::function<void()> fn);

// True on the thread that owns the QCoreApplication (or, before it exists, never).
VXCORE_EXPORT bool IsMainThread();

} // namespace core::post
