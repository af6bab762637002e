// The gallery's cards and their list: the grid arithmetic against hand-worked rows, the list
// reflowing with its width, clicks on the image, the menu per layout type, rename through the
// save dialog, the shortcut through a real business-module implementation, the built-in preview
// on the themed page background and the card's painting.

#include "tests/uiframe/LayoutGalleryTestSupport.h"

#include "UIFrame/ModuleInterfaces.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/TimeDate.h"
#include "Platform/StdUI/IconButton.h"

#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>

#include <cstdlib>
#include <memory>

namespace {

using gallery_test::GalleryFixture;
namespace grid = panel_layout_list;

// Cards of 100 x 50, 10 px around the grid, 5 px between cards.
grid::Metrics SmallMetrics()
{
    grid::Metrics metrics;
    metrics.card = QSize(100, 50);
    metrics.margin = 10;
    metrics.spacing = 5;
    return metrics;
}

TEST(PanelLayoutGrid, ColumnsFitBetweenTheMargins)
{
    const grid::Metrics m = SmallMetrics();
    // Two cards need 10 + 100 + 5 + 100 + 10 = 225 px.
    EXPECT_EQ(grid::ColumnCount(m, 225), 2);
    EXPECT_EQ(grid::ColumnCount(m, 224), 1);
    // Three need 330.
    EXPECT_EQ(grid::ColumnCount(m, 329), 2);
    EXPECT_EQ(grid::ColumnCount(m, 330), 3);
    // Too narrow for even one card: still one column.
    EXPECT_EQ(grid::ColumnCount(m, 50), 1);
    EXPECT_EQ(grid::ColumnCount(m, 0), 1);
}

TEST(PanelLayoutGrid, CardRectsAndHeight)
{
    const grid::Metrics m = SmallMetrics();
    struct Row
    {
        int width;
        int index;
        QRect rect;
    };
    const Row rows[] = {
        {330, 0, QRect(10, 10, 100, 50)},  {330, 2, QRect(220, 10, 100, 50)},
        {330, 3, QRect(10, 65, 100, 50)},  {330, 7, QRect(115, 120, 100, 50)},
        {225, 3, QRect(115, 65, 100, 50)}, {100, 2, QRect(10, 120, 100, 50)},
    };
    for (const Row& row : rows)
        EXPECT_EQ(grid::CardRect(m, row.width, row.index), row.rect) << row.width << " " << row.index;

    EXPECT_EQ(grid::GridHeight(m, 330, 0), 20);
    EXPECT_EQ(grid::GridHeight(m, 330, 1), 70);
    EXPECT_EQ(grid::GridHeight(m, 330, 3), 70);
    EXPECT_EQ(grid::GridHeight(m, 330, 4), 125);
    EXPECT_EQ(grid::GridHeight(m, 100, 4), 20 + 4 * 50 + 3 * 5);
}

class PanelLayoutPreviewTest : public GalleryFixture
{
protected:
    CVXPanelLayoutPreview* ShownCard(CVXPanelLayoutPreview::LayoutType type, unsigned long long key = 0)
    {
        auto* card = type == CVXPanelLayoutPreview::AddLayout ? CVXPanelLayoutPreview::AddLayoutPreview()
                                                              : new CVXPanelLayoutPreview;
        card->SetLayoutType(type);
        card->SetLayoutKey(key);
        card->SetTitle(QStringLiteral("Card"));
        owned.emplace_back(card);
        card->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(card));
        return card;
    }

    static QList<int> MenuIds(vx_std_ui::VMenu* menu)
    {
        QList<int> ids;
        for (QAction* action : menu->actions())
            ids.append(action->data().toInt());
        return ids;
    }

    // Opens the card's menu with a real click on its more button, then clicks the entry.
    static void ChooseFromMoreMenu(CVXPanelLayoutPreview* card, int id)
    {
        vx_std_ui::VIconButton* more = card->MoreButton();
        ASSERT_TRUE(more->isVisible());
        QTest::mouseClick(WindowOf(more), Qt::LeftButton, Qt::NoModifier,
                          InWindow(more, more->rect().center()));
        QCoreApplication::processEvents();
        vx_std_ui::VMenu* menu = card->OpenedMenu();
        ASSERT_NE(menu, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
        QAction* action = menu->findAction(id);
        ASSERT_NE(action, nullptr) << id;
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(action).center());
        QCoreApplication::processEvents();
        FlushDeletes();
    }
};

