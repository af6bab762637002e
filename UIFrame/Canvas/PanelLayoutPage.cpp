#include "UIFrame/Canvas/PanelLayoutPage.h"

#include "UIFrame/Canvas/PanelLayoutDialogs.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutPreview.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/Report.h"
#include "Platform/StdUI/ThemeResource.h"

#include <json/value.h>

#include <QDataStream>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScopedValueRollback>
#include <QStackedWidget>
#include <QVBoxLayout>

QDataStream& operator<<(QDataStream& stream, CVXPanelLayoutPage::TabPage page)
{
    return stream << qint32(page);
}

QDataStream& operator>>(QDataStream& stream, CVXPanelLayoutPage::TabPage& page)
{
    qint32 value = 0;
    stream >> value;
    page = CVXPanelLayoutPage::TabPage(value);
    return stream;
}

namespace {

const QString& TabPageKey()
{
    static const QString s_key = QStringLiteral("TabPage");
    return s_key;
}

QColor ThemeColor(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QString::fromLatin1(key));
}

constexpr int kTabHeight = 32;
constexpr int kTabFontPixelSize = 14;
constexpr int kTabGap = 4; // between the pills of neighbouring tabs, half on each side

QFont TabFont(const QFont& base, bool current)
{
    QFont font = base;
    font.setPixelSize(kTabFontPixelSize);
    font.setWeight(current ? QFont::DemiBold : QFont::Normal);
    return font;
}

bool IsValidTabPage(int value)
{
    return value >= CVXPanelLayoutPage::All && value <= CVXPanelLayoutPage::Customize;
}

} // namespace

// ----------------------------------------------------------------------------------------------
// Tab bar

CVXPanelLayoutTabBar::CVXPanelLayoutTabBar(QWidget* parent) : vx_std_ui::VTabBarBase(parent)
{
    setObjectName(QStringLiteral("PanelLayoutTabBar"));
    setDrawBase(false);
    setExpanding(false);
    setDocumentMode(true);
    setMouseTracking(true);
    setUsesScrollButtons(false);
    setFocusPolicy(Qt::TabFocus);
}

CVXPanelLayoutTabBar::~CVXPanelLayoutTabBar() = default;

QMargins CVXPanelLayoutTabBar::TabContentMargins()
{
    return QMargins(16 + kTabGap / 2, 0, 16 + kTabGap / 2, 0);
}

QSize CVXPanelLayoutTabBar::tabSizeHint(int index) const
{
    // Sized for the bold (current) text, so that a tab keeps its width when it is chosen.
    const QFontMetrics metrics(TabFont(font(), true));
    const QMargins margins = TabContentMargins();
    return QSize(metrics.horizontalAdvance(tabText(index)) + margins.left() + margins.right(), kTabHeight);
}

QSize CVXPanelLayoutTabBar::minimumTabSizeHint(int index) const
{
    return tabSizeHint(index);
}

void CVXPanelLayoutTabBar::drawTabBackground(QPainter* painter, int index, const QRect& rect) const
{
    const bool current = index == currentIndex();
    const bool hovered = index == m_hoveredIndex;
    if (!current && !hovered)
        return;
    const QRectF pill = QRectF(rect).adjusted(kTabGap / 2.0, 2, -kTabGap / 2.0, -2);
    painter->setPen(Qt::NoPen);
    painter->setBrush(ThemeColor(current ? "ct_pressed" : "ct_hover"));
    painter->drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
}

void CVXPanelLayoutTabBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < count(); ++i) {
        const QRect rect = tabRect(i);
        if (rect.isEmpty())
            continue;
        drawTabBackground(&painter, i, rect);
        const bool current = i == currentIndex();
        painter.setFont(TabFont(font(), current));
        painter.setPen(ThemeColor(current ? "ct_selected" : "ct_text_secondary"));
        painter.drawText(rect.marginsRemoved(TabContentMargins()), Qt::AlignCenter, tabText(i));
    }
}

void CVXPanelLayoutTabBar::enterEvent(QEvent* event)
{
    vx_std_ui::VTabBarBase::enterEvent(event);
}

