#include "apps/Workspace/App/WorkspaceTabBar.h"

#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleOptionTab>

namespace vx_ws {

namespace {

constexpr int kFrameTabHeight = 28;
constexpr int kPageTabHeight = 27;
constexpr int kFramePadding = 18; // each side of a frame tab's label
constexpr int kFrameAccentInset = 12;
constexpr int kPageLeftPadding = 14;
constexpr int kPageRightPadding = 10;
constexpr int kGlyphSide = 16;
constexpr int kGlyphGap = 6; // between a page tab's label and its close glyph
constexpr int kPageMinWidth = 96;
constexpr int kPageMaxWidth = 240;
constexpr int kPageShrunkWidth = 72; // what a page tab may shrink to when the row is full
constexpr int kAccentThickness = 2;

QColor Color(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QString::fromLatin1(key));
}

QFont TabFont(const QFont& base, CVXWorkspaceTabBar::Look look, bool current)
{
    QFont font = base;
    font.setPixelSize(look == CVXWorkspaceTabBar::Look::Frame ? 13 : 12);
    font.setWeight(current ? QFont::DemiBold : QFont::Normal);
    return font;
}

void PaintCloseGlyph(QPainter* painter, const QRect& rect, bool hovered, bool down)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (hovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(Color(down ? "ct_pressed" : "ct_hover"));
        painter->drawRoundedRect(QRectF(rect), 3, 3);
    }
    QPen pen(Color(hovered ? "ct_text_primary" : "ct_text_secondary"), 1.3);
    pen.setCapStyle(Qt::RoundCap);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(
        vx_std_ui::IconGlyphPath(vx_std_ui::IconGlyph::Close, QRectF(rect).adjusted(4, 4, -4, -4)));
    painter->restore();
}

// The tabs of the workspace bars are drawn through a style, because QTabBar draws the tab being
// dragged through its style too; everything else is the application's style. One instance serves
// every bar.
class WorkspaceTabStyle : public QProxyStyle
{
public:
    static WorkspaceTabStyle* Instance()
    {
        static QPointer<WorkspaceTabStyle> instance;
        if (!instance) {
            instance = new WorkspaceTabStyle(QApplication::style()->objectName());
            // Gone with the application, after its widgets.
            instance->setParent(QCoreApplication::instance());
        }
        return instance;
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override
    {
        const auto* bar = qobject_cast<const CVXWorkspaceTabBar*>(widget);
        const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option);
        if (!bar || !tab ||
            (element != CE_TabBarTab && element != CE_TabBarTabShape && element != CE_TabBarTabLabel)) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        if (element == CE_TabBarTab)
            PaintTab(bar, *tab, painter);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        // The row under the tabs is painted by the bar.
        if (element == PE_FrameTabBarBase && qobject_cast<const CVXWorkspaceTabBar*>(widget))
            return;
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }

    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override
    {
        const auto* bar = qobject_cast<const CVXWorkspaceTabBar*>(widget);
        if (bar && element == SE_TabBarTabRightButton)
            return CVXWorkspaceTabBar::Parts(bar->GetLook(), option->rect, true).glyph;
        return QProxyStyle::subElementRect(element, option, widget);
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        if (qobject_cast<const CVXWorkspaceTabBar*>(widget) &&
            (metric == PM_TabBarTabOverlap || metric == PM_TabBarBaseOverlap ||
             metric == PM_TabBarBaseHeight))
            return 0;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }

private:
    explicit WorkspaceTabStyle(const QString& baseStyleKey) : QProxyStyle(baseStyleKey) {}

