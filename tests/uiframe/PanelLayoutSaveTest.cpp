// Saving a canvas as a layout, walked as a user does it: a blank canvas from the gallery, boxes
// added, Ctrl+S, the name typed into the save dialog and confirmed with a click; the layout in
// the manager, its file and the gallery; reopening it; a built-in layout opened and saved as a
// user layout; the replace question; save-as.

#include "tests/uiframe/LayoutGalleryTestSupport.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include <QKeyEvent>
#include <QSignalSpy>

namespace {

using gallery_test::GalleryFixture;

class PanelLayoutSaveTest : public GalleryFixture
{
protected:
    // A blank canvas started from the gallery's add-layout card.
    CVXPanelScrollView* BlankCanvasFromGallery()
    {
        CVXPanelLayoutPage* page = tabs ? AddGalleryTab() : ShowGallery();
        const int index = tabs->indexOf(page);
        ClickPreviewImage(page->GetPanelLayoutList(CVXPanelLayoutPage::All)->Previews().first());
        FlushDeletes();
        auto* opened = qobject_cast<CVXPanelScrollView*>(tabs->widget(index));
        EXPECT_NE(opened, nullptr);
        return opened;
    }

    CVXPanelAtomizationBox* AddBox(CVXPanelScrollView* on, const QString& note)
    {
        auto* box = on->AddPanelBoxWithCardInitType(QString::fromLatin1(canvas_test::CLinkCard::kCardType),
                                                    CVXVariantMapTree());
        CardOf(box)->note = note;
        return box;
    }

    static void PressKeys(CVXPanelScrollView* on, Qt::KeyboardModifiers mods)
    {
        on->setFocus();
        QTest::keyClick(WindowOf(on), Qt::Key_S, mods);
        QCoreApplication::processEvents();
    }

    static QStringList NotesOf(CVXPanelScrollView* on)
    {
        QStringList notes;
        for (CVXPanelBaseBox* box : on->GetPanelBoxes()) {
            if (auto* single = qobject_cast<CVXPanelAtomizationBox*>(box))
                notes.append(CardOf(single)->note);
        }
        return notes;
    }
};

// Blank canvas → two boxes → Ctrl+S → name and remarks typed → confirmed: the layout is in the
// manager, in its file and in a gallery's lists with its preview; reopened it has the same boxes.
TEST_F(PanelLayoutSaveTest, SaveThroughTheDialogThenReopen)
{
    CVXPanelScrollView* canvas = BlankCanvasFromGallery();
    ASSERT_NE(canvas, nullptr);
    AddBox(canvas, QStringLiteral("quotes"));
    AddBox(canvas, QStringLiteral("orders"));
    ASSERT_TRUE(canvas->HasUnsavedChanges());
    const QVector<QRect> geometries = {canvas->GetPanelBoxes()[0]->geometry(),
                                       canvas->GetPanelBoxes()[1]->geometry()};

    PressKeys(canvas, Qt::ControlModifier);
    auto* dialog = OpenDialog<CVXPanelLayoutSaveDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->GetName(), canvas->GetTabTitle());
    EXPECT_TRUE(dialog->GetRemarks().isEmpty());
    AnswerSaveDialog(QStringLiteral("Morning desk"), QStringLiteral("quotes and orders"));

