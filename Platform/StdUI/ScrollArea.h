#pragma once

// VScrollArea: the toolkit's scroll area. A QScrollArea with themed scroll bars (palette, no style
// sheet), no frame, and a content widget that the owner sizes itself (widgetResizable false).

#include "Platform/StdUI/StdUIExport.h"

#include <QScrollArea>

namespace vx_std_ui {

class VXSTDUI_EXPORT VScrollArea : public QScrollArea
{
    Q_OBJECT
public:
    explicit VScrollArea(QWidget* parent = nullptr);
    ~VScrollArea() override;
};

} // namespace vx_std_ui
