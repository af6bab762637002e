#pragma once

// CVXVariantMapTree: a tree of named values through which every object saves and restores
// itself. Three maps: values (key -> QVariant), lazy entries (values parsed from bytes whose
// type was not registered yet: type name + bytes) and children (key -> sub-tree). A tree is a
// value: copies are cheap (implicit sharing) and never see each other's later writes.
//
// This header is the core: storage, binary form, type registry, lazy loading. The typed
// accessors Get/GetImp/Set/SetImp/RegisterType are declared here and defined in
// "UIFrame/VariantMapTreeAccess.h", which every user of the typed accessors includes.

#include "Platform/Core/CoreExport.h"

#include <QByteArray>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>
#include <optional>

class QDataStream;

class VXCORE_EXPORT CVXVariantMapTree
{
public:
    struct LazyData
    {
        QString strTypeName;
        QByteArray data;
    };

    // Value codecs: the binary form of one value type, written and read without QDataStream's
    // per-value headers. Readers get the value's exact bytes and must refuse (false) anything
    // malformed without allocating much more than those bytes.
    using ValueWriter = void (*)(const QVariant& value, QByteArray* out);
    using ValueReader = bool (*)(const char* data, int size, QVariant* out);
    using ToStringFn = QString (*)(const QVariant&);

    CVXVariantMapTree();
    CVXVariantMapTree(const CVXVariantMapTree& other);
    CVXVariantMapTree& operator=(const CVXVariantMapTree& other);
    ~CVXVariantMapTree();

    // No value and no lazy entry (children are not looked at).
    bool IsEmpty() const;
    void Clear();

    // The sub-tree under a key; the non-const form creates it on demand, the const form returns
    // an empty tree when there is none.
    CVXVariantMapTree& Child(const QString& key);
    const CVXVariantMapTree& Child(const QString& key) const;
    bool HasChild(const QString& key) const;

    // True when the key is absent, or its value (or lazy entry) is of that meta-type.
    bool IsSameType(const QString& key, int metaTypeId) const;
    // Deserialises a lazy entry whose type is now registered; true when a value is available.
    bool LazyLoad(const QString& key) const;
    void RemoveLazyData(const QString& key);

    bool Contains(const QString& key) const; // a value or a lazy entry
    bool Remove(const QString& key);         // value and lazy entry; true when one existed
    QList<QString> Keys() const;             // values and lazy entries, sorted
    const QMap<QString, QVariant>& Values() const { return m_mapValues; }
    const QMap<QString, LazyData>& LazyEntries() const { return m_mapLazy; }

    QByteArray SerializeAsQByteArray() const;
    // Replaces the whole tree on success; on failure returns false and leaves it unchanged.
    bool ParseFromQByteArray(const QByteArray& bytes);

    // Equal binary forms.
    bool operator==(const CVXVariantMapTree& other) const;
    bool operator!=(const CVXVariantMapTree& other) const { return !(*this == other); }

    // Type registry.
    static bool HasRegisteredDataStreamOperator(int metaTypeId);
    static bool HasRegisteredTextStreamOperator(int metaTypeId);
    static void RegisterTextStreamOperator(int metaTypeId, ToStringFn toString);
    static void MarkDataStreamOperatorRegistered(int metaTypeId);
    static void RegisterValueCodec(int metaTypeId, ValueWriter writer, ValueReader reader);
    // The text form of a value for logs (empty when its type has no text operator).
    static QString ValueToString(const QVariant& value);

    // Typed accessors (UIFrame/VariantMapTreeAccess.h).
    template <typename T>
    T Get(const QString& key, const T& defaultValue = T()) const;
    template <typename T>
    void GetImp(const QString& key, std::optional<T>* out) const;
    template <typename T>
    bool Set(const QString& key, const T& value);
    template <typename T>
    bool SetImp(const QString& key, const T& value);
    template <typename T>
    static int RegisterType();

    // Raw access used by the typed accessors.
    bool FindValue(const QString& key, QVariant* out) const;
    void StoreValue(const QString& key, const QVariant& value);

private:
    friend struct VariantMapTreeCodec;

    mutable QMap<QString, QVariant> m_mapValues;
    mutable QMap<QString, LazyData> m_mapLazy;
    QMap<QString, std::shared_ptr<CVXVariantMapTree>> m_mapChildren;
};

VXCORE_EXPORT QDataStream& operator<<(QDataStream& stream, const CVXVariantMapTree& tree);
VXCORE_EXPORT QDataStream& operator>>(QDataStream& stream, CVXVariantMapTree& tree);

Q_DECLARE_TYPEINFO(CVXVariantMapTree, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(CVXVariantMapTree)
Q_DECLARE_METATYPE(QVector<CVXVariantMapTree>)
