#include "UIFrame/Linkage/PanelColorManager.h"

#include "Platform/Core/Log.h"

namespace {

struct ColorRow
{
    VXPanelTabGroupColor color;
    const char* tabKey;
    const char* whiteBgKey;
    double blackBgAlpha; // below 0: the black background has a key of its own
    const char* blackBgKey;
    const char* legacyKey; // null: no legacy key maps to this colour
};

// The first two colours are stronger on dark backgrounds (0.2) than colours 3 to 7 (0.16);
// grey-blue at any alpha is too dull on black, so it has a key of its own.
constexpr ColorRow kColorRows[] = {
    {VXPanelTabGroupColor_Indigo, "ck_indigo450", "ck_indigo50", 0.2, nullptr, "ck_purple300"},
    {VXPanelTabGroupColor_Blue, "ck_blue620", "ck_blue50", 0.2, nullptr, "ck_blue620"},
    {VXPanelTabGroupColor_Cyan, "ck_cyan500", "ck_cyan100", 0.16, nullptr, "ck_cyan450"},
    {VXPanelTabGroupColor_Lime, "ck_lime500", "ck_lime50", 0.16, nullptr, "ck_lime250"},
    {VXPanelTabGroupColor_Yellow, "ck_yellow450", "ck_yellow50", 0.16, nullptr, "ck_yellow300"},
    {VXPanelTabGroupColor_Orange, "ck_orange450", "ck_orange50", 0.16, nullptr, nullptr},
    {VXPanelTabGroupColor_Red, "ck_red400", "ck_red50", 0.16, nullptr, "ck_red300"},
    {VXPanelTabGroupColor_GrayBlue, "ck_grayblue400", "ck_grayblue45_45", -1.0, "ck_grayblue650_45",
     "ck_grayblue200"},
};

} // namespace

QColor VXPanelThemeColor::Resolve(vx_ui_res::Theme theme) const
{
    QColor color = vx_ui_res::Provider::Instance().GetColor(key, theme);
    if (color.isValid() && alpha != 1.0)
        color.setAlphaF(alpha);
    return color;
}

QColor ResolvePanelColor(const VXPanelColor& color, vx_ui_res::Theme theme)
{
    if (const auto* themed = std::get_if<VXPanelThemeColor>(&color))
        return themed->Resolve(theme);
    return std::get<QColor>(color);
}

CVXPanelColorManager& CVXPanelColorManager::GetInstance()
{
    static CVXPanelColorManager instance;
    return instance;
}

CVXPanelColorManager::CVXPanelColorManager()
{
    Build();
}

void CVXPanelColorManager::Build()
{
    m_tabColors.clear();
    m_whiteBgColors.clear();
    m_blackBgColors.clear();
    m_colorTexts.clear();
    m_legacyColors.clear();
    for (const ColorRow& row : kColorRows) {
        const VXPanelThemeColor tab{QString::fromLatin1(row.tabKey)};
        m_tabColors.insert(row.color, tab);
        m_whiteBgColors.insert(row.color, VXPanelThemeColor{QString::fromLatin1(row.whiteBgKey)});
        if (row.blackBgKey)
            m_blackBgColors.insert(row.color, VXPanelThemeColor{QString::fromLatin1(row.blackBgKey)});
        else
            m_blackBgColors.insert(row.color, setColorAlpha(tab, row.blackBgAlpha));
        m_colorTexts.append({int(row.color), tab.key});
        if (row.legacyKey)
            m_legacyColors.insert(QString::fromLatin1(row.legacyKey), row.color);
    }
}

QString CVXPanelColorManager::GetStoreColor(const QString& colorText) const
{
    return QString::number(int(ColorOf(colorText)));
}

QString CVXPanelColorManager::GetRealColor(const QString& storedText)
{
    if (storedText.isEmpty())
        return QString();
    auto it = m_legacyColors.find(storedText);
    if (it == m_legacyColors.end())
        it = m_legacyColors.insert(storedText, VXPanelTabGroupColor_None);
    if (it.value() == VXPanelTabGroupColor_None)
        return storedText;
    return ColorText(it.value());
}

QString CVXPanelColorManager::GetFirstUnusedOrFirstTabColor(const QSet<QString>& used) const
{
    for (const auto& entry : m_colorTexts) {
        if (!used.contains(entry.second))
            return entry.second;
    }
    return ColorText(VXPanelTabGroupColor_Indigo);
}

QColor CVXPanelColorManager::GetTabWhiteBgColor(const QString& colorText) const
{
    const VXPanelTabGroupColor color = ColorOf(colorText);
    if (color == VXPanelTabGroupColor_None) {
        VXLOG_WARN("CVXPanelColorManager::GetTabWhiteBgColor: no group colour is named {}", colorText);
        return QColor();
    }
    return ResolvePanelColor(m_whiteBgColors.value(color), vx_ui_res::Theme::Light);
}

QColor CVXPanelColorManager::GetTabBlackBgColor(const QString& colorText) const
{
    const VXPanelTabGroupColor color = ColorOf(colorText);
    if (color == VXPanelTabGroupColor_None) {
        VXLOG_WARN("CVXPanelColorManager::GetTabBlackBgColor: no group colour is named {}", colorText);
        return QColor();
    }
    return ResolvePanelColor(m_blackBgColors.value(color), vx_ui_res::Theme::Dark);
}

QColor CVXPanelColorManager::GetTabColor(const QString& colorText) const
{
    const VXPanelTabGroupColor color = ColorOf(colorText);
    if (color == VXPanelTabGroupColor_None) {
        VXLOG_WARN("CVXPanelColorManager::GetTabColor: no group colour is named {}", colorText);
        return QColor();
    }
    return ResolvePanelColor(m_tabColors.value(color), vx_ui_res::Provider::Instance().CurrentTheme());
}

QStringList CVXPanelColorManager::GetTabColorTexts() const
{
    QStringList texts;
    for (const auto& entry : m_colorTexts)
        texts.append(entry.second);
    return texts;
}

QString CVXPanelColorManager::ColorText(VXPanelTabGroupColor color) const
{
    for (const auto& entry : m_colorTexts) {
        if (entry.first == int(color))
            return entry.second;
    }
    return QString();
}

VXPanelTabGroupColor CVXPanelColorManager::ColorOf(const QString& colorText) const
{
    for (const auto& entry : m_colorTexts) {
        if (entry.second == colorText)
            return VXPanelTabGroupColor(entry.first);
    }
    return VXPanelTabGroupColor_None;
}

VXPanelThemeColor CVXPanelColorManager::setColorAlpha(const VXPanelThemeColor& color, double alpha)
{
    return VXPanelThemeColor{color.key, alpha};
}

QMap<QString, VXPanelTabGroupColor> CVXPanelColorManager::LegacyMap() const
{
    return m_legacyColors;
}

void CVXPanelColorManager::ResetForTest()
{
    Build();
}
