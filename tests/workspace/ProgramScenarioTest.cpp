// The program end to end, in-process: a new user's gallery, opening a built-in layout, a pick
// in a watch list that the other boxes of its linkage group follow, saving as a user layout,
// a restart that brings back the layout and the opened page, undo and redo of a box move through
// the menu keys, the close question on a modified canvas, and a corrupt window-state file.

#include "tests/workspace/ProgramTestSupport.h"

#include "apps/Workspace/QuoteCards/WatchlistCard.h"

#include "UIFrame/CardTypes.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/StdUI/Toast.h"

#include <QAction>
#include <QCursor>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>

#include <algorithm>
#include <map>

using namespace program_test;

namespace {

// A built-in layout with a watch-list box that shares its linkage group with other boxes.
const vx_ws::VXBuiltInLayout* LinkedWatchListLayout()
{
    for (const vx_ws::VXBuiltInLayout& layout : vx_ws::BuiltInLayouts()) {
        for (const vx_ws::VXBuiltInBox& box : layout.boxes) {
            if (box.cardTypes.value(0) != QLatin1String("Watchlist") || box.groupId.isEmpty())
                continue;
            const int mates =
                std::count_if(layout.boxes.begin(), layout.boxes.end(),
                              [&box](const vx_ws::VXBuiltInBox& b) { return b.groupId == box.groupId; });
            if (mates > 1)
                return &layout;
        }
    }
    return nullptr;
}

vx_ws::CVXWatchlistCard* WatchListOf(const std::vector<BoxCard>& boxes,
                                     CVXPanelAtomizationBox** holder = nullptr)
{
    for (const BoxCard& bc : boxes) {
        if (auto* card = qobject_cast<vx_ws::CVXWatchlistCard*>(bc.card)) {
            if (holder)
                *holder = bc.box;
            return card;
        }
    }
    return nullptr;
}

struct BoxSummary
{
    QString cardType;
    QRect geometry;
    QString group;
    bool operator==(const BoxSummary& o) const
    {
        return cardType == o.cardType && geometry == o.geometry && group == o.group;
    }
};

std::vector<BoxSummary> Summaries(CVXPanelScrollView* canvas)
{
    std::vector<BoxSummary> result;
    for (const BoxCard& bc : BoxesOf(canvas))
        result.push_back(
            {bc.card ? bc.card->GetCardObjType() : QString(), bc.box->geometry(), bc.box->GetGroupID()});
    return result;
}

void PressKeys(QWidget* window, Qt::Key key, Qt::KeyboardModifiers mods)
{
    QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : window;
    QTest::keyClick(target, key, mods);
    QCoreApplication::processEvents();
}

} // namespace

class ProgramScenarioTest : public ProgramFixture
{
};

