// The built-in layouts as a new user meets them: written by the generator's code into the
// application folder, listed by the real layout manager and gallery with their names, remarks
// and previews in Chinese and English, opened on a canvas with their cards side by side, the
// linked boxes following one security, and written the same way twice.

#include "apps/Workspace/Layouts/BuiltInLayouts.h"
#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/Cards/WorkspaceCardBase.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/ComboOptionPanelCard.h"
#include "apps/Workspace/TradeCards/OrderTicketButton.h"

#include "tests/common/TestSupport.h"
#include "tests/workspace/WorkspaceTestSupport.h"

#include "UIFrame/Canvas/DefaultPanelLayoutExporter.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutPage.h"
#include "UIFrame/Canvas/PanelLayoutPreview.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <map>
#include <memory>
#include <set>

namespace {

using Manager = CVXPanelLayoutManager;

const QSize kCanvas(1260, 700);

// What each layout is for, as the product describes it: its name in both languages and the
// cards a user expects on it.
struct Expected
{
    QString chinese;
    QString english;
    std::set<std::string> cardTypes;
    int boxes;
};

const std::vector<Expected>& ExpectedLayouts()
{
    static const std::vector<Expected> layouts = {
        {QStringLiteral("日内交易"),
         QStringLiteral("Day trading"),
         {"Watchlist", "StockHeader", "KLine", "OrderBook", "Ticks", "TradePlaceOrderSecuritiesPanel",
          "SecuritiesTradePosition", "SecuritiesTradeOrders", "TradeHistoryOrders"},
         7},
        {QStringLiteral("期权交易"),
         QStringLiteral("Options trading"),
         {"StockHeader", "OptionChainsPanel", "TradePlaceOrderComboOptionPanel", "KLine",
          "SecuritiesTradePosition", "SecuritiesTradeOrders"},
         5},
        {QStringLiteral("市场概览"),
         QStringLiteral("Market overview"),
         {"Watchlist", "KLine", "TicksStatistic", "Brokers", "SecuritiesAccInfo"},
         5},
        {QStringLiteral("点价交易"),
         QStringLiteral("Price-ladder trading"),
         {"TradePlaceOrderBookTraderPanel", "StockHeader", "OrderBook", "Ticks", "KLine",
          "SecuritiesTradeOrders", "TradeHistoryOrders", "SecuritiesTradePosition"},
         6},
    };
    return layouts;
}

bool WaitFor(const std::function<bool()>& done, int ms = 20000)
{
    return QTest::qWaitFor(done, ms);
}

using workspace_test::FlushDeletes;

QByteArray ReadBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The English texts as the application ships them, read straight from the catalogue file.
QJsonObject EnglishTexts()
{
    const QString path = core::product_path::GetResourceFolder() + QStringLiteral("/lang/en.json");
    return QJsonDocument::fromJson(ReadBytes(path)).object();
}

double MeanLuminance(const QImage& image)
{
    double sum = 0;
    int count = 0;
    for (int y = 0; y < image.height(); y += 7) {
        for (int x = 0; x < image.width(); x += 7) {
            const QColor c = image.pixelColor(x, y);
            sum += 0.299 * c.red() + 0.587 * c.green() + 0.114 * c.blue();
            ++count;
        }
    }
    return count ? sum / count : 0;
}

// How far the page point farthest from every box lies outside the canvas's spacing (a 4 px
// margin and 4 px gaps), sampled every 3 px: 0 when only that spacing is left uncovered.
int LargestUncoveredGap(const std::vector<QRect>& boxes)
{
    int worst = 0;
    for (int y = 0; y < kCanvas.height(); y += 3) {
        for (int x = 0; x < kCanvas.width(); x += 3) {
            int nearest = INT_MAX;
            for (const QRect& r : boxes) {
                const int dx = std::max({r.left() - x, 0, x - r.right()});
                const int dy = std::max({r.top() - y, 0, y - r.bottom()});
                nearest = std::min(nearest, std::max(dx, dy));
            }
            worst = std::max(worst, nearest - 4);
        }
    }
    return worst;
}

class BuiltInLayoutsTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_root = std::make_unique<QTemporaryDir>();
        s_written = false;
        vx_ws::RegisterWorkspaceCards();
    }

    static void TearDownTestSuite()
    {
        workspace_test::UnregisterCards(vx_ws::WorkspaceCardTypes());
        s_root.reset();
    }

    void SetUp() override
    {
        ASSERT_TRUE(s_root->isValid());
        core::product_path::SetRootOverride(s_root->path());
        Manager::ResetForTest();
        vx_ws::SetMarketData(&feed);
        vx_ws::SetTradeService(&broker);
    }

    void TearDown() override
    {
        delete tabs;
        tabs = nullptr;
        FlushDeletes();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        Manager::ResetForTest();
        vx_ws::SetMarketData(nullptr);
        vx_ws::SetTradeService(nullptr);
        CVXPanelBoxManager::instance()->ResetForTest();
        CVXPanelLinkageData::GetInstance().ResetForTest();
        vx_ui_res::Provider::Instance().ResetForTest();
        CVXDefaultPanelLayoutExporter::ResetForTest();
        core::langx::ResetForTest();
        core::product_path::ResetForTest();
    }

    static QString TemplatesFolder()
    {
        return core::product_path::GetAppFolder() + QStringLiteral("/LayoutTemplates");
    }

    // The layouts are written once for the suite, into the application folder of its root.
    static QString WrittenTemplates()
    {
        const QString folder = TemplatesFolder();
        if (!s_written) {
            QString error;
            s_written = vx_ws::WriteBuiltInLayouts(folder, &error);
            EXPECT_TRUE(s_written) << error.toStdString();
        }
        return folder;
    }

    static QList<CVXPanelLayoutTemplate> LoadBuiltIns()
    {
        bool loaded = false;
        Manager::Instance().AsyncLoadAllDefaultPanelLayoutEntriesAndLayouts([&loaded] { loaded = true; });
        EXPECT_TRUE(WaitFor([&loaded] { return loaded; }));
        QList<CVXPanelLayoutTemplate> builtIns;
        for (const CVXPanelLayoutTemplate& layout : Manager::Instance().GetPanelLayoutDataListRef()) {
            if (!layout.isCustomized())
                builtIns.append(layout);
        }
        return builtIns;
    }

    // The main tab widget with the gallery as its only page, shown.
    CVXPanelLayoutPage* ShowGallery()
    {
        delete tabs;
        tabs = new CVXTabWidgetRestore;
        tabs->resize(1280, 760);
        auto* page = new CVXPanelLayoutPage;
        tabs->addTab(page, QStringLiteral("Gallery"));
        tabs->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(tabs));
        return page;
    }

    // Opens a built-in layout from the gallery, as a click on its preview does.
    CVXPanelScrollView* Open(unsigned long long key)
    {
        CVXPanelLayoutPage* page = ShowGallery();
        CVXPanelScrollView* canvas = page->OnOpenPanelLayoutRequest(key, true);
        FlushDeletes();
        return canvas;
    }

    static std::vector<CVXPanelAtomizationBox*> Boxes(CVXPanelScrollView* canvas)
    {
        std::vector<CVXPanelAtomizationBox*> boxes;
        for (CVXPanelBaseBox* box : canvas->GetPanelBoxes()) {
            if (auto* single = qobject_cast<CVXPanelAtomizationBox*>(box))
                boxes.push_back(single);
        }
        return boxes;
    }

    static QStringList CardTypes(CVXPanelAtomizationBox* box)
    {
        QStringList types;
        for (int i = 0; i < box->GetTabCount(); ++i) {
            QString type;
            box->GetTabCardData(i, &type, nullptr);
            types.append(type);
        }
        return types;
    }

    static CVXPanelAtomizationBox* BoxWith(CVXPanelScrollView* canvas, const QString& type)
    {
        for (CVXPanelAtomizationBox* box : Boxes(canvas)) {
            if (CardTypes(box).contains(type))
                return box;
        }
        return nullptr;
    }

    static inline std::unique_ptr<QTemporaryDir> s_root;
    static inline bool s_written = false;
    vx_md::CVXSimMarketData feed{20240611};
    vx_trade::CVXSimTradeService broker{&feed};
    CVXTabWidgetRestore* tabs = nullptr;
};

} // namespace

