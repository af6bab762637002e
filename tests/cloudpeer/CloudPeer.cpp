// A second running program of the same user for the layout cloud sync tests: it logs in on its
// own user folder, points its configuration client at the shared store file, lets its layout
// manager load and sync, then saves or deletes one layout through the manager and exits once
// that change reached the store.
//
//   cloudpeer --root DIR --db FILE --user ID (--save KEY TITLE STAMP | --delete KEY)
// Exit code 0: done; 1: bad arguments; 2: timed out.

#include "Platform/Core/ConfigCloud.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/LoginState.h"
#include "Platform/Core/ProductPath.h"
#include "UIFrame/Canvas/PanelLayoutCloudSync.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"

#include "tests/common/LeakSuppressions.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QThreadPool>

#include <cstdio>
#include <functional>

namespace {

constexpr int kTimeoutMs = 30000;

bool WaitUntil(const std::function<bool()>& done)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > kTimeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(2);
    }
    return true;
}

// A pass has ended when its download settled and every upload or deletion it sent reported.
bool PassEnded(const CVXPanelLayoutCloudSync* sync)
{
    return sync->DownloadRequest().State() != CVXPanelLayoutCloudSyncRequest::Requesting &&
           sync->PendingUploadCount() == 0 && sync->PendingDeleteCount() == 0;
}

int Fail(const char* why)
{
    std::fprintf(stderr, "cloudpeer: %s\n", why);
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    QString root, db, action, title;
    unsigned long long user = 0, key = 0, stamp = 0;
    const QStringList args = QCoreApplication::arguments();
    for (int i = 1; i < args.size(); ++i) {
        const QString& a = args.at(i);
        auto next = [&]() { return i + 1 < args.size() ? args.at(++i) : QString(); };
        if (a == QLatin1String("--root"))
            root = next();
        else if (a == QLatin1String("--db"))
            db = next();
        else if (a == QLatin1String("--user"))
            user = next().toULongLong();
        else if (a == QLatin1String("--save")) {
            action = a;
            key = next().toULongLong();
            title = next();
            stamp = next().toULongLong();
        } else if (a == QLatin1String("--delete")) {
            action = a;
            key = next().toULongLong();
        }
    }
    if (root.isEmpty() || db.isEmpty() || user == 0 || key == 0 || action.isEmpty()) {
        std::fprintf(stderr, "cloudpeer: bad arguments\n");
        return 1;
    }

    core::product_path::SetRootOverride(root);
    core::CLoginState::Instance().Login(user);
    int code = 0;
    {
        core::config_cloud::CConfigCloudClient client(db);
        client.SetChangePollInterval(0);
        client.SetUserID(user);
        core::config_cloud::SetDefaultClient(&client);

        CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
        manager.SetUserID(static_cast<unsigned long>(user));
        CVXPanelLayoutCloudSync* sync = manager.CloudSync();

        // Start-up: the user's files, then the first pass (started by the load itself).
        bool loaded = false;
        manager.AsyncLoadCustomizedPanelLayouts([&loaded] { loaded = true; });
        if (!WaitUntil([&] { return loaded && PassEnded(sync); }))
            code = Fail("start-up sync did not end");

        if (code == 0 && action == QLatin1String("--save")) {
            CVXPanelLayoutTemplate layout;
            layout.setLayoutKey(key);
            layout.setTitle(title);
            layout.setRestoreData(CVXVariantMapTree());
            layout.setUpdateTimestamp(stamp);
            layout.setIsCustomized(true);
            layout.setIsUploaded(false);
            manager.AddOrUpdatePanelLayoutData(layout, CVXPanelLayoutManager::AllData);
            if (!WaitUntil([&] { return PassEnded(sync) && manager.GetPanelLayoutData(key).isUploaded(); }))
                code = Fail("the layout was not uploaded");
        } else if (code == 0) {
            if (!manager.HasPanelLayoutData(key))
                code = Fail("the layout to delete did not come down from the store");
            manager.RemovePanelLayoutData(key);
            if (code == 0 &&
                !WaitUntil([&] { return PassEnded(sync) && !manager.GetDeleteLayoutKeySet().contains(key); }))
                code = Fail("the deletion did not reach the store");
        }
        // Files written by the manager's workers are finished before the process ends.
        QThreadPool::globalInstance()->waitForDone(kTimeoutMs);
        QCoreApplication::processEvents();
        CVXPanelLayoutManager::ResetForTest();
        core::config_cloud::SetDefaultClient(nullptr);
    }
    return code;
}
