#include "Platform/StdUI/ScrollArea.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QScrollBar>

namespace vx_std_ui {

namespace {

// Scroll bars take their colours from the theme: the handle is drawn with the button role, the
// groove with the window role. Palettes only, so that no style sheet slows the frame down.
void ApplyScrollBarPalette(QScrollBar* bar)
{
    const vx_ui_res::Provider& provider = vx_ui_res::Provider::Instance();
    QPalette palette = provider.BuildPalette();
    const QColor handle = provider.GetColor(QStringLiteral("ct_scrollbar"));
    const QColor groove = provider.GetColor(QStringLiteral("ct_bg_primary"));
    if (handle.isValid()) {
        palette.setColor(QPalette::Button, handle);
        palette.setColor(QPalette::Light, handle.lighter(110));
        palette.setColor(QPalette::Dark, handle.darker(110));
    }
    if (groove.isValid()) {
        palette.setColor(QPalette::Window, groove);
        palette.setColor(QPalette::Base, groove);
    }
    bar->setPalette(palette);
}

void ApplyAreaPalette(VScrollArea* area)
{
    vx_ui_res::Provider::Instance().ApplyPalette(area);
    ApplyScrollBarPalette(area->horizontalScrollBar());
    ApplyScrollBarPalette(area->verticalScrollBar());
}

} // namespace

VScrollArea::VScrollArea(QWidget* parent) : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(false);
    ApplyAreaPalette(this);
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this,
            [this](vx_ui_res::Theme) { ApplyAreaPalette(this); });
}

VScrollArea::~VScrollArea() = default;

} // namespace vx_std_ui