TEST_F(ProgramScenarioTest, NewUserFindsTheBuiltInLayoutsAndOpensOneWithItsBoxes)
{
    StartApp();
    vx_ws::CVXWorkspaceMainWindow* window = Window();
    EXPECT_EQ(window->CurrentFrameKey(), TabFrameKey_PanelWorkspace);
    EXPECT_TRUE(
        window->StatusText(vx_ws::CVXWorkspaceMainWindow::StatusField::User).contains(QStringLiteral("7")));
    ASSERT_EQ(Panel()->Tabs()->count(), 1);
    CVXPanelLayoutPage* gallery = Panel()->CurrentGallery();
    ASSERT_NE(gallery, nullptr);
    // No canvas: the canvas actions wait for one.
    EXPECT_FALSE(window->Action(vx_ws::CVXWorkspaceMainWindow::ActionId::SaveLayout)->isEnabled());
    EXPECT_FALSE(window->Action(vx_ws::CVXWorkspaceMainWindow::ActionId::Undo)->isEnabled());
    // The layout sync's first download from the store reaches the status bar.
    EXPECT_TRUE(WaitFor(
        [window]() {
            return window->StatusText(vx_ws::CVXWorkspaceMainWindow::StatusField::Sync) ==
                   core::langx::tr(970516, "已同步");
        },
        5000));

    const QStringList expected = BuiltInTitles();
    ASSERT_FALSE(expected.isEmpty());
    EXPECT_EQ(Titles(gallery->GetPanelLayoutList(CVXPanelLayoutPage::Default)), expected);
    EXPECT_EQ(Titles(gallery->GetPanelLayoutList(CVXPanelLayoutPage::All)), expected);
    EXPECT_TRUE(Titles(gallery->GetPanelLayoutList(CVXPanelLayoutPage::Customize)).isEmpty());

    // Open the last built-in layout: its boxes, their card types and groups come from its table.
    const vx_ws::VXBuiltInLayout& layout = vx_ws::BuiltInLayouts().last();
    CVXPanelScrollView* canvas = OpenBuiltIn(core::langx::tr(layout.nameId, layout.name));
    ASSERT_NE(canvas, nullptr);
    EXPECT_EQ(Panel()->Tabs()->count(), 1);
    EXPECT_EQ(Panel()->Tabs()->tabText(0), core::langx::tr(layout.nameId, layout.name));
    const std::vector<BoxCard> boxes = BoxesOf(canvas);
    ASSERT_EQ(boxes.size(), static_cast<size_t>(layout.boxes.size()));
    QStringList shownTypes;
    QStringList expectedTypes;
    for (const BoxCard& bc : boxes)
        shownTypes << (bc.card ? bc.card->GetCardObjType() : QStringLiteral("<none>"));
    for (const vx_ws::VXBuiltInBox& box : layout.boxes)
        expectedTypes << box.cardTypes.value(0);
    shownTypes.sort();
    expectedTypes.sort();
    EXPECT_EQ(shownTypes, expectedTypes);
    EXPECT_FALSE(canvas->HasUnsavedChanges());
    EXPECT_TRUE(window->Action(vx_ws::CVXWorkspaceMainWindow::ActionId::SaveLayout)->isEnabled());

    // A built-in layout opened is the user's canvas, not the built-in layout: a fresh key.
    const unsigned long long key = canvas->GetObjKey();
    EXPECT_TRUE(CVXPanelLayoutManager::Instance().GetPanelLayoutData(key).isEmpty());

    // The feed moves the clock in the status bar.
    const QString before = window->StatusText(vx_ws::CVXWorkspaceMainWindow::StatusField::Clock);
    Steps(5);
    const QString after = window->StatusText(vx_ws::CVXWorkspaceMainWindow::StatusField::Clock);
    EXPECT_NE(before, after);
    EXPECT_TRUE(after.contains(vx_ws::CVXWorkspaceCardBase::FormatTime(Feed()->Time())));
}

