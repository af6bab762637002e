#pragma once

// What a card type looks like before a card exists: its sizes and tab title. A fresh style
// has invalid sizes (-1, -1) and an empty title.

#include "UIFrame/UIFrameExport.h"

#include <QSize>
#include <QString>

struct UIFRAME_EXPORT CVXCardBaseStyle
{
    QSize idealSize{-1, -1};
    QSize minSize{-1, -1};
    QSize maxSize{-1, -1};
    QString title;
};
