#include "UIFrame/CardFactory.h"

#include "UIFrame/BoxObjBase.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"

IVXCardFactory::~IVXCardFactory() = default;

CVXCardFactory::CVXCardFactory(QWidget* parent, QString cardType, EnVXCardPos pos,
                               EnVXTabFrameKey tabFrameKey, CVXVariantMapTree initData,
                               CVXVariantMapTree restoreData)
    : m_pParent(parent), m_strCardType(std::move(cardType)), m_enCardPos(pos),
      m_initData(std::move(initData)), m_restoreData(std::move(restoreData)), m_enTabFrameKey(tabFrameKey)
{
}

CVXCardFactory::~CVXCardFactory() = default;

QWidget* CVXCardFactory::create() const
{
    CVXCardObjBase* card = CVXCardFactoryMgr::Instance().CreateCard(
        m_strCardType, m_enCardPos, m_enTabFrameKey, m_initData, m_pParent.data());
    if (card)
        card->setProperty(kCreatedByPropertyName, true);
    return card;
}

void CVXCardFactory::afterSetParent(QWidget* widget) const
{
    auto* card = dynamic_cast<CVXCardObjBase*>(widget);
    if (!card)
        return;
    card->BlockObjSyncUpEvent(true);
    card->SetObjRestoreData(m_restoreData);
    if (auto* box = dynamic_cast<CVXBoxObjBase*>(m_pParent.data())) {
        const CVXVariantMapTree accountInfo = box->GetAccountInfo();
        if (!accountInfo.IsEmpty())
            card->SetAccountInfo(accountInfo);
        const unsigned long long stockID = box->GetStockID();
        if (stockID != 0)
            card->SetStockID(stockID);
        const CVXVariantMapTree comboOptionInfo = box->GetComboOptionInfo();
        if (!comboOptionInfo.IsEmpty())
            card->SetComboOptionInfo(comboOptionInfo);
        const CVXVariantMapTree optionIndexInfo = box->GetOptionIndexInfo();
        if (!optionIndexInfo.IsEmpty())
            card->SetOptionIndexInfo(optionIndexInfo);
    }
    if (!m_footPrintData.IsEmpty())
        card->SetObjFootPrintData(m_footPrintData);
    card->BlockObjSyncUpEvent(false);
}