// The list lays its cards out by the grid rules at its viewport's width and reflows on resize.
TEST_F(PanelLayoutPreviewTest, ListReflowsWithItsWidth)
{
    auto* list = new CVXPanelLayoutList;
    owned.emplace_back(list);
    list->GetListLayout()->SetMetrics(SmallMetrics());
    for (int i = 0; i < 5; ++i) {
        auto* card = new CVXPanelLayoutPreview;
        card->SetLayoutType(CVXPanelLayoutPreview::CustomizedLayout);
        card->SetLayoutKey(100 + i);
        list->AddPreview(card);
    }
    list->resize(330 + list->verticalScrollBar()->sizeHint().width(), 400);
    list->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list));
    const int width = list->viewport()->width();
    ASSERT_GE(width, 330);
    ASSERT_LT(width, 330 + 105);
    QVector<CVXPanelLayoutPreview*> cards = list->Previews();
    ASSERT_EQ(cards.size(), 5);
    // Three in the first row, two in the second.
    EXPECT_EQ(cards[0]->geometry(), QRect(10, 10, 100, 50));
    EXPECT_EQ(cards[2]->geometry(), QRect(220, 10, 100, 50));
    EXPECT_EQ(cards[3]->geometry(), QRect(10, 65, 100, 50));
    EXPECT_EQ(cards[4]->geometry(), QRect(115, 65, 100, 50));

    list->resize(200, 100);
    QCoreApplication::processEvents();
    ASSERT_LT(list->viewport()->width(), 225);
    // One column of five: 20 + 5 * 50 + 4 * 5 = 290 px of content, more than the view shows.
    EXPECT_EQ(cards[4]->geometry(), QRect(10, 230, 100, 50));
    EXPECT_EQ(list->GetContentWidget()->height(), 290);
    EXPECT_GT(list->verticalScrollBar()->maximum(), 0);

    // Inserting before the others moves them on.
    auto* first = new CVXPanelLayoutPreview;
    first->SetLayoutKey(99);
    list->InsertPreview(0, first);
    QCoreApplication::processEvents();
    EXPECT_EQ(list->Previews().first(), first);
    EXPECT_EQ(cards[0]->geometry(), QRect(10, 65, 100, 50));
    EXPECT_TRUE(list->RemovePreview(99));
    EXPECT_FALSE(list->RemovePreview(99));
}

// A click on the image opens: the add-layout card asks for a blank canvas, the others ask to
// open their layout (saying whether it is built-in). A press that ends elsewhere, or a click on
// the texts, does nothing.
TEST_F(PanelLayoutPreviewTest, ClickingTheImage)
{
    CVXPanelLayoutPreview* builtIn = ShownCard(CVXPanelLayoutPreview::DefaultLayout, 3);
    CVXPanelLayoutPreview* mine = ShownCard(CVXPanelLayoutPreview::CustomizedLayout, 4004);
    CVXPanelLayoutPreview* add = ShownCard(CVXPanelLayoutPreview::AddLayout);
    QSignalSpy openBuiltIn(builtIn, &CVXPanelLayoutPreview::OpenPanelLayoutRequest);
    QSignalSpy openMine(mine, &CVXPanelLayoutPreview::OpenPanelLayoutRequest);
    QSignalSpy addBlank(add, &CVXPanelLayoutPreview::AddPanelLayoutRequest);
    QSignalSpy openAdd(add, &CVXPanelLayoutPreview::OpenPanelLayoutRequest);

    ClickPreviewImage(builtIn);
    ASSERT_EQ(openBuiltIn.count(), 1);
    EXPECT_EQ(openBuiltIn.at(0).at(0).toULongLong(), 3u);
    EXPECT_TRUE(openBuiltIn.at(0).at(1).toBool());

    ClickPreviewImage(mine);
    ASSERT_EQ(openMine.count(), 1);
    EXPECT_EQ(openMine.at(0).at(0).toULongLong(), 4004u);
    EXPECT_FALSE(openMine.at(0).at(1).toBool());

    ClickPreviewImage(add);
    EXPECT_EQ(addBlank.count(), 1);
    EXPECT_EQ(openAdd.count(), 0);

    const QPoint text(20, mine->height() - 12);
    QTest::mouseClick(WindowOf(mine), Qt::LeftButton, Qt::NoModifier, InWindow(mine, text));
    QTest::mousePress(WindowOf(mine), Qt::LeftButton, Qt::NoModifier,
                      InWindow(mine, mine->PreviewRect().center()));
    QTest::mouseRelease(WindowOf(mine), Qt::LeftButton, Qt::NoModifier, InWindow(mine, text));
    QCoreApplication::processEvents();
    EXPECT_EQ(openMine.count(), 1);
}

