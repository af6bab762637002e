#include "UIFrame/TabFrame/StackedTabFramePageBase.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Log.h"

#include <QStackedWidget>
#include <QVBoxLayout>

namespace {
const QString& InnerPageTypeKey()
{
    static const QString key = QStringLiteral("innerPageType");
    return key;
}
const QString& InnerPageDataKey()
{
    static const QString key = QStringLiteral("innerPageData");
    return key;
}
} // namespace

CVXStackedTabFramePageBase::CVXStackedTabFramePageBase(QWidget* parent) : CVXTabFramePageBase(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_pStack = new QStackedWidget(this);
    m_pStack->setObjectName(QStringLiteral("InnerPageStack"));
    layout->addWidget(m_pStack);
    // Index 0 always holds the main content, a blank widget until one is set.
    m_pMainContent = new QWidget;
    m_pStack->addWidget(m_pMainContent);

    RegisterUIEventHandler<CardEventInnerPageSwitch>(this,
                                                     &CVXStackedTabFramePageBase::OnCardEventInnerPageSwitch);
    RegisterUIEventHandler<CardEventInnerPageBack>(this,
                                                   &CVXStackedTabFramePageBase::OnCardEventInnerPageBack);
}

CVXStackedTabFramePageBase::~CVXStackedTabFramePageBase() = default;

void CVXStackedTabFramePageBase::SetMainContent(QWidget* content)
{
    if (!content || content == m_pMainContent)
        return;
    const bool mainShown = !IsInnerPageShown();
    QWidget* old = m_pMainContent.data();
    m_pStack->insertWidget(0, content);
    m_pMainContent = content;
    if (old) {
        m_pStack->removeWidget(old);
        delete old;
    }
    if (mainShown)
        m_pStack->setCurrentIndex(0);
}

QWidget* CVXStackedTabFramePageBase::MainContent() const
{
    return m_pMainContent.data();
}

void CVXStackedTabFramePageBase::RegisterInnerPageFactory(int type, std::shared_ptr<InnerPageFactory> factory)
{
    if (type == kNoInnerPage)
        return;
    if (factory)
        m_factories[type] = std::move(factory);
    else
        m_factories.erase(type);
}

QWidget* CVXStackedTabFramePageBase::InnerPage() const
{
    return m_pInnerPage.data();
}

bool CVXStackedTabFramePageBase::IsInnerPageShown() const
{
    return m_pInnerPage && m_pStack->currentWidget() == m_pInnerPage;
}

CVXVariantMapTree CVXStackedTabFramePageBase::SavedInnerPageState(int type) const
{
    const auto it = m_savedStates.find(type);
    return it == m_savedStates.end() ? CVXVariantMapTree() : it->second;
}

bool CVXStackedTabFramePageBase::SwitchToInnerPage(int type, const CVXVariantMapTree& jumpInfo)
{
    if (type == kNoInnerPage)
        return false;
    const auto factoryIt = m_factories.find(type);
    if (factoryIt == m_factories.end()) {
        VXLOG_WARN("CVXStackedTabFramePageBase::SwitchToInnerPage: no inner page factory for type {}", type);
        return false;
    }
    const std::shared_ptr<InnerPageFactory> factory = factoryIt->second;

    // The page that is held now keeps its state for the next page of its type, then goes.
    if (QWidget* old = m_pInnerPage.data()) {
        if (auto* restorable = dynamic_cast<CVXRestoreBase*>(old)) {
            CVXVariantMapTree state;
            restorable->GetObjRestoreData(&state);
            m_savedStates[m_nInnerPageType] = state;
        }
        m_pStack->removeWidget(old);
        m_pInnerPage = nullptr;
        m_nInnerPageType = kNoInnerPage;
        old->deleteLater();
        old->hide();
    }

    QWidget* page = factory->create(jumpInfo);
    if (!page) {
        VXLOG_WARN("CVXStackedTabFramePageBase::SwitchToInnerPage: the factory of type {} made no page",
                   type);
        m_pStack->setCurrentIndex(0);
        return false;
    }
    m_pStack->addWidget(page);
    factory->afterSetParent(page);
    const CVXVariantMapTree saved = SavedInnerPageState(type);
    if (saved != CVXVariantMapTree()) {
        if (auto* restorable = dynamic_cast<CVXRestoreBase*>(page))
            restorable->SetObjRestoreData(saved);
    }
    m_pInnerPage = page;
    m_nInnerPageType = type;
    m_pStack->setCurrentWidget(page);
    OnInnerPageJump(page, type, jumpInfo);
    return true;
}

void CVXStackedTabFramePageBase::BackToMainContent()
{
    m_pStack->setCurrentIndex(0);
}

void CVXStackedTabFramePageBase::GetObjRestoreData(CVXVariantMapTree* data) const
{
    if (!data)
        return;
    const bool shown = IsInnerPageShown();
    data->Set<int>(InnerPageTypeKey(), shown ? m_nInnerPageType : kNoInnerPage);
    if (!shown)
        return;
    if (const auto* restorable = dynamic_cast<const CVXRestoreBase*>(m_pInnerPage.data()))
        restorable->GetObjRestoreData(&data->Child(InnerPageDataKey()));
}

void CVXStackedTabFramePageBase::SetObjRestoreData(const CVXVariantMapTree& data)
{
    const int type = data.Get<int>(InnerPageTypeKey(), kNoInnerPage);
    if (type == kNoInnerPage) {
        BackToMainContent();
        return;
    }
    // The saved data goes to the new page in place of the state kept for its type.
    m_savedStates[type] = data.Child(InnerPageDataKey());
    SwitchToInnerPage(type, CVXVariantMapTree());
}

EnVXUIEventContainerKind CVXStackedTabFramePageBase::ContainerKind() const
{
    return EnVXUIEventContainerKind::StackedTabFramePage;
}

void CVXStackedTabFramePageBase::OnInnerPageJump(QWidget* page, int type, const CVXVariantMapTree& jumpInfo)
{
    (void)page;
    (void)type;
    (void)jumpInfo;
}

void CVXStackedTabFramePageBase::OnCardEventInnerPageSwitch(const CardEventInnerPageSwitch* event)
{
    if (!event || event->nInnerJumpPageType == kNoInnerPage)
        return;
    SwitchToInnerPage(event->nInnerJumpPageType, event->jumpInfo);
}

void CVXStackedTabFramePageBase::OnCardEventInnerPageBack(const CardEventInnerPageBack* event)
{
    (void)event;
    BackToMainContent();
}
