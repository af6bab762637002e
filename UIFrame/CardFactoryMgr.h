#pragma once

// CVXCardFactoryMgr: the process-wide registry of card factories, keyed by card type. Card
// modules register their factories when they load; boxes, pages and expanded regions create
// cards by type. Unknown types give null cards, false style lookups and invalid properties.

#include "UIFrame/CardBaseStyle.h"
#include "UIFrame/CardPos.h"
#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

class CVXCardObjBase;
class IVXCardFactory;
class QWidget;

class UIFRAME_EXPORT CVXCardFactoryMgr
{
public:
    static CVXCardFactoryMgr& Instance();

    // False for a null factory, and for a type already registered unless replace (the earlier
    // factory then stays).
    bool RegisterFactory(std::shared_ptr<IVXCardFactory> factory, bool replace = false);
    void UnRegisterFactory(const QString& cardType);
    bool HasFactory(const QString& cardType) const;
    QStringList RegisteredCardTypes() const;

    // NewCard, SetTabFramePageKey(tabFrameKey), InitWithData(a copy of initData), InitContent();
    // null for an unknown type.
    CVXCardObjBase* CreateCard(const QString& cardType, EnVXCardPos pos, EnVXTabFrameKey tabFrameKey,
                               const CVXVariantMapTree& initData, QWidget* parent) const;
    // False (out untouched) for an unknown type; true also when out is null.
    bool GetCardStyle(const QString& cardType, CVXCardBaseStyle* out) const;
    // An invalid QVariant for an unknown type, whatever the default.
    QVariant GetCardStaticProperty(const QString& cardType, const QString& key,
                                   const QVariant& defaultValue = QVariant()) const;

    // Drops every factory (tests).
    void ResetForTest();

    CVXCardFactoryMgr(const CVXCardFactoryMgr&) = delete;
    CVXCardFactoryMgr& operator=(const CVXCardFactoryMgr&) = delete;

private:
    CVXCardFactoryMgr();
    ~CVXCardFactoryMgr();

    QMap<QString, std::shared_ptr<IVXCardFactory>> m_mapFactories;
};
