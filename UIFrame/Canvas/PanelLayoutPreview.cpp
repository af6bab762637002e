#include "UIFrame/Canvas/PanelLayoutPreview.h"

#include "UIFrame/Canvas/PanelLayoutDialogs.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/ModuleInterfaces.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/PluginCenter.h"
#include "Platform/Core/TimeDate.h"
#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/Menu.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QContextMenuEvent>
#include <QFileInfo>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QScrollBar>

IBaseBusinessModuleUtil::~IBaseBusinessModuleUtil() = default;

// ----------------------------------------------------------------------------------------------
// Arrangement

panel_layout_list::Metrics panel_layout_list::DefaultMetrics()
{
    Metrics metrics;
    metrics.card = QSize(248, 212);
    metrics.margin = 24;
    metrics.spacing = 20;
    return metrics;
}

int panel_layout_list::ColumnCount(const Metrics& metrics, int width)
{
    const int step = metrics.card.width() + metrics.spacing;
    if (step <= 0)
        return 1;
    return std::max(1, (width - 2 * metrics.margin + metrics.spacing) / step);
}

QRect panel_layout_list::CardRect(const Metrics& metrics, int width, int index)
{
    const int columns = ColumnCount(metrics, width);
    const int column = index % columns;
    const int row = index / columns;
    return QRect(QPoint(metrics.margin + column * (metrics.card.width() + metrics.spacing),
                        metrics.margin + row * (metrics.card.height() + metrics.spacing)),
                 metrics.card);
}

int panel_layout_list::GridHeight(const Metrics& metrics, int width, int count)
{
    const int columns = ColumnCount(metrics, width);
    const int rows = (std::max(0, count) + columns - 1) / columns;
    if (rows == 0)
        return 2 * metrics.margin;
    return 2 * metrics.margin + rows * metrics.card.height() + (rows - 1) * metrics.spacing;
}

// ----------------------------------------------------------------------------------------------
// Card

namespace {

constexpr int kPadding = 8;       // inside the card's frame, around the preview image
constexpr int kRadius = 8;        // the card's corners
constexpr int kPreviewRadius = 4; // the preview image's corners
constexpr int kTitlePixelSize = 14;
constexpr int kSubtitlePixelSize = 12;
constexpr int kTextGap = 4; // between the title and the subtitle
constexpr int kMoreButtonSize = 24;

QColor ThemeColor(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QString::fromLatin1(key));
}

QIcon ShortcutIcon()
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(ThemeColor("ct_text_secondary"), 1.6);
    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.drawPath(vx_std_ui::IconGlyphPath(vx_std_ui::IconGlyph::Link, QRectF(1, 1, 14, 14)));
    return QIcon(pixmap);
}

} // namespace

struct CVXPanelLayoutPreview::Impl
{
    QString title;
    QString subtitle;
    QPixmap pixmap;
    LayoutType type = DefaultLayout;
    unsigned long long key = 0;
    unsigned long long timestamp = 0;

    bool hovered = false;
    bool pressedOnPreview = false;
    vx_std_ui::VIconButton* more = nullptr;
    QPointer<vx_std_ui::VMenu> openMenu;

    // Scaling a large canvas image on every paint would make scrolling the gallery slow.
    QPixmap scaled;
    QSize scaledFor;
};

CVXPanelLayoutPreview::CVXPanelLayoutPreview(QWidget* parent) : QWidget(parent), d(std::make_unique<Impl>())
{
    setObjectName(QStringLiteral("PanelLayoutPreview"));
    setMouseTracking(true);
    setAttribute(Qt::WA_Hover);
    setFixedSize(panel_layout_list::DefaultMetrics().card);
    d->more = new vx_std_ui::VIconButton(vx_std_ui::IconGlyph::Menu, core::langx::tr(253027, "更多"), this);
    d->more->setObjectName(QStringLiteral("More_Button"));
    d->more->SetButtonSize(QSize(kMoreButtonSize, kMoreButtonSize));
    connect(d->more, &QAbstractButton::clicked, this,
            [this]() { OpenMenu(d->more->mapToGlobal(QPoint(0, d->more->height()))); });
    PlaceMoreButton();
}

CVXPanelLayoutPreview::~CVXPanelLayoutPreview() = default;

