// VTabBarBase: tab ids kept in the tabs' data, tearing a tab out of the bar, and close glyphs
// painted into the tabs (no button widget per tab).

#include "Platform/StdUI/TabWidget.h"

#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/ThemeResource.h"

#include "Platform/Core/Log.h"

#include <QApplication>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QPointer>
#include <QProxyStyle>
#include <QScopedValueRollback>
#include <QStyle>
#include <QStyleOptionTab>

#include <atomic>

namespace vx_std_ui {
namespace detail {

struct TabIds
{
    TabId id = kNoTabId;
    unsigned long long globalId = 0;
};

} // namespace detail
} // namespace vx_std_ui

Q_DECLARE_METATYPE(vx_std_ui::detail::TabIds)

namespace vx_std_ui {
namespace {

unsigned long long NextGlobalId()
{
    static std::atomic<unsigned long long> next{1};
    return next.fetch_add(1, std::memory_order_relaxed);
}

// The close glyph takes the place and size of the 16 x 16 close button it replaces.
constexpr QSize kCloseGlyphSize(16, 16);
// QTabBar's padding beside a button on a tab; the glyph gets the same.
constexpr int kCloseGlyphPadding = 4;
constexpr qreal kCloseGlyphCornerRadius = 4.0;

bool IsVertical(QTabBar::Shape shape)
{
    return shape == QTabBar::RoundedWest || shape == QTabBar::RoundedEast ||
           shape == QTabBar::TriangularWest || shape == QTabBar::TriangularEast;
}

// Drawn as an icon button with the close glyph would draw itself in that state, into `painter`
// with its origin at the glyph's top-left corner.
void DrawCloseGlyph(QPainter* painter, const QSize& size, const QColor& background, const QColor& color)
{
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF rect(QPointF(0, 0), QSizeF(size));
    if (background.isValid()) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(background);
        painter->drawRoundedRect(rect, kCloseGlyphCornerRadius, kCloseGlyphCornerRadius);
    }
    const qreal side = qMin(size.width(), size.height()) / 2.0;
    const QRectF box(QPointF((size.width() - side) / 2.0, (size.height() - side) / 2.0), QSizeF(side, side));
    painter->setPen(QPen(color, qMax<qreal>(1.2, side / 8.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(IconGlyphPath(IconGlyph::Close, box));
}

// Every tab shows the same few glyphs: each look is stroked once into a cached picture, keyed by
// its colours, so that a theme change or a reloaded theme table makes new pictures.
void PaintCloseGlyph(QPainter* painter, const QRect& rect, bool hovered, bool down, bool enabled)
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    const QString bgKey = IconButtonBackgroundKey(hovered && enabled, down && enabled, false);
    const QColor background = !bgKey.isEmpty() && theme.HasColor(bgKey) ? theme.GetColor(bgKey) : QColor();
    QString key = enabled ? QStringLiteral("ct_text_secondary") : QStringLiteral("ct_text_disabled");
    if (!theme.HasColor(key))
        key = QStringLiteral("ct_text_secondary");
    const QColor color = theme.GetColor(key);
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;

    const QString cacheKey = QStringLiteral("vx_tab_close_glyph:%1x%2@%3:%4:%5")
                                 .arg(rect.width())
                                 .arg(rect.height())
                                 .arg(ratio)
                                 .arg(background.isValid() ? background.rgba() : 0u)
                                 .arg(color.rgba());
    QPixmap glyph;
    if (!QPixmapCache::find(cacheKey, &glyph)) {
        glyph = QPixmap(rect.size() * ratio);
        glyph.setDevicePixelRatio(ratio);
        glyph.fill(Qt::transparent);
        QPainter glyphPainter(&glyph);
        DrawCloseGlyph(&glyphPainter, rect.size(), background, color);
        glyphPainter.end();
        QPixmapCache::insert(cacheKey, glyph);
    }
    painter->drawPixmap(rect.topLeft(), glyph);
}

// The style of closable bars: the application's style, with the close glyph painted into each tab
// after the tab itself. QTabBar paints (and grabs the tab being dragged) through its style, so the
// glyph follows the tab wherever QTabBar draws it, and the label keeps clear of it as it would of
// a button. One instance serves every closable bar.
class CloseGlyphTabStyle : public QProxyStyle
{
public:
    static CloseGlyphTabStyle* Instance()
    {
        static QPointer<CloseGlyphTabStyle> instance;
        if (!instance) {
            instance = new CloseGlyphTabStyle(QApplication::style()->objectName());
            // Gone with the application, after its widgets.
            instance->setParent(QCoreApplication::instance());
        }
        return instance;
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override
    {
        const auto* bar = qobject_cast<const VTabBarBase*>(widget);
        const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
        if (element != CE_TabBarTab || !bar || !tab || !bar->tabsClosable()) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QStyleOptionTabV4 withGlyph;
        static_cast<QStyleOptionTab&>(withGlyph) = *tab;
        const auto* tabV4 = qstyleoption_cast<const QStyleOptionTabV4*>(option);
        withGlyph.tabIndex = tabV4 ? tabV4->tabIndex : -1;
        withGlyph.rightButtonSize = kCloseGlyphSize;
        QProxyStyle::drawControl(element, &withGlyph, painter, widget);

        const QRect glyph = subElementRect(SE_TabBarTabRightButton, &withGlyph, widget);
        const bool hovered = withGlyph.tabIndex >= 0 && bar->hoveredCloseGlyph() == withGlyph.tabIndex;
        PaintCloseGlyph(painter, glyph, hovered, hovered && bar->isCloseGlyphDown(),
                        withGlyph.state & State_Enabled);
    }

private:
    explicit CloseGlyphTabStyle(const QString& baseStyleKey) : QProxyStyle(baseStyleKey)
    {
        // The glyph's colours are the theme's; palettes do not carry them.
        connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this, [this] {
            for (QWidget* widget : QApplication::allWidgets()) {
                if (widget->style() == this)
                    widget->update();
            }
        });
    }
};

} // namespace

struct VTabBarBase::Impl
{
    TabId pendingId = kNoTabId; // the id of the tab being inserted by insertTabWithId()
    bool dragOutEnabled = true;