TEST_F(BuiltInLayoutsTest, TheGalleryListsEveryLayoutWithItsTextsInBothLanguagesAndBothPreviews)
{
    const QString folder = WrittenTemplates();
    const QList<CVXPanelLayoutTemplate> builtIns = LoadBuiltIns();
    ASSERT_EQ(builtIns.size(), int(ExpectedLayouts().size()));

    for (int i = 0; i < builtIns.size(); ++i) {
        SCOPED_TRACE(ExpectedLayouts()[i].english.toStdString());
        EXPECT_EQ(builtIns[i].title(), ExpectedLayouts()[i].chinese);
        const Manager::DefaultLayoutEntry* entry =
            Manager::Instance().GetDefaultLayoutEntry(builtIns[i].layoutKey());
        ASSERT_NE(entry, nullptr);
        EXPECT_TRUE(entry->strLayoutFilePath.startsWith(folder));

        // Both previews are real PNG images of the page, the light one shown by the gallery.
        const QString white = entry->strPreviewImagePath;
        ASSERT_TRUE(white.endsWith(QStringLiteral("_white.png"))) << white.toStdString();
        const QString black =
            white.left(white.size() - int(strlen("_white.png"))) + QStringLiteral("_black.png");
        for (const QString& path : {white, black}) {
            EXPECT_TRUE(ReadBytes(path).startsWith("\x89PNG\r\n\x1a\n")) << path.toStdString();
            EXPECT_EQ(QImage(path).size(), kCanvas) << path.toStdString();
        }
        const double light = MeanLuminance(QImage(white));
        const double dark = MeanLuminance(QImage(black));
        EXPECT_GT(light, 150) << "a light page";
        EXPECT_LT(dark, 90) << "a dark page";
    }

    // The gallery in Chinese: names and remarks as the files carry them.
    CVXPanelLayoutPage* page = ShowGallery();
    QVector<CVXPanelLayoutPreview*> previews =
        page->GetPanelLayoutList(CVXPanelLayoutPage::Default)->Previews();
    QStringList titles;
    for (CVXPanelLayoutPreview* preview : previews) {
        if (preview->GetLayoutType() != CVXPanelLayoutPreview::DefaultLayout)
            continue;
        titles.append(preview->GetTitle());
        EXPECT_FALSE(preview->GetSubtitle().isEmpty()) << preview->GetTitle().toStdString();
        EXPECT_GT(MeanLuminance(preview->GetPreviewPixmap().toImage()), 150) << "the light preview";
    }
    QStringList chinese;
    for (const Expected& expected : ExpectedLayouts())
        chinese.append(expected.chinese);
    EXPECT_EQ(titles, chinese);

    // In the dark theme, in English: the dark previews, and every name and remark from the
    // application's English texts.
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    ASSERT_TRUE(core::langx::SetLanguage(QStringLiteral("en")));
    Manager::ResetForTest();
    LoadBuiltIns();
    const QJsonObject english = EnglishTexts();
    page = ShowGallery();
    previews = page->GetPanelLayoutList(CVXPanelLayoutPage::Default)->Previews();
    titles.clear();
    for (CVXPanelLayoutPreview* preview : previews) {
        if (preview->GetLayoutType() != CVXPanelLayoutPreview::DefaultLayout)
            continue;
        titles.append(preview->GetTitle());
        const Manager::DefaultLayoutEntry* entry =
            Manager::Instance().GetDefaultLayoutEntry(preview->GetLayoutKey());
        ASSERT_NE(entry, nullptr);
        const QString remarks = english.value(QString::number(entry->nRemarksLangID)).toString();
        EXPECT_FALSE(remarks.isEmpty()) << "no English remarks for " << entry->nRemarksLangID;
        EXPECT_EQ(preview->GetSubtitle(), remarks);
        EXPECT_LT(MeanLuminance(preview->GetPreviewPixmap().toImage()), 90) << "the dark preview";
    }
    QStringList englishNames;
    for (const Expected& expected : ExpectedLayouts())
        englishNames.append(expected.english);
    EXPECT_EQ(titles, englishNames);
}

