#include "Platform/Core/MessageDispatch.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/Post.h"
#include "Platform/Core/message_body.pb.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <vector>

namespace core {

namespace {

// One binding. A delivery works on a snapshot of slots, so a slot outlives its binding; the
// flag tells the delivery that it was unbound (or replaced) meanwhile.
struct Slot
{
    const void* tag = nullptr;
    MessageHandler handler;
    std::atomic<bool> bound{true};
};

using SlotPtr = std::shared_ptr<Slot>;

} // namespace

struct __CMessageDispatch::Impl
{
    mutable std::mutex mutex;
    std::map<unsigned int, std::vector<SlotPtr>> bindings; // in binding order per message
};

__CMessageDispatch::__CMessageDispatch() : d(std::make_unique<Impl>()) {}

__CMessageDispatch::~__CMessageDispatch() = default;

__CMessageDispatch& __CMessageDispatch::Instance()
{
    // Never destroyed: deliveries posted late during shutdown must still find the bus.
    static __CMessageDispatch* instance = new __CMessageDispatch;
    return *instance;
}

void __CMessageDispatch::Bind(unsigned int msgId, MessageHandler handler, const void* tag)
{
    if (!tag) {
        VXLOG_ERROR("__CMessageDispatch::Bind: null tag for message {}", msgId);
        return;
    }
    if (!handler) {
        VXLOG_ERROR("__CMessageDispatch::Bind: empty handler for message {}", msgId);
        return;
    }
    auto slot = std::make_shared<Slot>();
    slot->tag = tag;
    slot->handler = std::move(handler);

    std::lock_guard<std::mutex> lock(d->mutex);
    auto& list = d->bindings[msgId];
    auto it = std::find_if(list.begin(), list.end(), [tag](const SlotPtr& s) { return s->tag == tag; });
    if (it == list.end()) {
        list.push_back(std::move(slot));
        return;
    }
    // The replaced handler is not called again, even by a delivery already under way.
    (*it)->bound = false;
    *it = std::move(slot);
}

void __CMessageDispatch::UnBind(unsigned int msgId, const void* tag)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    auto found = d->bindings.find(msgId);
    if (found == d->bindings.end())
        return;
    auto& list = found->second;
    list.erase(std::remove_if(list.begin(), list.end(),
                              [tag](const SlotPtr& s) {
                                  if (s->tag != tag)
                                      return false;
                                  s->bound = false;
                                  return true;
                              }),
               list.end());
    if (list.empty())
        d->bindings.erase(found);
}

void __CMessageDispatch::UnBindAll(const void* tag)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    for (auto it = d->bindings.begin(); it != d->bindings.end();) {
        auto& list = it->second;
        list.erase(std::remove_if(list.begin(), list.end(),
                                  [tag](const SlotPtr& s) {
                                      if (s->tag != tag)
                                          return false;
                                      s->bound = false;
                                      return true;
                                  }),
                   list.end());
        it = list.empty() ? d->bindings.erase(it) : std::next(it);
    }
}

bool __CMessageDispatch::IsBound(unsigned int msgId, const void* tag) const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    auto found = d->bindings.find(msgId);
    if (found == d->bindings.end())
        return false;
    return std::any_of(found->second.begin(), found->second.end(),
                       [tag](const SlotPtr& s) { return s->tag == tag; });
}

int __CMessageDispatch::HandlerCount(unsigned int msgId) const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    auto found = d->bindings.find(msgId);
    return found == d->bindings.end() ? 0 : static_cast<int>(found->second.size());
}

void __CMessageDispatch::Send(unsigned int msgId, unsigned long long param, const CMessageBody& body,
                              bool bImmediate)
{
    if (bImmediate && post::IsMainThread()) {
        Deliver(msgId, param, body);
        return;
    }
    if (!QCoreApplication::instance()) {
        VXLOG_WARN("__CMessageDispatch::Send: no application, message {} dropped", msgId);
        return;
    }
    auto copy = std::make_shared<CMessageBody>(body);
    post::ToMain([this, msgId, param, copy] { Deliver(msgId, param, *copy); });
}

void __CMessageDispatch::Send(unsigned int msgId, unsigned long long param, bool bImmediate)
{
    Send(msgId, param, CMessageBody(), bImmediate);
}

void __CMessageDispatch::ResetForTest()
{
    std::lock_guard<std::mutex> lock(d->mutex);
    for (auto& [msgId, list] : d->bindings)
        for (auto& slot : list)
            slot->bound = false;
    d->bindings.clear();
}

void __CMessageDispatch::Deliver(unsigned int msgId, unsigned long long param, const CMessageBody& body)
{
    std::vector<SlotPtr> snapshot;
    {
        std::lock_guard<std::mutex> lock(d->mutex);
        auto found = d->bindings.find(msgId);
        if (found == d->bindings.end())
            return;
        snapshot = found->second;
    }
    // Handlers run without the lock: they may bind, unbind and send.
    for (const SlotPtr& slot : snapshot) {
        if (slot->bound)
            slot->handler(msgId, param, body);
    }
}

} // namespace core
