// The codecs of the common value types (int, bool, 64-bit integers, strings, byte arrays,
// rectangles, string lists, vectors and the string-to-int map) and the UTF-8 helpers they share
// with the tree's keys. The byte forms are documented next to the tree's binary form in
// VariantMapTree.cpp.

#include "Platform/Core/VariantMapTree.h"
#include "Platform/Core/VariantMapTreeCodec_p.h"

#include <QDataStream>
#include <QRect>
#include <QStringList>

namespace {

using vxtree::AppendShortLE;
using vxtree::AppendString;
using vxtree::AppendVarU64;
using vxtree::ReadCount;
using vxtree::ReadShortLE;
using vxtree::ReadString;
using vxtree::ReadVarU64;
using vxtree::UnZigZag;
using vxtree::ZigZag;

template <typename T> const T& As(const QVariant& v)
{
    return *static_cast<const T*>(v.constData());
}

void WriteInt(const QVariant& v, QByteArray* out)
{
    AppendShortLE(out, ZigZag(As<int>(v)) & 0xFFFFFFFFu);
}

bool ReadInt(const char* p, int size, QVariant* out)
{
    quint64 raw = 0;
    if (!ReadShortLE(p, size, 4, &raw))
        return false;
    *out = QVariant(int(UnZigZag(raw)));
    return true;
}

void WriteLongLong(const QVariant& v, QByteArray* out)
{
    AppendShortLE(out, ZigZag(As<qlonglong>(v)));
}

bool ReadLongLong(const char* p, int size, QVariant* out)
{
    quint64 raw = 0;
    if (!ReadShortLE(p, size, 8, &raw))
        return false;
    *out = QVariant(qlonglong(UnZigZag(raw)));
    return true;
}

void WriteULongLong(const QVariant& v, QByteArray* out)
{
    AppendShortLE(out, As<qulonglong>(v));
}

bool ReadULongLong(const char* p, int size, QVariant* out)
{
    quint64 raw = 0;
    if (!ReadShortLE(p, size, 8, &raw))
        return false;
    *out = QVariant(qulonglong(raw));
    return true;
}

void WriteBool(const QVariant& v, QByteArray* out)
{
    out->append(As<bool>(v) ? '\1' : '\0');
}

bool ReadBool(const char* p, int size, QVariant* out)
{
    if (size != 1 || quint8(*p) > 1)
        return false;
    *out = QVariant(*p == 1);
    return true;
}

void WriteQString(const QVariant& v, QByteArray* out)
{
    vxtree::AppendUtf8(out, As<QString>(v));
}

bool ReadQString(const char* p, int size, QVariant* out)
{
    QString s;
    if (!vxtree::DecodeUtf8(p, size, &s))
        return false;
    *out = QVariant(s);
    return true;
}

void WriteQByteArray(const QVariant& v, QByteArray* out)
{
    out->append(As<QByteArray>(v));
}

bool ReadQByteArray(const char* p, int size, QVariant* out)
{
    *out = QVariant(QByteArray(p, size));
    return true;
}

bool ReadInt32Var(const char*& p, const char* end, int* value)
{
    quint64 raw = 0;
    if (!ReadVarU64(p, end, &raw) || raw > 0xFFFFFFFFu)
        return false;
    *value = int(UnZigZag(raw));
    return true;
}

void WriteQRect(const QVariant& v, QByteArray* out)
{
    const QRect& r = As<QRect>(v);
    AppendVarU64(out, ZigZag(r.left()) & 0xFFFFFFFFu);
    AppendVarU64(out, ZigZag(r.top()) & 0xFFFFFFFFu);
    AppendVarU64(out, ZigZag(r.right()) & 0xFFFFFFFFu);
    AppendVarU64(out, ZigZag(r.bottom()) & 0xFFFFFFFFu);
}

bool ReadQRect(const char* p, int size, QVariant* out)
{
    const char* end = p + size;
    int c[4];
    for (int& value : c) {
        if (!ReadInt32Var(p, end, &value))
            return false;
    }
    if (p != end)
        return false;
    QRect r;
    r.setCoords(c[0], c[1], c[2], c[3]);
    *out = QVariant(r);
    return true;
}

template <typename Container> void WriteStrings(const QVariant& v, QByteArray* out)
{
    const Container& list = As<Container>(v);
    AppendVarU64(out, quint64(list.size()));
    for (const QString& s : list)
        AppendString(out, s);
}

template <typename Container> bool ReadStrings(const char* p, int size, QVariant* out)
{
    const char* end = p + size;
    int n = 0;
    if (!ReadCount(p, end, &n) || n > end - p) // each string takes at least its length byte
        return false;
    Container list;
    list.reserve(n);
    for (int i = 0; i < n; ++i) {
        QString s;
        if (!ReadString(p, end, &s))
            return false;
        list.append(s);
    }
    if (p != end)
        return false;
    *out = QVariant::fromValue(list);
    return true;
}

void WriteLongLongVector(const QVariant& v, QByteArray* out)
{
    const QVector<qlonglong>& list = As<QVector<qlonglong>>(v);
    AppendVarU64(out, quint64(list.size()));
    for (qlonglong value : list)
        AppendVarU64(out, ZigZag(value));
}

bool ReadLongLongVector(const char* p, int size, QVariant* out)
{
    const char* end = p + size;
    int n = 0;
    if (!ReadCount(p, end, &n) || n > end - p)
        return false;
    QVector<qlonglong> list(n);
    qlonglong* data = list.data();
    for (int i = 0; i < n; ++i) {
        quint64 raw = 0;
        if (!ReadVarU64(p, end, &raw))
            return false;
        data[i] = UnZigZag(raw);
    }
    if (p != end)
        return false;
    *out = QVariant::fromValue(list);
    return true;
}

void WriteStringIntMap(const QVariant& v, QByteArray* out)
{
    const QMap<QString, int>& map = As<QMap<QString, int>>(v);
    AppendVarU64(out, quint64(map.size()));
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        AppendString(out, it.key());
        AppendVarU64(out, ZigZag(it.value()) & 0xFFFFFFFFu);
    }
}