    const QList<CVXPanelLayoutTemplate> mine = UserLayouts();
    ASSERT_EQ(mine.size(), 1);
    const CVXPanelLayoutTemplate saved = mine[0];
    EXPECT_EQ(saved.layoutKey(), canvas->GetObjKey());
    EXPECT_EQ(saved.title(), QStringLiteral("Morning desk"));
    EXPECT_EQ(saved.remarks(), QStringLiteral("quotes and orders"));
    EXPECT_FALSE(saved.isUploaded());
    EXPECT_FALSE(saved.previewPixmap().isNull());
    EXPECT_LE(saved.previewPixmap().width(), 640);
    EXPECT_EQ(saved.restoreData().Get<int>(QStringLiteral("BoxCount")), 2);
    EXPECT_TRUE(saved.restoreData().Get<bool>(QStringLiteral("IsSaveAsTemplate")));
    const QString shortcutId = saved.restoreData().Get<QString>(QStringLiteral("ShortcutId"));
    EXPECT_TRUE(shortcutId.startsWith(QStringLiteral("Morning desk_"))) << shortcutId.toStdString();
    EXPECT_TRUE(
        vxtest::HasLog("[CVXPanelScrollView] Save template, panelShortcutId = " + shortcutId.toStdString()));
    // Saved: clean undo stack, tab titled with the layout.
    EXPECT_FALSE(canvas->HasUnsavedChanges());
    EXPECT_EQ(tabs->tabText(tabs->indexOf(canvas)), QStringLiteral("Morning desk"));
    EXPECT_EQ(canvas->GetTabTitle(), QStringLiteral("Morning desk"));
    const QString file = Manager().GetPanelLayoutFilePath(saved.layoutKey());
    ASSERT_TRUE(QTest::qWaitFor([&file]() { return QFile::exists(file); }, 5000));
    CVXPanelLayoutTemplate onDisk;
    ASSERT_TRUE(CVXPanelLayoutManager::LoadPanelLayoutFromFile(&onDisk, file, false));
    EXPECT_EQ(onDisk.title(), QStringLiteral("Morning desk"));
    EXPECT_EQ(onDisk.restoreData(), saved.restoreData());

    // A new gallery lists it on "all" and "customize", with its preview.
    CVXPanelLayoutPage* gallery = AddGalleryTab();
    for (CVXPanelLayoutPage::TabPage listed : {CVXPanelLayoutPage::All, CVXPanelLayoutPage::Customize}) {
        CVXPanelLayoutPreview* card = gallery->GetPanelLayoutList(listed)->FindPreview(saved.layoutKey());
        ASSERT_NE(card, nullptr);
        EXPECT_EQ(card->GetTitle(), QStringLiteral("Morning desk"));
        EXPECT_EQ(card->GetSubtitle(), QStringLiteral("quotes and orders"));
        EXPECT_EQ(card->GetPreviewPixmap().size(), saved.previewPixmap().size());
    }
    EXPECT_EQ(gallery->GetPanelLayoutList(CVXPanelLayoutPage::Default)->FindPreview(saved.layoutKey()),
              nullptr);

    // Reopened: the same boxes, cards and places, clean.
    const int galleryIndex = tabs->indexOf(gallery);
    ClickPreviewImage(gallery->GetPanelLayoutList(CVXPanelLayoutPage::All)->FindPreview(saved.layoutKey()));
    FlushDeletes();
    auto* reopened = qobject_cast<CVXPanelScrollView*>(tabs->widget(galleryIndex));
    ASSERT_NE(reopened, nullptr);
    ASSERT_NE(reopened, canvas);
    EXPECT_EQ(NotesOf(reopened), (QStringList{QStringLiteral("quotes"), QStringLiteral("orders")}));
    ASSERT_EQ(reopened->GetPanelBoxes().size(), 2);
    EXPECT_EQ(reopened->GetPanelBoxes()[0]->geometry(), geometries[0]);
    EXPECT_EQ(reopened->GetPanelBoxes()[1]->geometry(), geometries[1]);
    EXPECT_EQ(reopened->GetObjKey(), saved.layoutKey());
    EXPECT_EQ(reopened->GetShortcutId(), shortcutId);
    EXPECT_FALSE(reopened->HasUnsavedChanges());
    EXPECT_EQ(tabs->tabText(galleryIndex), QStringLiteral("Morning desk"));
    canvas_test::checkSanity(reopened);
}