// The menu's entries by layout type, in order: open; delete and edit for a user layout; add
// shortcut for all but the add-layout card.
TEST_F(PanelLayoutPreviewTest, MenuEntriesPerLayoutType)
{
    struct Row
    {
        CVXPanelLayoutPreview::LayoutType type;
        QList<int> ids;
        QStringList texts;
    };
    const Row rows[] = {
        {CVXPanelLayoutPreview::DefaultLayout,
         {253025, 276801},
         {QStringLiteral("打开"), QStringLiteral("添加到快捷入口")}},
        {CVXPanelLayoutPreview::CustomizedLayout,
         {253025, 253026, 252647, 276801},
         {QStringLiteral("打开"), QStringLiteral("删除"), QStringLiteral("编辑"),
          QStringLiteral("添加到快捷入口")}},
        {CVXPanelLayoutPreview::AddLayout, {253025}, {QStringLiteral("打开")}},
    };
    for (const Row& row : rows) {
        CVXPanelLayoutPreview card;
        card.SetLayoutType(row.type);
        std::unique_ptr<vx_std_ui::VMenu> menu(card.BuildMenu());
        EXPECT_EQ(MenuIds(menu.get()), row.ids) << int(row.type);
        QStringList texts;
        for (QAction* action : menu->actions())
            texts.append(action->text());
        EXPECT_EQ(texts, row.texts);
        if (row.ids.contains(276801)) {
            EXPECT_FALSE(menu->findAction(276801)->icon().isNull());
        }
    }
    // The add-layout card has no more button.
    CVXPanelLayoutPreview* add = ShownCard(CVXPanelLayoutPreview::AddLayout);
    EXPECT_FALSE(add->MoreButton()->isVisible());
}

// The menu opened by the more button: "open" opens, "delete" asks the gallery to delete.
TEST_F(PanelLayoutPreviewTest, MoreButtonMenuOpensAndDeletes)
{
    CVXPanelLayoutPreview* mine = ShownCard(CVXPanelLayoutPreview::CustomizedLayout, 4004);
    QSignalSpy open(mine, &CVXPanelLayoutPreview::OpenPanelLayoutRequest);
    QSignalSpy del(mine, &CVXPanelLayoutPreview::DeletePanelLayoutRequest);

    ChooseFromMoreMenu(mine, CVXPanelLayoutPreview::MenuDelete);
    ASSERT_EQ(del.count(), 1);
    EXPECT_EQ(del.at(0).at(0).toULongLong(), 4004u);
    EXPECT_EQ(open.count(), 0);
    EXPECT_EQ(mine->OpenedMenu(), nullptr);

    ChooseFromMoreMenu(mine, CVXPanelLayoutPreview::MenuOpen);
    ASSERT_EQ(open.count(), 1);
    EXPECT_FALSE(open.at(0).at(1).toBool());
    EXPECT_EQ(del.count(), 1);

    // A right click opens the same menu.
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(10, 10), mine->mapToGlobal(QPoint(10, 10)));
    QApplication::sendEvent(mine, &event);
    ASSERT_NE(mine->OpenedMenu(), nullptr);
    EXPECT_EQ(MenuIds(mine->OpenedMenu()), (QList<int>{253025, 253026, 252647, 276801}));
    mine->OpenedMenu()->close();
    FlushDeletes();
}