bool ReadStringIntMap(const char* p, int size, QVariant* out)
{
    const char* end = p + size;
    int n = 0;
    if (!ReadCount(p, end, &n) || n > (end - p) / 2)
        return false;
    QMap<QString, int> map;
    QString previous;
    for (int i = 0; i < n; ++i) {
        QString key;
        int value = 0;
        if (!ReadString(p, end, &key) || !ReadInt32Var(p, end, &value))
            return false;
        // Written in key order; anything else is not a map this code wrote.
        if (i > 0 && !(previous < key))
            return false;
        map.insert(map.cend(), key, value);
        previous = key;
    }
    if (p != end)
        return false;
    *out = QVariant::fromValue(map);
    return true;
}

} // namespace

namespace vxtree {

int Utf8Length(const QChar* s, int n)
{
    const ushort* u = reinterpret_cast<const ushort*>(s);
    int length = 0;
    for (int i = 0; i < n; ++i) {
        const ushort c = u[i];
        if (c < 0x80) {
            length += 1;
        } else if (c < 0x800) {
            length += 2;
        } else if (QChar::isHighSurrogate(c) && i + 1 < n && QChar::isLowSurrogate(u[i + 1])) {
            length += 4;
            ++i;
        } else {
            length += 3;
        }
    }
    return length;
}

namespace {

void EncodeUtf8(const ushort* u, int n, uchar* d)
{
    for (int i = 0; i < n; ++i) {
        uint c = u[i];
        if (c < 0x80) {
            *d++ = uchar(c);
        } else if (c < 0x800) {
            *d++ = uchar(0xC0 | (c >> 6));
            *d++ = uchar(0x80 | (c & 0x3F));
        } else if (QChar::isHighSurrogate(c) && i + 1 < n && QChar::isLowSurrogate(u[i + 1])) {
            c = QChar::surrogateToUcs4(ushort(c), u[++i]);
            *d++ = uchar(0xF0 | (c >> 18));
            *d++ = uchar(0x80 | ((c >> 12) & 0x3F));
            *d++ = uchar(0x80 | ((c >> 6) & 0x3F));
            *d++ = uchar(0x80 | (c & 0x3F));
        } else {
            if (QChar::isSurrogate(c))
                c = QChar::ReplacementCharacter;
            *d++ = uchar(0xE0 | (c >> 12));
            *d++ = uchar(0x80 | ((c >> 6) & 0x3F));
            *d++ = uchar(0x80 | (c & 0x3F));
        }
    }
}

void AppendUtf8WithLength(QByteArray* out, const QString& s, bool withLength)
{
    const int n = s.size();
    const int length = Utf8Length(s.constData(), n);
    if (withLength)
        AppendVarU64(out, quint64(length));
    const int old = out->size();
    out->resize(old + length);
    EncodeUtf8(s.utf16(), n, reinterpret_cast<uchar*>(out->data()) + old);
}

} // namespace

void AppendUtf8(QByteArray* out, const QString& s)
{
    AppendUtf8WithLength(out, s, false);
}

void AppendString(QByteArray* out, const QString& s)
{
    AppendUtf8WithLength(out, s, true);
}

bool DecodeUtf8(const char* p, int size, QString* out)
{
    if (size == 0) {
        *out = QString();
        return true;
    }
    const uchar* s = reinterpret_cast<const uchar*>(p);
    const uchar* e = s + size;
    // Every UTF-8 byte gives at most one UTF-16 unit (four bytes give two).
    QString result(size, Qt::Uninitialized);
    ushort* d0 = reinterpret_cast<ushort*>(result.data());
    ushort* d = d0;
    while (s < e) {
        const uint c = *s;
        if (c < 0x80) {
            *d++ = ushort(c);
            ++s;
        } else if (c < 0xC2) {
            return false; // a continuation byte or an overlong two-byte form
        } else if (c < 0xE0) {
            if (e - s < 2 || (s[1] & 0xC0) != 0x80)
                return false;
            *d++ = ushort(((c & 0x1F) << 6) | (s[1] & 0x3F));
            s += 2;
        } else if (c < 0xF0) {
            if (e - s < 3 || (s[1] & 0xC0) != 0x80 || (s[2] & 0xC0) != 0x80)
                return false;
            const uint cp = ((c & 0x0F) << 12) | ((s[1] & 0x3Fu) << 6) | (s[2] & 0x3Fu);
            if (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))
                return false;
            *d++ = ushort(cp);
            s += 3;
        } else if (c < 0xF5) {
            if (e - s < 4 || (s[1] & 0xC0) != 0x80 || (s[2] & 0xC0) != 0x80 || (s[3] & 0xC0) != 0x80)
                return false;
            const uint cp =
                ((c & 0x07) << 18) | ((s[1] & 0x3Fu) << 12) | ((s[2] & 0x3Fu) << 6) | (s[3] & 0x3Fu);
            if (cp < 0x10000 || cp > 0x10FFFF)
                return false;
            *d++ = QChar::highSurrogate(cp);
            *d++ = QChar::lowSurrogate(cp);
            s += 4;
        } else {
            return false;
        }
    }
    result.resize(int(d - d0));
    *out = std::move(result);
    return true;
}

