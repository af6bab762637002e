#pragma once

// The menu of a single-card box, built fresh each time it opens, in this order: the current
// card's own entries, the combination entries, the colour submenu (the eight group colours), the
// switch-component submenu (the switch-card table) and the add-component submenu (twelve fixed
// card types, each reporting its entry number). Card types without a registered factory are left
// out of the switch table and disabled in the add table, so that no entry does nothing.
// Private to UIFrame/PanelBox.

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class CVXCardObjBase;

namespace vx_std_ui {
class VMenu;
}

namespace panelbox_menu {

// The click report of the add-component entries: {"option_name": entry number as text}.
inline constexpr const char* kAddComponentReportName = "ClickPanelBoxMenuAddComponent";

struct AddComponentEntry
{
    int nTextId;
    const char* szFallback;
    const char* szCardType;
    int nOptionNumber; // reported under "option_name"
};
// In menu order. The positions entry reads 271427 instead of 250217 in the Japanese wording.
const std::vector<AddComponentEntry>& AddComponentEntries();

// The switch-card table: one section per card module, in menu order.
struct SwitchCardSection
{
    QString strName;
    QStringList cardTypes;
};
const std::vector<SwitchCardSection>& SwitchCardSections();

struct MenuContext
{
    CVXCardObjBase* pCurrentCard = nullptr;
    QString strCurrentCardType;
    QString strCurrentColor;
    std::function<void(const QString& color)> setColor;
    std::function<void(const QString& cardType)> switchCard;
    std::function<void(const QString& cardType)> addCard;
};

void Build(vx_std_ui::VMenu* menu, const MenuContext& context);

} // namespace panelbox_menu
