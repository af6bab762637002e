#pragma once

// Card factories. Each card class is made by a factory registered in CVXCardFactoryMgr under
// the class's card type; CVXCardFactory is the deferred page factory that lazy tabs of a
// VTabWidget hold to create a card when the tab is first shown.

#include "UIFrame/CardBaseStyle.h"
#include "UIFrame/CardPos.h"
#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"
#include "Platform/StdUI/Factory.h"

#include <QMap>
#include <QPointer>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <type_traits>

class CVXCardObjBase;

class UIFRAME_EXPORT IVXCardFactory
{
public:
    virtual ~IVXCardFactory();
    // A new card parented to `parent`, owned by the caller.
    virtual CVXCardObjBase* NewCard(EnVXCardPos pos, QWidget* parent) const = 0;
    // The registry key.
    virtual QString CardType() const = 0;
    virtual CVXCardBaseStyle CardStyle() const = 0;
    virtual QVariant CardStaticProperty(const QString& key, const QVariant& defaultValue) const = 0;
};

namespace card_factory_detail {
template <typename T, typename = void> struct HasStaticCardStyle : std::false_type
{
};
template <typename T>
struct HasStaticCardStyle<T, std::void_t<decltype(CVXCardBaseStyle(T::StaticCardStyle()))>> : std::true_type
{
};
template <typename T, typename = void> struct HasStaticCardProperties : std::false_type
{
};
template <typename T>
struct HasStaticCardProperties<T, std::void_t<decltype(QVariantMap(T::StaticCardProperties()))>>
    : std::true_type
{
};
} // namespace card_factory_detail

// The factory of one card class T, a CVXCardObjBase with:
//   - a constructor T(EnVXCardPos, QWidget* parent);
//   - `static constexpr const char* kCardType` (or char array): its card type;
//   - optionally `static CVXCardBaseStyle StaticCardStyle()`: what the registry answers about
//     the type before a card exists (a fresh style when T has none);
//   - optionally `static QVariantMap StaticCardProperties()` (or a const reference to one): the
//     static property table (every lookup gives the default when T has none).
template <typename T> class TplVXCardFactory : public IVXCardFactory
{
public:
    CVXCardObjBase* NewCard(EnVXCardPos pos, QWidget* parent) const override { return new T(pos, parent); }

    QString CardType() const override
    {
        static const QString cardType = QString::fromUtf8(T::kCardType);
        return cardType;
    }

    CVXCardBaseStyle CardStyle() const override
    {
        if constexpr (card_factory_detail::HasStaticCardStyle<T>::value)
            return T::StaticCardStyle();
        else
            return CVXCardBaseStyle();
    }

    QVariant CardStaticProperty(const QString& key, const QVariant& defaultValue) const override
    {
        if constexpr (card_factory_detail::HasStaticCardProperties<T>::value) {
            const QVariantMap& properties = T::StaticCardProperties();
            const auto it = properties.constFind(key);
            return it == properties.constEnd() ? defaultValue : it.value();
        } else {
            (void)key;
            return defaultValue;
        }
    }
};

// A lazy tab's page: creates the card through the registry and, once the tab widget has
// parented it, pushes its saved data and the holding box's context into it.
class UIFRAME_EXPORT CVXCardFactory : public vx_std_ui::TIFactory<QWidget, void>
{
public:
    // The name of the dynamic property set to true on every card made here.
    static constexpr const char* kCreatedByPropertyName = "CreatedByCVXCardFactory";

    CVXCardFactory(QWidget* parent, QString cardType, EnVXCardPos pos, EnVXTabFrameKey tabFrameKey,
                   CVXVariantMapTree initData, CVXVariantMapTree restoreData);
    ~CVXCardFactory() override;

    // CVXCardFactoryMgr::CreateCard with the factory's parent; null for an unknown type.
    QWidget* create() const override;
    // For a card: with sync-up events blocked, its restore data, then (when the factory's parent
    // is a box) the box's account info, stock id, combo option info and option index info, each
    // only when set, then its footprint data when set.
    void afterSetParent(QWidget* widget) const override;

    void SetFootPrintData(const CVXVariantMapTree& footPrint) { m_footPrintData = footPrint; }
    const QString& GetCardType() const { return m_strCardType; }
    // What the factory holds for its card: a tab whose card is not created yet saves these.
    const CVXVariantMapTree& GetInitData() const { return m_initData; }
    const CVXVariantMapTree& GetRestoreData() const { return m_restoreData; }
    const CVXVariantMapTree& GetFootPrintData() const { return m_footPrintData; }

private:
    QPointer<QWidget> m_pParent;
    QString m_strCardType;
    EnVXCardPos m_enCardPos;
    CVXVariantMapTree m_initData;
    CVXVariantMapTree m_restoreData;
    EnVXTabFrameKey m_enTabFrameKey;
    CVXVariantMapTree m_footPrintData;
};