void CVXPanelLayoutTabBar::leaveEvent(QEvent* event)
{
    m_hoveredIndex = -1;
    update();
    vx_std_ui::VTabBarBase::leaveEvent(event);
}

void CVXPanelLayoutTabBar::mouseMoveEvent(QMouseEvent* event)
{
    const int hovered = tabAt(event->pos());
    if (hovered != m_hoveredIndex) {
        m_hoveredIndex = hovered;
        update();
    }
    vx_std_ui::VTabBarBase::mouseMoveEvent(event);
}

// ----------------------------------------------------------------------------------------------
// Page

struct CVXPanelLayoutPage::Impl
{
    TabPage current = All;
    CVXPanelLayoutTabBar* tabBar = nullptr;
    QStackedWidget* stack = nullptr;
    QMap<TabPage, CVXPanelLayoutList*> lists;
    // Raised while the code moves the tab bar, so that only the user's choice is reported.
    bool settingTab = false;
};

CVXPanelLayoutPage::CVXPanelLayoutPage(QWidget* parent) : QWidget(parent), d(std::make_unique<Impl>())
{
    setObjectName(QStringLiteral("PanelLayoutPage"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    CreateTabBar();
    auto* barRow = new QHBoxLayout;
    // The first pill lines up with the cards' left edge below.
    barRow->setContentsMargins(panel_layout_list::DefaultMetrics().margin - kTabGap / 2, 16, 24, 0);
    barRow->addWidget(d->tabBar);
    barRow->addStretch(1);
    layout->addLayout(barRow);
    d->stack = new QStackedWidget(this);
    layout->addWidget(d->stack, 1);

    {
        QScopedValueRollback<bool> guard(d->settingTab, true);
        d->tabBar->setCurrentIndex(All);
    }
    d->current = All;
    d->stack->setCurrentWidget(GetPanelLayoutList(All));

    CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    connect(&manager, &CVXPanelLayoutManager::LayoutDataAdded, this, &CVXPanelLayoutPage::OnLayoutAdded);
    connect(&manager, &CVXPanelLayoutManager::LayoutDataUpdated, this, &CVXPanelLayoutPage::OnLayoutUpdated);
    connect(&manager, &CVXPanelLayoutManager::LayoutDataRemoved, this, &CVXPanelLayoutPage::OnLayoutRemoved);
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this,
            &CVXPanelLayoutPage::OnThemeChanged);
}

CVXPanelLayoutPage::~CVXPanelLayoutPage() = default;

void CVXPanelLayoutPage::CreateTabBar()
{
    d->tabBar = new CVXPanelLayoutTabBar(this);
    d->tabBar->addTab(core::langx::tr(253028, "全部"));
    d->tabBar->addTab(core::langx::tr(253029, "系统模板"));
    d->tabBar->addTab(core::langx::tr(253030, "我的模板"));
    connect(d->tabBar, &QTabBar::currentChanged, this, &CVXPanelLayoutPage::OnTabBarCurrentChanged);
}

void CVXPanelLayoutPage::OnTabBarCurrentChanged(int index)
{
    if (d->settingTab || !IsValidTabPage(index))
        return;
    SetCurrentTabPage(TabPage(index));
    Json::Value fields(Json::objectValue);
    fields["second_tab_name"] = std::to_string(index);
    core::report::ClickReport("ClickHomePageTemplate", fields);
}

void CVXPanelLayoutPage::SetCurrentTabPage(TabPage page)
{
    if (!IsValidTabPage(page)) {
        VXLOG_WARN("CVXPanelLayoutPage::SetCurrentTabPage: no tab page {}", int(page));
        return;
    }
    if (d->tabBar->currentIndex() != int(page)) {
        QScopedValueRollback<bool> guard(d->settingTab, true);
        d->tabBar->setCurrentIndex(int(page));
    }
    d->stack->setCurrentWidget(GetPanelLayoutList(page));
    if (d->current == page)
        return;
    d->current = page;
    Q_EMIT CurrentTabPageChanged(page);
}

CVXPanelLayoutPage::TabPage CVXPanelLayoutPage::GetCurrentTabPage() const
{
    return d->current;
}

CVXPanelLayoutTabBar* CVXPanelLayoutPage::GetTabBar() const
{
    return d->tabBar;
}

CVXPanelLayoutList* CVXPanelLayoutPage::GetPanelLayoutList(TabPage page)
{
    if (CVXPanelLayoutList* list = d->lists.value(page))
        return list;
    auto* list = new CVXPanelLayoutList;
    list->setObjectName(QStringLiteral("PanelLayoutList_%1").arg(int(page)));
    CVXPanelLayoutPreview* add = CVXPanelLayoutPreview::AddLayoutPreview();
    InitLayoutOperationConnection(add);
    list->AddPreview(add);
    InitPanelLayoutPreviews(list, page);
    d->lists.insert(page, list);
    d->stack->addWidget(list);
    return list;
}

CVXPanelLayoutList* CVXPanelLayoutPage::FindPanelLayoutList(TabPage page) const
{
    return d->lists.value(page);
}

bool CVXPanelLayoutPage::BelongsTo(TabPage page, const CVXPanelLayoutTemplate& layout)
{
    switch (page) {
    case All:
        return true;
    case Default:
        return !layout.isCustomized();
    case Customize:
        return layout.isCustomized();
    }
    return false;
}

void CVXPanelLayoutPage::InitPanelLayoutPreviews(CVXPanelLayoutList* list, TabPage page)
{
    if (!list)
        return;
    for (const CVXPanelLayoutTemplate& layout :
         CVXPanelLayoutManager::Instance().GetPanelLayoutDataListRef()) {
        if (BelongsTo(page, layout))
            list->AddPreview(MakePreview(layout));
    }
}

void CVXPanelLayoutPage::InitLayoutOperationConnection(CVXPanelLayoutPreview* preview)
{
    if (!preview)
        return;
    connect(preview, &CVXPanelLayoutPreview::AddPanelLayoutRequest, this,
            &CVXPanelLayoutPage::OnAddPanelLayoutRequest);
    connect(preview, &CVXPanelLayoutPreview::OpenPanelLayoutRequest, this,
            &CVXPanelLayoutPage::OnOpenPanelLayoutRequest);
    connect(preview, &CVXPanelLayoutPreview::DeletePanelLayoutRequest, this,
            &CVXPanelLayoutPage::OnDeletePanelLayoutRequest);
}

CVXPanelLayoutPreview* CVXPanelLayoutPage::MakePreview(const CVXPanelLayoutTemplate& layout)
{
    auto* preview = new CVXPanelLayoutPreview;
    InitLayoutOperationConnection(preview);
    FillPreview(preview, layout);
    return preview;
}

void CVXPanelLayoutPage::FillPreview(CVXPanelLayoutPreview* preview,
                                     const CVXPanelLayoutTemplate& layout) const
{
    preview->SetLayoutKey(layout.layoutKey());
    preview->SetUpdatedTimestamp(layout.updateTimestamp());
    if (layout.isCustomized()) {
        preview->SetLayoutType(CVXPanelLayoutPreview::CustomizedLayout);
        preview->SetTitle(layout.title());
        preview->SetSubtitle(layout.remarks());
        preview->SetPreviewPixmap(layout.previewPixmap());
        return;
    }
    preview->SetLayoutType(CVXPanelLayoutPreview::DefaultLayout);
    const CVXPanelLayoutManager::DefaultLayoutEntry* entry =
        CVXPanelLayoutManager::Instance().GetDefaultLayoutEntry(layout.layoutKey());
    if (!entry) {
        preview->SetTitle(layout.title());
        preview->SetSubtitle(layout.remarks());
        preview->SetPreviewPixmap(layout.previewPixmap());
        return;
    }
    preview->SetTitle(core::langx::tr(entry->nNameLangID, layout.title()));
    preview->SetSubtitle(entry->nRemarksLangID >= 0 ? core::langx::tr(entry->nRemarksLangID, layout.remarks())
                                                    : layout.remarks());
    preview->SetPreviewPixmap(preview->GetDefaultLayoutPixmap());
}

void CVXPanelLayoutPage::OnLayoutAdded(unsigned long long layoutKey)
{
    const CVXPanelLayoutTemplate layout = CVXPanelLayoutManager::Instance().GetPanelLayoutData(layoutKey);
    if (layout.isEmpty())
        return;
    for (auto it = d->lists.cbegin(); it != d->lists.cend(); ++it) {
        if (BelongsTo(it.key(), layout) && !it.value()->FindPreview(layoutKey))
            it.value()->AddPreview(MakePreview(layout));
    }
}

void CVXPanelLayoutPage::OnLayoutUpdated(unsigned long long layoutKey)
{
    const CVXPanelLayoutTemplate layout = CVXPanelLayoutManager::Instance().GetPanelLayoutData(layoutKey);
    if (layout.isEmpty())
        return;
    for (auto it = d->lists.cbegin(); it != d->lists.cend(); ++it) {
        CVXPanelLayoutPreview* preview = it.value()->FindPreview(layoutKey);
        const bool belongs = BelongsTo(it.key(), layout);
        if (preview && belongs)
            FillPreview(preview, layout);
        else if (preview)
            it.value()->RemovePreview(layoutKey);
        else if (belongs)
            it.value()->AddPreview(MakePreview(layout));
    }
}

void CVXPanelLayoutPage::OnLayoutRemoved(unsigned long long layoutKey)
{
    for (CVXPanelLayoutList* list : qAsConst(d->lists))
        list->RemovePreview(layoutKey);
}

void CVXPanelLayoutPage::OnThemeChanged()
{
    // Built-in previews are files made for each theme, laid over the theme's page colour; a user
    // layout's preview is a picture of the canvas as it was saved and stays as it is.
    for (CVXPanelLayoutList* list : qAsConst(d->lists)) {
        for (CVXPanelLayoutPreview* preview : list->Previews()) {
            if (preview->GetLayoutType() != CVXPanelLayoutPreview::DefaultLayout ||
                !CVXPanelLayoutManager::Instance().GetDefaultLayoutEntry(preview->GetLayoutKey()))
                continue;
            preview->SetPreviewPixmap(preview->GetDefaultLayoutPixmap());
        }
    }
    update();
}

CVXTabWidgetRestore* CVXPanelLayoutPage::GetPanelTabWidget() const
{
    for (QWidget* w = parentWidget(); w; w = w->parentWidget()) {
        if (auto* tabWidget = qobject_cast<CVXTabWidgetRestore*>(w))
            return tabWidget;
    }
    return nullptr;
}

QWidget* CVXPanelLayoutPage::GetPanelPage(CVXTabWidgetRestore* tabWidget) const
{
    if (!tabWidget)
        return nullptr;
    for (QWidget* w = const_cast<CVXPanelLayoutPage*>(this); w && w != tabWidget; w = w->parentWidget()) {
        if (tabWidget->indexOf(w) >= 0)
            return w;
    }
    return nullptr;
}

bool CVXPanelLayoutPage::ReplaceByCanvas(CVXPanelScrollView* canvas, const QString& title,
                                         const std::function<void(CVXPanelScrollView*)>& fill)
{
    CVXTabWidgetRestore* tabWidget = GetPanelTabWidget();
    QWidget* page = GetPanelPage(tabWidget);
    const int index = tabWidget && page ? tabWidget->indexOf(page) : -1;
    if (index < 0) {
        VXLOG_WARN("CVXPanelLayoutPage::ReplaceByCanvas: the gallery is in no tab widget");
        return false;
    }
    const vx_std_ui::TabId id = tabWidget->tabId(index);
    canvas->SetTabTitle(title);
    // The canvas goes in hidden, is filled there and is shown once, when it becomes current:
    // building a shown canvas would lay out every box again as each one arrives.
    tabWidget->insertTab(index, canvas, title);
    if (fill)
        fill(canvas);
    tabWidget->setCurrentIndex(index);
    tabWidget->removeTab(index + 1);
    // The canvas takes over the gallery's place, id included.
    if (id != vx_std_ui::kNoTabId)
        tabWidget->setTabId(index, id);
    return true;
}

CVXPanelScrollView* CVXPanelLayoutPage::OnAddPanelLayoutRequest()
{
    auto* canvas = new CVXPanelScrollView;
    canvas->SetObjKey(CVXPanelScrollView::NewLayoutKey());
    if (!ReplaceByCanvas(canvas, core::langx::tr(253031, "空白面板"), {})) {
        delete canvas;
        return nullptr;
    }
    canvas->SetPreviousSavedCommandId(canvas->GetCurrentCommandId());
    return canvas;
}

CVXPanelScrollView* CVXPanelLayoutPage::OnOpenPanelLayoutRequest(unsigned long long layoutKey,
                                                                 bool isDefaultLayout)
{
    QElapsedTimer timer;
    timer.start();
    CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    CVXPanelLayoutTemplate layout = manager.GetPanelLayoutData(layoutKey);
    if (layout.isEmpty()) {
        VXLOG_WARN("CVXPanelLayoutPage::OnOpenPanelLayoutRequest: no layout {}", layoutKey);
        return nullptr;
    }
    CVXVariantMapTree restoreData = layout.restoreData();
    if (isDefaultLayout) {
        if (const CVXPanelLayoutManager::DefaultLayoutEntry* entry =
                manager.GetDefaultLayoutEntry(layoutKey)) {
            layout.setTitle(core::langx::tr(entry->nNameLangID, layout.title()));
            if (entry->nRemarksLangID >= 0)
                layout.setRemarks(core::langx::tr(entry->nRemarksLangID, layout.remarks()));
        }
        // A fresh key, so that saving the canvas makes a user layout and leaves the built-in one
        // alone; the built-in shortcut stays the built-in layout's.
        restoreData.Remove(QStringLiteral("LayoutKey"));
        restoreData.Set<qulonglong>(QStringLiteral("LayoutKey"), CVXPanelScrollView::NewLayoutKey());
        restoreData.Remove(QStringLiteral("ShortcutId"));
        restoreData.Remove(QStringLiteral("IsSaveAsTemplate"));
    } else {
        // The canvas is the layout's: saving it goes back to this key, whatever key the record
        // carries (a layout imported or synchronised may carry another device's canvas key).
        restoreData.Remove(QStringLiteral("LayoutKey"));
        restoreData.Set<qulonglong>(QStringLiteral("LayoutKey"), layoutKey);
    }
    const QString title = layout.title();
    auto* canvas = new CVXPanelScrollView;
    const bool placed = ReplaceByCanvas(
        canvas, title, [&restoreData](CVXPanelScrollView* c) { c->SetObjRestoreData(restoreData); });
    if (!placed) {
        delete canvas;
        return nullptr;
    }
    canvas->SetPreviousSavedCommandId(canvas->GetCurrentCommandId());
    VXLOG_INFO("Open panel layout. title : {} ,time: {} ms.", title, timer.elapsed());
    return canvas;
}

void CVXPanelLayoutPage::OnDeletePanelLayoutRequest(unsigned long long layoutKey)
{
    CVXPanelLayoutDeleteDialog::AreYouWantToDelete(
        this, [layoutKey](CVXPanelLayoutDeleteDialog::Result result) {
            if (result == CVXPanelLayoutDeleteDialog::Result::Delete)
                CVXPanelLayoutManager::Instance().RemovePanelLayoutData(layoutKey);
        });
}

void CVXPanelLayoutPage::GetObjRestoreData(CVXVariantMapTree* data) const
{
    if (!data) {
        VXLOG_WARN("CVXPanelLayoutPage::GetObjRestoreData: null tree");
        return;
    }
    data->Set<TabPage>(TabPageKey(), d->current);
}

void CVXPanelLayoutPage::SetObjRestoreData(const CVXVariantMapTree& data)
{
    std::optional<TabPage> page;
    data.GetImp<TabPage>(TabPageKey(), &page);
    if (page)
        SetCurrentTabPage(*page);
}

void CVXPanelLayoutPage::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("style_skin_panel/page_background"));
}
