#pragma once

// The client's message bus. Messages are numbered; each carries a numeric parameter and a
// CMessageBody. Handlers always run on the main thread: a Send from another thread, or a Send
// that asks to be posted, is queued there. A handler may bind or unbind (itself or others)
// during delivery; one unbound during a delivery is not called afterwards.

#include "Platform/Core/CoreExport.h"

#include <functional>
#include <memory>

namespace core {

class CMessageBody;

using MessageHandler = std::function<void(unsigned int msgId, unsigned long long param, const CMessageBody& body)>;

class VXCORE_EXPORT __CMessageDispatch
{
public:
    static __CMessageDispatch& Instance();

    // One handler per (msgId, tag); binding again under the same tag replaces the handler.
    // The tag is any address that identifies the owner (usually `this`).
    void Bind(unsigned int msgId, MessageHandler handler, const void* tag);
    void UnBind(unsigned int msgId, const void* tag);
    void UnBindAll(const void* tag);
    bool IsBound(unsigned int msgId, const void* tag) const;
    int HandlerCount(unsigned int msgId) const;

    // bImmediate true: called on the main thread, handlers run before Send returns.
    // bImmediate false, or called from another thread: delivered later on the main thread
    // (the body is copied).
    void Send(unsigned int msgId, unsigned long long param, const CMessageBody& body, bool bImmediate);
    void Send(unsigned int msgId, unsigned long long param, bool bImmediate);

    // Drops every binding (tests).
    void ResetForTest();

    __CMessageDispatch(const __CMessageDispatch&) = delete;
    __CMessageDispatch& operator=(const __CMessageDispatch&) = delete;

private:
    __CMessageDispatch();
    ~__CMessageDispatch();
    void Deliver(unsigned int msgId, unsigned long long param, const CMessageBody& body);

    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace core