TEST_F(BuiltInLayoutsTest, EachLayoutOpensWithItsCardsSideBySideFillingThePage)
{
    WrittenTemplates();
    const QList<CVXPanelLayoutTemplate> builtIns = LoadBuiltIns();
    ASSERT_EQ(builtIns.size(), int(ExpectedLayouts().size()));
    for (int i = 0; i < builtIns.size(); ++i) {
        const Expected& expected = ExpectedLayouts()[i];
        SCOPED_TRACE(expected.english.toStdString());
        CVXPanelScrollView* canvas = Open(builtIns[i].layoutKey());
        ASSERT_NE(canvas, nullptr);
        EXPECT_EQ(tabs->tabText(tabs->currentIndex()), expected.chinese);
        const std::vector<CVXPanelAtomizationBox*> boxes = Boxes(canvas);
        EXPECT_EQ(int(boxes.size()), expected.boxes);

        std::set<std::string> types;
        for (CVXPanelAtomizationBox* box : boxes) {
            for (const QString& type : CardTypes(box)) {
                types.insert(type.toStdString());
                EXPECT_TRUE(CVXCardFactoryMgr::Instance().HasFactory(type)) << type.toStdString();
            }
            // The card on show exists and was made by its own factory.
            ASSERT_NE(box->GetCurrentCard(), nullptr);
            EXPECT_EQ(box->GetCurrentCard()->GetCardObjType(),
                      CardTypes(box).value(box->GetCurrentTabIndex()));
        }
        EXPECT_EQ(types, expected.cardTypes);

        // Boxes lie on the page, apart, each within its cards' size limits, and leave no hole:
        // the page is covered but for the gaps between boxes.
        for (size_t a = 0; a < boxes.size(); ++a) {
            const QRect g = boxes[a]->geometry();
            SCOPED_TRACE(CardTypes(boxes[a]).join(QLatin1Char(',')).toStdString());
            EXPECT_TRUE(QRect(QPoint(0, 0), kCanvas).contains(g))
                << g.x() << "," << g.y() << " " << g.width() << "x" << g.height();
            const QSize min = boxes[a]->GetBoxMinSize();
            const QSize max = boxes[a]->GetBoxMaxSize();
            EXPECT_GE(g.width(), min.width());
            EXPECT_GE(g.height(), min.height());
            if (max.isValid()) {
                EXPECT_LE(g.width(), max.width());
                EXPECT_LE(g.height(), max.height());
            }
            for (size_t b = a + 1; b < boxes.size(); ++b)
                EXPECT_FALSE(g.intersects(boxes[b]->geometry()))
                    << CardTypes(boxes[b]).join(',').toStdString();
        }
        std::vector<QRect> rects;
        for (CVXPanelAtomizationBox* box : boxes)
            rects.push_back(box->geometry());
        EXPECT_EQ(LargestUncoveredGap(rects), 0) << "a hole in the page";
        EXPECT_FALSE(canvas->horizontalScrollBar()->isVisible());
        EXPECT_FALSE(canvas->verticalScrollBar()->isVisible());
    }
}

