// The layout gallery with the real layout manager on a temporary root: which lists exist and what
// they hold, following the manager's changes, opening layouts in the gallery's place, the tab
// switch report, deleting after the question, and the restore of the current tab page.

#include "tests/uiframe/LayoutGalleryTestSupport.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include <QBuffer>
#include <QDataStream>
#include <QSignalSpy>

namespace {

using gallery_test::GalleryFixture;
using TabPage = CVXPanelLayoutPage::TabPage;

class PanelLayoutPageTest : public GalleryFixture
{
};

// Lists are built when first shown; each holds the add-layout card first, then its layouts in
// the manager's order: every layout on "all", built-in ones on "default", the user's on
// "customize".
TEST_F(PanelLayoutPageTest, ListsAreBuiltOnFirstUseWithTheirOwnLayouts)
{
    const unsigned long long builtIn = LoadBuiltInLayout();
    AddUserLayout(5001, QStringLiteral("Mine A"));
    AddUserLayout(5002, QStringLiteral("Mine B"));

    CVXPanelLayoutPage* page = ShowGallery();
    EXPECT_EQ(page->GetCurrentTabPage(), CVXPanelLayoutPage::All);
    ASSERT_NE(page->FindPanelLayoutList(CVXPanelLayoutPage::All), nullptr);
    EXPECT_EQ(page->FindPanelLayoutList(CVXPanelLayoutPage::Default), nullptr);
    EXPECT_EQ(page->FindPanelLayoutList(CVXPanelLayoutPage::Customize), nullptr);

    const QString add = QStringLiteral("空白面板");
    CVXPanelLayoutList* all = page->FindPanelLayoutList(CVXPanelLayoutPage::All);
    EXPECT_EQ(Titles(all), (QStringList{add, gallery_test::BuiltInTitle(), QStringLiteral("Mine A"),
                                        QStringLiteral("Mine B")}));
    const QVector<CVXPanelLayoutPreview*> cards = all->Previews();
    EXPECT_EQ(cards[0]->GetLayoutType(), CVXPanelLayoutPreview::AddLayout);
    EXPECT_EQ(cards[1]->GetLayoutType(), CVXPanelLayoutPreview::DefaultLayout);
    EXPECT_EQ(cards[1]->GetLayoutKey(), builtIn);
    EXPECT_EQ(cards[1]->GetSubtitle(), gallery_test::BuiltInRemarks());
    EXPECT_FALSE(cards[1]->GetPreviewPixmap().isNull());
    EXPECT_EQ(cards[2]->GetLayoutType(), CVXPanelLayoutPreview::CustomizedLayout);
    EXPECT_EQ(cards[2]->GetLayoutKey(), 5001u);
    EXPECT_EQ(cards[2]->GetSubtitle(), QStringLiteral("remarks of Mine A"));
    EXPECT_EQ(cards[2]->GetUpdatedTimestamp(), 6001u);
    EXPECT_EQ(cards[2]->GetPreviewPixmap().size(), QSize(160, 100));

    page->SetCurrentTabPage(CVXPanelLayoutPage::Customize);
    ASSERT_NE(page->FindPanelLayoutList(CVXPanelLayoutPage::Customize), nullptr);
    EXPECT_EQ(page->FindPanelLayoutList(CVXPanelLayoutPage::Default), nullptr);
    EXPECT_EQ(Titles(page->FindPanelLayoutList(CVXPanelLayoutPage::Customize)),
              (QStringList{add, QStringLiteral("Mine A"), QStringLiteral("Mine B")}));
    EXPECT_EQ(Titles(page->GetPanelLayoutList(CVXPanelLayoutPage::Default)),
              (QStringList{add, gallery_test::BuiltInTitle()}));
}

// Layouts that come and go while the gallery is shown (the cloud sync does this) are added to,
// updated in and taken out of every built list they belong to.
TEST_F(PanelLayoutPageTest, ListsFollowTheManager)
{
    LoadBuiltInLayout();
    CVXPanelLayoutPage* page = ShowGallery();
    CVXPanelLayoutList* all = page->GetPanelLayoutList(CVXPanelLayoutPage::All);
    CVXPanelLayoutList* builtIns = page->GetPanelLayoutList(CVXPanelLayoutPage::Default);
    CVXPanelLayoutList* mine = page->GetPanelLayoutList(CVXPanelLayoutPage::Customize);
    ASSERT_EQ(all->Count(), 2);

    CVXPanelLayoutTemplate layout = AddUserLayout(7001, QStringLiteral("From the cloud"));
    ASSERT_NE(all->FindPreview(7001), nullptr);
    ASSERT_NE(mine->FindPreview(7001), nullptr);
    EXPECT_EQ(builtIns->FindPreview(7001), nullptr);
    EXPECT_EQ(all->Previews().last()->GetLayoutKey(), 7001u);

    layout.setTitle(QStringLiteral("Renamed elsewhere"));
    layout.setRemarks(QStringLiteral("new remarks"));
    layout.setUpdateTimestamp(99999);
    layout.setPreviewPixmap(SolidPixmap(QSize(80, 40), Qt::yellow));
    Manager().AddOrUpdatePanelLayoutData(layout, CVXPanelLayoutManager::ObjectData);
    for (CVXPanelLayoutList* list : {all, mine}) {
        CVXPanelLayoutPreview* card = list->FindPreview(7001);
        ASSERT_NE(card, nullptr);
        EXPECT_EQ(card->GetTitle(), QStringLiteral("Renamed elsewhere"));
        EXPECT_EQ(card->GetSubtitle(), QStringLiteral("new remarks"));
        EXPECT_EQ(card->GetUpdatedTimestamp(), 99999u);
        EXPECT_EQ(card->GetPreviewPixmap().size(), QSize(80, 40));
    }
    EXPECT_EQ(all->Count(), 3);

    QPointer<CVXPanelLayoutPreview> card = all->FindPreview(7001);
    Manager().RemovePanelLayoutData(7001);
    FlushDeletes();
    EXPECT_EQ(all->FindPreview(7001), nullptr);
    EXPECT_EQ(mine->FindPreview(7001), nullptr);
    EXPECT_EQ(all->Count(), 2);
    EXPECT_EQ(mine->Count(), 1);
    EXPECT_TRUE(card.isNull());
}

// Clicking the tab bar selects the page and reports the choice; pages the code selects are not
// reported.
TEST_F(PanelLayoutPageTest, TabClickSelectsThePageAndReportsIt)
{
    AddUserLayout(5001, QStringLiteral("Mine"));
    CVXPanelLayoutPage* page = ShowGallery();
    QSignalSpy changed(page, &CVXPanelLayoutPage::CurrentTabPageChanged);
    CVXPanelLayoutTabBar* bar = page->GetTabBar();
    ASSERT_EQ(bar->count(), 3);

    QTest::mouseClick(WindowOf(bar), Qt::LeftButton, Qt::NoModifier, InWindow(bar, bar->tabRect(2).center()));
    QCoreApplication::processEvents();
    EXPECT_EQ(page->GetCurrentTabPage(), CVXPanelLayoutPage::Customize);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).value<TabPage>(), CVXPanelLayoutPage::Customize);
    std::vector<std::string> lines = ReportsNamed("ClickHomePageTemplate");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("\"second_tab_name\":\"2\""), std::string::npos) << lines[0];

    QTest::mouseClick(WindowOf(bar), Qt::LeftButton, Qt::NoModifier, InWindow(bar, bar->tabRect(1).center()));
    QCoreApplication::processEvents();
    EXPECT_EQ(page->GetCurrentTabPage(), CVXPanelLayoutPage::Default);
    lines = ReportsNamed("ClickHomePageTemplate");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_NE(lines[1].find("\"second_tab_name\":\"1\""), std::string::npos) << lines[1];

    page->SetCurrentTabPage(CVXPanelLayoutPage::All);
    EXPECT_EQ(bar->currentIndex(), 0);
    EXPECT_EQ(changed.count(), 3);
    EXPECT_EQ(ReportsNamed("ClickHomePageTemplate").size(), 2u);
    // Choosing the page already shown changes nothing.
    page->SetCurrentTabPage(CVXPanelLayoutPage::All);
    EXPECT_EQ(changed.count(), 3);
}