    static void PaintTab(const CVXWorkspaceTabBar* bar, const QStyleOptionTab& tab, QPainter* painter)
    {
        using Look = CVXWorkspaceTabBar::Look;
        const Look look = bar->GetLook();
        const bool current = tab.state & State_Selected;
        const bool hovered = (tab.state & State_MouseOver) && (tab.state & State_Enabled);
        const CVXWorkspaceTabBar::TabParts parts =
            CVXWorkspaceTabBar::Parts(look, tab.rect, bar->tabsClosable());

        painter->save();
        if (const char* key = CVXWorkspaceTabBar::TabBackgroundKey(look, current, hovered)) {
            QRect fill = tab.rect;
            // A hovered frame label is lit as a rounded patch; page tabs fill their whole place.
            if (look == Look::Frame) {
                painter->setRenderHint(QPainter::Antialiasing);
                painter->setPen(Qt::NoPen);
                painter->setBrush(Color(key));
                painter->drawRoundedRect(QRectF(fill.adjusted(4, 3, -4, -3)), 4, 4);
            } else {
                painter->fillRect(fill, Color(key));
            }
        }
        if (look == Look::Page && !current) {
            // A thin divider at the right end of each background tab.
            const int inset = tab.rect.height() / 4;
            painter->fillRect(
                QRect(tab.rect.right(), tab.rect.top() + inset, 1, tab.rect.height() - 2 * inset),
                Color("ct_border"));
        }
        if (current)
            painter->fillRect(parts.accent, Color("ct_selected"));

        const QFont font = TabFont(bar->font(), look, current);
        painter->setFont(font);
        painter->setPen(Color(CVXWorkspaceTabBar::TextColorKey(current, hovered)));
        // Measured as the size hint measures, not with the painter's device (a grab's pixmap may
        // round advances differently and would elide a label that fits).
        const QString text = QFontMetrics(font).elidedText(tab.text, Qt::ElideRight, parts.text.width());
        const Qt::Alignment align =
            look == Look::Frame ? Qt::AlignCenter : (Qt::AlignLeft | Qt::AlignVCenter);
        painter->drawText(parts.text, int(align) | Qt::TextSingleLine, text);

        if (!parts.glyph.isEmpty()) {
            const auto* v4 = qstyleoption_cast<const QStyleOptionTabV4*>(&tab);
            const int index = v4 ? v4->tabIndex : -1;
            const bool glyphHovered = index >= 0 && bar->hoveredCloseGlyph() == index;
            PaintCloseGlyph(painter, parts.glyph, glyphHovered, glyphHovered && bar->isCloseGlyphDown());
        }
        painter->restore();
    }
};

} // namespace

CVXWorkspaceTabBar::TabParts CVXWorkspaceTabBar::Parts(Look look, const QRect& tab, bool closable)
{
    TabParts parts;
    if (look == Look::Frame) {
        parts.text = tab.adjusted(kFramePadding, 0, -kFramePadding, 0);
        parts.accent = QRect(tab.left() + kFrameAccentInset, tab.bottom() + 1 - kAccentThickness,
                             qMax(0, tab.width() - 2 * kFrameAccentInset), kAccentThickness);
        if (closable)
            parts.glyph = QRect(tab.right() + 1 - kFramePadding / 2 - kGlyphSide,
                                tab.center().y() - kGlyphSide / 2 + 1, kGlyphSide, kGlyphSide);
        return parts;
    }
    int textRight = tab.right() + 1 - kPageLeftPadding;
    if (closable) {
        parts.glyph = QRect(tab.right() + 1 - kPageRightPadding - kGlyphSide,
                            tab.center().y() - kGlyphSide / 2 + 1, kGlyphSide, kGlyphSide);
        textRight = parts.glyph.left() - kGlyphGap;
    }
    const int textLeft = tab.left() + kPageLeftPadding;
    parts.text = QRect(textLeft, tab.top(), qMax(0, textRight - textLeft), tab.height());
    parts.accent = QRect(tab.left(), tab.top(), tab.width(), kAccentThickness);
    return parts;
}

int CVXWorkspaceTabBar::TabHeight(Look look)
{
    return look == Look::Frame ? kFrameTabHeight : kPageTabHeight;
}

const char* CVXWorkspaceTabBar::RowColorKey(Look look)
{
    return look == Look::Frame ? "ct_title_bar" : "ct_tab_inactive";
}

