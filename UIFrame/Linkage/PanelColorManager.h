#pragma once

// CVXPanelColorManager: the one owner of the eight tab group colours. A "colour text" is the
// colour's tab colour key ("ck_indigo450" for colour 1): it names layout-page tab groups and
// pop-out title bars, and it is the linkage scope key. Colours are stored as their number in
// decimal text ("1" to "8", "0" for none); texts saved by older versions go through GetRealColor.
// Keys resolve through vx_ui_res::Provider, so every colour follows the theme.

#include "UIFrame/UIFrameExport.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QColor>
#include <QMap>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <variant>

enum VXPanelTabGroupColor : int
{
    VXPanelTabGroupColor_None = 0,
    VXPanelTabGroupColor_Indigo = 1,
    VXPanelTabGroupColor_Blue = 2,
    VXPanelTabGroupColor_Cyan = 3,
    VXPanelTabGroupColor_Lime = 4,
    VXPanelTabGroupColor_Yellow = 5,
    VXPanelTabGroupColor_Orange = 6,
    VXPanelTabGroupColor_Red = 7,
    VXPanelTabGroupColor_GrayBlue = 8,
};

// A theme colour key with an alpha applied when it is resolved (1.0 keeps the key's own alpha
// channel; below 1 replaces it).
struct UIFRAME_EXPORT VXPanelThemeColor
{
    QString key;
    double alpha = 1.0;

    QColor Resolve(vx_ui_res::Theme theme) const;
    bool operator==(const VXPanelThemeColor& other) const { return key == other.key && alpha == other.alpha; }
};

// A colour of the tables: a theme key, or a fixed colour used as it is.
using VXPanelColor = std::variant<VXPanelThemeColor, QColor>;
UIFRAME_EXPORT QColor ResolvePanelColor(const VXPanelColor& color, vx_ui_res::Theme theme);

class UIFRAME_EXPORT CVXPanelColorManager
{
public:
    static CVXPanelColorManager& GetInstance();

    // The decimal number of the colour whose text equals `colorText`; "0" when none does.
    QString GetStoreColor(const QString& colorText) const;
    // The current colour text for a stored text: empty stays empty, a legacy key becomes its
    // colour's text, anything else comes back as stored (and is remembered in the legacy map
    // with the value 0).
    QString GetRealColor(const QString& storedText);
    // The first of the colours 1 to 8 whose text is not in `used`; colour 1 when all are.
    QString GetFirstUnusedOrFirstTabColor(const QSet<QString>& used) const;

    // Tab backgrounds on the white (light) and the black (dark) theme; an invalid QColor and a
    // warning for a text that names no colour.
    QColor GetTabWhiteBgColor(const QString& colorText) const;
    QColor GetTabBlackBgColor(const QString& colorText) const;
    // The tab colour itself in the current theme (menus and group buttons draw it).
    QColor GetTabColor(const QString& colorText) const;

    // The eight colour texts in colour order 1 to 8.
    QStringList GetTabColorTexts() const;
    QString ColorText(VXPanelTabGroupColor color) const; // empty for none or out of range
    VXPanelTabGroupColor ColorOf(const QString& colorText) const;

    static VXPanelThemeColor setColorAlpha(const VXPanelThemeColor& color, double alpha);

    // Tests: the legacy map as it stands, and back to the tables as built.
    QMap<QString, VXPanelTabGroupColor> LegacyMap() const;
    void ResetForTest();

private:
    CVXPanelColorManager();
    void Build();

    QMap<VXPanelTabGroupColor, VXPanelColor> m_tabColors;
    QMap<VXPanelTabGroupColor, VXPanelColor> m_whiteBgColors;
    QMap<VXPanelTabGroupColor, VXPanelColor> m_blackBgColors;
    QVector<QPair<int, QString>> m_colorTexts;
    QMap<QString, VXPanelTabGroupColor> m_legacyColors;
};
