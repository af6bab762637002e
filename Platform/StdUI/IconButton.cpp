#include "Platform/StdUI/IconButton.h"

#include "Platform/Core/Log.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QFileInfo>
#include <QPainter>
#include <QSvgRenderer>
#include <QTransform>

namespace vx_std_ui {
namespace {

constexpr const char* kDefaultGlyphKey = "ct_text_secondary";
constexpr const char* kDisabledGlyphKey = "ct_text_disabled";
constexpr qreal kCornerRadius = 4.0;

// Two capsules crossing the centre at 45 degrees, like two links of a chain.
QPainterPath LinkPath(const QRectF& box)
{
    const qreal w = box.width();
    const qreal h = box.height();
    const QSizeF capsule(w * 0.56, h * 0.30);
    const qreal radius = capsule.height() / 2;
    const qreal offset = w * 0.17;
    QPainterPath links;
    links.addRoundedRect(QRectF(QPointF(-offset - capsule.width() / 2, -radius), capsule), radius, radius);
    links.addRoundedRect(QRectF(QPointF(offset - capsule.width() / 2, -radius), capsule), radius, radius);
    QTransform toBox;
    toBox.translate(box.center().x(), box.center().y());
    toBox.rotate(-45);
    return toBox.map(links);
}

} // namespace

QPainterPath IconGlyphPath(IconGlyph glyph, const QRectF& box)
{
    QPainterPath path;
    const qreal l = box.left();
    const qreal t = box.top();
    const qreal w = box.width();
    const qreal h = box.height();
    switch (glyph) {
    case IconGlyph::None:
        break;
    case IconGlyph::Close:
        path.moveTo(box.topLeft());
        path.lineTo(box.bottomRight());
        path.moveTo(box.topRight());
        path.lineTo(box.bottomLeft());
        break;
    case IconGlyph::Menu: {
        const qreal r = w / 10;
        for (const qreal x : {l + r, l + w / 2, l + w - r})
            path.addEllipse(QPointF(x, t + h / 2), r, r);
        break;
    }
    case IconGlyph::Add:
        path.moveTo(l + w / 2, t);
        path.lineTo(l + w / 2, t + h);
        path.moveTo(l, t + h / 2);
        path.lineTo(l + w, t + h / 2);
        break;
    case IconGlyph::Link:
        path = LinkPath(box);
        break;
    case IconGlyph::Check:
        path.moveTo(l, t + h * 0.55);
        path.lineTo(l + w * 0.38, t + h * 0.88);
        path.lineTo(l + w, t + h * 0.18);
        break;
    }
    return path;
}

QString IconButtonBackgroundKey(bool hovered, bool down, bool checked)
{
    if (down || checked)
        return QStringLiteral("ct_pressed");
    if (hovered)
        return QStringLiteral("ct_hover");
    return QString();
}

struct VIconButton::Impl
{
    IconGlyph glyph = IconGlyph::None;
    QIcon icon;
    QString glyphKey = QLatin1String(kDefaultGlyphKey);
    bool hovered = false;
};

VIconButton::VIconButton(QWidget* parent) : QAbstractButton(parent), d(std::make_unique<Impl>())
{
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(24, 24);
    setIconSize(QSize(16, 16));
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this, [this] { update(); });
}

VIconButton::VIconButton(IconGlyph glyph, const QString& toolTip, QWidget* parent) : VIconButton(parent)
{
    SetGlyph(glyph);
    setToolTip(toolTip);
}

VIconButton::~VIconButton() = default;

void VIconButton::SetButtonSize(const QSize& size)
{
    setFixedSize(size);
}

void VIconButton::SetGlyph(IconGlyph glyph)
{
    d->glyph = glyph;
    d->icon = QIcon();
    update();
}

IconGlyph VIconButton::Glyph() const
{
    return d->glyph;
}

void VIconButton::SetIcon(const QIcon& icon)
{
    d->icon = icon;
    d->glyph = IconGlyph::None;
    update();
}

bool VIconButton::SetSvgFile(const QString& path)
{
    if (!QFileInfo(path).isFile()) {
        VXLOG_WARN("VIconButton::SetSvgFile: no file {}", path);
        return false;
    }
    // QIcon accepts any path and fails only when painting; check the file now.
    QSvgRenderer renderer(path);
    if (!renderer.isValid()) {
        VXLOG_WARN("VIconButton::SetSvgFile: {} is not a valid SVG image", path);
        return false;
    }
    SetIcon(QIcon(path));
    return true;
}

bool VIconButton::HasIcon() const
{
    return !d->icon.isNull();
}

void VIconButton::SetGlyphColorKey(const QString& key)
{
    d->glyphKey = key;
    update();
}

QString VIconButton::GlyphColorKey() const
{
    return d->glyphKey;
}

bool VIconButton::IsHovered() const
{
    return d->hovered;
}

QSize VIconButton::sizeHint() const
{
    return minimumSize().isValid() ? minimumSize() : QSize(24, 24);
}

void VIconButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    PaintButton(painter);
}

void VIconButton::PaintButton(QPainter& painter) const
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    painter.setRenderHint(QPainter::Antialiasing);

    const QString bgKey = IconButtonBackgroundKey(d->hovered && isEnabled(), isDown(), isChecked());
    if (!bgKey.isEmpty() && theme.HasColor(bgKey)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.GetColor(bgKey));
        painter.drawRoundedRect(QRectF(rect()), kCornerRadius, kCornerRadius);
    }

    if (!d->icon.isNull()) {
        const QSize size = iconSize().boundedTo(this->size());
        const QRect target(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size);
        d->icon.paint(&painter, target, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        return;
    }
    if (d->glyph == IconGlyph::None)
        return;

    QString key = isEnabled() ? d->glyphKey : QString::fromLatin1(kDisabledGlyphKey);
    if (!theme.HasColor(key))
        key = QLatin1String(kDefaultGlyphKey);
    const QColor color = theme.GetColor(key);
    const qreal side = qMin(width(), height()) / 2.0;
    const QRectF box(QPointF((width() - side) / 2.0, (height() - side) / 2.0), QSizeF(side, side));
    QPen pen(color, qMax<qreal>(1.2, side / 8.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(d->glyph == IconGlyph::Menu ? QBrush(color) : QBrush(Qt::NoBrush));
    painter.drawPath(IconGlyphPath(d->glyph, box));
}

void VIconButton::enterEvent(QEvent* event)
{
    d->hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void VIconButton::leaveEvent(QEvent* event)
{
    d->hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace vx_std_ui
