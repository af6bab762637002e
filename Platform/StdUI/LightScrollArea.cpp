#include "Platform/StdUI/LightScrollArea.h"

#include <QCoreApplication>
#include <QEvent>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyle>
#include <QWheelEvent>

namespace vx_std_ui {
namespace {

// QScrollArea's step for the arrows and the wheel.
constexpr int kSingleStep = 20;

} // namespace

VLightScrollArea::VLightScrollArea(QWidget* parent) : QWidget(parent)
{
    // QScrollArea's viewport fills itself in its parent's background role; so does the area.
    setAutoFillBackground(true);
}

VLightScrollArea::~VLightScrollArea() = default;

void VLightScrollArea::setWidget(QWidget* widget)
{
    if (!widget || widget == m_widget)
        return;
    delete m_widget.data();
    m_widget = widget;
    if (widget->parentWidget() != this)
        widget->setParent(this);
    if (!widget->testAttribute(Qt::WA_Resized))
        widget->resize(widget->sizeHint());
    // As QScrollArea does: the inner widget paints its own background.
    widget->setAutoFillBackground(true);
    widget->installEventFilter(this);
    widget->move(0, 0);
    if (m_hBar)
        m_hBar->setValue(0);
    if (m_vBar)
        m_vBar->setValue(0);
    updateBars();
    // Bars made earlier stay above the new widget.
    if (m_hBar)
        m_hBar->raise();
    if (m_vBar)
        m_vBar->raise();
    widget->show();
}

QWidget* VLightScrollArea::widget() const
{
    return m_widget.data();
}

QScrollBar* VLightScrollArea::horizontalScrollBar() const
{
    return m_hBar;
}

QScrollBar* VLightScrollArea::verticalScrollBar() const
{
    return m_vBar;
}

QSize VLightScrollArea::viewportSize() const
{
    QSize size = this->size();
    if (m_vBar && !m_vBar->isHidden())
        size.rwidth() -= m_vBar->width();
    if (m_hBar && !m_hBar->isHidden())
        size.rheight() -= m_hBar->height();
    return size.expandedTo(QSize(0, 0));
}

QPoint VLightScrollArea::scrollPosition() const
{
    return QPoint(m_hBar ? m_hBar->value() : 0, m_vBar ? m_vBar->value() : 0);
}

void VLightScrollArea::setScrollPosition(const QPoint& position)
{
    // Values beyond a bar's range are clamped by the bar; without a bar there is nothing to scroll.
    if (m_hBar)
        m_hBar->setValue(position.x());
    if (m_vBar)
        m_vBar->setValue(position.y());
}

bool VLightScrollArea::event(QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::StyleChange || (type == QEvent::Show && m_barsPending))
        updateBars();
    return QWidget::event(event);
}

bool VLightScrollArea::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_widget && event->type() == QEvent::Resize)
        updateBars();
    return QWidget::eventFilter(watched, event);
}

void VLightScrollArea::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    updateBars();
}

void VLightScrollArea::wheelEvent(QWheelEvent* event)
{
    const bool horizontal = qAbs(event->angleDelta().x()) > qAbs(event->angleDelta().y());
    QScrollBar* bar = horizontal ? m_hBar : m_vBar;
    if (!bar || bar->isHidden()) {
        // Nothing to scroll here: the wheel goes on to the parents.
        event->ignore();
        return;
    }
    // The bar accepts the event only when it moved, so that an outer area scrolls at the limits.
    QCoreApplication::sendEvent(bar, event);
}

QScrollBar* VLightScrollArea::makeBar(Qt::Orientation orientation)
{
    auto* bar = new QScrollBar(orientation, this);
    bar->setSingleStep(kSingleStep);
    connect(bar, &QScrollBar::valueChanged, this, [this] { placeWidget(); });
    return bar;
}

void VLightScrollArea::updateBars()
{
    const QSize area = size();
    const QSize inner = m_widget ? m_widget->size() : QSize(0, 0);
    const int extent = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    // A bar along one axis takes room from the other: settle both as QScrollArea ends up doing.
    bool needH = inner.width() > area.width();
    bool needV = inner.height() > area.height();
    needH = needH || (needV && inner.width() > area.width() - extent);
    needV = needV || (needH && inner.height() > area.height() - extent);
    const QSize viewport(area.width() - (needV ? extent : 0), area.height() - (needH ? extent : 0));

    if (!isVisible() && ((needH && !m_hBar) || (needV && !m_vBar))) {
        // A hidden area is usually still being built and sized: its bars wait for the show.
        m_barsPending = true;
        return;
    }
    m_barsPending = false;
    if (needH && !m_hBar)
        m_hBar = makeBar(Qt::Horizontal);
    if (needV && !m_vBar)
        m_vBar = makeBar(Qt::Vertical);
    if (m_hBar) {
        m_hBar->setRange(0, needH ? inner.width() - viewport.width() : 0);
        m_hBar->setPageStep(viewport.width());
        m_hBar->setGeometry(0, area.height() - extent, viewport.width(), extent);
        m_hBar->setVisible(needH);
    }
    if (m_vBar) {
        m_vBar->setRange(0, needV ? inner.height() - viewport.height() : 0);
        m_vBar->setPageStep(viewport.height());
        m_vBar->setGeometry(area.width() - extent, 0, extent, viewport.height());
        m_vBar->setVisible(needV);
    }
    placeWidget();
}

void VLightScrollArea::placeWidget()
{
    if (m_widget)
        m_widget->move(-scrollPosition());
}

} // namespace vx_std_ui
