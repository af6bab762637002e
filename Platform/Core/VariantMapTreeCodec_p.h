#pragma once

// Building blocks of the state tree's binary form, shared by the tree's own codecs. Every reader
// takes a [p, end) range, advances p only on success and never reads outside the range.

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstring>

namespace vxtree {

inline void AppendVarU64(QByteArray* out, quint64 value)
{
    char buf[10];
    int n = 0;
    while (value >= 0x80) {
        buf[n++] = char(value | 0x80);
        value >>= 7;
    }
    buf[n++] = char(value);
    out->append(buf, n);
}

inline quint64 ZigZag(qint64 value)
{
    return (quint64(value) << 1) ^ quint64(value >> 63);
}

inline qint64 UnZigZag(quint64 value)
{
    return qint64(value >> 1) ^ -qint64(value & 1);
}

// At most 10 bytes; the tenth may only carry the top bit of the value.
inline bool ReadVarU64(const char*& p, const char* end, quint64* value)
{
    quint64 result = 0;
    const char* q = p;
    for (int shift = 0; shift < 70; shift += 7) {
        if (q == end)
            return false;
        const quint8 byte = quint8(*q++);
        if (shift == 63 && byte > 1)
            return false;
        result |= quint64(byte & 0x7F) << shift;
        if (!(byte & 0x80)) {
            *value = result;
            p = q;
            return true;
        }
    }
    return false;
}

// A count or a length: a varint whose value fits in an int.
inline bool ReadCount(const char*& p, const char* end, int* count)
{
    if (p != end && quint8(*p) < 0x80) { // the common one-byte case
        *count = quint8(*p++);
        return true;
    }
    quint64 value = 0;
    const char* q = p;
    if (!ReadVarU64(q, end, &value) || value > quint64(INT32_MAX))
        return false;
    *count = int(value);
    p = q;
    return true;
}

// An integer as its shortest little-endian byte string (0 to 8 bytes).
inline void AppendShortLE(QByteArray* out, quint64 value)
{
    char buf[8];
    int n = 0;
    while (value) {
        buf[n++] = char(value & 0xFF);
        value >>= 8;
    }
    out->append(buf, n);
}

inline bool ReadShortLE(const char* p, int size, int maxSize, quint64* value)
{
    if (size < 0 || size > maxSize)
        return false;
    quint64 result = 0;
    for (int i = size - 1; i >= 0; --i)
        result = (result << 8) | quint8(p[i]);
    *value = result;
    return true;
}

// UTF-16 to UTF-8; an unpaired surrogate is written as U+FFFD.
int Utf8Length(const QChar* s, int n);
void AppendUtf8(QByteArray* out, const QString& s);
// Varint byte length followed by the UTF-8 bytes.
void AppendString(QByteArray* out, const QString& s);

// Strict UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF) to a QString.
bool DecodeUtf8(const char* p, int size, QString* out);
bool ReadString(const char*& p, const char* end, QString* out);

// Registers the codecs of the common value types (VariantMapTreeCodec.cpp); called once when
// the core library loads.
void RegisterCoreValueCodecs();

} // namespace vxtree
