#pragma once

// Where a card is hosted (given to every card constructor) and the width classes a card is
// told about when its width crosses into another class.

enum EnVXCardPos : int
{
    CardPos_None = 0,           // not hosted yet (or hosted by code that does not say)
    CardPos_TabFramePage = 1,   // a page of a main-frame tab frame
    CardPos_ExpandedRegion = 2, // the collapsible side region of a page
    CardPos_PanelBox = 3,       // a panel box on the canvas (or in its pop-out window)
    CardPos_InnerJumpPage = 4,  // an inner jump (drill-down) page of a stacked page
};

inline bool IsInPanel(EnVXCardPos pos)
{
    return pos == CardPos_PanelBox;
}

// Named after the smallest width of each class; 0 until a card is first classified.
enum EnVXCardWidthRange : int
{
    CardWidthRange_Unclassified = 0,
    CardWidthRange_From200 = 1,  // 200..239
    CardWidthRange_From240 = 2,  // 240..359
    CardWidthRange_From360 = 3,  // 360..639
    CardWidthRange_From640 = 4,  // 640..775
    CardWidthRange_From776 = 5,  // 776..1003
    CardWidthRange_From1004 = 6, // 1004 and wider
};
