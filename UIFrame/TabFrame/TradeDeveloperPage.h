#pragma once

// VXTradeDeveloperPage: an empty page that stands in for a page still being developed.

#include "UIFrame/TabFrame/TabFramePageBase.h"

class UIFRAME_EXPORT VXTradeDeveloperPage : public CVXTabFramePageBase
{
    Q_OBJECT
public:
    explicit VXTradeDeveloperPage(QWidget* parent = nullptr);
    ~VXTradeDeveloperPage() override;
};