// A click on a user layout's card puts a canvas with its boxes in the gallery's place: same
// position, same tab id, the layout's title, current, with a clean undo stack; the gallery goes.
TEST_F(PanelLayoutPageTest, OpeningALayoutReplacesTheGalleryTab)
{
    AddUserLayout(5001, QStringLiteral("Three boxes"), 3);
    QPointer<CVXPanelLayoutPage> page = ShowGallery();
    CVXPanelLayoutPreview* card = page->GetPanelLayoutList(CVXPanelLayoutPage::All)->FindPreview(5001);
    ASSERT_NE(card, nullptr);

    ClickPreviewImage(card);
    FlushDeletes();

    EXPECT_TRUE(page.isNull());
    ASSERT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->tabText(0), QStringLiteral("Left"));
    EXPECT_EQ(tabs->tabText(2), QStringLiteral("Right"));
    EXPECT_EQ(tabs->currentIndex(), 1);
    EXPECT_EQ(tabs->tabText(1), QStringLiteral("Three boxes"));
    EXPECT_EQ(tabs->tabId(1), gallery_test::kGalleryTabId);
    auto* opened = qobject_cast<CVXPanelScrollView*>(tabs->widget(1));
    ASSERT_NE(opened, nullptr);
    EXPECT_TRUE(opened->isVisible());
    EXPECT_EQ(opened->GetPanelBoxes().size(), 3);
    EXPECT_EQ(opened->GetObjKey(), 5001u);
    EXPECT_EQ(opened->GetTabTitle(), QStringLiteral("Three boxes"));
    EXPECT_FALSE(opened->HasUnsavedChanges());
    EXPECT_EQ(opened->GetPanelTabWidget(), tabs.data());
    EXPECT_TRUE(vxtest::HasLog("Open panel layout. title : Three boxes ,time: "));
    canvas_test::checkSanity(opened);
}