bool ReadString(const char*& p, const char* end, QString* out)
{
    int length = 0;
    const char* q = p;
    if (!ReadCount(q, end, &length) || length > end - q)
        return false;
    if (!DecodeUtf8(q, length, out))
        return false;
    p = q + length;
    return true;
}

void RegisterCoreValueCodecs()
{
    CVXVariantMapTree::RegisterValueCodec(QMetaType::Int, &WriteInt, &ReadInt);
    CVXVariantMapTree::RegisterValueCodec(QMetaType::Bool, &WriteBool, &ReadBool);
    CVXVariantMapTree::RegisterValueCodec(QMetaType::ULongLong, &WriteULongLong, &ReadULongLong);
    CVXVariantMapTree::RegisterValueCodec(QMetaType::LongLong, &WriteLongLong, &ReadLongLong);
    CVXVariantMapTree::RegisterValueCodec(QMetaType::QString, &WriteQString, &ReadQString);
    CVXVariantMapTree::RegisterValueCodec(QMetaType::QByteArray, &WriteQByteArray, &ReadQByteArray);
    CVXVariantMapTree::RegisterValueCodec(QMetaType::QRect, &WriteQRect, &ReadQRect);
    CVXVariantMapTree::RegisterValueCodec(QMetaType::QStringList, &WriteStrings<QStringList>,
                                          &ReadStrings<QStringList>);

    // Container types Qt names on first use; registering their stream operators too keeps
    // them usable inside plain QVariant streams.
    qRegisterMetaTypeStreamOperators<QList<QString>>("QList<QString>");
    qRegisterMetaTypeStreamOperators<QVector<QString>>("QVector<QString>");
    qRegisterMetaTypeStreamOperators<QVector<qlonglong>>("QVector<qlonglong>");
    qRegisterMetaTypeStreamOperators<QMap<QString, int>>("QMap<QString,int>");
    CVXVariantMapTree::RegisterValueCodec(qMetaTypeId<QList<QString>>(), &WriteStrings<QList<QString>>,
                                          &ReadStrings<QList<QString>>);
    CVXVariantMapTree::RegisterValueCodec(qMetaTypeId<QVector<QString>>(), &WriteStrings<QVector<QString>>,
                                          &ReadStrings<QVector<QString>>);
    CVXVariantMapTree::RegisterValueCodec(qMetaTypeId<QVector<qlonglong>>(), &WriteLongLongVector,
                                          &ReadLongLongVector);
    CVXVariantMapTree::RegisterValueCodec(qMetaTypeId<QMap<QString, int>>(), &WriteStringIntMap,
                                          &ReadStringIntMap);
}

} // namespace vxtree
