#include "Platform/StdUI/ThemeResource.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/ProductPath.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QSet>
#include <QWidget>

#include <algorithm>

namespace vx_ui_res {
namespace {

using ColorTable = QHash<QString, QColor>;

constexpr const char* kBuiltInFolder = ":/vx_ui_res/themes";
constexpr const char* kFollowProperty = "vx_ui_res_follows_theme";

// Theme files carry colours as "#rrggbb" or "#aarrggbb" only: named colours would make a typo
// such as "gren" depend on the platform's colour database.
bool ParseColor(const QString& text, QColor* color)
{
    if (!text.startsWith(QLatin1Char('#')) || (text.size() != 7 && text.size() != 9))
        return false;
    for (int i = 1; i < text.size(); ++i) {
        const char c = text.at(i).toLower().toLatin1();
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f')))
            return false;
    }
    *color = QColor(text);
    return color->isValid();
}

struct ParseResult
{
    bool ok = false;
    std::string error;
    ColorTable table;
};

// Parses and checks a whole theme file; nothing is applied here.
ParseResult ParseThemeFile(Theme theme, const QByteArray& bytes)
{
    ParseResult r;
    QJsonParseError jsonError;
    const QJsonDocument doc = QJsonDocument::fromJson(bytes, &jsonError);
    if (jsonError.error != QJsonParseError::NoError) {
        r.error = fmt::format("not JSON ({} at offset {})", jsonError.errorString(), jsonError.offset);
        return r;
    }
    if (!doc.isObject()) {
        r.error = "the top level is not an object";
        return r;
    }
    const QJsonObject root = doc.object();
    const QJsonValue name = root.value(QStringLiteral("theme"));
    if (!name.isUndefined() && name.toString() != ThemeName(theme)) {
        r.error = fmt::format("it is a theme file for \"{}\", not \"{}\"", name.toString(), ThemeName(theme));
        return r;
    }
    const QJsonValue colors = root.value(QStringLiteral("colors"));
    if (!colors.isObject() || colors.toObject().isEmpty()) {
        r.error = "it has no \"colors\" object with colours";
        return r;
    }
    const QJsonObject table = colors.toObject();
    for (auto it = table.begin(); it != table.end(); ++it) {
        QColor color;
        if (it.key().isEmpty() || !it.value().isString() || !ParseColor(it.value().toString(), &color)) {
            r.error = fmt::format(
                "colour \"{}\" has the bad value {}", it.key(),
                QString::fromUtf8(
                    QJsonDocument(QJsonObject{{it.key(), it.value()}}).toJson(QJsonDocument::Compact)));
            return r;
        }
        r.table.insert(it.key(), color);
    }
    r.ok = true;
    return r;
}

} // namespace

QString ThemeName(Theme theme)
{
    return theme == Theme::Dark ? QStringLiteral("dark") : QStringLiteral("light");
}

struct Provider::Impl
{
    Theme theme = Theme::Light;
    ColorTable tables[2];
    mutable QSet<QString> warnedKeys;

