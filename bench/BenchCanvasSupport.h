#pragma once

// What the canvas benchmarks share: the style of their trivial cards, boxes of three tabs of one
// card type and a count of the widgets under a root.

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"

#include <QWidget>

namespace bench_canvas {

inline CVXCardBaseStyle TrivialCardStyle()
{
    CVXCardBaseStyle style;
    style.idealSize = QSize(160, 90);
    return style;
}

// A new box on `canvas` holding three tabs of `type`; null when the canvas takes no more boxes.
inline CVXPanelAtomizationBox* AddThreeTabBox(CVXPanelScrollView& canvas, const QString& type)
{
    CVXPanelAtomizationBox* box = canvas.AddPanelBoxWithCardInitType(type, CVXVariantMapTree());
    if (!box)
        return nullptr;
    box->Append(type, CVXVariantMapTree(), -1, CVXVariantMapTree());
    box->Append(type, CVXVariantMapTree(), -1, CVXVariantMapTree());
    return box;
}

// `root` and every widget below it.
inline int CountWidgets(QWidget* root)
{
    int n = 1;
    for (QObject* child : root->children()) {
        if (child->isWidgetType())
            n += CountWidgets(static_cast<QWidget*>(child));
    }
    return n;
}

} // namespace bench_canvas
