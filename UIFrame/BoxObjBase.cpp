#include "UIFrame/BoxObjBase.h"

#include "UIFrame/CardObjBase.h"

#include "Platform/StdUI/TabWidget.h"

#include <algorithm>

CVXBoxObjBase::CVXBoxObjBase() = default;

CVXBoxObjBase::~CVXBoxObjBase() = default;

void CVXBoxObjBase::SetObjProperty(const QString& cardType, const CVXVariantMapTree& property)
{
    if (cardType.isEmpty())
        return;
    for (int i = 0; i < GetTabCount(); ++i) {
        CVXCardObjBase* card = GetCardByIndex(i);
        if (card && card->GetCardObjType() == cardType)
            card->SetObjProperty(cardType, property);
    }
}

void CVXBoxObjBase::SetAccountInfo(const CVXVariantMapTree& info)
{
    m_accountInfo = info;
}

CVXVariantMapTree CVXBoxObjBase::GetAccountInfo()
{
    return m_accountInfo;
}

void CVXBoxObjBase::SetOptionIndexInfo(const CVXVariantMapTree& info)
{
    m_optionIndexInfo = info;
}

CVXVariantMapTree CVXBoxObjBase::GetOptionIndexInfo()
{
    return m_optionIndexInfo;
}

bool CVXBoxObjBase::AppendCardWithIndex(CVXCardObjBase* card, long long index, bool applyStockID)
{
    if (!card || !m_pTabWidget)
        return false;
    const int count = m_pTabWidget->count();
    const int at = (index < 0 || index > count) ? count : static_cast<int>(index);
    m_pTabWidget->insertTab(at, card, card->CardStyle().title);
    card->SetParentBox(this);
    card->SetObjKey(GetObjKey());
    card->SetAccountInfo(GetAccountInfo());
    if (applyStockID)
        card->SetStockID(GetStockID());
    RecalBoxSize();
    return true;
}

void CVXBoxObjBase::Insert(int index, CVXCardObjBase* card)
{
    AppendCardWithIndex(card, index, true);
}

void CVXBoxObjBase::Remove(int index, bool deleteCard)
{
    if (!m_pTabWidget || index < 0 || index >= m_pTabWidget->count())
        return;
    QWidget* page = m_pTabWidget->takeTab(index);
    if (auto* card = dynamic_cast<CVXCardObjBase*>(page))
        card->SetParentBox(nullptr);
    if (page) {
        page->setParent(nullptr);
        if (deleteCard)
            page->deleteLater();
    }
    RecalBoxSize();
}

QSize CVXBoxObjBase::GetBoxMinSize() const
{
    return GetCardMinSize();
}

QSize CVXBoxObjBase::GetBoxMaxSize() const
{
    return GetCardMaxSize();
}

void CVXBoxObjBase::RecalBoxSize() {}

void CVXBoxObjBase::SetTabWidget(vx_std_ui::VTabWidget* tabWidget)
{
    m_pTabWidget = tabWidget;
}

vx_std_ui::VTabWidget* CVXBoxObjBase::GetTabWidget() const
{
    return m_pTabWidget.data();
}

template <typename SizeOf> QSize CVXBoxObjBase::CombineCardSizes(SizeOf sizeOf) const
{
    if (!m_pTabWidget)
        return QSize(-1, -1);
    QSize combined(0, 0);
    for (int i = 0; i < m_pTabWidget->count(); ++i) {
        CVXCardObjBase* card = GetCardByIndex(i);
        if (!card)
            continue;
        const QSize size = sizeOf(card);
        combined =
            QSize(std::max(combined.width(), size.width()), std::max(combined.height(), size.height()));
    }
    return combined;
}

QSize CVXBoxObjBase::GetCardMinSize() const
{
    return CombineCardSizes([](CVXCardObjBase* card) { return card->GetCardMinSize(); });
}

QSize CVXBoxObjBase::GetCardMaxSize() const
{
    return CombineCardSizes([](CVXCardObjBase* card) { return card->GetCardMaxSize(); });
}

void CVXBoxObjBase::ClearAllTab()
{
    if (m_pTabWidget)
        m_pTabWidget->clear();
}

QString CVXBoxObjBase::GetTabName() const
{
    CVXCardObjBase* card = GetCardByIndex(0);
    return card ? card->GetCardObjType() : QString();
}

CVXCardObjBase* CVXBoxObjBase::GetCardByIndex(int index) const
{
    if (!m_pTabWidget)
        return nullptr;
    return dynamic_cast<CVXCardObjBase*>(m_pTabWidget->widget(index));
}

CVXCardObjBase* CVXBoxObjBase::GetCurrentCard() const
{
    return m_pTabWidget ? dynamic_cast<CVXCardObjBase*>(m_pTabWidget->currentWidget()) : nullptr;
}

int CVXBoxObjBase::GetTabCount() const
{
    return m_pTabWidget ? m_pTabWidget->count() : 0;
}

int CVXBoxObjBase::GetCurrentTabIndex() const
{
    return m_pTabWidget ? m_pTabWidget->currentIndex() : -1;
}

void CVXBoxObjBase::SetCurrentTabIndex(int index)
{
    if (m_pTabWidget)
        m_pTabWidget->setCurrentIndex(index);
}

vx_std_ui::VTabBarBase* CVXBoxObjBase::GetTabBar() const
{
    return m_pTabWidget ? m_pTabWidget->tabBar() : nullptr;
}
