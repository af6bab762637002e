#include "Platform/StdUI/Toast.h"

#include "Platform/StdUI/ThemeResource.h"

#include "Platform/Core/Log.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QTimer>
#include <QVariantAnimation>

namespace vx_std_ui {

namespace {
constexpr int kPaddingX = 16;
constexpr int kPaddingY = 8;
constexpr int kBottomGap = 40;
constexpr int kMaxTextWidth = 360;
constexpr int kFadeMs = 250;
constexpr qreal kRadius = 6.0;
} // namespace

VToast* VToast::Show(QWidget* parent, const QString& text, int ms)
{
    if (!parent) {
        VXLOG_ERROR("VToast::Show: no parent for the message \"{}\"", text);
        return nullptr;
    }
    // One message at a time over a parent: the newest replaces the one still shown.
    for (VToast* old :
         parent->findChildren<VToast*>(QString::fromLatin1(kObjectName), Qt::FindDirectChildrenOnly)) {
        old->hide();
        old->deleteLater();
    }
    auto* toast = new VToast(parent, text);
    toast->m_timer->start(std::max(1, ms));
    toast->show();
    toast->raise();
    return toast;
}

VToast::VToast(QWidget* parent, const QString& text) : QWidget(parent), m_text(text)
{
    setObjectName(QString::fromLatin1(kObjectName));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, &VToast::startFade);
    parent->installEventFilter(this);
    place();
}

QSize VToast::sizeHint() const
{
    const QRect textRect = fontMetrics().boundingRect(QRect(0, 0, kMaxTextWidth, 10000),
                                                      Qt::AlignCenter | Qt::TextWordWrap, m_text);
    return {textRect.width() + 2 * kPaddingX, textRect.height() + 2 * kPaddingY};
}

void VToast::place()
{
    const QWidget* parent = parentWidget();
    if (!parent)
        return;
    const QSize size = sizeHint();
    const int x = (parent->width() - size.width()) / 2;
    const int y = std::max(0, parent->height() - size.height() - kBottomGap);
    setGeometry(QRect(QPoint(x, y), size));
}

void VToast::startFade()
{
    if (m_fade)
        return;
    m_fade = new QVariantAnimation(this);
    m_fade->setStartValue(1.0);
    m_fade->setEndValue(0.0);
    m_fade->setDuration(kFadeMs);
    connect(m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_opacity = value.toReal();
        update();
    });
    // deleteLater: the animation that emits finished() is a child of the toast.
    connect(m_fade, &QVariantAnimation::finished, this, [this] {
        hide();
        deleteLater();
    });
    m_fade->start();
}

bool VToast::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

void VToast::paintEvent(QPaintEvent* event)
{
    (void)event;
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_opacity);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()), kRadius, kRadius);
    QColor background = theme.GetColor(QStringLiteral("ct_bg_tooltip"));
    background.setAlphaF(0.92);
    painter.fillPath(path, background);
    painter.setPen(theme.GetColor(QStringLiteral("ct_text_tooltip")));
    painter.drawText(rect().adjusted(kPaddingX, kPaddingY, -kPaddingX, -kPaddingY),
                     Qt::AlignCenter | Qt::TextWordWrap, m_text);
}

} // namespace vx_std_ui
