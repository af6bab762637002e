#pragma once

// The key of a main-frame tab frame. The values travel in bus messages and usage reports and
// never change.

enum EnVXTabFrameKey : unsigned int
{
    TabFrameKey_None = 0,
    TabFrameKey_WatchList = 20001,
    TabFrameKey_Market = 20002,
    TabFrameKey_Account = 20003,
    TabFrameKey_PanelWorkspace = 20004,
    TabFrameKey_Information = 20005,
    TabFrameKey_PaperTrading = 20009,
    TabFrameKey_Quantitative = 20010,
    TabFrameKey_Options = 20013,
    TabFrameKey_Discovery = 20017,
    TabFrameKey_Screener = 20018,
    TabFrameKey_Shortcut = 20019,
    // Frames of other modules, without a usage-report tab position.
    TabFrameKey_Module20101 = 20101,
    TabFrameKey_Module20102 = 20102,
    TabFrameKey_Module20103 = 20103,
    TabFrameKey_Module20104 = 20104,
    TabFrameKey_Message = 21002,
    TabFrameKey_Chat = 21003,
    TabFrameKey_CommunityCircle = 21004,
};
