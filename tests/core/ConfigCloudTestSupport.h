#pragma once

// Records the configuration-cloud messages (10300-10304) that reach the real bus, for the tests
// of the store and of the layout cloud sync.

#include "Platform/Core/ConfigCloud.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"

#include <QTest>

#include <functional>
#include <string>
#include <vector>

namespace vxtest {

struct CloudMessage
{
    unsigned int msgId = 0;
    unsigned long long param = 0;
    unsigned long long p1 = 0;
    unsigned long long p2 = 0;
    std::string exparam;
};

class CloudBusRecorder
{
public:
    CloudBusRecorder()
    {
        for (unsigned int msgId = core::config_cloud::kMsgConfigChanged;
             msgId <= core::config_cloud::kMsgUploadFailed; ++msgId) {
            core::__CMessageDispatch::Instance().Bind(
                msgId,
                [this](unsigned int id, unsigned long long param, const core::CMessageBody& body) {
                    CloudMessage m{id, param, body.p1(), body.p2(), body.exparam()};
                    messages.push_back(m);
                    if (onMessage)
                        onMessage(m);
                },
                this);
        }
    }
    ~CloudBusRecorder() { core::__CMessageDispatch::Instance().UnBindAll(this); }
    CloudBusRecorder(const CloudBusRecorder&) = delete;
    CloudBusRecorder& operator=(const CloudBusRecorder&) = delete;

    // The first message with that id and p1, or null.
    const CloudMessage* Find(unsigned int msgId, unsigned long long p1) const
    {
        for (const CloudMessage& m : messages)
            if (m.msgId == msgId && m.p1 == p1)
                return &m;
        return nullptr;
    }
    int Count(unsigned int msgId) const
    {
        int n = 0;
        for (const CloudMessage& m : messages)
            n += m.msgId == msgId ? 1 : 0;
        return n;
    }
    // Either result of a request (done or failed).
    const CloudMessage* Result(unsigned long long requestId) const
    {
        for (const CloudMessage& m : messages)
            if (m.msgId != core::config_cloud::kMsgConfigChanged && m.p1 == requestId)
                return &m;
        return nullptr;
    }
    // Runs the event loop until the request's result arrived (bounded; not a speed check).
    const CloudMessage* WaitResult(unsigned long long requestId, int timeoutMs = 10000)
    {
        return QTest::qWaitFor([&] { return Result(requestId) != nullptr; }, timeoutMs) ? Result(requestId)
                                                                                        : nullptr;
    }
    bool WaitFor(unsigned int msgId, unsigned long long p1, int timeoutMs = 10000)
    {
        return QTest::qWaitFor([&] { return Find(msgId, p1) != nullptr; }, timeoutMs);
    }

    std::vector<CloudMessage> messages;
    std::function<void(const CloudMessage&)> onMessage;
};

} // namespace vxtest