CVXPanelLayoutPreview* CVXPanelLayoutPreview::AddLayoutPreview(QWidget* parent)
{
    auto* preview = new CVXPanelLayoutPreview(parent);
    preview->SetLayoutType(AddLayout);
    preview->SetTitle(core::langx::tr(253031, "空白面板"));
    preview->SetSubtitle(core::langx::tr(253032, "从空白画布开始搭建"));
    return preview;
}

QString CVXPanelLayoutPreview::GetTitle() const
{
    return d->title;
}

void CVXPanelLayoutPreview::SetTitle(const QString& title)
{
    d->title = title;
    update();
}

QString CVXPanelLayoutPreview::GetSubtitle() const
{
    return d->subtitle;
}

void CVXPanelLayoutPreview::SetSubtitle(const QString& subtitle)
{
    d->subtitle = subtitle;
    update();
}

QPixmap CVXPanelLayoutPreview::GetPreviewPixmap() const
{
    return d->pixmap;
}

void CVXPanelLayoutPreview::SetPreviewPixmap(const QPixmap& pixmap)
{
    d->pixmap = pixmap;
    d->scaled = QPixmap();
    d->scaledFor = QSize();
    update();
}

CVXPanelLayoutPreview::LayoutType CVXPanelLayoutPreview::GetLayoutType() const
{
    return d->type;
}

void CVXPanelLayoutPreview::SetLayoutType(LayoutType type)
{
    d->type = type;
    // The add-layout card has nothing to offer in a menu.
    d->more->setVisible(type != AddLayout);
    update();
}

unsigned long long CVXPanelLayoutPreview::GetLayoutKey() const
{
    return d->key;
}

void CVXPanelLayoutPreview::SetLayoutKey(unsigned long long key)
{
    d->key = key;
}

unsigned long long CVXPanelLayoutPreview::GetUpdatedTimestamp() const
{
    return d->timestamp;
}

void CVXPanelLayoutPreview::SetUpdatedTimestamp(unsigned long long timestamp)
{
    d->timestamp = timestamp;
}

QPixmap CVXPanelLayoutPreview::GetDefaultLayoutPixmap() const
{
    if (d->type != DefaultLayout)
        return QPixmap();
    const CVXPanelLayoutManager::DefaultLayoutEntry* entry =
        CVXPanelLayoutManager::Instance().GetDefaultLayoutEntry(d->key);
    if (!entry) {
        VXLOG_WARN("CVXPanelLayoutPreview::GetDefaultLayoutPixmap: {} is no built-in layout", d->key);
        return QPixmap();
    }
    // The exporter writes "<base>_white.png" and "<base>_black.png"; the catalogue names the
    // light one, and the dark theme shows its sibling when there is one.
    QString path = entry->strPreviewImagePath;
    const QLatin1String lightSuffix("_white.png");
    if (vx_ui_res::Provider::Instance().CurrentTheme() == vx_ui_res::Theme::Dark &&
        path.endsWith(lightSuffix)) {
        const QString dark = path.left(path.size() - lightSuffix.size()) + QLatin1String("_black.png");
        if (QFileInfo::exists(dark))
            path = dark;
    }
    const QPixmap image(path);
    if (image.isNull())
        VXLOG_WARN("CVXPanelLayoutPreview::GetDefaultLayoutPixmap: no image at {}", path);
    // A built-in layout without its image still shows as an empty page.
    const QSize size = image.isNull() ? PreviewRect().size() : image.size();
    QPixmap result(size);
    result.fill(ThemeColor("style_skin_panel/page_background"));
    if (!image.isNull()) {
        QPainter painter(&result);
        painter.drawPixmap(0, 0, image);
    }
    return result;
}

QString CVXPanelLayoutPreview::GenerateShortcutId() const
{
    return QString::fromStdString(fmt::format("{}_{}_{}", d->title, core::time_date::GetServerTimeMs(),
                                              QRandomGenerator::global()->generate()));
}

QRect CVXPanelLayoutPreview::PreviewRect() const
{
    // The image keeps the proportions of a wide screen page (about 16:10).
    const int w = width() - 2 * kPadding;
    return QRect(kPadding, kPadding, w, w * 10 / 16);
}

vx_std_ui::VIconButton* CVXPanelLayoutPreview::MoreButton() const
{
    return d->more;
}

bool CVXPanelLayoutPreview::IsHovered() const
{
    return d->hovered;
}