    ColorTable& table(Theme t) { return tables[t == Theme::Dark ? 1 : 0]; }
    const ColorTable& table(Theme t) const { return tables[t == Theme::Dark ? 1 : 0]; }
};

Provider& Provider::Instance()
{
    static Provider instance;
    return instance;
}

Provider::Provider() : d(std::make_unique<Impl>())
{
    qRegisterMetaType<vx_ui_res::Theme>("vx_ui_res::Theme");
    Reload();
}

Provider::~Provider() = default;

Theme Provider::CurrentTheme() const
{
    return d->theme;
}

void Provider::SetTheme(Theme theme)
{
    if (theme == d->theme)
        return;
    d->theme = theme;
    Q_EMIT ThemeChanged(theme);
}

QColor Provider::GetColor(const QString& key) const
{
    return GetColor(key, d->theme);
}

QColor Provider::GetColor(const QString& key, Theme theme) const
{
    const ColorTable& table = d->table(theme);
    const auto it = table.constFind(key);
    if (it != table.constEnd())
        return *it;
    if (!d->warnedKeys.contains(key)) {
        d->warnedKeys.insert(key);
        VXLOG_WARN("Provider::GetColor: unknown colour key \"{}\" in the {} theme", key, ThemeName(theme));
    }
    return QColor();
}

bool Provider::HasColor(const QString& key) const
{
    return d->table(d->theme).contains(key);
}

QStringList Provider::Keys(Theme theme) const
{
    QStringList keys = d->table(theme).keys();
    std::sort(keys.begin(), keys.end());
    return keys;
}

QPalette Provider::BuildPalette() const
{
    return BuildPalette(d->theme);
}

QPalette Provider::BuildPalette(Theme theme) const
{
    const ColorTable& t = d->table(theme);
    // Missing keys keep the platform's colour rather than turning a role invalid.
    QPalette palette;
    const auto set = [&](QPalette::ColorGroup group, QPalette::ColorRole role, const char* key) {
        const auto it = t.constFind(QLatin1String(key));
        if (it != t.constEnd())
            palette.setColor(group, role, *it);
    };
    const auto setAll = [&](QPalette::ColorRole role, const char* key) { set(QPalette::All, role, key); };

    setAll(QPalette::Window, "ct_bg_primary");
    setAll(QPalette::WindowText, "ct_text_primary");
    setAll(QPalette::Base, "ct_bg_secondary");
    setAll(QPalette::AlternateBase, "ct_bg_tertiary");
    setAll(QPalette::Text, "ct_text_primary");
    setAll(QPalette::PlaceholderText, "ct_text_secondary");
    setAll(QPalette::Button, "ct_bg_secondary");
    setAll(QPalette::ButtonText, "ct_text_primary");
    setAll(QPalette::BrightText, "ct_text_on_accent");
    setAll(QPalette::Highlight, "ct_selected");
    setAll(QPalette::HighlightedText, "ct_text_on_accent");
    setAll(QPalette::ToolTipBase, "ct_bg_tooltip");
    setAll(QPalette::ToolTipText, "ct_text_tooltip");
    setAll(QPalette::Link, "ct_link");
    setAll(QPalette::LinkVisited, "ct_link");
    setAll(QPalette::Light, "ct_hover");
    setAll(QPalette::Midlight, "ct_divider");
    setAll(QPalette::Mid, "ct_border");
    setAll(QPalette::Dark, "ct_border");
    setAll(QPalette::Shadow, "ck_black");
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        set(QPalette::Disabled, role, "ct_text_disabled");
    return palette;
}

void Provider::ApplyPalette(QWidget* widget) const
{
    if (!widget) {
        VXLOG_WARN("Provider::ApplyPalette: null widget");
        return;
    }
    widget->setPalette(BuildPalette());
}

void Provider::FollowTheme(QWidget* widget)
{
    if (!widget) {
        VXLOG_WARN("Provider::FollowTheme: null widget");
        return;
    }
    ApplyPalette(widget);
    if (widget->property(kFollowProperty).toBool())
        return;
    widget->setProperty(kFollowProperty, true);
    connect(this, &Provider::ThemeChanged, widget, [this, widget] { ApplyPalette(widget); });
}

void Provider::ApplyApplicationPalette() const
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        VXLOG_WARN("Provider::ApplyApplicationPalette: no QApplication");
        return;
    }
    QApplication::setPalette(BuildPalette());
}

bool Provider::LoadThemeFile(Theme theme, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        VXLOG_ERROR("Provider::LoadThemeFile: cannot read {}: {}", path, file.errorString());
        return false;
    }
    const ParseResult parsed = ParseThemeFile(theme, file.readAll());
    if (!parsed.ok) {
        VXLOG_ERROR("Provider::LoadThemeFile: {} refused: {}", path, parsed.error);
        return false;
    }
    ColorTable& table = d->table(theme);
    for (auto it = parsed.table.begin(); it != parsed.table.end(); ++it)
        table.insert(it.key(), it.value());
    return true;
}

void Provider::Reload()
{
    QString folder = core::product_path::GetResourceFolder();
    if (!folder.isEmpty())
        folder = QDir(folder).filePath(QStringLiteral("themes"));

    for (Theme theme : {Theme::Light, Theme::Dark}) {
        const QString fileName = ThemeName(theme) + QStringLiteral(".json");
        d->table(theme).clear();
        // The compiled-in table must load; a failure here is a broken build, not bad input.
        VX_ASSERT(LoadThemeFile(theme, QLatin1String(kBuiltInFolder) + QLatin1Char('/') + fileName));
        if (folder.isEmpty())
            continue;
        const QString onDisk = QDir(folder).filePath(fileName);
        if (QFileInfo(onDisk).isFile())
            LoadThemeFile(theme, onDisk);
    }
}

void Provider::ResetForTest()
{
    d->warnedKeys.clear();
    Reload();
    SetTheme(Theme::Light);
}

} // namespace vx_ui_res