    // The tab under the last left press, by global id so that reordering does not lose it.
    unsigned long long pressedGlobalId = 0;
    QPoint pressPos;
    bool dragOutDone = false; // TabDragOut was emitted for the current press

    bool closable = false;
    unsigned long long closeHoverGlobalId = 0; // the tab whose glyph is under the mouse
    unsigned long long closeDownGlobalId = 0;  // the tab whose glyph took the left press
};

VTabBarBase::VTabBarBase(QWidget* parent) : QTabBar(parent), d(std::make_unique<Impl>())
{
    // Hover events tell which close glyph to highlight.
    setAttribute(Qt::WA_Hover, true);
}

VTabBarBase::~VTabBarBase() = default;

// The ids are kept in the tab's data because QTabBar emits currentChanged before tabInserted()
// and tabRemoved() run: data stored in the tab itself is right at every signal. A tab without
// data is the one being inserted; it gets its global id on first access.
static detail::TabIds ReadIds(const QTabBar* bar, int index)
{
    const QVariant v = bar->tabData(index);
    return v.canConvert<detail::TabIds>() ? v.value<detail::TabIds>() : detail::TabIds{};
}

TabId VTabBarBase::tabId(int index) const
{
    if (index < 0 || index >= count())
        return kNoTabId;
    detail::TabIds ids = ReadIds(this, index);
    if (ids.globalId == 0)
        return d->pendingId;
    return ids.id;
}

void VTabBarBase::setTabId(int index, TabId id)
{
    if (index < 0 || index >= count()) {
        VXLOG_WARN("VTabBarBase::setTabId: bad index {} (count {})", index, count());
        return;
    }
    detail::TabIds ids = ReadIds(this, index);
    if (ids.globalId == 0)
        ids.globalId = NextGlobalId();
    ids.id = id;
    setTabData(index, QVariant::fromValue(ids));
}

unsigned long long VTabBarBase::tabGlobalId(int index) const
{
    if (index < 0 || index >= count())
        return 0;
    detail::TabIds ids = ReadIds(this, index);
    if (ids.globalId == 0) {
        ids.id = d->pendingId;
        ids.globalId = NextGlobalId();
        // Reading assigns the id of a tab still being inserted; the tab is not const data.
        const_cast<VTabBarBase*>(this)->setTabData(index, QVariant::fromValue(ids));
    }
    return ids.globalId;
}

int VTabBarBase::indexOfTabId(TabId id) const
{
    if (id == kNoTabId)
        return -1;
    for (int i = 0; i < count(); ++i)
        if (tabId(i) == id)
            return i;
    return -1;
}

int VTabBarBase::indexOfGlobalId(unsigned long long globalId) const
{
    if (globalId == 0)
        return -1;
    for (int i = 0; i < count(); ++i)
        if (tabGlobalId(i) == globalId)
            return i;
    return -1;
}

int VTabBarBase::insertTabWithId(int index, const QString& text, TabId id)
{
    QScopedValueRollback<TabId> pending(d->pendingId, id);
    const int inserted = QTabBar::insertTab(index, text);
    tabGlobalId(inserted); // stores the pending id with a fresh global id
    return inserted;
}

void VTabBarBase::setTabDragOutEnabled(bool on)
{
    d->dragOutEnabled = on;
}

bool VTabBarBase::isTabDragOutEnabled() const
{
    return d->dragOutEnabled;
}

void VTabBarBase::tabInserted(int index)
{
    tabGlobalId(index);
    QTabBar::tabInserted(index);
}

void VTabBarBase::tabRemoved(int index)
{
    QTabBar::tabRemoved(index);
}

void VTabBarBase::setTabsClosable(bool closable)
{
    // A button widget per tab would cost a widget and a relayout of the bar for every tab.
    QTabBar::setTabsClosable(false);
    if (closable == d->closable)
        return;
    d->closable = closable;
    d->closeHoverGlobalId = 0;
    d->closeDownGlobalId = 0;
    if (closable && style() != CloseGlyphTabStyle::Instance())
        setStyle(CloseGlyphTabStyle::Instance());
    if (count() > 0) {
        // Every tab's size hint changed; QTabBar lays its tabs out again on a font change.
        QEvent relayout(QEvent::FontChange);
        QTabBar::changeEvent(&relayout);
    }
    update();
}

bool VTabBarBase::tabsClosable() const
{
    return d->closable;
}

QRect VTabBarBase::closeGlyphRect(int index) const
{
    if (!d->closable || index < 0 || index >= count())
        return QRect();
    const QRect tab = tabRect(index);
    if (tab.isEmpty())
        return QRect();
    // The place QTabBar gives a button on the right of a tab.
    QStyleOptionTab option;
    option.initFrom(this);
    option.rect = tab;
    option.shape = shape();
    if (index == currentIndex())
        option.state |= QStyle::State_Selected;
    option.rightButtonSize = kCloseGlyphSize;
    return style()->subElementRect(QStyle::SE_TabBarTabRightButton, &option, this);
}

int VTabBarBase::hoveredCloseGlyph() const
{
    return indexOfGlobalId(d->closeHoverGlobalId);
}

bool VTabBarBase::isCloseGlyphDown() const
{
    return d->closeDownGlobalId != 0 && d->closeDownGlobalId == d->closeHoverGlobalId;
}

QSize VTabBarBase::tabSizeHint(int index) const
{
    QSize size = QTabBar::tabSizeHint(index);
    if (!d->closable)
        return size;
    // The room QTabBar makes for a button on a tab: its extent plus padding along the bar, and at
    // least its height (with the tab's vertical margin) across.
    const int across =
        kCloseGlyphSize.height() + style()->pixelMetric(QStyle::PM_TabBarTabVSpace, nullptr, this);
    if (IsVertical(shape())) {
        size.rheight() += kCloseGlyphSize.width() + kCloseGlyphPadding;
        size.setWidth(qMax(size.width(), across));
    } else {
        size.rwidth() += kCloseGlyphSize.width() + kCloseGlyphPadding;
        size.setHeight(qMax(size.height(), across));
    }
    return size;
}

bool VTabBarBase::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        if (d->closable) {
            const QPoint pos = static_cast<QHoverEvent*>(event)->pos();
            unsigned long long hovered = 0;
            for (int i = 0; i < count() && hovered == 0; ++i) {
                if (closeGlyphRect(i).contains(pos))
                    hovered = tabGlobalId(i);
            }
            if (hovered != d->closeHoverGlobalId) {
                d->closeHoverGlobalId = hovered;
                update();
            }
        }
        break;
    case QEvent::HoverLeave:
        if (d->closeHoverGlobalId != 0) {
            d->closeHoverGlobalId = 0;
            update();
        }
        break;
    default:
        break;
    }
    return QTabBar::event(event);
}

