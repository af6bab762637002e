#pragma once

// The typed accessors of CVXVariantMapTree: Get/GetImp/Set/SetImp/RegisterType and the text
// forms of stored values. No accessor throws or logs: a missing key, a type mismatch, an
// unregistered type or a failed conversion gives the default, an empty optional or false, and
// leaves the tree unchanged. A key's type never changes once written (Remove it first).

#include "Platform/Core/VariantMapTree.h"
#include "UIFrame/UIFrameExport.h"

#include <QDataStream>
#include <QStringList>

#include <type_traits>

// Registers every UIFrame value type with the state tree (StateTreeTypes.cpp); idempotent.
UIFRAME_EXPORT void RegisterStateTreeTypes();

namespace vx_state_tree_detail {

inline QString ItemText(const QString& item)
{
    return item;
}

inline QString ItemText(qlonglong item)
{
    return QString::number(item);
}

// "size:N [" then each item followed by "," then "]".
template <typename Sequence> QString SequenceText(const Sequence& items)
{
    QString text = QStringLiteral("size:") + QString::number(items.size()) + QStringLiteral(" [");
    for (const auto& item : items)
        text += ItemText(item) + QLatin1Char(',');
    text += QLatin1Char(']');
    return text;
}

template <typename T> struct IsSequenceForm : std::false_type
{
};
template <> struct IsSequenceForm<QList<QString>> : std::true_type
{
};
template <> struct IsSequenceForm<QStringList> : std::true_type
{
};
template <> struct IsSequenceForm<QVector<QString>> : std::true_type
{
};
template <> struct IsSequenceForm<QVector<qlonglong>> : std::true_type
{
};

} // namespace vx_state_tree_detail

// The text form of a stored value for logs; empty when the variant does not hold exactly T.
// A record with a text form of its own defines it with template<> before its first RegisterType.
template <typename T> QString TVXVariantToStringHelper(const QVariant& value)
{
    if (value.userType() != qMetaTypeId<T>())
        return QString();
    const T& v = *static_cast<const T*>(value.constData());
    if constexpr (std::is_same_v<T, bool>) {
        return v ? QStringLiteral("1") : QStringLiteral("0");
    } else if constexpr (std::is_enum_v<T>) {
        return QString::number(static_cast<qlonglong>(v));
    } else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>) {
        return QString::number(static_cast<qlonglong>(v));
    } else if constexpr (std::is_integral_v<T>) {
        return QString::number(static_cast<qulonglong>(v));
    } else if constexpr (std::is_same_v<T, QString>) {
        return v;
    } else if constexpr (std::is_same_v<T, QByteArray>) {
        return QString::fromUtf8(v);
    } else if constexpr (vx_state_tree_detail::IsSequenceForm<T>::value) {
        return vx_state_tree_detail::SequenceText(v);
    } else if constexpr (std::is_same_v<T, QMap<QString, int>>) {
        QString text = QStringLiteral("size:") + QString::number(v.size()) + QStringLiteral(" [");
        for (auto it = v.cbegin(); it != v.cend(); ++it)
            text += QLatin1Char('{') + it.key() + QLatin1Char(',') + QString::number(it.value()) +
                    QStringLiteral("},");
        text += QLatin1Char(']');
        return text;
    } else if constexpr (std::is_same_v<T, CVXVariantMapTree>) {
        return QString();
    } else if constexpr (std::is_same_v<T, QVector<CVXVariantMapTree>>) {
        return QStringLiteral("size:") + QString::number(v.size());
    } else {
        return value.toString();
    }
}

template <typename T> int CVXVariantMapTree::RegisterType()
{
    // Once per type; every accessor comes through here, so no start-up registration is needed.
    static const int s_id = [] {
        RegisterStateTreeTypes();
        const int id = qMetaTypeId<T>();
        if (!HasRegisteredDataStreamOperator(id)) {
            if constexpr (!QMetaTypeId2<T>::IsBuiltIn)
                qRegisterMetaTypeStreamOperators<T>(QMetaType::typeName(id));
            MarkDataStreamOperatorRegistered(id);
        }
        if (!HasRegisteredTextStreamOperator(id))
            RegisterTextStreamOperator(id, &TVXVariantToStringHelper<T>);
        return id;
    }();
    return s_id;
}

template <typename T> void CVXVariantMapTree::GetImp(const QString& key, std::optional<T>* out) const
{
    if (!out)
        return;
    out->reset();
    const int id = qMetaTypeId<T>();
    if (!IsSameType(key, id))
        return;
    RegisterType<T>();
    if (!HasRegisteredDataStreamOperator(id) || !LazyLoad(key))
        return;
    QVariant value;
    if (!FindValue(key, &value) || !value.canConvert<T>())
        return;
    if (value.userType() == id) {
        out->emplace(*static_cast<const T*>(value.constData()));
        return;
    }
    // Intended: a value that claims to convert but does not gives a value-initialised T, not
    // the caller's default.
    if (value.convert(id))
        out->emplace(value.value<T>());
    else
        out->emplace(T());
}

template <typename T> T CVXVariantMapTree::Get(const QString& key, const T& defaultValue) const
{
    std::optional<T> found;
    GetImp(key, &found);
    return found ? std::move(*found) : defaultValue;
}

template <typename T> bool CVXVariantMapTree::SetImp(const QString& key, const T& value)
{
    if (key.isEmpty())
        return false;
    const int id = qMetaTypeId<T>();
    if (!IsSameType(key, id))
        return false;
    RegisterType<T>();
    if (!HasRegisteredDataStreamOperator(id))
        return false;
    RemoveLazyData(key);
    StoreValue(key, QVariant::fromValue(value));
    return true;
}

template <typename T> bool CVXVariantMapTree::Set(const QString& key, const T& value)
{
    return SetImp(key, value);
}