const char* CVXWorkspaceTabBar::TabBackgroundKey(Look look, bool current, bool hovered)
{
    if (look == Look::Page && current)
        return "ct_tab_active";
    if (hovered && !current)
        return "ct_hover";
    return nullptr;
}

const char* CVXWorkspaceTabBar::TextColorKey(bool current, bool hovered)
{
    return current || hovered ? "ct_text_primary" : "ct_text_secondary";
}

CVXWorkspaceTabBar::CVXWorkspaceTabBar(Look look, QWidget* parent)
    : vx_std_ui::VTabBarBase(parent), m_look(look)
{
    setObjectName(look == Look::Frame ? QStringLiteral("FrameTabBar") : QStringLiteral("PageTabBar"));
    setDrawBase(false);
    setExpanding(false);
    // The tabs are elided when painted, in their own font: QTabBar would elide the text for the
    // application style's font and margins.
    setElideMode(Qt::ElideNone);
    if (look == Look::Page) {
        setMovable(true);
        // Sets the toolkit's glyph style, which the workspace style replaces below; the glyph's
        // place and hit area then come from the workspace style.
        setTabsClosable(true);
    }
    setStyle(WorkspaceTabStyle::Instance());
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this, [this]() {
        update();
        if (m_watchedParent)
            m_watchedParent->update();
    });
    WatchParent();
}

CVXWorkspaceTabBar::~CVXWorkspaceTabBar() = default;

QSize CVXWorkspaceTabBar::tabSizeHint(int index) const
{
    // Measured with the bold face, so that a tab keeps its width when it becomes current.
    // Two pixels spare for the rounding of advances between devices.
    const int text = QFontMetrics(TabFont(font(), m_look, true)).horizontalAdvance(tabText(index)) + 2;
    if (m_look == Look::Frame)
        return QSize(text + 2 * kFramePadding, kFrameTabHeight);
    int width = kPageLeftPadding + text +
                (tabsClosable() ? kGlyphGap + kGlyphSide + kPageRightPadding : kPageLeftPadding);
    width = qBound(kPageMinWidth, width, kPageMaxWidth);
    return QSize(width, kPageTabHeight);
}

QSize CVXWorkspaceTabBar::minimumTabSizeHint(int index) const
{
    const QSize hint = tabSizeHint(index);
    if (m_look == Look::Frame)
        return hint;
    return QSize(qMin(hint.width(), kPageShrunkWidth), hint.height());
}

bool CVXWorkspaceTabBar::event(QEvent* event)
{
    if (event->type() == QEvent::ParentChange)
        WatchParent();
    return vx_std_ui::VTabBarBase::event(event);
}

void CVXWorkspaceTabBar::WatchParent()
{
    if (m_watchedParent == parentWidget())
        return;
    if (m_watchedParent)
        m_watchedParent->removeEventFilter(this);
    m_watchedParent = parentWidget();
    if (m_watchedParent)
        m_watchedParent->installEventFilter(this);
}

bool CVXWorkspaceTabBar::eventFilter(QObject* watched, QEvent* event)
{
    // The tab widget's row reaches past the bar (behind the corner widget): painted in the
    // parent's own paint event, before its children.
    if (watched == m_watchedParent && event->type() == QEvent::Paint && isVisible())
        PaintRow(m_watchedParent, QRect(0, y(), m_watchedParent->width(), height()));
    return vx_std_ui::VTabBarBase::eventFilter(watched, event);
}

void CVXWorkspaceTabBar::PaintRow(QWidget* target, const QRect& row) const
{
    QPainter painter(target);
    painter.fillRect(row, Color(RowColorKey(m_look)));
    painter.fillRect(QRect(row.left(), row.bottom(), row.width(), 1), Color("ct_border"));
}

void CVXWorkspaceTabBar::paintEvent(QPaintEvent* event)
{
    if (!m_watchedParent)
        PaintRow(this, rect());
    vx_std_ui::VTabBarBase::paintEvent(event);
}

} // namespace vx_ws