QSize CVXPanelLayoutPreview::sizeHint() const
{
    return panel_layout_list::DefaultMetrics().card;
}

vx_std_ui::VMenu* CVXPanelLayoutPreview::BuildMenu()
{
    auto* menu = new vx_std_ui::VMenu(this);
    menu->setObjectName(QStringLiteral("PanelLayoutPreviewMenu"));
    menu->addActionWithData(core::langx::tr(MenuOpen, "打开"), int(MenuOpen));
    if (d->type == CustomizedLayout) {
        menu->addActionWithData(core::langx::tr(MenuDelete, "删除"), int(MenuDelete));
        menu->addActionWithData(core::langx::tr(MenuEdit, "编辑"), int(MenuEdit));
    }
    if (d->type != AddLayout)
        menu->addActionWithData(ShortcutIcon(), core::langx::tr(MenuAddShortcut, "添加到快捷入口"),
                                int(MenuAddShortcut));
    return menu;
}

void CVXPanelLayoutPreview::OpenMenu(const QPoint& globalPos)
{
    if (d->openMenu)
        d->openMenu->close();
    vx_std_ui::VMenu* menu = BuildMenu();
    d->openMenu = menu;
    connect(menu, &vx_std_ui::VMenu::Triggered, this, &CVXPanelLayoutPreview::OnMenuTriggered);
    // The menu hides before its action is reported; deleteLater keeps it alive until then.
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popup(globalPos);
}

vx_std_ui::VMenu* CVXPanelLayoutPreview::OpenedMenu() const
{
    return d->openMenu;
}

void CVXPanelLayoutPreview::OnMenuTriggered(QAction* action)
{
    if (!action)
        return;
    switch (action->data().toInt()) {
    case MenuOpen:
        OnPreviewPixmapClicked();
        break;
    case MenuDelete:
        Q_EMIT DeletePanelLayoutRequest(d->key);
        break;
    case MenuEdit:
        OnPanelLayoutEdit();
        break;
    case MenuAddShortcut:
        AddShortcut();
        break;
    default:
        break;
    }
}

void CVXPanelLayoutPreview::OnPreviewPixmapClicked()
{
    if (d->type == AddLayout)
        Q_EMIT AddPanelLayoutRequest();
    else
        Q_EMIT OpenPanelLayoutRequest(d->key, d->type == DefaultLayout);
}

void CVXPanelLayoutPreview::OnPanelLayoutEdit()
{
    const unsigned long long key = d->key;
    // A name may be used when no layout has it, or when it is this layout's own.
    auto check = [key](const QString& name) {
        CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
        if (!manager.HasPanelLayoutData(name))
            return true;
        const CVXPanelLayoutTemplate same = manager.GetPanelLayoutData(name);
        return !same.isEmpty() && same.layoutKey() == key;
    };
    QPointer<CVXPanelLayoutPreview> guard(this);
    CVXPanelLayoutSaveDialog::AreYouWantToEdit(
        this, d->title, d->subtitle, check, [guard, key](const CVXPanelLayoutSaveDialog::Result& result) {
            if (result.choice != CVXPanelLayoutSaveDialog::Choice::Confirmed)
                return;
            CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
            CVXPanelLayoutTemplate layout = manager.GetPanelLayoutData(key);
            if (layout.isEmpty()) {
                VXLOG_WARN("[自定义面板] {} - 编辑无效自定义面板数据: layoutKey = {}, name = {}",
                           "CVXPanelLayoutPreview::OnPanelLayoutEdit", key, result.name);
                return;
            }
            const auto now = static_cast<unsigned long long>(core::time_date::GetServerTimeMs());
            layout.setTitle(result.name);
            layout.setRemarks(result.remarks);
            layout.setUpdateTimestamp(now);
            manager.AddOrUpdatePanelLayoutData(layout, CVXPanelLayoutManager::AllData);
            if (guard) {
                guard->SetTitle(result.name);
                guard->SetSubtitle(result.remarks);
                guard->SetUpdatedTimestamp(now);
            }
        });
}

