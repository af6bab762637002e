// WriteBuiltInLayouts: each built-in layout is opened on a canvas page of a tab widget, given a
// market to show, exported by the layout manager as a built-in layout (layout file plus light
// and dark previews) and listed in the catalogue the manager reads at start-up.

#include "apps/Workspace/Layouts/BuiltInLayouts.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/Trade/SimTradeService.h"

#include "UIFrame/Canvas/DefaultPanelLayoutExporter.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutTemplate.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"

#include "Platform/Core/Log.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QThread>
#include <QTimer>

namespace vx_ws {

namespace {

// The market every preview shows: one seed, and enough simulated time after the open for the
// charts to hold an hour of candles.
constexpr std::uint64_t kFeedSeed = 20240611;
constexpr int kFeedSteps = 3600;
// The exporter stamps the file with the clock; a built-in file carries a fixed stamp instead so
// that the same layouts always give the same bytes (2024-06-11 09:30 UTC+8).
constexpr unsigned long long kFileTimestamp = 1718069400000ull;
// Export and file work run in the thread pool; a stuck worker fails the write, never hangs it.
constexpr int kFileWorkTimeoutMs = 60000;

// Puts back what the writer changes in the process for the time it runs.
class CEnvironmentGuard
{
public:
    CEnvironmentGuard()
        : m_marketData(MarketData()), m_tradeService(TradeService()),
          m_theme(vx_ui_res::Provider::Instance().CurrentTheme()),
          m_exportFlag(CVXDefaultPanelLayoutExporter::IsExportDefaultPanelLayout())
    {
    }
    ~CEnvironmentGuard()
    {
        CVXPanelLayoutManager::SetFileDialogProviderForTest({});
        if (CVXDefaultPanelLayoutExporter* exporter = CVXDefaultPanelLayoutExporter::Instance())
            exporter->SetExportDefaultPanelLayout(m_exportFlag);
        vx_ui_res::Provider::Instance().SetTheme(m_theme);
        SetMarketData(m_marketData);
        SetTradeService(m_tradeService);
    }
    CEnvironmentGuard(const CEnvironmentGuard&) = delete;
    CEnvironmentGuard& operator=(const CEnvironmentGuard&) = delete;

private:
    vx_md::CVXSimMarketData* m_marketData;
    vx_trade::CVXSimTradeService* m_tradeService;
    vx_ui_res::Theme m_theme;
    bool m_exportFlag;
};

void FlushDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

bool WaitForFileWork()
{
    QDeadlineTimer deadline(kFileWorkTimeoutMs);
    while (CVXPanelLayoutManager::Instance().PendingFileWorkCount() > 0) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    return true;
}

// Runs the exporter on page `index` and waits for its file work. Empty on success.
QString Export(CVXTabWidgetRestore* tabs, int index, const QString& path)
{
    CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    CVXPanelLayoutManager::SetFileDialogProviderForTest(
        [path](QWidget*, CVXPanelLayoutManager::FileDialogKind, const QString&, const QString&) {
            return path;
        });
    bool finished = false;
    bool written = false;
    QEventLoop loop;
    const QMetaObject::Connection connection =
        QObject::connect(&manager, &CVXPanelLayoutManager::PanelLayoutExported, &loop,
                         [&](const QString& exportedPath, bool ok) {
                             if (exportedPath != path)
                                 return;
                             finished = true;
                             written = ok;
                             loop.quit();
                         });
    QTimer::singleShot(kFileWorkTimeoutMs, &loop, &QEventLoop::quit);
    const bool started = manager.ExportDefaultPanelLayout(tabs, index);
    if (started && !finished)
        loop.exec();
    QObject::disconnect(connection);
    if (!started)
        return QStringLiteral("the exporter did not start");
    if (!finished)
        return QStringLiteral("the export did not finish in time");
    if (!written)
        return QStringLiteral("the exporter could not write the file");
    if (!WaitForFileWork())
        return QStringLiteral("the layout manager's file work did not finish in time");
    return QString();
}

// The exporter takes a canvas without a saved layout as it is: no remarks, the current time.
// The built-in file gets its remarks (the fallback of its text id) and the fixed stamp.
QString FinishLayoutFile(const VXBuiltInLayout& layout, const QString& path)
{
    CVXPanelLayoutTemplate file;
    if (!CVXPanelLayoutManager::LoadPanelLayoutFromFile(&file, path, false))
        return QStringLiteral("the exported file cannot be read back");
    file.setRemarks(QString::fromUtf8(layout.remarks));
    file.setUpdateTimestamp(kFileTimestamp);
    if (!CVXPanelLayoutManager::SavePanelLayoutToFile(file, path))
        return QStringLiteral("the exported file cannot be rewritten");
    return QString();
}

// One layout on a fresh market and broker, so that no layout's previews depend on another's.
QString WriteLayout(const VXBuiltInLayout& layout, CVXTabWidgetRestore* tabs, const QDir& folder)
{
    vx_md::CVXSimMarketData feed(kFeedSeed);
    vx_trade::CVXSimTradeService broker(&feed);
    SetMarketData(&feed);
    SetTradeService(&broker);
    // The cards are made, and the preview kept inside the layout file is drawn, in the light
    // theme whatever the caller's: some of what a card draws is set up when it is made.
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Light);

