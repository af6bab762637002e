#pragma once

// Shared by the canvas tests: a small card that records the linkage events it receives, a fixture
// that shows a real canvas as a top-level window at a fixed size, mouse and key helpers that go
// through the window (so that every widget on the way sees the events), and checkSanity().

#include "UIFrame/Canvas/PanelBoxKindRegistry.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardEvents.h"
#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/StdUI/TabWidget.h"

#include "tests/common/WindowInput.h"

#include <QApplication>
#include <QScrollBar>
#include <QSet>
#include <QTest>
#include <QUndoStack>
#include <QWindow>

#include <gtest/gtest.h>

#include <vector>

namespace canvas_test {

// A card that remembers the linkage values it was given and saves a value of its own.
class CLinkCard : public CVXCardObjBase
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "CanvasLinkCard";
    static CVXCardBaseStyle StaticCardStyle()
    {
        CVXCardBaseStyle style;
        style.idealSize = QSize(300, 200);
        style.minSize = QSize(50, 50);
        style.maxSize = QSize(5000, 5000);
        style.title = QStringLiteral("Link");
        return style;
    }

    explicit CLinkCard(EnVXCardPos pos = CardPos_PanelBox, QWidget* parent = nullptr)
        : CVXCardObjBase(pos, parent)
    {
        RegisterUIEventHandler<CardEventStockIDChanged>(this, &CLinkCard::OnStock);
        RegisterUIEventHandler<CardEventAccountInfoChanged>(this, &CLinkCard::OnAccount);
    }
    QString GetCardObjType() override { return QString::fromLatin1(kCardType); }
    QSize GetCardIdealSize() override { return QSize(300, 200); }
    QSize GetCardMinSize() override { return QSize(50, 50); }
    QString GetCardStaticTitle() override { return QStringLiteral("Link"); }
    void GetCardObjRestoreData(CVXVariantMapTree* data) const override
    {
        data->Set<QString>(QStringLiteral("Note"), note);
    }
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override
    {
        note = data.Get<QString>(QStringLiteral("Note"));
    }

    // What a real card does when the user types a security: raise the event from itself.
    void UserPicksStock(unsigned long long id)
    {
        CardEventStockIDChanged event(id);
        core::ui_event::DispatchCardEvent(this, &event);
    }

    void OnStock(const CardEventStockIDChanged* event) { stocks.push_back(event->u64StockID); }
    void OnAccount(const CardEventAccountInfoChanged* event) { accounts.push_back(event->accountInfo); }

    QString note;
    std::vector<unsigned long long> stocks;
    std::vector<CVXVariantMapTree> accounts;
};

// A second card type, so that boxes of different kinds of card can be told apart.
class CPlainCard : public CVXCardObjBase
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "SecuritiesTradeOrders";
    static CVXCardBaseStyle StaticCardStyle()
    {
        CVXCardBaseStyle style;
        style.idealSize = QSize(200, 150);
        return style;
    }
    explicit CPlainCard(EnVXCardPos pos = CardPos_PanelBox, QWidget* parent = nullptr)
        : CVXCardObjBase(pos, parent)
    {
    }
    QString GetCardObjType() override { return QString::fromLatin1(kCardType); }
    void SetObjProperty(const QString& cardType, const CVXVariantMapTree& property) override
    {
        CVXCardObjBase::SetObjProperty(cardType, property);
        properties.push_back(property);
    }
    std::vector<CVXVariantMapTree> properties;
};

class CanvasFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        CVXCardFactoryMgr::Instance().RegisterFactory(std::make_shared<TplVXCardFactory<CLinkCard>>(), true);
        CVXCardFactoryMgr::Instance().RegisterFactory(std::make_shared<TplVXCardFactory<CPlainCard>>(), true);
        canvas = NewCanvas();
    }

    void TearDown() override
    {
        for (CVXPanelScrollView* c : canvases)
            delete c;
        canvases.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        CVXPanelBoxManager::instance()->ResetForTest();
        CVXPanelLinkageData::GetInstance().ResetForTest();
        CVXPanelBoxKindRegistry::Instance().ResetForTest();
        CVXCardFactoryMgr::Instance().ResetForTest();
    }

    // A shown top-level canvas of 800 x 600 (its viewport is the page).
    CVXPanelScrollView* NewCanvas()
    {
        auto* c = new CVXPanelScrollView;
        c->resize(800, 600);
        c->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(c));
        canvases.push_back(c);
        return c;
    }

    CVXPanelAtomizationBox* AddLinkBox(CVXPanelScrollView* c = nullptr)
    {
        return (c ? c : canvas)
            ->AddPanelBoxWithCardInitType(QString::fromLatin1(CLinkCard::kCardType), CVXVariantMapTree());
    }

    static CLinkCard* CardOf(CVXPanelAtomizationBox* box, int index = 0)
    {
        return qobject_cast<CLinkCard*>(box->GetCardByIndex(index));
    }

    static void FlushDeletes()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    // Mouse input through the window, in the coordinates of `widget`.
    static QWindow* WindowOf(QWidget* widget) { return vxtest::WindowOf(widget); }
    static QPoint InWindow(QWidget* widget, QPoint local) { return vxtest::InWindow(widget, local); }
    static void Press(QWidget* w, QPoint local, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        vxtest::Press(w, local, mods);
    }
    static void MoveTo(QWidget* w, QPoint local) { vxtest::MoveTo(w, local); }
    static void Release(QWidget* w, QPoint local) { vxtest::Release(w, local); }
    static void Drag(QWidget* w, QPoint from, QPoint delta) { vxtest::Drag(w, from, delta); }
    // A point of the title strip clear of the tabs and buttons.
    static QPoint TitlePoint(CVXPanelAtomizationBox* box) { return QPoint(box->width() / 2, 20); }

    std::vector<CVXPanelScrollView*> canvases;
    CVXPanelScrollView* canvas = nullptr;
};

// The invariants of a canvas after any operation.
inline void checkSanity(CVXPanelScrollView* canvas)
{
    SCOPED_TRACE("checkSanity");
    QWidget* content = canvas->GetContentWidget();
    QSet<unsigned long long> ids;
    QRect bounds;
    for (CVXPanelBaseBox* box : canvas->GetPanelBoxes()) {
        EXPECT_NE(box->GetBoxId(), 0u);
        EXPECT_FALSE(ids.contains(box->GetBoxId())) << "duplicate id " << box->GetBoxId();
        ids.insert(box->GetBoxId());
        EXPECT_EQ(box->parentWidget(), content);
        EXPECT_EQ(box->GetPanelScrollView(), canvas);
        EXPECT_EQ(CVXPanelBoxManager::instance()->GetPanelBox(box->GetBoxId()), box);
        const QRect g = box->geometry();
        EXPECT_GE(g.left(), 0) << "box " << box->GetBoxId();
        EXPECT_GE(g.top(), 0) << "box " << box->GetBoxId();
        EXPECT_TRUE(content->rect().contains(g)) << "box " << box->GetBoxId() << " outside the content";
        bounds = bounds.isNull() ? g : bounds.united(g);
    }
    // The items' rectangle: the boxes' bounds with 4 px more on the left and top.
    const QRect expected = bounds.isNull() ? QRect() : bounds.adjusted(-4, -4, 0, 0);
    EXPECT_EQ(canvas->CalcItemsRect(), expected);
    // The content is at least the page plus the scroll values.
    EXPECT_GE(content->width(), canvas->viewport()->width());
    EXPECT_GE(content->height(), canvas->viewport()->height());
}

} // namespace canvas_test