bool CVXPanelLayoutPreview::AddShortcut()
{
    if (d->type == AddLayout)
        return false;
    CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    CVXPanelLayoutTemplate layout = manager.GetPanelLayoutData(d->key);
    if (layout.isEmpty()) {
        VXLOG_WARN("CVXPanelLayoutPreview::AddShortcut: no layout {}", d->key);
        return false;
    }
    const QString shortcutKey = QStringLiteral("ShortcutId");
    CVXVariantMapTree restoreData = layout.restoreData();
    QString shortcutId = restoreData.Get<QString>(shortcutKey);
    if (shortcutId.isEmpty()) {
        shortcutId = GenerateShortcutId();
        restoreData.Set<QString>(shortcutKey, shortcutId);
        layout.setRestoreData(restoreData);
        manager.AddOrUpdatePanelLayoutData(layout, CVXPanelLayoutManager::AllData);
    }
    CVXVariantMapTree params;
    params.Set<QString>(QStringLiteral("PanelShortcutId"), shortcutId);
    const std::shared_ptr<IBaseBusinessModuleUtil> module =
        core::IVXPluginCenter::CreateInterface<IBaseBusinessModuleUtil>();
    const bool ok = module && module->AddShortcut(params);
    VXLOG_INFO("[CVXPanelLayoutPreview] Add shortcut of template {}, title = {}, panelShortcutId = {}",
               ok ? "succeed" : "failed", d->title, shortcutId);
    return ok;
}

void CVXPanelLayoutPreview::PlaceMoreButton()
{
    const QRect preview = PreviewRect();
    d->more->move(width() - kPadding - kMoreButtonSize + 4, preview.bottom() + 1 + 8);
}

void CVXPanelLayoutPreview::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    PlaceMoreButton();
}

void CVXPanelLayoutPreview::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);

    // The frame: a rounded card that lights up its border under the mouse.
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(ThemeColor(d->hovered ? "ct_selected" : "ct_border"), d->hovered ? 1.5 : 1.0));
    painter.setBrush(ThemeColor("ct_bg_primary"));
    painter.drawRoundedRect(frame, kRadius, kRadius);

    // The preview: the page background with the image fitted inside, proportions kept.
    const QRect preview = PreviewRect();
    QPainterPath clip;
    clip.addRoundedRect(QRectF(preview), kPreviewRadius, kPreviewRadius);
    painter.save();
    painter.setClipPath(clip);
    painter.fillRect(preview, ThemeColor("style_skin_panel/page_background"));
    if (d->type == AddLayout) {
        const int side = preview.height() / 3;
        const QRect plus(preview.center().x() - side / 2, preview.center().y() - side / 2, side, side);
        QPen pen(ThemeColor(d->hovered ? "ct_selected" : "ct_text_disabled"), 2.5);
        pen.setCapStyle(Qt::RoundCap);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(vx_std_ui::IconGlyphPath(vx_std_ui::IconGlyph::Add, QRectF(plus)));
    } else if (!d->pixmap.isNull()) {
        const QSize target = d->pixmap.size().scaled(preview.size(), Qt::KeepAspectRatio);
        if (d->scaledFor != target) {
            const qreal ratio = devicePixelRatioF();
            d->scaled = d->pixmap.scaled(target * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            d->scaled.setDevicePixelRatio(ratio);
            d->scaledFor = target;
        }
        const QRect at(QPoint(preview.x() + (preview.width() - target.width()) / 2,
                              preview.y() + (preview.height() - target.height()) / 2),
                       target);
        painter.drawPixmap(at, d->scaled);
    }
    painter.restore();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ThemeColor("ct_divider"), 1.0));
    painter.drawRoundedRect(QRectF(preview).adjusted(0.5, 0.5, -0.5, -0.5), kPreviewRadius, kPreviewRadius);

    // The texts below, elided to the room left of the more button.
    const int textRight = d->type == AddLayout ? width() - kPadding : d->more->x() - 4;
    const int textLeft = kPadding + 4;
    QFont titleFont = font();
    titleFont.setPixelSize(kTitlePixelSize);
    titleFont.setWeight(QFont::DemiBold);
    QFont subtitleFont = font();
    subtitleFont.setPixelSize(kSubtitlePixelSize);
    const QFontMetrics titleMetrics(titleFont);
    const QFontMetrics subtitleMetrics(subtitleFont);
    const int titleTop = preview.bottom() + 1 + 10;
    const QRect titleRect(textLeft, titleTop, textRight - textLeft, titleMetrics.height());
    const QRect subtitleRect(textLeft, titleRect.bottom() + 1 + kTextGap, width() - kPadding - textLeft,
                             subtitleMetrics.height());
    painter.setFont(titleFont);
    painter.setPen(ThemeColor("ct_text_primary"));
    painter.drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter,
                     titleMetrics.elidedText(d->title, Qt::ElideRight, titleRect.width()));
    painter.setFont(subtitleFont);
    painter.setPen(ThemeColor("ct_text_secondary"));
    painter.drawText(subtitleRect, Qt::AlignLeft | Qt::AlignVCenter,
                     subtitleMetrics.elidedText(d->subtitle, Qt::ElideRight, subtitleRect.width()));
}