// Edit renames the user layout through the save dialog: the manager, its file and the card take
// the new title and remarks; a layout gone meanwhile is logged and left alone.
TEST_F(PanelLayoutPreviewTest, EditRenamesTheLayout)
{
    CVXPanelLayoutPage* page = ShowGallery();
    CVXPanelLayoutTemplate layout = AddUserLayout(5001, QStringLiteral("Old name"));
    CVXPanelLayoutPreview* card = page->GetPanelLayoutList(CVXPanelLayoutPage::All)->FindPreview(5001);
    ASSERT_NE(card, nullptr);

    ChooseFromMoreMenu(card, CVXPanelLayoutPreview::MenuEdit);
    auto* dialog = OpenDialog<CVXPanelLayoutSaveDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->GetName(), QStringLiteral("Old name"));
    EXPECT_EQ(dialog->GetRemarks(), QStringLiteral("remarks of Old name"));
    AnswerSaveDialog(QStringLiteral("New name"), QStringLiteral("New remarks"));

    const CVXPanelLayoutTemplate renamed = Manager().GetPanelLayoutData(5001);
    EXPECT_EQ(renamed.title(), QStringLiteral("New name"));
    EXPECT_EQ(renamed.remarks(), QStringLiteral("New remarks"));
    EXPECT_GT(renamed.updateTimestamp(), layout.updateTimestamp());
    EXPECT_EQ(renamed.restoreData(), layout.restoreData());
    EXPECT_EQ(card->GetTitle(), QStringLiteral("New name"));
    EXPECT_EQ(card->GetSubtitle(), QStringLiteral("New remarks"));
    EXPECT_EQ(card->GetUpdatedTimestamp(), renamed.updateTimestamp());
    const QString file = Manager().GetPanelLayoutFilePath(5001);
    ASSERT_TRUE(QTest::qWaitFor(
        [&file]() {
            CVXPanelLayoutTemplate onDisk;
            return CVXPanelLayoutManager::LoadPanelLayoutFromFile(&onDisk, file, false) &&
                   onDisk.title() == QStringLiteral("New name");
        },
        5000));

    // The layout disappears while the dialog is open.
    card->OnPanelLayoutEdit();
    ASSERT_NE(OpenDialog<CVXPanelLayoutSaveDialog>(), nullptr);
    Manager().RemovePanelLayoutData(5001);
    AnswerSaveDialog(QStringLiteral("Too late"), QString());
    EXPECT_TRUE(vxtest::HasLog("编辑无效自定义面板数据: layoutKey = 5001, name = Too late"));
    EXPECT_FALSE(Manager().HasPanelLayoutData(5001));
    EXPECT_EQ(Manager().GetPanelLayoutDataListRef().size(), 0);
}

// The business module of the main frame, as the host program registers it: records what it was
// asked and answers as told.
class RecordingBusinessModule : public IBaseBusinessModuleUtil
{
public:
    bool AddShortcut(const CVXVariantMapTree& params) override
    {
        requests.push_back(params.Get<QString>(QStringLiteral("PanelShortcutId")));
        return answer;
    }
    std::vector<QString> requests;
    bool answer = true;
};

// Add shortcut gives the layout a shortcut id once (kept in its restore data), hands it to the
// business module and logs the outcome.
TEST_F(PanelLayoutPreviewTest, AddShortcutThroughTheBusinessModule)
{
    auto module = std::make_shared<RecordingBusinessModule>();
    core::IVXPluginCenter::Instance().Register<IBaseBusinessModuleUtil>(
        [module]() -> std::shared_ptr<IBaseBusinessModuleUtil> { return module; });
    CVXPanelLayoutPage* page = ShowGallery();
    AddUserLayout(5001, QStringLiteral("Quick"));
    ASSERT_TRUE(Manager()
                    .GetPanelLayoutData(5001)
                    .restoreData()
                    .Get<QString>(QStringLiteral("ShortcutId"))
                    .isEmpty());
    CVXPanelLayoutPreview* card = page->GetPanelLayoutList(CVXPanelLayoutPage::All)->FindPreview(5001);
    ASSERT_NE(card, nullptr);

    ChooseFromMoreMenu(card, CVXPanelLayoutPreview::MenuAddShortcut);
    ASSERT_EQ(module->requests.size(), 1u);
    const QString id = module->requests[0];
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^Quick_\\d+_\\d+$")).match(id).hasMatch())
        << id.toStdString();
    EXPECT_EQ(Manager().GetPanelLayoutData(5001).restoreData().Get<QString>(QStringLiteral("ShortcutId")),
              id);
    EXPECT_TRUE(vxtest::HasLog("[CVXPanelLayoutPreview] Add shortcut of template succeed, title = Quick, "
                               "panelShortcutId = " +
                               id.toStdString()));

    // Again: the same id; the module refuses this time.
    module->answer = false;
    EXPECT_FALSE(card->AddShortcut());
    ASSERT_EQ(module->requests.size(), 2u);
    EXPECT_EQ(module->requests[1], id);
    EXPECT_TRUE(vxtest::HasLog("Add shortcut of template failed, title = Quick"));

    // Without a module nothing can take the shortcut.
    core::IVXPluginCenter::Instance().ResetForTest();
    EXPECT_FALSE(card->AddShortcut());
    EXPECT_EQ(module->requests.size(), 2u);
}