// A built-in layout opened from the gallery and saved becomes a new user layout; the built-in
// layout stays exactly as it was.
TEST_F(PanelLayoutSaveTest, SavingAnOpenedBuiltInLayoutMakesAUserLayout)
{
    const unsigned long long builtInKey = LoadBuiltInLayout();
    const CVXPanelLayoutTemplate builtInBefore = Manager().GetPanelLayoutData(builtInKey);
    CVXPanelLayoutPage* page = ShowGallery();
    page->SetCurrentTabPage(CVXPanelLayoutPage::Default);
    ClickPreviewImage(page->GetPanelLayoutList(CVXPanelLayoutPage::Default)->FindPreview(builtInKey));
    FlushDeletes();
    auto* canvas = qobject_cast<CVXPanelScrollView*>(tabs->widget(1));
    ASSERT_NE(canvas, nullptr);
    EXPECT_EQ(tabs->tabText(1), gallery_test::BuiltInTitle());
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 2);
    EXPECT_NE(canvas->GetObjKey(), builtInKey);
    EXPECT_FALSE(Manager().HasPanelLayoutData(canvas->GetObjKey()));
    EXPECT_TRUE(canvas->GetShortcutId().isEmpty());

    AddBox(canvas, QStringLiteral("third"));
    canvas->OnSavePanelLayout();
    EXPECT_EQ(ReportsNamed("ClickPanelSaveTemplate").size(), 1u);
    auto* dialog = OpenDialog<CVXPanelLayoutSaveDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->GetName(), gallery_test::BuiltInTitle());
    AnswerSaveDialog(QStringLiteral("My grid"), QString());

    const QList<CVXPanelLayoutTemplate> mine = UserLayouts();
    ASSERT_EQ(mine.size(), 1);
    EXPECT_EQ(mine[0].title(), QStringLiteral("My grid"));
    EXPECT_NE(mine[0].layoutKey(), builtInKey);
    EXPECT_EQ(mine[0].restoreData().Get<int>(QStringLiteral("BoxCount")), 3);
    EXPECT_NE(mine[0].restoreData().Get<QString>(QStringLiteral("ShortcutId")),
              builtInBefore.restoreData().Get<QString>(QStringLiteral("ShortcutId")));
    const CVXPanelLayoutTemplate builtInAfter = Manager().GetPanelLayoutData(builtInKey);
    EXPECT_TRUE(builtInAfter == builtInBefore);
    EXPECT_FALSE(builtInAfter.isCustomized());
    EXPECT_FALSE(QFile::exists(Manager().GetPanelLayoutFilePath(builtInKey)));
}

// Saving under the name of another user layout asks first: "cancel" leaves both as they were,
// "replace" saves this canvas over the other layout.
TEST_F(PanelLayoutSaveTest, SavingOverAnotherLayoutAsksToReplace)
{
    CVXPanelScrollView* first = BlankCanvasFromGallery();
    AddBox(first, QStringLiteral("first"));
    first->SaveLayout(QStringLiteral("Shared name"), QStringLiteral("from the first"), {});
    ASSERT_EQ(UserLayouts().size(), 1);
    const unsigned long long firstKey = UserLayouts()[0].layoutKey();

    CVXPanelScrollView* second = BlankCanvasFromGallery();
    ASSERT_NE(second, first);
    AddBox(second, QStringLiteral("second a"));
    AddBox(second, QStringLiteral("second b"));
    int done = 0;
    second->SaveLayout(QStringLiteral("Shared name"), QStringLiteral("from the second"),
                       [&done]() { ++done; });
    auto* question = OpenDialog<CVXPanelLayoutReplaceDialog>();
    ASSERT_NE(question, nullptr);
    EXPECT_TRUE(question->Question().contains(QStringLiteral("Shared name")))
        << question->Question().toStdString();
    ClickButton(question, "Cancel_Button");
    FlushDeletes();
    EXPECT_EQ(done, 0);
    ASSERT_EQ(UserLayouts().size(), 1);
    EXPECT_EQ(UserLayouts()[0].remarks(), QStringLiteral("from the first"));
    EXPECT_TRUE(second->HasUnsavedChanges());

    second->SaveLayout(QStringLiteral("Shared name"), QStringLiteral("from the second"),
                       [&done]() { ++done; });
    question = OpenDialog<CVXPanelLayoutReplaceDialog>();
    ASSERT_NE(question, nullptr);
    ClickButton(question, "Confirm_Button");
    FlushDeletes();
    EXPECT_EQ(done, 1);
    const QList<CVXPanelLayoutTemplate> mine = UserLayouts();
    ASSERT_EQ(mine.size(), 1);
    EXPECT_EQ(mine[0].layoutKey(), firstKey);
    EXPECT_EQ(second->GetObjKey(), firstKey);
    EXPECT_EQ(mine[0].remarks(), QStringLiteral("from the second"));
    EXPECT_EQ(mine[0].restoreData().Get<int>(QStringLiteral("BoxCount")), 2);
    EXPECT_FALSE(second->HasUnsavedChanges());
}