// The add-layout card starts an empty canvas under a key of its own; an unknown layout opens
// nothing and keeps the gallery.
TEST_F(PanelLayoutPageTest, BlankCanvasAndUnknownLayout)
{
    AddUserLayout(5001, QStringLiteral("Mine"));
    QPointer<CVXPanelLayoutPage> page = ShowGallery();
    EXPECT_EQ(page->OnOpenPanelLayoutRequest(424242, false), nullptr);
    EXPECT_FALSE(page.isNull());
    EXPECT_EQ(tabs->widget(1), page.data());

    CVXPanelLayoutPreview* add = page->GetPanelLayoutList(CVXPanelLayoutPage::All)->Previews().first();
    ClickPreviewImage(add);
    FlushDeletes();
    EXPECT_TRUE(page.isNull());
    auto* blank = qobject_cast<CVXPanelScrollView*>(tabs->widget(1));
    ASSERT_NE(blank, nullptr);
    EXPECT_EQ(tabs->currentIndex(), 1);
    EXPECT_TRUE(blank->GetPanelBoxes().isEmpty());
    EXPECT_NE(blank->GetObjKey(), 0u);
    EXPECT_FALSE(Manager().HasPanelLayoutData(blank->GetObjKey()));
    EXPECT_FALSE(blank->HasUnsavedChanges());
}

// Delete asks first: "cancel" keeps the layout, "confirm" removes it from the manager, from the
// lists and from the user folder.
TEST_F(PanelLayoutPageTest, DeleteAsksAndRemoves)
{
    CVXPanelLayoutTemplate layout = AddUserLayout(5001, QStringLiteral("Doomed"));
    Manager().AddOrUpdatePanelLayoutData(layout, CVXPanelLayoutManager::LocalData);
    const QString file = Manager().GetPanelLayoutFilePath(5001);
    ASSERT_TRUE(QTest::qWaitFor([&file]() { return QFile::exists(file); }, 5000));

    CVXPanelLayoutPage* page = ShowGallery();
    CVXPanelLayoutList* all = page->GetPanelLayoutList(CVXPanelLayoutPage::All);
    CVXPanelLayoutList* mine = page->GetPanelLayoutList(CVXPanelLayoutPage::Customize);
    page->SetCurrentTabPage(CVXPanelLayoutPage::All);

    page->OnDeletePanelLayoutRequest(5001);
    auto* question = OpenDialog<CVXPanelLayoutDeleteDialog>();
    ASSERT_NE(question, nullptr);
    ClickButton(question, "Cancel_Button");
    FlushDeletes();
    EXPECT_TRUE(Manager().HasPanelLayoutData(5001));
    EXPECT_NE(all->FindPreview(5001), nullptr);

    page->OnDeletePanelLayoutRequest(5001);
    question = OpenDialog<CVXPanelLayoutDeleteDialog>();
    ASSERT_NE(question, nullptr);
    ClickButton(question, "Confirm_Button");
    FlushDeletes();
    EXPECT_FALSE(Manager().HasPanelLayoutData(5001));
    EXPECT_EQ(all->FindPreview(5001), nullptr);
    EXPECT_EQ(mine->FindPreview(5001), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&file]() { return !QFile::exists(file); }, 5000));
}