void CVXPanelLayoutPreview::enterEvent(QEvent* event)
{
    d->hovered = true;
    update();
    QWidget::enterEvent(event);
}

void CVXPanelLayoutPreview::leaveEvent(QEvent* event)
{
    d->hovered = false;
    d->pressedOnPreview = false;
    setToolTip(QString());
    update();
    QWidget::leaveEvent(event);
}

void CVXPanelLayoutPreview::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && PreviewRect().contains(event->pos())) {
        d->pressedOnPreview = true;
        event->accept();
        return;
    }
    QWidget::mousePressEvent(event);
}

void CVXPanelLayoutPreview::mouseMoveEvent(QMouseEvent* event)
{
    if (!d->hovered) {
        d->hovered = true;
        update();
    }
    UpdateToolTip(event->pos());
    QWidget::mouseMoveEvent(event);
}

void CVXPanelLayoutPreview::mouseReleaseEvent(QMouseEvent* event)
{
    const bool click =
        event->button() == Qt::LeftButton && d->pressedOnPreview && PreviewRect().contains(event->pos());
    d->pressedOnPreview = false;
    if (click) {
        event->accept();
        // The receiver may replace the gallery; nothing of this card is used afterwards.
        OnPreviewPixmapClicked();
        return;
    }
    QWidget::mouseReleaseEvent(event);
}

void CVXPanelLayoutPreview::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
    OpenMenu(event->globalPos());
}

void CVXPanelLayoutPreview::UpdateToolTip(const QPoint& pos)
{
    // Over the texts the tip shows them whole (they may be elided); over the image it is quiet.
    const bool overText = pos.y() > PreviewRect().bottom() && !d->more->geometry().contains(pos);
    QString tip;
    if (overText) {
        tip = d->title;
        if (!d->subtitle.isEmpty())
            tip += QLatin1Char('\n') + d->subtitle;
    }
    if (toolTip() != tip)
        setToolTip(tip);
}

// ----------------------------------------------------------------------------------------------
// List layout

CVXPanelLayoutListLayout::CVXPanelLayoutListLayout(QWidget* parent)
    : QLayout(parent), m_metrics(panel_layout_list::DefaultMetrics())
{
    setContentsMargins(0, 0, 0, 0);
}

CVXPanelLayoutListLayout::~CVXPanelLayoutListLayout()
{
    while (QLayoutItem* item = takeAt(0))
        delete item;
}

void CVXPanelLayoutListLayout::SetMetrics(const panel_layout_list::Metrics& metrics)
{
    m_metrics = metrics;
    invalidate();
}

const panel_layout_list::Metrics& CVXPanelLayoutListLayout::GetMetrics() const
{
    return m_metrics;
}

void CVXPanelLayoutListLayout::InsertWidget(int index, QWidget* widget)
{
    if (!widget)
        return;
    addChildWidget(widget);
    index = std::clamp(index, 0, int(m_items.size()));
    m_items.insert(index, new QWidgetItem(widget));
    invalidate();
}

void CVXPanelLayoutListLayout::addItem(QLayoutItem* item)
{
    m_items.append(item);
}

QLayoutItem* CVXPanelLayoutListLayout::itemAt(int index) const
{
    return index >= 0 && index < m_items.size() ? m_items.at(index) : nullptr;
}

QLayoutItem* CVXPanelLayoutListLayout::takeAt(int index)
{
    if (index < 0 || index >= m_items.size())
        return nullptr;
    QLayoutItem* item = m_items.takeAt(index);
    invalidate();
    return item;
}

int CVXPanelLayoutListLayout::count() const
{
    return m_items.size();
}

QSize CVXPanelLayoutListLayout::sizeHint() const
{
    // Three cards in a row read well; wider windows get more.
    const int width = 2 * m_metrics.margin + 3 * m_metrics.card.width() + 2 * m_metrics.spacing;
    return QSize(width, heightForWidth(width));
}