// Ctrl+S on a canvas that has its layout saves at once; Ctrl+Shift+S always asks, and a new name
// makes a second layout while the first stays as it was saved.
TEST_F(PanelLayoutSaveTest, QuickSaveAndSaveAs)
{
    CVXPanelScrollView* canvas = BlankCanvasFromGallery();
    AddBox(canvas, QStringLiteral("one"));
    canvas->SaveLayout(QStringLiteral("Desk"), QStringLiteral("r"), {});
    const unsigned long long key = canvas->GetObjKey();
    const QString shortcutId = canvas->GetShortcutId();
    ASSERT_FALSE(shortcutId.isEmpty());

    AddBox(canvas, QStringLiteral("two"));
    ASSERT_TRUE(canvas->HasUnsavedChanges());
    PressKeys(canvas, Qt::ControlModifier);
    EXPECT_EQ(OpenDialog<CVXPanelLayoutSaveDialog>(), nullptr);
    ASSERT_EQ(UserLayouts().size(), 1);
    EXPECT_EQ(Manager().GetPanelLayoutData(key).restoreData().Get<int>(QStringLiteral("BoxCount")), 2);
    EXPECT_EQ(Manager().GetPanelLayoutData(key).title(), QStringLiteral("Desk"));
    EXPECT_FALSE(canvas->HasUnsavedChanges());

    AddBox(canvas, QStringLiteral("three"));
    PressKeys(canvas, Qt::ControlModifier | Qt::ShiftModifier);
    auto* dialog = OpenDialog<CVXPanelLayoutSaveDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->GetName(), QStringLiteral("Desk"));
    EXPECT_EQ(dialog->GetRemarks(), QStringLiteral("r"));
    AnswerSaveDialog(QStringLiteral("Desk copy"), QStringLiteral("r2"));

    ASSERT_EQ(UserLayouts().size(), 2);
    EXPECT_NE(canvas->GetObjKey(), key);
    EXPECT_EQ(Manager().GetPanelLayoutData(key).restoreData().Get<int>(QStringLiteral("BoxCount")), 2);
    const CVXPanelLayoutTemplate copy = Manager().GetPanelLayoutData(canvas->GetObjKey());
    EXPECT_EQ(copy.title(), QStringLiteral("Desk copy"));
    EXPECT_EQ(copy.restoreData().Get<int>(QStringLiteral("BoxCount")), 3);
    EXPECT_NE(copy.restoreData().Get<QString>(QStringLiteral("ShortcutId")), shortcutId);
    EXPECT_EQ(Manager().GetPanelLayoutData(key).restoreData().Get<QString>(QStringLiteral("ShortcutId")),
              shortcutId);

    // Cancelling the dialog saves nothing.
    AddBox(canvas, QStringLiteral("four"));
    PressKeys(canvas, Qt::ControlModifier | Qt::ShiftModifier);
    dialog = OpenDialog<CVXPanelLayoutSaveDialog>();
    ASSERT_NE(dialog, nullptr);
    ClickButton(dialog, "Cancel_Button");
    FlushDeletes();
    EXPECT_EQ(
        Manager().GetPanelLayoutData(canvas->GetObjKey()).restoreData().Get<int>(QStringLiteral("BoxCount")),
        3);
    EXPECT_TRUE(canvas->HasUnsavedChanges());
}

// A canvas never saved has object key 0, which is also the first built-in layout's key: saving
// it makes a new user layout and leaves the built-in one alone.
TEST_F(PanelLayoutSaveTest, AnUnsavedCanvasNeverSavesOverABuiltInLayout)
{
    const unsigned long long builtInKey = LoadBuiltInLayout();
    ASSERT_EQ(builtInKey, 0u);
    const CVXPanelLayoutTemplate before = Manager().GetPanelLayoutData(builtInKey);
    auto* bare = new CVXPanelScrollView;
    owned.emplace_back(bare);
    bare->resize(600, 400);
    ASSERT_EQ(bare->GetObjKey(), 0u);
    AddBox(bare, QStringLiteral("x"));
    bare->SaveLayoutImpl(QStringLiteral("Bare"), QString(), {});
    EXPECT_NE(bare->GetObjKey(), 0u);
    EXPECT_TRUE(Manager().GetPanelLayoutData(builtInKey) == before);
    ASSERT_EQ(UserLayouts().size(), 1);
    EXPECT_EQ(UserLayouts()[0].layoutKey(), bare->GetObjKey());
    // Without a tab widget the canvas has none to retitle.
    EXPECT_EQ(bare->GetPanelTabWidget(), nullptr);
}

} // namespace