    auto* canvas = new CVXPanelScrollView;
    // The name id is a stable key; loading a built-in layout gives it a key of its own anyway.
    canvas->SetObjKey(static_cast<unsigned long long>(layout.nameId));
    const QString title = QString::fromUtf8(layout.name);
    canvas->SetTabTitle(title);
    const int index = tabs->addTab(canvas, title);
    tabs->setCurrentIndex(index);
    QCoreApplication::processEvents();

    FillBuiltInCanvas(layout, canvas, BuiltInLayoutAccountID(layout, broker));
    // Only what the cards subscribed moves: the market runs once every card is in place.
    for (int step = 0; step < kFeedSteps; ++step)
        feed.Step();
    QCoreApplication::processEvents();
    // The page is painted on screen once in each theme before it is grabbed: some widgets (the
    // boxes' title buttons) keep pictures of their looks made on their first paint, and a
    // picture first made inside a grab comes out empty.
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    tabs->repaint();
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Light);
    tabs->repaint();

    const QString path =
        folder.filePath(QString(layout.fileBase + CVXPanelLayoutManager::GetPanelLayoutExtension()));
    QString failure = Export(tabs, index, path);

    // The cards let go of the feed before it goes.
    tabs->removeTab(index);
    delete canvas;
    FlushDeletes();
    SetMarketData(nullptr);
    SetTradeService(nullptr);

    if (failure.isEmpty())
        failure = FinishLayoutFile(layout, path);
    return failure;
}

QJsonObject CatalogueEntry(const VXBuiltInLayout& layout)
{
    QJsonObject entry;
    entry.insert(QStringLiteral("File"),
                 QString(layout.fileBase + CVXPanelLayoutManager::GetPanelLayoutExtension()));
    // The gallery shows the light preview; the dark one lies beside it under the same base.
    entry.insert(QStringLiteral("Image"), QString(layout.fileBase + QStringLiteral("_white.png")));
    entry.insert(QStringLiteral("NameLangID"), layout.nameId);
    entry.insert(QStringLiteral("RemarksLangID"), layout.remarksId);
    return entry;
}

bool WriteCatalogue(const QJsonArray& entries, const QString& path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QJsonDocument(entries).toJson(QJsonDocument::Indented));
    return file.commit();
}

} // namespace

bool WriteBuiltInLayouts(const QString& folder, QString* error)
{
    auto fail = [error](const QString& reason) {
        VXLOG_WARN("WriteBuiltInLayouts: {}", reason);
        if (error)
            *error = reason;
        return false;
    };
    CVXDefaultPanelLayoutExporter* exporter = CVXDefaultPanelLayoutExporter::Instance();
    if (!exporter)
        return fail(QStringLiteral("the built-in layout exporter is not part of a release version"));
    if (folder.isEmpty() || !QDir().mkpath(folder) || !QFileInfo(folder).isDir())
        return fail(QStringLiteral("cannot create the folder '%1'").arg(folder));
    const QDir target(QFileInfo(folder).absoluteFilePath());

    CEnvironmentGuard guard;
    exporter->SetExportDefaultPanelLayout(true);

    // The page the layouts are drawn on: the tab widget is sized so that its canvas page is
    // exactly the built-in canvas size.
    CVXTabWidgetRestore tabs;
    tabs.resize(BuiltInCanvasSize() + QSize(0, 40));
    tabs.show();
    auto* probe = new QWidget;
    tabs.setCurrentIndex(tabs.addTab(probe, QStringLiteral("-")));
    QCoreApplication::processEvents();
    tabs.resize(tabs.size() + BuiltInCanvasSize() - probe->size());
    tabs.removeTab(0);
    delete probe;
    QCoreApplication::processEvents();

    QJsonArray entries;
    for (const VXBuiltInLayout& layout : BuiltInLayouts()) {
        const QString failure = WriteLayout(layout, &tabs, target);
        if (!failure.isEmpty())
            return fail(QStringLiteral("%1: %2").arg(layout.fileBase, failure));
        entries.append(CatalogueEntry(layout));
    }
    const QString cataloguePath = target.filePath(BuiltInCatalogueFileName());
    if (!WriteCatalogue(entries, cataloguePath))
        return fail(QStringLiteral("cannot write the catalogue '%1'").arg(cataloguePath));
    return true;
}

} // namespace vx_ws
