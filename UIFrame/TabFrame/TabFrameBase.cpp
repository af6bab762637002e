#include "UIFrame/TabFrame/TabFrameBase.h"

#include "UIFrame/TabFrame/TabFramePageBase.h"
#include "UIFrame/TabFrame/TabFramePageFactory.h"

#include "Platform/Core/Log.h"

#include <QVBoxLayout>

namespace {
const QString& PageKey()
{
    static const QString key = QStringLiteral("page");
    return key;
}
} // namespace

CVXTabFrameBase::CVXTabFrameBase(QWidget* parent) : QWidget(parent) {}

CVXTabFrameBase::~CVXTabFrameBase() = default;

QWidget* CVXTabFrameBase::GetExpandedRegion() const
{
    return m_pExpandedRegion.data();
}

void CVXTabFrameBase::SetExpandedRegion(QWidget* region)
{
    m_pExpandedRegion = region;
}

bool CVXTabFrameBase::CanRecordFootPrint() const
{
    return true;
}

bool CVXTabFrameBase::IsOutSideMode() const
{
    return false;
}

unsigned long long CVXTabFrameBase::GetStockID() const
{
    return GetOwnStockID();
}

bool CVXTabFrameBase::CreatePageFromFactory()
{
    const auto factory = CVXTabFramePageFactory::Instance().GetFactory(m_enTabFrameKey);
    CVXTabFramePageBase* page = factory ? factory->create() : nullptr;
    if (!page) {
        VXLOG_ERROR("CVXTabFrameBase::CreatePageFromFactory: no page for tab frame key {}",
                    static_cast<unsigned int>(m_enTabFrameKey));
        return false;
    }
    SetPage(page);
    factory->afterSetParent(page);
    page->Init();
    return true;
}

void CVXTabFrameBase::SetPage(CVXTabFramePageBase* page)
{
    if (page == m_pPage)
        return;
    if (!layout()) {
        auto* box = new QVBoxLayout(this);
        box->setContentsMargins(0, 0, 0, 0);
        box->setSpacing(0);
    }
    delete m_pPage.data();
    m_pPage = page;
    if (page) {
        page->setParent(this);
        page->SetTabFrame(this);
        layout()->addWidget(page);
        page->show();
    }
}

CVXTabFramePageBase* CVXTabFrameBase::GetPage() const
{
    return m_pPage.data();
}

void CVXTabFrameBase::GetObjRestoreData(CVXVariantMapTree* data) const
{
    if (!data)
        return;
    if (m_pPage)
        m_pPage->GetObjRestoreData(&data->Child(PageKey()));
}

void CVXTabFrameBase::SetObjRestoreData(const CVXVariantMapTree& data)
{
    if (m_pPage && data.HasChild(PageKey()))
        m_pPage->SetObjRestoreData(data.Child(PageKey()));
}

void CVXTabFrameBase::GetObjFootPrintData(CVXVariantMapTree* data) const
{
    if (!data)
        return;
    if (m_pPage)
        m_pPage->GetObjFootPrintData(&data->Child(PageKey()));
}

void CVXTabFrameBase::SetObjFootPrintData(const CVXVariantMapTree& data)
{
    if (m_pPage && data.HasChild(PageKey()))
        m_pPage->SetObjFootPrintData(data.Child(PageKey()));
}

EnVXUIEventContainerKind CVXTabFrameBase::ContainerKind() const
{
    return EnVXUIEventContainerKind::TabFrame;
}

QWidget* CVXTabFrameBase::CurrentPage() const
{
    return m_pPage.data();
}

QWidget* CVXTabFrameBase::CurrentExpandedRegion() const
{
    return GetExpandedRegion();
}
