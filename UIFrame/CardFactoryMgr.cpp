#include "UIFrame/CardFactoryMgr.h"

#include "UIFrame/CardFactory.h"
#include "UIFrame/CardObjBase.h"

CVXCardFactoryMgr& CVXCardFactoryMgr::Instance()
{
    static CVXCardFactoryMgr registry;
    return registry;
}

CVXCardFactoryMgr::CVXCardFactoryMgr() = default;

CVXCardFactoryMgr::~CVXCardFactoryMgr() = default;

bool CVXCardFactoryMgr::RegisterFactory(std::shared_ptr<IVXCardFactory> factory, bool replace)
{
    if (!factory)
        return false;
    const QString cardType = factory->CardType();
    if (!replace && m_mapFactories.contains(cardType))
        return false;
    m_mapFactories.insert(cardType, std::move(factory));
    return true;
}

void CVXCardFactoryMgr::UnRegisterFactory(const QString& cardType)
{
    m_mapFactories.remove(cardType);
}

bool CVXCardFactoryMgr::HasFactory(const QString& cardType) const
{
    return m_mapFactories.contains(cardType);
}

QStringList CVXCardFactoryMgr::RegisteredCardTypes() const
{
    return m_mapFactories.keys();
}

CVXCardObjBase* CVXCardFactoryMgr::CreateCard(const QString& cardType, EnVXCardPos pos,
                                              EnVXTabFrameKey tabFrameKey, const CVXVariantMapTree& initData,
                                              QWidget* parent) const
{
    const auto it = m_mapFactories.constFind(cardType);
    if (it == m_mapFactories.constEnd())
        return nullptr;
    // Kept alive for the call: a card constructor may unregister its own factory.
    const std::shared_ptr<IVXCardFactory> factory = it.value();
    CVXCardObjBase* card = factory->NewCard(pos, parent);
    if (!card)
        return nullptr;
    card->SetTabFramePageKey(tabFrameKey);
    card->InitWithData(CVXVariantMapTree(initData));
    card->InitContent();
    return card;
}

bool CVXCardFactoryMgr::GetCardStyle(const QString& cardType, CVXCardBaseStyle* out) const
{
    const auto it = m_mapFactories.constFind(cardType);
    if (it == m_mapFactories.constEnd())
        return false;
    if (out)
        *out = it.value()->CardStyle();
    return true;
}

QVariant CVXCardFactoryMgr::GetCardStaticProperty(const QString& cardType, const QString& key,
                                                  const QVariant& defaultValue) const
{
    const auto it = m_mapFactories.constFind(cardType);
    if (it == m_mapFactories.constEnd())
        return QVariant();
    return it.value()->CardStaticProperty(key, defaultValue);
}

void CVXCardFactoryMgr::ResetForTest()
{
    m_mapFactories.clear();
}
