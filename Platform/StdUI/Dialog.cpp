#include "Platform/StdUI/Dialog.h"

#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QScreen>
#include <QVBoxLayout>

namespace vx_std_ui {

namespace {
constexpr int kTitleHeight = 40;
constexpr int kMargin = 20;
constexpr int kButtonSpacing = 12;
constexpr qreal kRadius = 6.0;
} // namespace

struct VDialog::Impl
{
    Frame frame = Frame::Titled;
    QLabel* title = nullptr;
    QWidget* titleBar = nullptr;
    QVBoxLayout* content = nullptr;
    QHBoxLayout* buttons = nullptr;
    QPointer<VButton> defaultButton;
    bool dragging = false;
    QPoint dragOffset;
};

VDialog::VDialog(QWidget* parent, Frame frame) : QDialog(parent), d(std::make_unique<Impl>())
{
    d->frame = frame;
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    vx_ui_res::Provider::Instance().FollowTheme(this);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, kMargin);
    outer->setSpacing(0);

    d->titleBar = new QWidget(this);
    d->titleBar->setObjectName(QStringLiteral("VDialogTitleBar"));
    d->titleBar->setFixedHeight(kTitleHeight);
    auto* titleRow = new QHBoxLayout(d->titleBar);
    titleRow->setContentsMargins(kMargin, 0, 8, 0);
    d->title = new QLabel(d->titleBar);
    d->title->setObjectName(QStringLiteral("VDialogTitle"));
    QFont titleFont = d->title->font();
    titleFont.setBold(true);
    d->title->setFont(titleFont);
    titleRow->addWidget(d->title, 1);
    auto* close = new VIconButton(IconGlyph::Close, QString(), d->titleBar);
    close->setObjectName(QStringLiteral("Close_Button"));
    close->setFocusPolicy(Qt::NoFocus);
    connect(close, &QAbstractButton::clicked, this, &QDialog::reject);
    titleRow->addWidget(close);
    outer->addWidget(d->titleBar);
    d->titleBar->setVisible(frame == Frame::Titled);

    auto* body = new QWidget(this);
    d->content = new QVBoxLayout(body);
    d->content->setContentsMargins(kMargin, frame == Frame::Titled ? 8 : kMargin, kMargin, 0);
    d->content->setSpacing(8);
    outer->addWidget(body, 1);

    d->buttons = new QHBoxLayout;
    d->buttons->setContentsMargins(kMargin, 16, kMargin, 0);
    d->buttons->setSpacing(kButtonSpacing);
    d->buttons->addStretch(1);
    outer->addLayout(d->buttons);
}

VDialog::~VDialog() = default;

void VDialog::setTitle(const QString& title)
{
    d->title->setText(title);
    setWindowTitle(title);
}

QString VDialog::title() const
{
    return d->title->text();
}

VDialog::Frame VDialog::frame() const
{
    return d->frame;
}

QVBoxLayout* VDialog::contentLayout() const
{
    return d->content;
}

VButton* VDialog::addButton(const QString& text, VButton::Style style, const QString& objectName)
{
    auto* button = new VButton(text, style, this);
    button->setObjectName(objectName);
    // Return is handled by the dialog itself, for the button chosen with setDefaultButton.
    button->setAutoDefault(false);
    d->buttons->addWidget(button);
    return button;
}

void VDialog::setDefaultButton(VButton* button)
{
    d->defaultButton = button;
}

VButton* VDialog::defaultButton() const
{
    return d->defaultButton.data();
}

void VDialog::centreOverParent()
{
    adjustSize();
    QRect area;
    if (QWidget* p = parentWidget()) {
        // A window's geometry is its client area in screen coordinates.
        area = p->window()->geometry();
    } else if (QScreen* screen = QApplication::primaryScreen()) {
        area = screen->availableGeometry();
    }
    // QRect::center() rounds towards the top left; the margins on both sides are what count.
    // setGeometry places the client area; move() would place the (platform's) frame.
    if (area.isValid())
        setGeometry(QRect(
            area.topLeft() + QPoint((area.width() - width()) / 2, (area.height() - height()) / 2), size()));
}

void VDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    centreOverParent();
}

void VDialog::paintEvent(QPaintEvent* event)
{
    (void)event;
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frameRect = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath path;
    path.addRoundedRect(frameRect, kRadius, kRadius);
    painter.fillPath(path, theme.GetColor(QStringLiteral("ct_bg_primary")));
    if (d->frame == Frame::Titled) {
        // The title bar's band, clipped to the rounded frame.
        painter.save();
        painter.setClipPath(path);
        painter.fillRect(QRectF(0, 0, width(), kTitleHeight), theme.GetColor(QStringLiteral("ct_title_bar")));
        painter.setPen(theme.GetColor(QStringLiteral("ct_divider")));
        painter.drawLine(QPointF(0, kTitleHeight - 0.5), QPointF(width(), kTitleHeight - 0.5));
        painter.restore();
    }
    painter.setPen(QPen(theme.GetColor(QStringLiteral("ct_border")), 1.0));
    painter.drawPath(path);
}

void VDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier) {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            if (d->defaultButton && d->defaultButton->isEnabled() && d->defaultButton->isVisible())
                d->defaultButton->click();
            event->accept();
            return;
        }
    }
    // Escape: QDialog calls reject().
    QDialog::keyPressEvent(event);
}

void VDialog::mousePressEvent(QMouseEvent* event)
{
    if (d->frame == Frame::Titled && event->button() == Qt::LeftButton && event->pos().y() < kTitleHeight) {
        d->dragging = true;
        d->dragOffset = event->globalPos() - frameGeometry().topLeft();
        event->accept();
        return;
    }
    QDialog::mousePressEvent(event);
}

void VDialog::mouseMoveEvent(QMouseEvent* event)
{
    if (d->dragging && (event->buttons() & Qt::LeftButton)) {
        move(event->globalPos() - d->dragOffset);
        event->accept();
        return;
    }
    QDialog::mouseMoveEvent(event);
}

void VDialog::mouseReleaseEvent(QMouseEvent* event)
{
    if (d->dragging && event->button() == Qt::LeftButton) {
        d->dragging = false;
        event->accept();
        return;
    }
    QDialog::mouseReleaseEvent(event);
}

} // namespace vx_std_ui
