#include "tests/common/TestSupport.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

#include <mutex>

namespace vxtest {
namespace {

struct State
{
    std::mutex mutex;
    std::vector<CapturedLog> logs;
    std::vector<core::assertion::Info> assertions;
    std::vector<std::string> expectedErrors;
    std::vector<std::string> expectedAssertions;
    std::vector<std::string> unexpected;
};

State& S()
{
    static State s;
    return s;
}

bool Matches(const std::vector<std::string>& fragments, const std::string& text)
{
    for (const auto& f : fragments)
        if (text.find(f) != std::string::npos)
            return true;
    return false;
}

} // namespace

void ExpectError(const std::string& fragment)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    S().expectedErrors.push_back(fragment);
}

void ExpectAssertion(const std::string& fragment)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    S().expectedAssertions.push_back(fragment);
}

const std::vector<CapturedLog>& Logs() { return S().logs; }
const std::vector<core::assertion::Info>& Assertions() { return S().assertions; }

bool HasLog(const std::string& fragment)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    for (const auto& l : S().logs)
        if (l.message.find(fragment) != std::string::npos)
            return true;
    return false;
}

int CountAssertions(const std::string& fragment)
{
    std::lock_guard<std::mutex> lock(S().mutex);
    int n = 0;
    for (const auto& a : S().assertions)
        if (a.condition.find(fragment) != std::string::npos)
            ++n;
    return n;
}

void BeginTest()
{
    {
        std::lock_guard<std::mutex> lock(S().mutex);
        S().logs.clear();
        S().assertions.clear();
        S().expectedErrors.clear();
        S().expectedAssertions.clear();
        S().unexpected.clear();
    }
    static bool installed = false;
    if (installed)
        return;
    installed = true;
    core::log::AddSink([](const core::log::Record& r) {
        std::lock_guard<std::mutex> lock(S().mutex);
        S().logs.push_back({r.level, r.message, r.file ? r.file : "", r.line});
        if (r.level >= core::log::Level::Error && !Matches(S().expectedErrors, r.message))
            S().unexpected.push_back("unexpected error log: " + r.message);
    });
    core::assertion::SetHook([](const core::assertion::Info& info) {
        std::lock_guard<std::mutex> lock(S().mutex);
        S().assertions.push_back(info);
        if (!Matches(S().expectedAssertions, info.condition))
            S().unexpected.push_back("unexpected assertion: " + info.condition + " at " + info.file + ":" +
                                     std::to_string(info.line));
    });
}

void EndTest()
{
    // Deferred deletes of the test's widgets run here, before the leak check.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();

    std::vector<std::string> unexpected;
    {
        std::lock_guard<std::mutex> lock(S().mutex);
        unexpected.swap(S().unexpected);
    }
    for (const auto& u : unexpected)
        ADD_FAILURE() << u;

    if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        const auto widgets = QApplication::topLevelWidgets();
        int left = 0;
        for (QWidget* w : widgets) {
            // Qt keeps a few internal top-levels (desktop widget, tooltips); count ours.
            if (w->windowType() == Qt::Desktop || w->inherits("QTipLabel"))
                continue;
            ++left;
            ADD_FAILURE() << "top-level widget left behind: " << w->metaObject()->className() << " \""
                          << w->objectName().toStdString() << "\"";
            delete w;
        }
        (void)left;
    }
}

} // namespace vxtest