QSize CVXPanelLayoutListLayout::minimumSize() const
{
    const int width = 2 * m_metrics.margin + m_metrics.card.width();
    return QSize(width, 2 * m_metrics.margin + m_metrics.card.height());
}

Qt::Orientations CVXPanelLayoutListLayout::expandingDirections() const
{
    return Qt::Orientations();
}

bool CVXPanelLayoutListLayout::hasHeightForWidth() const
{
    return true;
}

int CVXPanelLayoutListLayout::heightForWidth(int width) const
{
    return panel_layout_list::GridHeight(m_metrics, width, m_items.size());
}

void CVXPanelLayoutListLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    for (int i = 0; i < m_items.size(); ++i)
        m_items.at(i)->setGeometry(
            panel_layout_list::CardRect(m_metrics, rect.width(), i).translated(rect.topLeft()));
}

// ----------------------------------------------------------------------------------------------
// List

CVXPanelLayoutList::CVXPanelLayoutList(QWidget* parent) : vx_std_ui::VScrollArea(parent)
{
    setObjectName(QStringLiteral("PanelLayoutList"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pContent = new QWidget;
    m_pContent->setObjectName(QStringLiteral("PanelLayoutListContent"));
    m_pLayout = new CVXPanelLayoutListLayout(m_pContent);
    setWidget(m_pContent);
    // The cards sit on the page's own background, not on the scroll area's.
    viewport()->setAutoFillBackground(false);
    m_pContent->setAutoFillBackground(false);
    UpdateContentSize();
}

CVXPanelLayoutList::~CVXPanelLayoutList() = default;

void CVXPanelLayoutList::AddPreview(CVXPanelLayoutPreview* preview)
{
    InsertPreview(m_pLayout->count(), preview);
}

void CVXPanelLayoutList::InsertPreview(int index, CVXPanelLayoutPreview* preview)
{
    if (!preview) {
        VXLOG_WARN("CVXPanelLayoutList::InsertPreview: null card");
        return;
    }
    preview->setFixedSize(m_pLayout->GetMetrics().card);
    m_pLayout->InsertWidget(index, preview);
    preview->show();
    UpdateContentSize();
}

bool CVXPanelLayoutList::RemovePreview(unsigned long long layoutKey)
{
    CVXPanelLayoutPreview* preview = FindPreview(layoutKey);
    if (!preview)
        return false;
    m_pLayout->removeWidget(preview);
    // The card may be the sender of the request that removes it: delete it once that returns.
    preview->hide();
    preview->deleteLater();
    UpdateContentSize();
    return true;
}

CVXPanelLayoutPreview* CVXPanelLayoutList::FindPreview(unsigned long long layoutKey) const
{
    for (CVXPanelLayoutPreview* preview : Previews()) {
        if (preview->GetLayoutType() != CVXPanelLayoutPreview::AddLayout &&
            preview->GetLayoutKey() == layoutKey)
            return preview;
    }
    return nullptr;
}

QVector<CVXPanelLayoutPreview*> CVXPanelLayoutList::Previews() const
{
    QVector<CVXPanelLayoutPreview*> previews;
    for (int i = 0; i < m_pLayout->count(); ++i) {
        if (auto* preview = qobject_cast<CVXPanelLayoutPreview*>(m_pLayout->itemAt(i)->widget()))
            previews.append(preview);
    }
    return previews;
}

int CVXPanelLayoutList::Count() const
{
    return m_pLayout->count();
}

QWidget* CVXPanelLayoutList::GetContentWidget() const
{
    return m_pContent;
}

CVXPanelLayoutListLayout* CVXPanelLayoutList::GetListLayout() const
{
    return m_pLayout;
}

void CVXPanelLayoutList::resizeEvent(QResizeEvent* event)
{
    vx_std_ui::VScrollArea::resizeEvent(event);
    UpdateContentSize();
}

void CVXPanelLayoutList::UpdateContentSize()
{
    const int width = viewport()->width();
    const int height = std::max(m_pLayout->heightForWidth(width), viewport()->height());
    if (m_pContent->size() != QSize(width, height))
        m_pContent->resize(width, height);
    m_pLayout->setGeometry(m_pContent->rect());
}
