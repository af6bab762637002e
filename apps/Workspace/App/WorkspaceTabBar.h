#pragma once

// CVXWorkspaceTabBar: the main window's two tab bars drawn in the theme's colours. The frame bar
// (workspace, watch list, account) reads as the window's navigation: plain labels on the title
// colour, the current one bold and underlined in the accent colour. The page bar of the panel
// workspace holds documents: movable, closable tabs on the inactive-tab colour, the current one
// raised in the active-tab colour with an accent line on top. Each bar also paints the row of
// its tab widget behind the corner widget, so the row reads as one strip. Colours are read at
// paint time; a theme change repaints.

#include "Platform/StdUI/TabWidget.h"

namespace vx_ws {

class CVXWorkspaceTabBar : public vx_std_ui::VTabBarBase
{
    Q_OBJECT
public:
    enum class Look
    {
        Frame,
        Page,
    };

    // Where the parts of one tab go, for a tab rectangle (pure geometry).
    struct TabParts
    {
        QRect text;   // the label, elided to fit
        QRect accent; // the current tab's accent line
        QRect glyph;  // the close glyph; empty on a bar without close glyphs
    };
    static TabParts Parts(Look look, const QRect& tab, bool closable);
    // The height of every tab of a look.
    static int TabHeight(Look look);

    // A Page bar is movable and closable from the start.
    explicit CVXWorkspaceTabBar(Look look, QWidget* parent = nullptr);
    ~CVXWorkspaceTabBar() override;

    Look GetLook() const { return m_look; }

    // Theme keys of what a tab shows in a state, for the painting and its tests.
    static const char* RowColorKey(Look look);
    static const char* TabBackgroundKey(Look look, bool current, bool hovered); // null: none
    static const char* TextColorKey(bool current, bool hovered);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void WatchParent();
    void PaintRow(QWidget* target, const QRect& row) const;

    Look m_look;
    QWidget* m_watchedParent = nullptr;
};

} // namespace vx_ws
