// The message bus as its users see it: who is called, when, on which thread, and what happens
// when handlers change the bindings while a message is being delivered.

#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"
#include "tests/common/TestSupport.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

constexpr unsigned int kMsg = 91001;
constexpr unsigned int kOtherMsg = 91002;

class MessageDispatchTest : public ::testing::Test
{
protected:
    void TearDown() override { bus.ResetForTest(); }

    // A handler that appends "<name>:<param>" to calls.
    core::MessageHandler Recorder(const std::string& name)
    {
        return [this, name](unsigned int, unsigned long long param, const core::CMessageBody&) {
            calls.push_back(name + ":" + std::to_string(param));
        };
    }

    core::__CMessageDispatch& bus = core::__CMessageDispatch::Instance();
    std::vector<std::string> calls;
    // Distinct addresses used as owner tags.
    int ownerA = 0;
    int ownerB = 0;
    int ownerC = 0;
};

TEST_F(MessageDispatchTest, ImmediateSendCallsHandlersOfThatMessageInBindingOrder)
{
    bus.Bind(kMsg, Recorder("A"), &ownerA);
    bus.Bind(kMsg, Recorder("B"), &ownerB);
    bus.Bind(kOtherMsg, Recorder("other"), &ownerC);
    EXPECT_EQ(bus.HandlerCount(kMsg), 2);
    EXPECT_TRUE(bus.IsBound(kMsg, &ownerA));
    EXPECT_FALSE(bus.IsBound(kOtherMsg, &ownerA));

    bus.Send(kMsg, 7, true);

    EXPECT_EQ(calls, (std::vector<std::string>{"A:7", "B:7"}));
}

TEST_F(MessageDispatchTest, PostedSendsWaitForTheEventLoopAndKeepTheirOrder)
{
    bus.Bind(kMsg, Recorder("A"), &ownerA);

    bus.Send(kMsg, 1, false);
    bus.Send(kMsg, 2, true);
    bus.Send(kMsg, 3, false);
    EXPECT_EQ(calls, (std::vector<std::string>{"A:2"}));

    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(calls, (std::vector<std::string>{"A:2", "A:1", "A:3"}));
}

TEST_F(MessageDispatchTest, PostedSendDeliversACopyOfTheBody)
{
    core::CMessageBody seen;
    bus.Bind(
        kMsg, [&](unsigned int, unsigned long long, const core::CMessageBody& body) { seen = body; },
        &ownerA);

    core::CMessageBody body;
    body.set_p1(5);
    body.set_exdata(std::string("a\0b", 3));
    bus.Send(kMsg, 0, body, false);
    body.set_p1(6);
    body.clear_exdata();
    QCoreApplication::sendPostedEvents();

    EXPECT_TRUE(seen.has_p1());
    EXPECT_EQ(seen.p1(), 5u);
    EXPECT_EQ(seen.exdata(), std::string("a\0b", 3));
}

TEST_F(MessageDispatchTest, BodyTellsWhichFieldsWereSet)
{
    std::vector<core::CMessageBody> seen;
    bus.Bind(
        kMsg, [&](unsigned int, unsigned long long, const core::CMessageBody& b) { seen.push_back(b); },
        &ownerA);

    core::CMessageBody zeroP1;
    zeroP1.set_p1(0); // set to zero is still "has p1"
    core::CMessageBody onlyP2;
    onlyP2.set_p2(0xFFFFFFFFFFFFFFFFull);
    onlyP2.set_exparam("param");
    bus.Send(kMsg, 0, zeroP1, true);
    bus.Send(kMsg, 0, onlyP2, true);
    bus.Send(kMsg, 0, true);

    ASSERT_EQ(seen.size(), 3u);
    EXPECT_TRUE(seen[0].has_p1());
    EXPECT_FALSE(seen[0].has_p2());
    EXPECT_FALSE(seen[1].has_p1());
    EXPECT_TRUE(seen[1].has_p2());
    EXPECT_EQ(seen[1].p2(), 0xFFFFFFFFFFFFFFFFull);
    EXPECT_FALSE(seen[1].has_exdata());
    EXPECT_EQ(seen[1].exparam(), "param");
    EXPECT_FALSE(seen[2].has_p1() || seen[2].has_p2() || seen[2].has_exdata() || seen[2].has_exparam());
}

TEST_F(MessageDispatchTest, SendFromAnotherThreadIsDeliveredOnTheMainThread)
{
    std::vector<QThread*> threads;
    bus.Bind(
        kMsg,
        [&](unsigned int, unsigned long long param, const core::CMessageBody& body) {
            threads.push_back(QThread::currentThread());
            calls.push_back(std::to_string(param) + "/" + std::to_string(body.p1()));
        },
        &ownerA);

    std::thread worker([this] {
        core::CMessageBody body;
        body.set_p1(11);
        bus.Send(kMsg, 9, body, true); // asks for immediate, but cannot run here
    });
    worker.join();
    EXPECT_TRUE(calls.empty());

    ASSERT_TRUE(QTest::qWaitFor([&] { return !calls.empty(); }, 5000));
    EXPECT_EQ(calls, (std::vector<std::string>{"9/11"}));
    EXPECT_EQ(threads, (std::vector<QThread*>{QCoreApplication::instance()->thread()}));
}

TEST_F(MessageDispatchTest, HandlerUnbindingAnotherDuringDeliveryStopsItAtOnce)
{
    bus.Bind(
        kMsg,
        [&](unsigned int, unsigned long long, const core::CMessageBody&) {
            calls.push_back("A");
            bus.UnBind(kMsg, &ownerB);
        },
        &ownerA);
    bus.Bind(kMsg, Recorder("B"), &ownerB);

    bus.Send(kMsg, 1, true);
    EXPECT_EQ(calls, (std::vector<std::string>{"A"}));
    EXPECT_FALSE(bus.IsBound(kMsg, &ownerB));

    bus.Send(kMsg, 2, true);
    EXPECT_EQ(calls, (std::vector<std::string>{"A", "A"}));
}

