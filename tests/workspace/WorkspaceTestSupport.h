#pragma once

// Shared by the workspace tests: a fixture with the real seeded feed installed as the cards'
// market data, a shown canvas on which boxes are added by card type and joined to a linkage
// group, the clean-up of the process-wide registries a canvas fills, mouse input through the
// window, waiting on the event loop, combo legs, and card pictures kept for a look.

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/Canvas/PanelBoxKindRegistry.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/WindowInput.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QImage>
#include <QStringList>
#include <QTest>
#include <QThread>
#include <QWindow>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

namespace workspace_test {

inline void FlushDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

// Turns the event loop until `done` holds; false after `ms` (a hang fails, never blocks).
inline bool WaitFor(const std::function<bool()>& done, int ms = 15000)
{
    QDeadlineTimer deadline(ms);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    return true;
}

// Mouse input through the window (tests/common/WindowInput.h).
using vxtest::Drag;
using vxtest::InWindow;
using vxtest::WindowOf;

// The registration functions add factories process-wide; a suite removes what it added.
inline void UnregisterCards(const QStringList& cardTypes)
{
    for (const QString& type : cardTypes)
        CVXCardFactoryMgr::Instance().UnRegisterFactory(type);
}

// The process-wide state a canvas fills: boxes, linkage groups, box kinds.
inline void ResetCanvasRegistries()
{
    CVXPanelBoxManager::instance()->ResetForTest();
    CVXPanelLinkageData::GetInstance().ResetForTest();
    CVXPanelBoxKindRegistry::Instance().ResetForTest();
}

// A shown top-level canvas. Destroying it deletes the canvas with its boxes and cards, then
// resets the registries the canvas filled.
class CTestCanvas
{
public:
    explicit CTestCanvas(QSize size) : m_view(new CVXPanelScrollView)
    {
        m_view->resize(size);
        m_view->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(m_view));
    }
    ~CTestCanvas()
    {
        delete m_view;
        FlushDeletes();
        ResetCanvasRegistries();
    }
    CTestCanvas(const CTestCanvas&) = delete;
    CTestCanvas& operator=(const CTestCanvas&) = delete;

    CVXPanelScrollView* View() const { return m_view; }

    // A new box showing a card of `cardType`, in linkage group `group` (none when empty).
    CVXPanelAtomizationBox* AddBox(const QString& cardType, const QString& group = QString()) const
    {
        CVXPanelAtomizationBox* box = m_view->AddPanelBoxWithCardInitType(cardType, CVXVariantMapTree());
        EXPECT_NE(box, nullptr) << cardType.toStdString();
        if (box && !group.isEmpty())
            box->OnGroupIDChanged(group);
        QApplication::processEvents();
        return box;
    }
    CVXPanelAtomizationBox* AddBox(const char* cardType, const QString& group = QString()) const
    {
        return AddBox(QString::fromLatin1(cardType), group);
    }

    template <typename Card> static Card* CardOf(CVXPanelAtomizationBox* box)
    {
        return box ? qobject_cast<Card*>(box->GetCurrentCard()) : nullptr;
    }

private:
    CVXPanelScrollView* m_view;
};

// A test with the real feed of a fixed seed installed as the cards' market data. TearDown
// removes the feed and any broker the test installed and puts the light theme back.
class CFeedTest : public ::testing::Test
{
protected:
    explicit CFeedTest(std::uint64_t seed) : feed(seed) {}

    void SetUp() override { vx_ws::SetMarketData(&feed); }
    void TearDown() override
    {
        vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Light);
        vx_ws::SetTradeService(nullptr);
        vx_ws::SetMarketData(nullptr);
    }

    // `n` simulated seconds.
    void Steps(int n)
    {
        for (int i = 0; i < n; ++i)
            feed.Step();
    }

    vx_md::CVXSimMarketData feed;
};

// One leg of an options strategy in the linkage keys of a combo.
inline CVXVariantMapTree Leg(qulonglong option, int side, int ratio)
{
    CVXVariantMapTree leg;
    leg.Set<qulonglong>(QString::fromLatin1(vx_ws::keys::kOptionID), option);
    leg.Set<int>(QString::fromLatin1(vx_ws::keys::kSide), side);
    leg.Set<int>(QString::fromLatin1(vx_ws::keys::kRatio), ratio);
    return leg;
}

// Saves `image` as <name>.png in the folder VX_CARD_SNAPSHOT_DIR names, when it names one.
inline void KeepSnapshot(const QImage& image, const QString& name)
{
    const QString folder = qEnvironmentVariable("VX_CARD_SNAPSHOT_DIR");
    if (!folder.isEmpty())
        image.save(QDir(folder).filePath(name + QStringLiteral(".png")));
}

} // namespace workspace_test