TEST_F(BuiltInLayoutsTest, PickingASecurityInALinkedBoxMovesTheWholeGroupAndTheTradeBoxesShareOneAccount)
{
    WrittenTemplates();
    const QList<CVXPanelLayoutTemplate> builtIns = LoadBuiltIns();
    ASSERT_EQ(builtIns.size(), int(ExpectedLayouts().size()));

    // Day trading: the watch list drives everything on the page.
    CVXPanelScrollView* canvas = Open(builtIns[0].layoutKey());
    ASSERT_NE(canvas, nullptr);
    for (CVXPanelAtomizationBox* box : Boxes(canvas)) {
        EXPECT_EQ(box->GetStockID(), 1000u) << "the layout's starting security";
        EXPECT_FALSE(box->GetGroupID().isEmpty());
        if (box->GetAccountInfo().IsEmpty())
            continue;
        EXPECT_EQ(vx_trade::CVXSimTradeService::AccountIDFromTree(box->GetAccountInfo()),
                  broker.DefaultAccountID());
    }
    CVXPanelAtomizationBox* watchlist = BoxWith(canvas, QStringLiteral("Watchlist"));
    ASSERT_NE(watchlist, nullptr);
    auto* picker = qobject_cast<vx_ws::CVXWorkspaceCardBase*>(watchlist->GetCurrentCard());
    ASSERT_NE(picker, nullptr);
    picker->RaiseStockChange(1007);
    QCoreApplication::processEvents();
    for (CVXPanelAtomizationBox* box : Boxes(canvas)) {
        SCOPED_TRACE(CardTypes(box).join(QLatin1Char(',')).toStdString());
        EXPECT_EQ(box->GetStockID(), 1007u);
        auto* card = qobject_cast<vx_ws::CVXWorkspaceCardBase*>(box->GetCurrentCard());
        if (card && !CardTypes(box).contains(QStringLiteral("Watchlist"))) {
            EXPECT_EQ(card->ShownStockID(), 1007u);
        }
    }

    // Market overview: the chart leads the quote boxes; the account box is no part of it.
    canvas = Open(builtIns[2].layoutKey());
    ASSERT_NE(canvas, nullptr);
    CVXPanelAtomizationBox* chart = BoxWith(canvas, QStringLiteral("KLine"));
    CVXPanelAtomizationBox* accountBox = BoxWith(canvas, QStringLiteral("SecuritiesAccInfo"));
    ASSERT_NE(chart, nullptr);
    ASSERT_NE(accountBox, nullptr);
    const unsigned long long accountStock = accountBox->GetStockID();
    auto* chartCard = qobject_cast<vx_ws::CVXWorkspaceCardBase*>(chart->GetCurrentCard());
    ASSERT_NE(chartCard, nullptr);
    chartCard->RaiseStockChange(1004);
    QCoreApplication::processEvents();
    for (const char* type : {"Watchlist", "TicksStatistic", "Brokers"}) {
        CVXPanelAtomizationBox* box = BoxWith(canvas, QString::fromLatin1(type));
        ASSERT_NE(box, nullptr) << type;
        EXPECT_EQ(box->GetStockID(), 1004u) << type;
    }
    EXPECT_EQ(accountBox->GetStockID(), accountStock);
    EXPECT_EQ(vx_trade::CVXSimTradeService::AccountIDFromTree(accountBox->GetAccountInfo()),
              broker.DefaultAccountID());
}

