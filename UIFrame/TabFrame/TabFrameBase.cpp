#include "UIFrame/TabFrame/TabFrameBase.h"

CVXTabFrameBase::CVXTabFrameBase(QWidget* parent) : QWidget(parent) {}

CVXTabFrameBase::~CVXTabFrameBase() = default;

QWidget* CVXTabFrameBase::GetExpandedRegion() const
{
    return nullptr;
}

bool CVXTabFrameBase::CanRecordFootPrint() const
{
    return true;
}

EnVXUIEventContainerKind CVXTabFrameBase::ContainerKind() const
{
    return EnVXUIEventContainerKind::TabFrame;
}

QWidget* CVXTabFrameBase::CurrentExpandedRegion() const
{
    return GetExpandedRegion();
}