// The current tab page is saved under "TabPage" as its own state-tree type (a qint32 in data
// streams, its number as text) and restoring it shows that page: page 2 shows the user layouts.
TEST_F(PanelLayoutPageTest, RestoreOfTheTabPage)
{
    LoadBuiltInLayout();
    AddUserLayout(5001, QStringLiteral("Mine"));
    CVXPanelLayoutPage* first = ShowGallery();
    first->SetCurrentTabPage(CVXPanelLayoutPage::Customize);
    CVXVariantMapTree saved;
    first->GetObjRestoreData(&saved);

    EXPECT_EQ(saved.Get<int>(QStringLiteral("TabPage"), -7), -7);
    QVariant raw;
    ASSERT_TRUE(saved.FindValue(QStringLiteral("TabPage"), &raw));
    EXPECT_EQ(CVXVariantMapTree::ValueToString(raw), QStringLiteral("2"));

    CVXVariantMapTree parsed;
    ASSERT_TRUE(parsed.ParseFromQByteArray(saved.SerializeAsQByteArray()));
    EXPECT_EQ(parsed.Get<TabPage>(QStringLiteral("TabPage"), CVXPanelLayoutPage::All),
              CVXPanelLayoutPage::Customize);

    auto* second = AddGalleryTab();
    QSignalSpy changed(second, &CVXPanelLayoutPage::CurrentTabPageChanged);
    second->SetObjRestoreData(parsed);
    EXPECT_EQ(second->GetCurrentTabPage(), CVXPanelLayoutPage::Customize);
    EXPECT_EQ(second->GetTabBar()->currentIndex(), 2);
    EXPECT_EQ(changed.count(), 1);
    CVXPanelLayoutList* shown = second->GetPanelLayoutList(CVXPanelLayoutPage::Customize);
    EXPECT_TRUE(shown->isVisible());
    EXPECT_EQ(Titles(shown), (QStringList{QStringLiteral("空白面板"), QStringLiteral("Mine")}));

    // A record without the key leaves the page as it is.
    second->SetObjRestoreData(CVXVariantMapTree());
    EXPECT_EQ(second->GetCurrentTabPage(), CVXPanelLayoutPage::Customize);

    // The stream form is exactly a qint32.
    QByteArray enumBytes, intBytes;
    {
        QDataStream a(&enumBytes, QIODevice::WriteOnly);
        a << CVXPanelLayoutPage::Customize;
        QDataStream b(&intBytes, QIODevice::WriteOnly);
        b << qint32(2);
    }
    EXPECT_EQ(enumBytes, intBytes);
}

} // namespace

namespace {

// Pictures to look at, not a check: with VX_SCREENSHOT_DIR set, the gallery with a built-in and a
// few saved layouts (their previews grabbed from real canvases) and one of them opened.
TEST_F(PanelLayoutPageTest, Screenshots)
{
    const QString folder = qEnvironmentVariable("VX_SCREENSHOT_DIR");
    if (folder.isEmpty())
        GTEST_SKIP() << "VX_SCREENSHOT_DIR is not set";
    LoadBuiltInLayout();
    const QStringList names = {QStringLiteral("Morning desk"), QStringLiteral("Options watch"),
                               QStringLiteral("A layout with a rather long name that is elided")};
    for (int i = 0; i < names.size(); ++i) {
        auto* source = new CVXPanelScrollView;
        owned.emplace_back(source);
        source->resize(1200, 760);
        source->show();
        for (int b = 0; b < 2 + i; ++b)
            source->AddPanelBoxWithCardInitType(QString::fromLatin1(canvas_test::CLinkCard::kCardType),
                                                CVXVariantMapTree());
        QCoreApplication::processEvents();
        source->SaveLayoutImpl(names[i], i == 1 ? QString() : QStringLiteral("Remarks of ") + names[i], {});
        source->hide();
    }
    CVXPanelLayoutPage* page = ShowGallery();
    QCoreApplication::processEvents();
    ASSERT_TRUE(tabs->grab().save(folder + QStringLiteral("/gallery_all.png")));
    page->SetCurrentTabPage(CVXPanelLayoutPage::Customize);
    QCoreApplication::processEvents();
    ASSERT_TRUE(tabs->grab().save(folder + QStringLiteral("/gallery_customize.png")));
    CVXPanelLayoutPreview* card = page->GetPanelLayoutList(CVXPanelLayoutPage::Customize)->Previews().at(1);
    page->OnOpenPanelLayoutRequest(card->GetLayoutKey(), false);
    FlushDeletes();
    ASSERT_TRUE(tabs->grab().save(folder + QStringLiteral("/opened_layout.png")));
}

} // namespace