TEST_F(ProgramScenarioTest, AWatchListPickLeadsItsGroupAndTheSavedLayoutComesBackAfterARestart)
{
    const vx_ws::VXBuiltInLayout* layout = LinkedWatchListLayout();
    ASSERT_NE(layout, nullptr) << "no built-in layout links a watch list with other boxes";
    StartApp();
    CVXPanelScrollView* canvas = OpenBuiltIn(core::langx::tr(layout->nameId, layout->name));
    ASSERT_NE(canvas, nullptr);
    Steps(3);

    std::vector<BoxCard> boxes = BoxesOf(canvas);
    CVXPanelAtomizationBox* watchBox = nullptr;
    vx_ws::CVXWatchlistCard* watch = WatchListOf(boxes, &watchBox);
    ASSERT_NE(watch, nullptr);
    const QString group = watchBox->GetGroupID();
    ASSERT_FALSE(group.isEmpty());
    std::map<CVXPanelAtomizationBox*, unsigned long long> othersBefore;
    for (const BoxCard& bc : boxes) {
        if (bc.box->GetGroupID() != group)
            othersBefore[bc.box] = bc.box->GetStockID();
    }

    // A real click on a row that shows another security than the group does now.
    const unsigned long long shownBefore = watchBox->GetStockID();
    int row = -1;
    for (int i = 0; i < static_cast<int>(watch->Model().Rows().size()); ++i) {
        const auto& r = watch->Model().Rows().at(i);
        if (r.known && r.id != shownBefore && !watch->RowRect(i).isEmpty()) {
            row = i;
            break;
        }
    }
    ASSERT_GE(row, 0) << "no other visible row in the watch list";
    const unsigned long picked = watch->Model().Rows().at(row).id;
    QTest::mouseClick(watch, Qt::LeftButton, Qt::NoModifier, watch->RowRect(row).center());
    QCoreApplication::processEvents();

    int followers = 0;
    for (const BoxCard& bc : BoxesOf(canvas)) {
        SCOPED_TRACE(bc.card ? bc.card->GetCardObjType().toStdString() : std::string("<none>"));
        if (bc.box->GetGroupID() == group) {
            EXPECT_EQ(bc.box->GetStockID(), picked);
            ASSERT_NE(bc.card, nullptr);
            EXPECT_EQ(bc.card->GetStockID(), picked);
            ++followers;
        } else {
            EXPECT_EQ(bc.box->GetStockID(), othersBefore[bc.box]);
        }
    }
    EXPECT_GE(followers, 2);
    const QString code = QString::fromStdString(Feed()->GetSecurity(picked).code);
    EXPECT_TRUE(Window()->StatusText(vx_ws::CVXWorkspaceMainWindow::StatusField::Security).contains(code));
    EXPECT_EQ(app->LastSecurityId(), picked);

    // Save as through the menu key and the save dialog.
    Window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Window()));
    PressKeys(Window(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    AnswerSaveDialog(QStringLiteral("My desk"), QStringLiteral("watch list and chart"));
    const CVXPanelLayoutTemplate saved =
        CVXPanelLayoutManager::Instance().GetPanelLayoutData(QStringLiteral("My desk"));
    ASSERT_FALSE(saved.isEmpty());
    EXPECT_EQ(saved.layoutKey(), canvas->GetObjKey());
    EXPECT_EQ(Panel()->Tabs()->tabText(Panel()->Tabs()->indexOf(canvas)), QStringLiteral("My desk"));
    EXPECT_FALSE(canvas->HasUnsavedChanges());
    auto* toast =
        Window()->findChild<vx_std_ui::VToast*>(QString::fromLatin1(vx_std_ui::VToast::kObjectName));
    ASSERT_NE(toast, nullptr) << "no word about the save";
    EXPECT_TRUE(toast->text().contains(QStringLiteral("My desk"))) << toast->text().toStdString();
    const std::vector<BoxSummary> summary = Summaries(canvas);
    const unsigned long long key = saved.layoutKey();

    Restart();
    // The opened page is back in front, with the same boxes, the group still on the pick.
    CVXPanelScrollView* restored = Panel()->CurrentCanvas();
    ASSERT_NE(restored, nullptr);
    EXPECT_EQ(Panel()->Tabs()->count(), 1);
    EXPECT_EQ(restored->GetObjKey(), key);
    EXPECT_EQ(Panel()->Tabs()->tabText(0), QStringLiteral("My desk"));
    EXPECT_TRUE(Summaries(restored) == summary);
    for (const BoxCard& bc : BoxesOf(restored)) {
        if (bc.box->GetGroupID() == group) {
            EXPECT_EQ(bc.box->GetStockID(), picked);
        }
    }
    // The user layout is in the gallery of a new page.
    Window()->Action(vx_ws::CVXWorkspaceMainWindow::ActionId::NewPage)->trigger();
    CVXPanelLayoutPage* gallery = Panel()->CurrentGallery();
    ASSERT_NE(gallery, nullptr);
    EXPECT_EQ(Titles(gallery->GetPanelLayoutList(CVXPanelLayoutPage::Customize)),
              QStringList{QStringLiteral("My desk")});

    // Ctrl+S on the restored canvas saves over the same layout, without asking.
    Panel()->Tabs()->setCurrentIndex(0);
    Window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Window()));
    QSignalSpy updated(&CVXPanelLayoutManager::Instance(), &CVXPanelLayoutManager::LayoutDataUpdated);
    PressKeys(Window(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(updated.count(), 1);
    EXPECT_EQ(updated.value(0).value(0).toULongLong(), key);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    int userLayouts = 0;
    for (const CVXPanelLayoutTemplate& l : CVXPanelLayoutManager::Instance().GetPanelLayoutDataListRef())
        userLayouts += l.isCustomized() ? 1 : 0;
    EXPECT_EQ(userLayouts, 1);
}

TEST_F(ProgramScenarioTest, ABoxMoveIsUndoneAndRedoneOnceByTheMenuKeys)
{
    StartApp();
    const vx_ws::VXBuiltInLayout& layout = vx_ws::BuiltInLayouts().first();
    CVXPanelScrollView* canvas = OpenBuiltIn(core::langx::tr(layout.nameId, layout.name));
    ASSERT_NE(canvas, nullptr);
    QAction* undo = Window()->Action(vx_ws::CVXWorkspaceMainWindow::ActionId::Undo);
    QAction* redo = Window()->Action(vx_ws::CVXWorkspaceMainWindow::ActionId::Redo);
    EXPECT_FALSE(undo->isEnabled());

    // The box furthest right and down; the moves are long enough to leave any snapping edge.
    CVXPanelAtomizationBox* box = nullptr;
    for (const BoxCard& bc : BoxesOf(canvas)) {
        if (!box || bc.box->geometry().bottom() + bc.box->geometry().right() >
                        box->geometry().bottom() + box->geometry().right())
            box = bc.box;
    }
    ASSERT_NE(box, nullptr);
    const QRect original = box->geometry();
    const QPoint title(box->width() / 2, 12);
    Drag(box, title, QPoint(-150, 90));
    const QRect first = box->geometry();
    ASSERT_NE(first, original) << "the drag did not move the box";
    Drag(box, title, QPoint(-130, 70));
    const QRect second = box->geometry();
    ASSERT_NE(second, first);
    EXPECT_TRUE(undo->isEnabled());
    EXPECT_TRUE(canvas->HasUnsavedChanges());

    Window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Window()));
    canvas->setFocus();
    // One press, one step back: the canvas's own key handling must not undo a second time.
    PressKeys(Window(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(box->geometry(), first);
    EXPECT_TRUE(redo->isEnabled());
    PressKeys(Window(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(box->geometry(), original);
    EXPECT_FALSE(undo->isEnabled());
    EXPECT_FALSE(canvas->HasUnsavedChanges());
    PressKeys(Window(), Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(box->geometry(), first);
    PressKeys(Window(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(box->geometry(), second);
    EXPECT_FALSE(redo->isEnabled());

    // On another frame the keys leave the hidden canvas alone.
    Window()->SwitchTabFrame(TabFrameKey_WatchList, CVXVariantMapTree());
    EXPECT_FALSE(undo->isEnabled());
    PressKeys(Window(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(box->geometry(), second);
}

TEST_F(ProgramScenarioTest, BoxesAreCopiedPastedDeletedAndAddedThroughTheMenuKeys)
{
    StartApp();
    const vx_ws::VXBuiltInLayout& layout = vx_ws::BuiltInLayouts().first();
    CVXPanelScrollView* canvas = OpenBuiltIn(core::langx::tr(layout.nameId, layout.name));
    ASSERT_NE(canvas, nullptr);
    const std::vector<BoxSummary> before = Summaries(canvas);
    ASSERT_FALSE(before.empty());

    // A click on a box's title strip selects it; Ctrl+C copies it, Ctrl+V pastes a copy.
    CVXPanelAtomizationBox* source = BoxesOf(canvas).front().box;
    const QString sourceType = BoxesOf(canvas).front().card->GetCardObjType();
    const QPoint title(source->width() / 2, 12);
    vxtest::Press(source, title);
    vxtest::Release(source, title);
    ASSERT_TRUE(CVXPanelBoxManager::instance()->IsPanelBoxSelected(source));
    Window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Window()));
    canvas->setFocus();
    PressKeys(Window(), Qt::Key_C, Qt::ControlModifier);

    // With the mouse off the canvas there is no place to paste at: a hint, no box.
    QCursor::setPos(canvas->mapToGlobal(QPoint(-50, -50)));
    PressKeys(Window(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(BoxesOf(canvas).size(), before.size());
    auto* toast =
        Window()->findChild<vx_std_ui::VToast*>(QString::fromLatin1(vx_std_ui::VToast::kObjectName));
    ASSERT_NE(toast, nullptr) << "no word on how to paste";
    EXPECT_TRUE(toast->text().contains(QStringLiteral("Ctrl+V"))) << toast->text().toStdString();

    // Pointing at the canvas, the copy lands there.
    const QPoint target(300, 320);
    QCursor::setPos(canvas->GetContentWidget()->mapToGlobal(target));
    PressKeys(Window(), Qt::Key_V, Qt::ControlModifier);
    std::vector<BoxCard> boxes = BoxesOf(canvas);
    ASSERT_EQ(boxes.size(), before.size() + 1);
    CVXPanelAtomizationBox* pasted = boxes.back().box;
    EXPECT_NE(pasted, source);
    EXPECT_EQ(boxes.back().card->GetCardObjType(), sourceType);
    EXPECT_EQ(pasted->size(), source->size());
    EXPECT_EQ(pasted->pos(), target);

    // Delete removes the selected box (the pasted one is selected now); Ctrl+Z brings it back.
    CVXPanelBoxManager::instance()->SetSelectedPanelBox(pasted);
    PressKeys(Window(), Qt::Key_Delete, Qt::NoModifier);
    EXPECT_TRUE(Summaries(canvas) == before);
    PressKeys(Window(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(BoxesOf(canvas).size(), before.size() + 1);
    PressKeys(Window(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(Summaries(canvas) == before);

    // View > Add component puts a box of that card type on the canvas.
    QAction* addTicks = nullptr;
    for (QAction* action : Window()->menuBar()->actions()) {
        if (!action->menu())
            continue;
        for (QAction* entry : action->menu()->actions()) {
            if (!entry->menu())
                continue;
            for (QAction* item : entry->menu()->actions()) {
                if (item->data().toString() == QLatin1String(quote_card_type::Ticks))
                    addTicks = item;
            }
        }
    }
    ASSERT_NE(addTicks, nullptr);
    ASSERT_TRUE(addTicks->isEnabled() && addTicks->parentWidget()->isEnabled());
    addTicks->trigger();
    boxes = BoxesOf(canvas);
    ASSERT_EQ(boxes.size(), before.size() + 1);
    EXPECT_EQ(boxes.back().card->GetCardObjType(), QLatin1String(quote_card_type::Ticks));
}

TEST_F(ProgramScenarioTest, ClosingAModifiedCanvasAsksToSaveDiscardOrKeepIt)
{
    StartApp();
    const vx_ws::VXBuiltInLayout& layout = vx_ws::BuiltInLayouts().first();
    const QString title = core::langx::tr(layout.nameId, layout.name);
    vx_std_ui::VTabBarBase* bar = Panel()->Tabs()->tabBar();
    const auto clickClose = [bar](int index) {
        QTest::mouseClick(WindowOf(bar), Qt::LeftButton, Qt::NoModifier,
                          InWindow(bar, bar->closeGlyphRect(index).center()));
        QCoreApplication::processEvents();
    };

    // Unchanged: closes at once, and the last page leaves a fresh gallery.
    CVXPanelScrollView* canvas = OpenBuiltIn(title);
    ASSERT_NE(canvas, nullptr);
    QPointer<CVXPanelScrollView> watched(canvas);
    clickClose(0);
    FlushDeletes();
    EXPECT_TRUE(watched.isNull());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    ASSERT_EQ(Panel()->Tabs()->count(), 1);
    EXPECT_NE(Panel()->CurrentGallery(), nullptr);

    // Changed: the question; Cancel keeps it, Discard closes it.
    canvas = OpenBuiltIn(title);
    ASSERT_NE(canvas, nullptr);
    CVXPanelAtomizationBox* box = BoxesOf(canvas).front().box;
    Drag(box, QPoint(box->width() / 2, 12), QPoint(30, 30));
    ASSERT_TRUE(canvas->HasUnsavedChanges());
    watched = canvas;
    clickClose(0);
    auto* question = OpenDialog<CVXPanelLayoutCloseDialog>();
    ASSERT_NE(question, nullptr);
    ClickButton(question, "Cancel_Button");
    FlushDeletes();
    EXPECT_FALSE(watched.isNull());
    EXPECT_EQ(Panel()->CurrentCanvas(), canvas);
    clickClose(0);
    question = OpenDialog<CVXPanelLayoutCloseDialog>();
    ASSERT_NE(question, nullptr);
    ClickButton(question, "Discard_Button");
    FlushDeletes();
    EXPECT_TRUE(watched.isNull());
    EXPECT_NE(Panel()->CurrentGallery(), nullptr);
    EXPECT_EQ(CVXPanelLayoutManager::Instance().GetCustomPanelLayoutCount(), 0);

    // Changed again: Save asks the new layout's name, then closes.
    canvas = OpenBuiltIn(title);
    ASSERT_NE(canvas, nullptr);
    box = BoxesOf(canvas).front().box;
    Drag(box, QPoint(box->width() / 2, 12), QPoint(30, 30));
    const QRect moved = box->geometry();
    watched = canvas;
    clickClose(0);
    question = OpenDialog<CVXPanelLayoutCloseDialog>();
    ASSERT_NE(question, nullptr);
    ClickButton(question, "Confirm_Button");
    AnswerSaveDialog(QStringLiteral("Moved"), QString());
    EXPECT_TRUE(watched.isNull());
    const CVXPanelLayoutTemplate saved =
        CVXPanelLayoutManager::Instance().GetPanelLayoutData(QStringLiteral("Moved"));
    ASSERT_FALSE(saved.isEmpty());
    bool found = false;
    for (const CVXVariantMapTree& record :
         saved.restoreData().Get<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData"))) {
        found = found || record.Get<QRect>(QStringLiteral("PanelBoxPos")) == moved;
    }
    EXPECT_TRUE(found) << "the saved layout does not hold the moved box";
}

TEST_F(ProgramScenarioTest, AStoreThatCannotBeOpenedShowsTheSyncFailure)
{
    // A folder where the store's database file should be.
    options.storeFile = root.path();
    vxtest::ExpectError("opening failed for the store");
    StartApp();
    EXPECT_TRUE(WaitFor(
        [this]() {
            return Window()->StatusText(vx_ws::CVXWorkspaceMainWindow::StatusField::Sync) ==
                   core::langx::tr(970517, "同步失败");
        },
        5000));
    // The built-in layouts do not depend on the store.
    EXPECT_EQ(Titles(Panel()->CurrentGallery()->GetPanelLayoutList(CVXPanelLayoutPage::Default)),
              BuiltInTitles());
}

TEST_F(ProgramScenarioTest, ACorruptWindowStateStartsFreshAndTheFileIsKeptAside)
{
    // Paths first: the user folder lives under the data root the app will use.
    core::product_path::SetRootOverride(root.path());
    const QString path = vx_ws::CVXWorkspaceWindowState::FilePath(7);
    core::product_path::ResetForTest();

    struct Row
    {
        const char* what;
        QByteArray bytes;
        const char* aside;
    };
    // The hostile row names a page whose canvas record is not a state tree: nothing of it may
    // be built, not even the gallery page before it.
    const QByteArray hostile =
        "{\"version\":1,\"currentFrame\":20004,\"currentPage\":1,\"pages\":["
        "{\"kind\":\"gallery\",\"title\":\"first\",\"galleryTab\":2},"
        "{\"kind\":\"canvas\",\"title\":\"x\",\"layoutKey\":\"5\",\"canvas\":\"AAAA//8=\"}]}";
    const Row rows[] = {
        {"truncated JSON", QByteArray("{\"version\":1,\"pages\":[{\"kind\":"), ".corrupt"},
        {"hostile page", hostile, ".1.corrupt"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        {
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(row.bytes);
        }
        StartApp();
        EXPECT_TRUE(vxtest::HasLog(path.toStdString()));
        ASSERT_EQ(Panel()->Tabs()->count(), 1);
        CVXPanelLayoutPage* gallery = Panel()->CurrentGallery();
        ASSERT_NE(gallery, nullptr);
        EXPECT_EQ(gallery->GetCurrentTabPage(), CVXPanelLayoutPage::All);
        QFile aside(path + QString::fromLatin1(row.aside));
        ASSERT_TRUE(aside.open(QIODevice::ReadOnly));
        EXPECT_EQ(aside.readAll(), row.bytes);
        EXPECT_FALSE(QFile::exists(path));

        // Quitting writes a good state again; the file set aside stays as it was.
        app.reset();
        FlushDeletes();
        ResetProcessSingletons();
        vx_ws::CVXWorkspaceWindowState state;
        QFile written(path);
        ASSERT_TRUE(written.open(QIODevice::ReadOnly));
        EXPECT_TRUE(vx_ws::CVXWorkspaceWindowState::FromJson(written.readAll(), &state, nullptr));
        EXPECT_EQ(state.pages.size(), 1);
    }
    EXPECT_TRUE(QFile::exists(path + QStringLiteral(".corrupt")));
}
