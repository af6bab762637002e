#pragma once

// VIconButton: a flat tool button of fixed size that paints one glyph, drawn in a theme colour,
// or an icon (QIcon or an SVG file). Hovering and pressing tint its background with the theme's
// hover and pressed colours; it repaints itself when the theme changes. Used for the menu and
// close buttons of panel boxes and the small buttons of popups.

#include "Platform/StdUI/StdUIExport.h"

#include <QAbstractButton>
#include <QIcon>
#include <QPainterPath>

#include <memory>

class QPainter;

namespace vx_std_ui {

// The glyphs an icon button can draw without an image.
enum class IconGlyph
{
    None,
    Close, // a cross
    Menu,  // three horizontal dots
    Add,   // a plus
    Link,  // two chain links
    Check, // a tick
};

// The outline of `glyph` fitted into `box` (centred, as a stroke path to be drawn with a pen of
// about box.width() / 8). None gives an empty path.
VXSTDUI_EXPORT QPainterPath IconGlyphPath(IconGlyph glyph, const QRectF& box);

// The theme key of the background behind an icon button in a given state; empty means no
// background. Pressing wins over hovering, and a checked button shows as pressed.
VXSTDUI_EXPORT QString IconButtonBackgroundKey(bool hovered, bool down, bool checked);

class VXSTDUI_EXPORT VIconButton : public QAbstractButton
{
    Q_OBJECT
public:
    // 24 x 24, no glyph, glyph colour "ct_text_secondary".
    explicit VIconButton(QWidget* parent = nullptr);
    VIconButton(IconGlyph glyph, const QString& toolTip, QWidget* parent = nullptr);
    ~VIconButton() override;

    // The button keeps this size whatever its layout offers.
    void SetButtonSize(const QSize& size);

    // A glyph replaces any icon, and an icon any glyph.
    void SetGlyph(IconGlyph glyph);
    IconGlyph Glyph() const;
    void SetIcon(const QIcon& icon);
    // Loads an SVG file as the icon; a missing or invalid file is logged, leaves the button
    // as it was and returns false.
    bool SetSvgFile(const QString& path);
    bool HasIcon() const;

    // Theme key of the glyph's colour; an unknown key falls back to "ct_text_secondary".
    void SetGlyphColorKey(const QString& key);
    QString GlyphColorKey() const;

    bool IsHovered() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    // The whole look (background, icon or glyph) into any painter sized like the button, so a
    // subclass can draw it into a cached picture.
    void PaintButton(QPainter& painter) const;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_std_ui
