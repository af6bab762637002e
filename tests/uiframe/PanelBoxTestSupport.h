#pragma once

// Test cards and a fixture for the panel box tests: cards registered with TplVXCardFactory under
// their own types, a real canvas shown as a top-level window, report capture, and the resets of
// every singleton the box touches.

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/Report.h"
#include "Platform/StdUI/TabWidget.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace panelbox_test {

// A card whose restore data is one number ("Value"); the number survives save and restore.
template <const char* Type> class TValueCard : public CVXCardObjBase
{
public:
    static constexpr const char* kCardType = Type;
    static QSize s_minSize;
    static QSize s_maxSize;

    TValueCard(EnVXCardPos pos, QWidget* parent) : CVXCardObjBase(pos, parent) {}
    QString GetCardObjType() override { return QString::fromLatin1(kCardType); }
    QString GetCardStaticTitle() override { return QString::fromLatin1(kCardType); }
    QSize GetCardMinSize() override { return s_minSize; }
    QSize GetCardMaxSize() override { return s_maxSize; }
    void GetCardObjRestoreData(CVXVariantMapTree* data) const override
    {
        data->Set<int>(QStringLiteral("Value"), value);
    }
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override
    {
        value = data.Get<int>(QStringLiteral("Value"), -1);
    }
    static CVXCardBaseStyle StaticCardStyle()
    {
        CVXCardBaseStyle style;
        style.idealSize = QSize(300, 200);
        style.title = QString::fromLatin1(kCardType);
        return style;
    }

    int value = -1;
};
template <const char* Type> QSize TValueCard<Type>::s_minSize{50, 50};
template <const char* Type> QSize TValueCard<Type>::s_maxSize{5000, 5000};

inline constexpr char kAlpha[] = "BoxTestAlpha";
inline constexpr char kBeta[] = "BoxTestBeta";
inline constexpr char kKLine[] = "KLine"; // the chart entry of the add-component menu
using CAlphaCard = TValueCard<kAlpha>;
using CBetaCard = TValueCard<kBeta>;
using CChartCard = TValueCard<kKLine>;

// A box record with one entry per (type, value), as a canvas would save it.
inline CVXVariantMapTree MakeRecord(const QRect& pos, const std::vector<std::pair<const char*, int>>& cards,
                                    int current = 0)
{
    QVector<CVXVariantMapTree> entries;
    for (const auto& card : cards) {
        CVXVariantMapTree data;
        data.Set<int>(QStringLiteral("Value"), card.second);
        CVXVariantMapTree entry;
        entry.Set<QString>(QStringLiteral("CardType"), QString::fromLatin1(card.first));
        entry.Set<CVXVariantMapTree>(QStringLiteral("CardData"), data);
        entries.append(entry);
    }
    CVXVariantMapTree record;
    record.Set<QRect>(QStringLiteral("PanelBoxPos"), pos);
    record.Set<QVector<CVXVariantMapTree>>(QStringLiteral("Cards"), entries);
    record.Set<int>(QStringLiteral("CurVisibleCard"), current);
    return record;
}

// The value each tab of a box holds, whether its card was made or not.
inline std::vector<int> TabValues(const CVXPanelAtomizationBox* box)
{
    std::vector<int> values;
    for (int i = 0; i < box->GetTabCount(); ++i) {
        CVXVariantMapTree data;
        box->GetTabCardData(i, nullptr, &data);
        values.push_back(data.Get<int>(QStringLiteral("Value"), -1));
    }
    return values;
}

class PanelBoxTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        CVXPanelBoxManager::instance()->ResetForTest();
        CVXPanelLinkageData::GetInstance().ResetForTest();
        CAlphaCard::s_minSize = CBetaCard::s_minSize = QSize(50, 50);
        CAlphaCard::s_maxSize = CBetaCard::s_maxSize = QSize(5000, 5000);
        auto& factories = CVXCardFactoryMgr::Instance();
        factories.RegisterFactory(std::make_shared<TplVXCardFactory<CAlphaCard>>(), true);
        factories.RegisterFactory(std::make_shared<TplVXCardFactory<CBetaCard>>(), true);
        core::report::SetWriter([this](const std::string& line) {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_reports.push_back(line);
        });
    }

    void TearDown() override
    {
        delete m_pCanvas;
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        core::report::Flush();
        core::report::SetWriter({});
        CVXCardFactoryMgr::Instance().ResetForTest();
        CVXPanelBoxManager::instance()->ResetForTest();
        CVXPanelLinkageData::GetInstance().ResetForTest();
    }

    // A real canvas, shown as its own window so that real mouse input reaches it.
    CVXPanelScrollView* Canvas()
    {
        if (!m_pCanvas) {
            m_pCanvas = new CVXPanelScrollView;
            m_pCanvas->resize(1000, 700);
            m_pCanvas->show();
            EXPECT_TRUE(QTest::qWaitForWindowExposed(m_pCanvas));
        }
        return m_pCanvas;
    }

    CVXPanelAtomizationBox* AddBox(const QRect& pos, const std::vector<std::pair<const char*, int>>& cards,
                                   int current = 0)
    {
        auto* box = dynamic_cast<CVXPanelAtomizationBox*>(
            Canvas()->CreateBoxFromRecord(MakeRecord(pos, cards, current), 0));
        EXPECT_NE(box, nullptr);
        return box;
    }

    // Mouse input through the canvas's window, in the coordinates of `widget`.
    QWindow* Window() { return Canvas()->window()->windowHandle(); }
    QPoint ToWindow(QWidget* widget, const QPoint& pos) { return widget->mapTo(Canvas()->window(), pos); }
    void Press(QWidget* w, const QPoint& p, Qt::KeyboardModifiers m = Qt::NoModifier)
    {
        QTest::mousePress(Window(), Qt::LeftButton, m, ToWindow(w, p));
    }
    void MoveTo(QWidget* w, const QPoint& p) { QTest::mouseMove(Window(), ToWindow(w, p)); }
    void Release(QWidget* w, const QPoint& p, Qt::KeyboardModifiers m = Qt::NoModifier)
    {
        QTest::mouseRelease(Window(), Qt::LeftButton, m, ToWindow(w, p));
    }
    void Click(QWidget* w, const QPoint& p, Qt::KeyboardModifiers m = Qt::NoModifier)
    {
        Press(w, p, m);
        Release(w, p, m);
    }

    // A point of the title strip that is neither a tab nor a button, in box coordinates.
    static QPoint FreeTitlePoint(CVXPanelAtomizationBox* box)
    {
        vx_std_ui::VTabBarBase* bar = box->GetTabBar();
        const int tabsEnd = bar->count() > 0 ? bar->tabRect(bar->count() - 1).right() : 0;
        const QPoint inBar((tabsEnd + bar->width()) / 2, 20 - bar->mapTo(box, QPoint(0, 0)).y());
        return bar->mapTo(box, inBar);
    }

    std::vector<std::string> Reports()
    {
        core::report::Flush();
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_reports;
    }

    CVXPanelScrollView* m_pCanvas = nullptr;
    std::mutex m_mutex;
    std::vector<std::string> m_reports;
};

} // namespace panelbox_test