TEST_F(PanelLayoutPreviewTest, ShortcutIdsAreTitleTimeAndRandom)
{
    CVXPanelLayoutPreview card;
    card.SetTitle(QStringLiteral("My layout"));
    const QString a = card.GenerateShortcutId();
    const QString b = card.GenerateShortcutId();
    const QRegularExpression form(QStringLiteral("^My layout_(\\d+)_(\\d+)$"));
    const QRegularExpressionMatch ma = form.match(a);
    ASSERT_TRUE(ma.hasMatch()) << a.toStdString();
    ASSERT_TRUE(form.match(b).hasMatch());
    EXPECT_NE(a, b);
    const long long stamp = ma.captured(1).toLongLong();
    EXPECT_LE(std::llabs(stamp - core::time_date::GetServerTimeMs()), 60000);
}

// A built-in layout's preview is its image over the page background of the current theme: the
// opaque half keeps its colour, the transparent half shows the background.
TEST_F(PanelLayoutPreviewTest, DefaultLayoutPixmapOnThePageBackground)
{
    const unsigned long long key = LoadBuiltInLayout();
    CVXPanelLayoutPreview card;
    card.SetLayoutType(CVXPanelLayoutPreview::DefaultLayout);
    card.SetLayoutKey(key);
    for (vx_ui_res::Theme theme : {vx_ui_res::Theme::Light, vx_ui_res::Theme::Dark}) {
        vx_ui_res::Provider::Instance().SetTheme(theme);
        const QColor background =
            vx_ui_res::Provider::Instance().GetColor(QStringLiteral("style_skin_panel/page_background"));
        ASSERT_TRUE(background.isValid());
        const QImage image = card.GetDefaultLayoutPixmap().toImage();
        ASSERT_EQ(image.size(), QSize(40, 20));
        EXPECT_EQ(QColor(image.pixel(5, 10)), QColor(Qt::red));
        EXPECT_EQ(QColor(image.pixel(30, 10)).rgb(), background.rgb());
    }
    vx_ui_res::Provider::Instance().ResetForTest();
    // The two themes differ, so the check above saw the theme's own colour.
    EXPECT_NE(vx_ui_res::Provider::Instance().GetColor(QStringLiteral("style_skin_panel/page_background"),
                                                       vx_ui_res::Theme::Light),
              vx_ui_res::Provider::Instance().GetColor(QStringLiteral("style_skin_panel/page_background"),
                                                       vx_ui_res::Theme::Dark));

    CVXPanelLayoutPreview mine;
    mine.SetLayoutType(CVXPanelLayoutPreview::CustomizedLayout);
    mine.SetLayoutKey(key);
    EXPECT_TRUE(mine.GetDefaultLayoutPixmap().isNull());
}

// The card paints its image fitted into the preview area with its proportions kept, centred on
// the page background, and lights its frame under the mouse.
TEST_F(PanelLayoutPreviewTest, PaintingKeepsTheImageProportions)
{
    CVXPanelLayoutPreview* card = ShownCard(CVXPanelLayoutPreview::CustomizedLayout, 1);
    card->SetPreviewPixmap(SolidPixmap(QSize(300, 300), Qt::green));
    const QRect preview = card->PreviewRect();
    ASSERT_GT(preview.width(), preview.height());
    const QColor background =
        vx_ui_res::Provider::Instance().GetColor(QStringLiteral("style_skin_panel/page_background"));

    QImage image = card->grab().toImage();
    // A square fills the full height and is centred: green in the middle, background at the
    // sides beyond half a height from the centre.
    const QPoint c = preview.center();
    const int half = preview.height() / 2;
    EXPECT_EQ(QColor(image.pixel(c)), QColor(Qt::green));
    EXPECT_EQ(QColor(image.pixel(c.x() + half - 3, c.y())), QColor(Qt::green));
    EXPECT_EQ(QColor(image.pixel(c.x() + half + 3, c.y())).rgb(), background.rgb());
    EXPECT_EQ(QColor(image.pixel(c.x() - half - 3, c.y())).rgb(), background.rgb());

    const QPoint border(card->width() / 2, 0);
    const QColor idle = QColor(image.pixel(border));
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(card, &enter);
    EXPECT_TRUE(card->IsHovered());
    image = card->grab().toImage();
    EXPECT_NE(QColor(image.pixel(border)), idle);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(card, &leave);
    EXPECT_FALSE(card->IsHovered());
    EXPECT_EQ(QColor(card->grab().toImage().pixel(border)), idle);
}

} // namespace