TEST_F(BuiltInLayoutsTest, TheOptionsLayoutStartsWithABullCallSpreadOnItsUnderlying)
{
    WrittenTemplates();
    const QList<CVXPanelLayoutTemplate> builtIns = LoadBuiltIns();
    ASSERT_EQ(builtIns.size(), int(ExpectedLayouts().size()));
    CVXPanelScrollView* canvas = Open(builtIns[1].layoutKey());
    ASSERT_NE(canvas, nullptr);
    CVXPanelAtomizationBox* header = BoxWith(canvas, QStringLiteral("StockHeader"));
    CVXPanelAtomizationBox* panel = BoxWith(canvas, QStringLiteral("TradePlaceOrderComboOptionPanel"));
    ASSERT_NE(header, nullptr);
    ASSERT_NE(panel, nullptr);
    const unsigned long underlying = static_cast<unsigned long>(header->GetStockID());
    ASSERT_FALSE(feed.OptionChain(underlying).empty()) << "the layout opens on an underlying with options";

    // What the panel holds, read back from the card itself and checked against the feed's own
    // description of each option: two 30-day calls on the shown underlying, the lower strike
    // bought at the money, the higher one sold.
    CVXVariantMapTree data;
    ASSERT_NE(panel->GetCurrentCard(), nullptr);
    panel->GetCurrentCard()->GetObjRestoreData(&data);
    const CVXVariantMapTree combo = data.Get<CVXVariantMapTree>(QStringLiteral("ComboOptionInfo"));
    EXPECT_EQ(combo.Get<qulonglong>(QString::fromLatin1(vx_ws::keys::kUnderlyingID)), underlying);
    const QVector<CVXVariantMapTree> legs =
        combo.Get<QVector<CVXVariantMapTree>>(QString::fromLatin1(vx_ws::keys::kLegs));
    ASSERT_EQ(legs.size(), 2);
    std::vector<vx_md::SecurityInfo> options;
    for (const CVXVariantMapTree& leg : legs) {
        const auto id =
            static_cast<unsigned long>(leg.Get<qulonglong>(QString::fromLatin1(vx_ws::keys::kOptionID)));
        ASSERT_TRUE(feed.Contains(id)) << id;
        options.push_back(feed.GetSecurity(id));
        EXPECT_EQ(options.back().underlyingId, underlying);
        EXPECT_EQ(options.back().right, vx_md::EnOptionRight::Call);
        EXPECT_EQ(options.back().expiryDays, 30);
    }
    EXPECT_EQ(legs[0].Get<int>(QString::fromLatin1(vx_ws::keys::kSide)), int(vx_trade::EnOrderSide::Buy));
    EXPECT_EQ(legs[1].Get<int>(QString::fromLatin1(vx_ws::keys::kSide)), int(vx_trade::EnOrderSide::Sell));
    const double spot = feed.GetSecurity(underlying).prevClose;
    EXPECT_LT(std::abs(options[0].strike - spot), spot * 0.03) << "bought at the money";
    EXPECT_GT(options[1].strike, options[0].strike);

    // The trade boxes trade in the margin account, where a sold leg is allowed: a click on the
    // panel's order button places the spread as it opened, one combo of both legs.
    unsigned long long margin = 0;
    for (const vx_trade::AccountInfo& account : broker.Accounts()) {
        if (account.margin && margin == 0)
            margin = account.id;
    }
    ASSERT_NE(margin, 0u);
    ASSERT_NE(margin, broker.DefaultAccountID()) << "the default account is the one that refuses";
    for (const char* type : {"TradePlaceOrderComboOptionPanel", "SecuritiesTradePosition"}) {
        CVXPanelAtomizationBox* box = BoxWith(canvas, QString::fromLatin1(type));
        ASSERT_NE(box, nullptr) << type;
        EXPECT_EQ(vx_trade::CVXSimTradeService::AccountIDFromTree(box->GetAccountInfo()), margin) << type;
    }
    auto* card = qobject_cast<vx_ws::CVXComboOptionPanelCard*>(panel->GetCurrentCard());
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->AccountID(), margin);
    ASSERT_TRUE(card->PlaceButton()->isVisible());
    ASSERT_TRUE(card->PlaceButton()->isEnabled());
    std::set<unsigned long long> ordersBefore;
    for (const vx_trade::Order& order : broker.Orders(margin))
        ordersBefore.insert(order.orderId);
    const std::size_t cashOrdersBefore = broker.Orders(broker.DefaultAccountID()).size();
    std::vector<long long> heldBefore;
    for (const vx_md::SecurityInfo& option : options)
        heldBefore.push_back(broker.PositionQuantity(margin, option.id));
    QTest::mouseClick(card->PlaceButton(), Qt::LeftButton);
    QCoreApplication::processEvents();

    std::map<unsigned long, vx_trade::Order> placed; // by option
    for (const vx_trade::Order& order : broker.Orders(margin)) {
        if (ordersBefore.count(order.orderId) == 0)
            placed[order.stockId] = order;
    }
    ASSERT_EQ(placed.size(), 2u);
    ASSERT_EQ(placed.count(options[0].id), 1u);
    ASSERT_EQ(placed.count(options[1].id), 1u);
    const vx_trade::Order& bought = placed[options[0].id];
    const vx_trade::Order& sold = placed[options[1].id];
    EXPECT_NE(bought.comboId, 0u);
    EXPECT_EQ(bought.comboId, sold.comboId);
    for (const vx_trade::Order& order : {bought, sold}) {
        EXPECT_NE(order.status, vx_trade::EnOrderStatus::Rejected) << order.rejectReason;
        EXPECT_EQ(order.quantity, 1);
    }
    EXPECT_EQ(bought.side, vx_trade::EnOrderSide::Buy);
    EXPECT_EQ(sold.side, vx_trade::EnOrderSide::Sell);
    EXPECT_EQ(broker.Orders(broker.DefaultAccountID()).size(), cashOrdersBefore);
    EXPECT_FALSE(card->IsResultError()) << card->ResultText().toStdString();
    EXPECT_FALSE(card->ResultText().isEmpty());
    // The market fills at once at the best prices: one spread bought.
    EXPECT_EQ(broker.PositionQuantity(margin, options[0].id), heldBefore[0] + 1);
    EXPECT_EQ(broker.PositionQuantity(margin, options[1].id), heldBefore[1] - 1);
}

