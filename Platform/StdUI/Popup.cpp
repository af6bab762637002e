#include "Platform/StdUI/Popup.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>

namespace vx_std_ui {

QPoint PopupTopLeft(const QPoint& anchor, const QSize& size, const QRect& available)
{
    int x = anchor.x();
    int y = anchor.y();
    if (x + size.width() - 1 > available.right())
        x = available.right() - size.width() + 1;
    if (y + size.height() - 1 > available.bottom()) {
        const int above = anchor.y() - size.height();
        const bool aboveFits = above >= available.top() && above + size.height() - 1 <= available.bottom();
        y = aboveFits ? above : available.bottom() - size.height() + 1;
    }
    return QPoint(qMax(x, available.left()), qMax(y, available.top()));
}

VPopup::VPopup(QWidget* parent) : QWidget(parent, Qt::Popup | Qt::FramelessWindowHint)
{
    vx_ui_res::Provider::Instance().FollowTheme(this);
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this, [this] { update(); });
}

VPopup::~VPopup() = default;

void VPopup::ShowAt(const QPoint& globalPos)
{
    QScreen* screen = QGuiApplication::screenAt(globalPos);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    // Showing would size a window nobody sized; do it now so that the placement sees that size.
    if (!testAttribute(Qt::WA_Resized))
        adjustSize();
    move(screen ? PopupTopLeft(globalPos, size(), screen->availableGeometry()) : globalPos);
    show();
}

void VPopup::paintEvent(QPaintEvent*)
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    QPainter painter(this);
    painter.fillRect(rect(), theme.GetColor(QStringLiteral("ct_bg_primary")));
    painter.setPen(theme.GetColor(QStringLiteral("ct_border")));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void VPopup::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        event->accept();
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void VPopup::showEvent(QShowEvent* event)
{
    m_open = true;
    QWidget::showEvent(event);
}

void VPopup::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!m_open)
        return;
    m_open = false;
    Q_EMIT Closed();
}

} // namespace vx_std_ui
