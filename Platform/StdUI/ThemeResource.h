#pragma once

// Theme resources: colour keys ("ct_bg_primary", "ck_indigo450", "ct_rise", ...) resolved for
// the light or the dark theme. The tables come from theme files ({"theme": "light",
// "colors": {"key": "#rrggbb" | "#aarrggbb", ...}}): the built-in ones compiled into the
// library, overlaid by "<resource folder>/themes/<theme>.json" when that file exists.
// Widgets are themed through palettes built here, never through style sheets.

#include "Platform/StdUI/StdUIExport.h"

#include <QColor>
#include <QObject>
#include <QPalette>
#include <QStringList>

#include <memory>

class QWidget;

namespace vx_ui_res {

enum class Theme
{
    Light,
    Dark
};

// "light" or "dark", the name used by theme files.
VXSTDUI_EXPORT QString ThemeName(Theme theme);

class VXSTDUI_EXPORT Provider : public QObject
{
    Q_OBJECT
public:
    // Created on first use, on the GUI thread, with the light theme.
    static Provider& Instance();

    Theme CurrentTheme() const;
    // ThemeChanged fires once when the theme actually changes, not when it is set again.
    void SetTheme(Theme theme);

    // The colour of `key` in the current (or the given) theme. An unknown key gives an
    // invalid QColor and one warning per key.
    QColor GetColor(const QString& key) const;
    QColor GetColor(const QString& key, Theme theme) const;
    bool HasColor(const QString& key) const;
    QStringList Keys(Theme theme) const; // sorted

    // Palettes built from the theme's keys (window, text, highlight, disabled text, ...).
    QPalette BuildPalette() const;
    QPalette BuildPalette(Theme theme) const;
    void ApplyPalette(QWidget* widget) const;
    // Applies the palette now and again on every theme change while the widget lives.
    void FollowTheme(QWidget* widget);
    // The application palette, used by every widget without a palette of its own.
    void ApplyApplicationPalette() const;

    // Overlays a theme file on the theme's table. A file that is not a valid theme table is
    // refused whole: an error is logged, the table is left as it was and false returned.
    bool LoadThemeFile(Theme theme, const QString& path);
    // Rebuilds both tables from the built-in files and the resource folder's theme files.
    // Colours may change without ThemeChanged; callers reload before showing widgets.
    void Reload();
    // Back to the first-use state: reloaded tables, light theme, no remembered warnings.
    void ResetForTest();

Q_SIGNALS:
    void ThemeChanged(vx_ui_res::Theme theme);

private:
    Provider();
    ~Provider() override;

    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_ui_res

Q_DECLARE_METATYPE(vx_ui_res::Theme)