TEST_F(BuiltInLayoutsTest, WritingAgainGivesTheSameFilesAndPutsTheProcessBack)
{
    const QString first = WrittenTemplates();
    QTemporaryDir again;
    ASSERT_TRUE(again.isValid());

    // What the writer borrows is given back: services, theme and the exporter's flag.
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    QString error;
    ASSERT_TRUE(vx_ws::WriteBuiltInLayouts(again.path(), &error)) << error.toStdString();
    EXPECT_EQ(vx_ws::MarketData(), &feed);
    EXPECT_EQ(vx_ws::TradeService(), &broker);
    EXPECT_EQ(vx_ui_res::Provider::Instance().CurrentTheme(), vx_ui_res::Theme::Dark);
    EXPECT_FALSE(CVXDefaultPanelLayoutExporter::IsExportDefaultPanelLayout());

    QStringList names = QDir(first).entryList(QDir::Files, QDir::Name);
    EXPECT_EQ(names, QDir(again.path()).entryList(QDir::Files, QDir::Name));
    EXPECT_EQ(names.size(), 1 + 3 * int(ExpectedLayouts().size())) << names.join(' ').toStdString();
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        const QByteArray a = ReadBytes(QDir(first).filePath(name));
        ASSERT_FALSE(a.isEmpty());
        EXPECT_TRUE(a == ReadBytes(QDir(again.path()).filePath(name)));
    }
}

TEST_F(BuiltInLayoutsTest, AFolderThatCannotBeMadeFailsWithAReasonAndWritesNothing)
{
    QTemporaryDir scratch;
    ASSERT_TRUE(scratch.isValid());
    const QString file = QDir(scratch.path()).filePath(QStringLiteral("plain-file"));
    QFile(file).open(QIODevice::WriteOnly);
    struct Row
    {
        QString folder;
        const char* reason;
    };
    const Row rows[] = {
        {QString(), "cannot create the folder"},
        {file, "cannot create the folder"},
        {QDir(file).filePath(QStringLiteral("below")), "cannot create the folder"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.folder.toStdString());
        QString error;
        EXPECT_FALSE(vx_ws::WriteBuiltInLayouts(row.folder, &error));
        EXPECT_TRUE(error.contains(QLatin1String(row.reason))) << error.toStdString();
    }
    EXPECT_EQ(QDir(scratch.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("plain-file")});
}