TEST_F(MessageDispatchTest, HandlerUnbindingItselfIsCalledOnlyOnce)
{
    bus.Bind(
        kMsg,
        [&](unsigned int, unsigned long long param, const core::CMessageBody&) {
            calls.push_back("A:" + std::to_string(param));
            bus.UnBind(kMsg, &ownerA);
        },
        &ownerA);
    bus.Bind(kMsg, Recorder("B"), &ownerB);

    bus.Send(kMsg, 1, true);
    bus.Send(kMsg, 2, true);

    EXPECT_EQ(calls, (std::vector<std::string>{"A:1", "B:1", "B:2"}));
    EXPECT_EQ(bus.HandlerCount(kMsg), 1);
}

TEST_F(MessageDispatchTest, HandlerBoundDuringDeliveryHearsFromTheNextMessageOn)
{
    bus.Bind(
        kMsg,
        [&](unsigned int, unsigned long long param, const core::CMessageBody&) {
            calls.push_back("A:" + std::to_string(param));
            if (!bus.IsBound(kMsg, &ownerC))
                bus.Bind(kMsg, Recorder("C"), &ownerC);
        },
        &ownerA);

    bus.Send(kMsg, 1, true);
    EXPECT_EQ(calls, (std::vector<std::string>{"A:1"}));
    EXPECT_EQ(bus.HandlerCount(kMsg), 2);

    bus.Send(kMsg, 2, true);
    EXPECT_EQ(calls, (std::vector<std::string>{"A:1", "A:2", "C:2"}));
}

TEST_F(MessageDispatchTest, BindingUnderTheSameTagReplacesTheHandler)
{
    bus.Bind(kMsg, Recorder("old"), &ownerA);
    bus.Bind(kMsg, Recorder("new"), &ownerA);
    EXPECT_EQ(bus.HandlerCount(kMsg), 1);

    bus.Send(kMsg, 1, true);
    EXPECT_EQ(calls, (std::vector<std::string>{"new:1"}));
}

TEST_F(MessageDispatchTest, HandlerReplacedDuringDeliveryIsNotCalledInItsOldForm)
{
    bus.Bind(
        kMsg,
        [&](unsigned int, unsigned long long param, const core::CMessageBody&) {
            calls.push_back("A:" + std::to_string(param));
            if (param == 1)
                bus.Bind(kMsg, Recorder("B-new"), &ownerB);
        },
        &ownerA);
    bus.Bind(kMsg, Recorder("B-old"), &ownerB);

    bus.Send(kMsg, 1, true);
    bus.Send(kMsg, 2, true);

    EXPECT_EQ(calls, (std::vector<std::string>{"A:1", "A:2", "B-new:2"}));
}

TEST_F(MessageDispatchTest, PostedMessageSkipsHandlersUnboundBeforeItArrives)
{
    bus.Bind(kMsg, Recorder("A"), &ownerA);
    bus.Bind(kMsg, Recorder("B"), &ownerB);

    bus.Send(kMsg, 1, false);
    bus.UnBind(kMsg, &ownerA);
    QCoreApplication::sendPostedEvents();

    EXPECT_EQ(calls, (std::vector<std::string>{"B:1"}));
}

TEST_F(MessageDispatchTest, UnBindAllRemovesOneOwnerFromEveryMessage)
{
    bus.Bind(kMsg, Recorder("A"), &ownerA);
    bus.Bind(kOtherMsg, Recorder("A-other"), &ownerA);
    bus.Bind(kMsg, Recorder("B"), &ownerB);

    bus.UnBindAll(&ownerA);

    EXPECT_FALSE(bus.IsBound(kMsg, &ownerA));
    EXPECT_FALSE(bus.IsBound(kOtherMsg, &ownerA));
    EXPECT_EQ(bus.HandlerCount(kMsg), 1);
    EXPECT_EQ(bus.HandlerCount(kOtherMsg), 0);
    bus.Send(kMsg, 1, true);
    bus.Send(kOtherMsg, 2, true);
    EXPECT_EQ(calls, (std::vector<std::string>{"B:1"}));
}

TEST_F(MessageDispatchTest, ImmediateSendFromAHandlerIsDeliveredBeforeTheHandlerReturns)
{
    bus.Bind(
        kMsg,
        [&](unsigned int, unsigned long long, const core::CMessageBody&) {
            calls.push_back("outer-begin");
            bus.Send(kOtherMsg, 5, true);
            calls.push_back("outer-end");
        },
        &ownerA);
    bus.Bind(kOtherMsg, Recorder("inner"), &ownerB);

    bus.Send(kMsg, 1, true);

    EXPECT_EQ(calls, (std::vector<std::string>{"outer-begin", "inner:5", "outer-end"}));
}

TEST_F(MessageDispatchTest, BindingWithoutTagOrHandlerIsRefused)
{
    vxtest::ExpectError("null tag");
    vxtest::ExpectError("empty handler");

    bus.Bind(kMsg, Recorder("A"), nullptr);
    bus.Bind(kMsg, core::MessageHandler(), &ownerA);

    EXPECT_EQ(bus.HandlerCount(kMsg), 0);
    EXPECT_TRUE(vxtest::HasLog("__CMessageDispatch::Bind: null tag for message 91001"));
    EXPECT_TRUE(vxtest::HasLog("__CMessageDispatch::Bind: empty handler for message 91001"));
    bus.Send(kMsg, 1, true);
    EXPECT_TRUE(calls.empty());
}

} // namespace
