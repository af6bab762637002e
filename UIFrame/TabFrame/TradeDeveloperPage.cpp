#include "UIFrame/TabFrame/TradeDeveloperPage.h"

VXTradeDeveloperPage::VXTradeDeveloperPage(QWidget* parent) : CVXTabFramePageBase(parent)
{
    setObjectName(QStringLiteral("VXTradeDeveloperPage"));
}

VXTradeDeveloperPage::~VXTradeDeveloperPage() = default;