void VTabBarBase::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        for (int i = 0; d->closable && i < count(); ++i) {
            if (closeGlyphRect(i).contains(event->pos())) {
                // The glyph's press is its own, as a button's would be: the tab is neither made
                // current nor dragged.
                d->closeDownGlobalId = tabGlobalId(i);
                d->closeHoverGlobalId = d->closeDownGlobalId;
                update();
                event->accept();
                return;
            }
        }
        d->pressedGlobalId = tabGlobalId(tabAt(event->pos()));
        d->pressPos = event->pos();
        d->dragOutDone = false;
    }
    QTabBar::mousePressEvent(event);
}

void VTabBarBase::mouseMoveEvent(QMouseEvent* event)
{
    if (d->closeDownGlobalId != 0) {
        const int index = indexOfGlobalId(d->closeDownGlobalId);
        const unsigned long long hovered =
            index >= 0 && closeGlyphRect(index).contains(event->pos()) ? d->closeDownGlobalId : 0;
        if (hovered != d->closeHoverGlobalId) {
            d->closeHoverGlobalId = hovered;
            update();
        }
        event->accept();
        return;
    }
    if (d->dragOutDone) {
        event->accept();
        return;
    }
    const bool leftDown = event->buttons() & Qt::LeftButton;
    if (d->dragOutEnabled && leftDown && d->pressedGlobalId != 0) {
        const int dy = qAbs(event->pos().y() - d->pressPos.y());
        if (dy > QApplication::startDragDistance() && !rect().contains(event->pos())) {
            const int index = indexOfGlobalId(d->pressedGlobalId);
            if (index >= 0) {
                d->dragOutDone = true;
                // End QTabBar's own press (and any reorder drag) first, so that the bar is idle
                // when a handler takes the tab away.
                QMouseEvent release(QEvent::MouseButtonRelease, event->localPos(), event->windowPos(),
                                    event->screenPos(), Qt::LeftButton, Qt::NoButton, event->modifiers());
                QTabBar::mouseReleaseEvent(&release);
                const QPoint globalPos = event->globalPos();
                Q_EMIT TabDragOut(index, globalPos);
                event->accept();
                return;
            }
        }
    }
    QTabBar::mouseMoveEvent(event);
}

void VTabBarBase::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && d->closeDownGlobalId != 0) {
        const int index = indexOfGlobalId(d->closeDownGlobalId);
        d->closeDownGlobalId = 0;
        update();
        event->accept();
        // A button clicks when released over itself; the handler may remove the tab or the bar.
        if (index >= 0 && closeGlyphRect(index).contains(event->pos()))
            Q_EMIT tabCloseRequested(index);
        return;
    }
    if (event->button() == Qt::LeftButton) {
        d->pressedGlobalId = 0;
        if (d->dragOutDone) {
            // QTabBar already had its release when the drag left the bar.
            d->dragOutDone = false;
            event->accept();
            return;
        }
    }
    QTabBar::mouseReleaseEvent(event);
}

} // namespace vx_std_ui
