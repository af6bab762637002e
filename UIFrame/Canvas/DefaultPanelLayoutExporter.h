#pragma once

// CVXDefaultPanelLayoutExporter: the switch of the tool that exports a canvas as a built-in layout
// (layout file plus "_white.png" / "_black.png" previews, see CVXPanelLayoutManager::
// ExportDefaultPanelLayout). It exists only in builds that are not release versions.
// CVXDefaultPanelLayoutExportAction: the menu entry of that tool, painted with red text so that
// nobody takes it for a user feature.

#include "UIFrame/UIFrameExport.h"

#include <QWidgetAction>

class QPainter;
class QStyleOptionMenuItem;

namespace vx_std_ui {
class VMenu;
}

class UIFRAME_EXPORT CVXDefaultPanelLayoutExporter
{
public:
    // Null in a release version; otherwise the single instance, created on first call.
    static CVXDefaultPanelLayoutExporter* Instance();
    static void ResetForTest();

    // False when there is no instance, else the flag (initially false).
    static bool IsExportDefaultPanelLayout();
    void SetExportDefaultPanelLayout(bool on);

private:
    CVXDefaultPanelLayoutExporter() = default;
    bool m_bExportDefaultPanelLayout = false;
};

class UIFRAME_EXPORT CVXDefaultPanelLayoutExportAction : public QWidgetAction
{
    Q_OBJECT
public:
    // The toolkit's font token of the entry's text.
    static constexpr int kFontToken = 3;
    static int FontTokenPixelSize(int token);

    CVXDefaultPanelLayoutExportAction(const QString& text, vx_std_ui::VMenu* menu);

    // The item background through the style, then the text (drawText), then the icon, if any, at
    // the style's icon position.
    void paint(QPainter* painter, const QStyleOptionMenuItem& option, const vx_std_ui::VMenu* menu) const;
    // The text antialiased, in the item's font at token 3, in red, left-aligned after the menu's
    // horizontal item padding and the check-mark width, vertically centred in the item.
    void drawText(QPainter* painter, const QStyleOptionMenuItem& option, int left, int top) const;

    // Where drawText starts the text, relative to the item's left edge.
    static int TextIndent(const QStyleOptionMenuItem& option, const QWidget* menu);

protected:
    QWidget* createWidget(QWidget* parent) override;
};
