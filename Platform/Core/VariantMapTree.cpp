#include "Platform/Core/VariantMapTree.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/VariantMapTreeCodec_p.h"

#include <QDataStream>

#include <atomic>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// Binary form of a tree (SerializeAsQByteArray / ParseFromQByteArray).
//
// "varint": unsigned LEB128, at most 10 bytes; counts and lengths must fit in 31 bits.
// "zigzag": a signed n stored as (n << 1) ^ (n >> 63). "short LE": an unsigned integer as its
// shortest little-endian byte string (no bytes for 0); the payload length says how many.
//
// Buffer
//   bytes 0-3   magic 'V' 'X' 'T' 'R'
//   byte  4     version, 1
//   bytes 5-8   offset of the type table from the start of the buffer, 32-bit little-endian
//   9..offset   the root tree body; it must end exactly at the offset
//   offset..end the type table: varint n (at most 4096), then n times varint length (1..255) and
//               the meta-type name (printable ASCII, Qt's normalised name); it must end exactly
//               at the end of the buffer. The table follows the body so that the writer learns
//               the types in one pass; it lists each type once per buffer.
//
// Tree body
//   varint count, then count entries with strictly increasing keys (QString order):
//     varint key length, key (UTF-8), varint type index (into the table), varint payload
//     length, payload. Values and lazy entries share this list; a lazy entry is written back
//     with its type name and payload unchanged.
//   varint child count, then per child (strictly increasing keys): varint key length, key,
//     the child's tree body.
//
// Payloads
//   int                  zigzag as short LE, at most 4 bytes
//   long long            zigzag as short LE, at most 8 bytes
//   unsigned long long   short LE, at most 8 bytes
//   bool                 one byte, 0 or 1
//   QString              UTF-8 (strict: no overlong forms, no surrogates)
//   QByteArray           the bytes
//   QRect                four zigzag varints: left, top, right, bottom
//   QStringList, QList<QString>, QVector<QString>
//                        varint n, then n times varint length and UTF-8
//   QVector<long long>   varint n, then n zigzag varints
//   QMap<QString, int>   varint n, then n times varint length, UTF-8 key, zigzag varint;
//                        keys strictly increasing
//   CVXVariantMapTree    a tree body (sharing the buffer's type table)
//   QVector<CVXVariantMapTree>  varint n, then n tree bodies
//   other types with a registered codec: the codec's bytes
//   other registered types: QMetaType::save into a QDataStream (version Qt_5_15)
//
// Reading never trusts a count or a length: each is checked against the bytes that remain
// before anything is allocated, and nesting stops at 64 levels below the root. A value whose type is unknown,
// has no registered data-stream operator, or whose bytes its type cannot read here (malformed,
// or a codec that refuses, such as an image off the GUI thread) is kept as a lazy entry: its
// bytes survive a re-save unchanged and LazyLoad tries again later. Nested trees are structure:
// they must read correctly or the whole parse fails.

// The codec's window on a tree's maps.
struct VariantMapTreeCodec
{
    using Children = QMap<QString, std::shared_ptr<CVXVariantMapTree>>;
    static QMap<QString, QVariant>& Values(CVXVariantMapTree& tree) { return tree.m_mapValues; }
    static QMap<QString, CVXVariantMapTree::LazyData>& Lazy(CVXVariantMapTree& tree)
    {
        return tree.m_mapLazy;
    }
    static Children& ChildMap(CVXVariantMapTree& tree) { return tree.m_mapChildren; }
    static const Children& ChildMap(const CVXVariantMapTree& tree) { return tree.m_mapChildren; }
};

namespace {

using vxtree::AppendString;
using vxtree::AppendVarU64;
using vxtree::ReadCount;

constexpr char kMagic[4] = {'V', 'X', 'T', 'R'};
constexpr quint8 kVersion = 1;
constexpr int kHeaderSize = 9;
constexpr int kMaxDepth = 64;
constexpr int kMaxTypes = 4096;
constexpr int kMaxTypeNameLength = 255;

struct Codec
{
    CVXVariantMapTree::ValueWriter writer = nullptr;
    CVXVariantMapTree::ValueReader reader = nullptr;
};

// Process-wide and never destroyed: other libraries register from their static initialisers
// and may serialise from their static destructors.
struct Registry
{
    std::shared_mutex mutex;
    std::unordered_set<int> dataStream;
    std::unordered_map<int, CVXVariantMapTree::ToStringFn> text;
    std::unordered_map<int, Codec> codecs;
};

Registry& R()
{
    static Registry* registry = new Registry;
    return *registry;
}

// Qt's built-in types whose stream operators read a bounded amount from any input. The others
// (QVariantList, QVariantMap, QPolygon, QRegion, QBitArray, images ...) reserve or allocate by a
// count taken from the stream, so they are usable only with a codec of their own. QDateTime is
// left out too: Qt 5.15 reads a time zone it cannot save again, and crashes saving it.
bool IsSafeBuiltin(int id)
{
    switch (id) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::QChar:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QUrl:
    case QMetaType::QUuid:
    case QMetaType::QPoint:
    case QMetaType::QPointF:
    case QMetaType::QSize:
    case QMetaType::QSizeF:
    case QMetaType::QLine:
    case QMetaType::QLineF:
    case QMetaType::QRect:
    case QMetaType::QRectF:
    case QMetaType::QColor:
    case QMetaType::QTransform:
    case QMetaType::QMatrix4x4:
    case QMetaType::QVector2D:
    case QMetaType::QVector3D:
    case QMetaType::QVector4D:
    case QMetaType::QQuaternion:
        return true;
    default:
        return false;
    }
}

int TreeTypeId()
{
    static const int id = qMetaTypeId<CVXVariantMapTree>();
    return id;
}

int TreeVectorTypeId()
{
    static const int id = qMetaTypeId<QVector<CVXVariantMapTree>>();
    return id;
}

enum class Kind : quint8
{
    Lazy,
    Tree,
    TreeVector,
    Codec,
    Stream
};

// How values of a type are written and read; Lazy when the type cannot be read now.
Kind Classify(int id, Codec* codec)
{
    if (id == QMetaType::UnknownType)
        return Kind::Lazy;
    if (id == TreeTypeId())
        return Kind::Tree;
    if (id == TreeVectorTypeId())
        return Kind::TreeVector;
    Registry& r = R();
    std::shared_lock<std::shared_mutex> lock(r.mutex);
    const auto c = r.codecs.find(id);
    if (c != r.codecs.end()) {
        *codec = c->second;
        return Kind::Codec;
    }
    const bool registered = r.dataStream.count(id) != 0 || IsSafeBuiltin(id);
    return registered ? Kind::Stream : Kind::Lazy;
}

bool LoadWithStream(int id, const char* p, int size, QVariant* out)
{
    const QByteArray raw = QByteArray::fromRawData(p, size);
    QDataStream stream(raw);
    stream.setVersion(QDataStream::Qt_5_15);
    QVariant value(id, nullptr);
    if (!value.isValid() || !QMetaType::load(stream, id, value.data()))
        return false;
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return false;
    *out = std::move(value);
    return true;
}

bool SaveWithStream(int id, const QVariant& value, QByteArray* out)
{
    QDataStream stream(out, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    return QMetaType::save(stream, id, value.constData()) && stream.status() == QDataStream::Ok;
}

template <typename T> const T& As(const QVariant& v)
{
    return *static_cast<const T*>(v.constData());
}

// ---- writer -----------------------------------------------------------------------------

class TreeWriter
{
public:
    QByteArray out;

    void WriteBody(const CVXVariantMapTree& tree, int depth);
    QByteArray TypeTable() const;

private:
    struct Slot
    {
        QByteArray name;
        int id = 0;
        Kind kind = Kind::Lazy;
        Codec codec;
    };

    const Slot* SlotForId(int id, int* index);
    int SlotForName(const QString& name);
    bool WriteValue(const QVariant& value, int depth);
    void WriteLength(int lengthPos);

    std::vector<Slot> m_slots;
    int m_lastId = -1;
    int m_lastIndex = -1;
};

const TreeWriter::Slot* TreeWriter::SlotForId(int id, int* index)
{
    if (id == m_lastId) {
        *index = m_lastIndex;
        return &m_slots[size_t(m_lastIndex)];
    }
    int found = -1;
    for (size_t i = 0; i < m_slots.size(); ++i) {
        if (m_slots[i].id == id) {
            found = int(i);
            break;
        }
    }
    if (found < 0) {
        Slot slot;
        slot.kind = Classify(id, &slot.codec);
        if (slot.kind == Kind::Lazy)
            return nullptr;
        slot.name = QMetaType::typeName(id);
        slot.id = id;
        // A lazy entry of this type may have put its name in the table already.
        for (size_t i = 0; i < m_slots.size(); ++i) {
            if (m_slots[i].name == slot.name) {
                found = int(i);
                m_slots[i] = slot;
                break;
            }
        }
        if (found < 0) {
            found = int(m_slots.size());
            m_slots.push_back(slot);
        }
    }
    m_lastId = id;
    m_lastIndex = found;
    *index = found;
    return &m_slots[size_t(found)];
}

int TreeWriter::SlotForName(const QString& name)
{
    const QByteArray latin1 = name.toLatin1();
    for (size_t i = 0; i < m_slots.size(); ++i) {
        if (m_slots[i].name == latin1)
            return int(i);
    }
    Slot slot;
    slot.name = latin1;
    m_slots.push_back(slot);
    return int(m_slots.size() - 1);
}

// The payload was written after a one-byte length placeholder at lengthPos; widen it if needed.
void TreeWriter::WriteLength(int lengthPos)
{
    const int length = out.size() - lengthPos - 1;
    if (length < 0x80) {
        out.data()[lengthPos] = char(length);
        return;
    }
    QByteArray varint;
    AppendVarU64(&varint, quint64(length));
    out.insert(lengthPos + 1, varint.size() - 1, '\0');
    memcpy(out.data() + lengthPos, varint.constData(), size_t(varint.size()));
}

bool TreeWriter::WriteValue(const QVariant& value, int depth)
{
    int index = -1;
    const Slot* slot = SlotForId(value.userType(), &index);
    if (!slot)
        return false;
    switch (slot->kind) {
    case Kind::Tree: {
        if (depth + 1 > kMaxDepth)
            return false;
        AppendVarU64(&out, quint64(index));
        const int lengthPos = out.size();
        out.append('\0');
        WriteBody(As<CVXVariantMapTree>(value), depth + 1);
        WriteLength(lengthPos);
        return true;
    }
    case Kind::TreeVector: {
        if (depth + 1 > kMaxDepth)
            return false;
        AppendVarU64(&out, quint64(index));
        const int lengthPos = out.size();
        out.append('\0');
        const QVector<CVXVariantMapTree>& trees = As<QVector<CVXVariantMapTree>>(value);
        AppendVarU64(&out, quint64(trees.size()));
        for (const CVXVariantMapTree& tree : trees)
            WriteBody(tree, depth + 1);
        WriteLength(lengthPos);
        return true;
    }
    case Kind::Codec: {
        const auto writer = slot->codec.writer;
        AppendVarU64(&out, quint64(index));
        const int lengthPos = out.size();
        out.append('\0');
        writer(value, &out);
        WriteLength(lengthPos);
        return true;
    }
    case Kind::Stream: {
        QByteArray payload;
        if (!SaveWithStream(slot->id, value, &payload))
            return false;
        AppendVarU64(&out, quint64(index));
        AppendVarU64(&out, quint64(payload.size()));
        out.append(payload);
        return true;
    }
    case Kind::Lazy:
        break;
    }
    return false;
}

void TreeWriter::WriteBody(const CVXVariantMapTree& tree, int depth)
{
    const QMap<QString, QVariant>& values = tree.Values();
    const QMap<QString, CVXVariantMapTree::LazyData>& lazy = tree.LazyEntries();

    const int countPos = out.size();
    const int planned = values.size() + lazy.size();
    AppendVarU64(&out, quint64(planned));
    const int countLength = out.size() - countPos;
    int written = 0;

    auto v = values.cbegin();
    auto l = lazy.cbegin();
    while (v != values.cend() || l != lazy.cend()) {
        const bool takeValue = l == lazy.cend() || (v != values.cend() && !(l.key() < v.key()));
        if (takeValue) {
            if (l != lazy.cend() && l.key() == v.key())
                ++l; // a value replaces a lazy entry of the same key
            const int mark = out.size();
            AppendString(&out, v.key());
            if (WriteValue(v.value(), depth)) {
                ++written;
            } else {
                out.truncate(mark);
                VXLOG_WARN("CVXVariantMapTree::SerializeAsQByteArray: value \"{}\" of type {} left out",
                           v.key(), v.value().typeName() ? v.value().typeName() : "?");
            }
            ++v;
        } else {
            AppendString(&out, l.key());
            AppendVarU64(&out, quint64(SlotForName(l->strTypeName)));
            AppendVarU64(&out, quint64(l->data.size()));
            out.append(l->data);
            ++written;
            ++l;
        }
    }
    if (written != planned) {
        QByteArray count;
        AppendVarU64(&count, quint64(written));
        out.replace(countPos, countLength, count);
    }

    const auto& children = VariantMapTreeCodec::ChildMap(tree);
    if (depth + 1 > kMaxDepth) {
        if (!children.isEmpty())
            VXLOG_WARN("CVXVariantMapTree::SerializeAsQByteArray: children nested too deep left out");
        out.append('\0');
        return;
    }
    AppendVarU64(&out, quint64(children.size()));
    for (auto c = children.cbegin(); c != children.cend(); ++c) {
        AppendString(&out, c.key());
        if (c.value())
            WriteBody(*c.value(), depth + 1);
        else
            out.append("\0\0", 2);
    }
}

QByteArray TreeWriter::TypeTable() const
{
    QByteArray table;
    AppendVarU64(&table, quint64(m_slots.size()));
    for (const Slot& slot : m_slots) {
        AppendVarU64(&table, quint64(slot.name.size()));
        table.append(slot.name);
    }
    return table;
}

// ---- reader -----------------------------------------------------------------------------

class TreeReader
{
public:
    bool ReadTable(const char* p, const char* end);
    bool ReadBody(const char*& p, const char* end, CVXVariantMapTree* tree, int depth);

private:
    struct Slot
    {
        QString name;
        int id = 0;
        Kind kind = Kind::Lazy;
        Codec codec;
    };

    bool ReadValue(const Slot& slot, const char* p, int size, QVariant* out, int depth);
    bool ReadKey(const char*& p, const char* end, QString* key);

    std::vector<Slot> m_slots;

    // Records repeat their keys: equal key bytes share one QString instead of a fresh one each.
    struct CachedKey
    {
        QByteArray utf8;
        QString key;
    };
    static constexpr int kKeyCacheSize = 256;
    static constexpr int kMaxCachedKeyLength = 48;
    std::vector<CachedKey> m_keyCache = std::vector<CachedKey>(kKeyCacheSize);
};

bool TreeReader::ReadKey(const char*& p, const char* end, QString* key)
{
    int length = 0;
    const char* q = p;
    if (!ReadCount(q, end, &length) || length > end - q)
        return false;
    if (length == 0 || length > kMaxCachedKeyLength) {
        if (!vxtree::DecodeUtf8(q, length, key))
            return false;
        p = q + length;
        return true;
    }
    quint32 hash = 2166136261u;
    for (int i = 0; i < length; ++i)
        hash = (hash ^ quint8(q[i])) * 16777619u;
    CachedKey& cached = m_keyCache[hash % kKeyCacheSize];
    if (cached.utf8.size() == length && memcmp(cached.utf8.constData(), q, size_t(length)) == 0) {
        *key = cached.key;
    } else {
        if (!vxtree::DecodeUtf8(q, length, key))
            return false;
        cached.utf8 = QByteArray(q, length);
        cached.key = *key;
    }
    p = q + length;
    return true;
}

bool TreeReader::ReadTable(const char* p, const char* end)
{
    int n = 0;
    if (!ReadCount(p, end, &n) || n > kMaxTypes || n > (end - p) / 2)
        return false;
    m_slots.resize(size_t(n));
    for (Slot& slot : m_slots) {
        int length = 0;
        if (!ReadCount(p, end, &length) || length < 1 || length > kMaxTypeNameLength || length > end - p)
            return false;
        for (int i = 0; i < length; ++i) {
            if (p[i] < 0x20 || p[i] > 0x7E)
                return false;
        }
        const QByteArray name(p, length);
        p += length;
        slot.name = QString::fromLatin1(name);
        slot.id = QMetaType::type(name.constData());
        slot.kind = Classify(slot.id, &slot.codec);
    }
    return p == end;
}

bool TreeReader::ReadValue(const Slot& slot, const char* p, int size, QVariant* out, int depth)
{
    const char* end = p + size;
    switch (slot.kind) {
    case Kind::Tree: {
        if (depth + 1 > kMaxDepth)
            return false;
        CVXVariantMapTree tree;
        if (!ReadBody(p, end, &tree, depth + 1) || p != end)
            return false;
        *out = QVariant::fromValue(tree);
        return true;
    }
    case Kind::TreeVector: {
        int n = 0;
        // An empty tree body takes two bytes.
        if (depth + 1 > kMaxDepth || !ReadCount(p, end, &n) || n > (end - p) / 2)
            return false;
        QVector<CVXVariantMapTree> trees(n);
        CVXVariantMapTree* data = trees.data();
        for (int i = 0; i < n; ++i) {
            if (!ReadBody(p, end, data + i, depth + 1))
                return false;
        }
        if (p != end)
            return false;
        *out = QVariant::fromValue(trees);
        return true;
    }
    case Kind::Codec:
        return slot.codec.reader(p, size, out);
    case Kind::Stream:
        return LoadWithStream(slot.id, p, size, out);
    case Kind::Lazy:
        break;
    }
    return false;
}

bool TreeReader::ReadBody(const char*& p, const char* end, CVXVariantMapTree* tree, int depth)
{
    int count = 0;
    // An entry takes at least three bytes: key length, type index, payload length.
    if (!ReadCount(p, end, &count) || count > (end - p) / 3)
        return false;
    QMap<QString, QVariant>& values = VariantMapTreeCodec::Values(*tree);
    QMap<QString, CVXVariantMapTree::LazyData>& lazy = VariantMapTreeCodec::Lazy(*tree);
    QString previous;
    for (int i = 0; i < count; ++i) {
        QString key;
        int typeIndex = 0;
        int size = 0;
        if (!ReadKey(p, end, &key) || (i > 0 && !(previous < key)))
            return false;
        if (!ReadCount(p, end, &typeIndex) || typeIndex >= int(m_slots.size()))
            return false;
        if (!ReadCount(p, end, &size) || size > end - p)
            return false;
        const Slot& slot = m_slots[size_t(typeIndex)];
        if (slot.kind == Kind::Tree || slot.kind == Kind::TreeVector) {
            auto it = values.insert(values.cend(), key, QVariant());
            if (!ReadValue(slot, p, size, &it.value(), depth))
                return false;
        } else {
            QVariant value;
            if (slot.kind != Kind::Lazy && ReadValue(slot, p, size, &value, depth))
                values.insert(values.cend(), key, value);
            else
                lazy.insert(lazy.cend(), key, CVXVariantMapTree::LazyData{slot.name, QByteArray(p, size)});
        }
        p += size;
        previous.swap(key);
    }

    int children = 0;
    // A child takes at least three bytes: key length and an empty body.
    if (!ReadCount(p, end, &children) || children > (end - p) / 3)
        return false;
    if (children > 0 && depth + 1 > kMaxDepth)
        return false;
    auto& childMap = VariantMapTreeCodec::ChildMap(*tree);
    for (int i = 0; i < children; ++i) {
        QString key;
        if (!ReadKey(p, end, &key) || (i > 0 && !(previous < key)))
            return false;
        auto child = std::make_shared<CVXVariantMapTree>();
        if (!ReadBody(p, end, child.get(), depth + 1))
            return false;
        childMap.insert(childMap.cend(), key, child);
        previous.swap(key);
    }
    return true;
}

quint32 ReadLE32(const char* p)
{
    return quint32(quint8(p[0])) | quint32(quint8(p[1])) << 8 | quint32(quint8(p[2])) << 16 |
           quint32(quint8(p[3])) << 24;
}

bool LazyTypeIs(const QString& typeName, int metaTypeId)
{
    const char* name = QMetaType::typeName(metaTypeId);
    if (name && typeName == QLatin1String(name))
        return true;
    const int id = QMetaType::type(typeName.toLatin1().constData());
    return id != QMetaType::UnknownType && id == metaTypeId;
}

// Types every tree needs, registered when the core library loads.
struct CoreTypes
{
    CoreTypes()
    {
        const int treeId = qRegisterMetaType<CVXVariantMapTree>("CVXVariantMapTree");
        const int vectorId = qRegisterMetaType<QVector<CVXVariantMapTree>>("QVector<CVXVariantMapTree>");
        qRegisterMetaTypeStreamOperators<CVXVariantMapTree>("CVXVariantMapTree");
        qRegisterMetaTypeStreamOperators<QVector<CVXVariantMapTree>>("QVector<CVXVariantMapTree>");
        CVXVariantMapTree::MarkDataStreamOperatorRegistered(treeId);
        CVXVariantMapTree::MarkDataStreamOperatorRegistered(vectorId);

        vxtree::RegisterCoreValueCodecs();
    }
};

const CoreTypes s_coreTypes;

} // namespace

// ---- the tree -------------------------------------------------------------------------------

CVXVariantMapTree::CVXVariantMapTree() = default;
CVXVariantMapTree::CVXVariantMapTree(const CVXVariantMapTree& other) = default;
CVXVariantMapTree& CVXVariantMapTree::operator=(const CVXVariantMapTree& other) = default;
CVXVariantMapTree::~CVXVariantMapTree() = default;

bool CVXVariantMapTree::IsEmpty() const
{
    return m_mapValues.isEmpty() && m_mapLazy.isEmpty();
}

void CVXVariantMapTree::Clear()
{
    m_mapValues.clear();
    m_mapLazy.clear();
    m_mapChildren.clear();
}

CVXVariantMapTree& CVXVariantMapTree::Child(const QString& key)
{
    auto it = m_mapChildren.find(key);
    if (it == m_mapChildren.end()) {
        it = m_mapChildren.insert(key, std::make_shared<CVXVariantMapTree>());
    } else if (!it.value()) {
        it.value() = std::make_shared<CVXVariantMapTree>();
    } else if (it.value().use_count() > 1) {
        // Another copy of this tree holds the same sub-tree: take our own before writing.
        it.value() = std::make_shared<CVXVariantMapTree>(*it.value());
    }
    return *it.value();
}

const CVXVariantMapTree& CVXVariantMapTree::Child(const QString& key) const
{
    static const CVXVariantMapTree empty;
    const auto it = m_mapChildren.constFind(key);
    return it == m_mapChildren.cend() || !it.value() ? empty : *it.value();
}

bool CVXVariantMapTree::HasChild(const QString& key) const
{
    return m_mapChildren.contains(key);
}

bool CVXVariantMapTree::IsSameType(const QString& key, int metaTypeId) const
{
    const auto v = m_mapValues.constFind(key);
    if (v != m_mapValues.cend())
        return v.value().userType() == metaTypeId;
    const auto l = m_mapLazy.constFind(key);
    if (l != m_mapLazy.cend())
        return LazyTypeIs(l.value().strTypeName, metaTypeId);
    return true;
}

bool CVXVariantMapTree::LazyLoad(const QString& key) const
{
    const auto l = m_mapLazy.constFind(key);
    if (l == m_mapLazy.cend())
        return m_mapValues.contains(key);
    const int id = QMetaType::type(l.value().strTypeName.toLatin1().constData());
    Codec codec;
    const Kind kind = Classify(id, &codec);
    QVariant value;
    const QByteArray& data = l.value().data;
    bool ok = false;
    if (kind == Kind::Codec)
        ok = codec.reader(data.constData(), data.size(), &value);
    else if (kind == Kind::Stream)
        ok = LoadWithStream(id, data.constData(), data.size(), &value);
    // Nested trees are always known when a buffer is read, so they are never lazy.
    if (!ok)
        return false;
    m_mapValues.insert(key, value);
    m_mapLazy.remove(key);
    return true;
}

void CVXVariantMapTree::RemoveLazyData(const QString& key)
{
    m_mapLazy.remove(key);
}

bool CVXVariantMapTree::Contains(const QString& key) const
{
    return m_mapValues.contains(key) || m_mapLazy.contains(key);
}

bool CVXVariantMapTree::Remove(const QString& key)
{
    const int removed = m_mapValues.remove(key) + m_mapLazy.remove(key);
    return removed > 0;
}

QList<QString> CVXVariantMapTree::Keys() const
{
    QList<QString> keys;
    keys.reserve(m_mapValues.size() + m_mapLazy.size());
    auto v = m_mapValues.cbegin();
    auto l = m_mapLazy.cbegin();
    while (v != m_mapValues.cend() || l != m_mapLazy.cend()) {
        if (l == m_mapLazy.cend() || (v != m_mapValues.cend() && v.key() < l.key())) {
            keys.append(v.key());
            ++v;
        } else if (v == m_mapValues.cend() || l.key() < v.key()) {
            keys.append(l.key());
            ++l;
        } else {
            keys.append(v.key());
            ++v;
            ++l;
        }
    }
    return keys;
}

bool CVXVariantMapTree::FindValue(const QString& key, QVariant* out) const
{
    const auto v = m_mapValues.constFind(key);
    if (v == m_mapValues.cend())
        return false;
    if (out)
        *out = v.value();
    return true;
}

void CVXVariantMapTree::StoreValue(const QString& key, const QVariant& value)
{
    m_mapLazy.remove(key);
    m_mapValues.insert(key, value);
}

QByteArray CVXVariantMapTree::SerializeAsQByteArray() const
{
    // Trees of one program have similar sizes: start from the size of the last one written.
    static std::atomic<int> s_sizeHint{256};
    TreeWriter writer;
    writer.out.reserve(s_sizeHint.load(std::memory_order_relaxed));
    writer.out.append(kMagic, 4);
    writer.out.append(char(kVersion));
    writer.out.append(4, '\0');
    writer.WriteBody(*this, 0);
    const quint32 offset = quint32(writer.out.size());
    char* header = writer.out.data() + 5;
    for (int i = 0; i < 4; ++i)
        header[i] = char((offset >> (8 * i)) & 0xFF);
    writer.out.append(writer.TypeTable());
    s_sizeHint.store(qMin(writer.out.size() + 64, 1 << 18), std::memory_order_relaxed);
    return writer.out;
}

bool CVXVariantMapTree::ParseFromQByteArray(const QByteArray& bytes)
{
    const char* data = bytes.constData();
    const int size = bytes.size();
    if (size < kHeaderSize || memcmp(data, kMagic, 4) != 0 || quint8(data[4]) != kVersion)
        return false;
    const quint32 offset = ReadLE32(data + 5);
    if (offset < quint32(kHeaderSize) || offset > quint32(size))
        return false;
    TreeReader reader;
    if (!reader.ReadTable(data + offset, data + size))
        return false;
    CVXVariantMapTree parsed;
    const char* p = data + kHeaderSize;
    if (!reader.ReadBody(p, data + offset, &parsed, 0) || p != data + offset)
        return false;
    m_mapValues.swap(parsed.m_mapValues);
    m_mapLazy.swap(parsed.m_mapLazy);
    m_mapChildren.swap(parsed.m_mapChildren);
    return true;
}

bool CVXVariantMapTree::operator==(const CVXVariantMapTree& other) const
{
    if (this == &other)
        return true;
    if (m_mapValues.isSharedWith(other.m_mapValues) && m_mapLazy.isSharedWith(other.m_mapLazy) &&
        m_mapChildren.isSharedWith(other.m_mapChildren))
        return true;
    return SerializeAsQByteArray() == other.SerializeAsQByteArray();
}

// ---- type registry ---------------------------------------------------------------------------

bool CVXVariantMapTree::HasRegisteredDataStreamOperator(int metaTypeId)
{
    if (metaTypeId == QMetaType::UnknownType)
        return false;
    if (IsSafeBuiltin(metaTypeId))
        return true;
    Registry& r = R();
    std::shared_lock<std::shared_mutex> lock(r.mutex);
    return r.dataStream.count(metaTypeId) != 0;
}

bool CVXVariantMapTree::HasRegisteredTextStreamOperator(int metaTypeId)
{
    Registry& r = R();
    std::shared_lock<std::shared_mutex> lock(r.mutex);
    return r.text.count(metaTypeId) != 0;
}

void CVXVariantMapTree::RegisterTextStreamOperator(int metaTypeId, ToStringFn toString)
{
    if (metaTypeId == QMetaType::UnknownType || !toString)
        return;
    Registry& r = R();
    std::unique_lock<std::shared_mutex> lock(r.mutex);
    r.text[metaTypeId] = toString;
}

void CVXVariantMapTree::MarkDataStreamOperatorRegistered(int metaTypeId)
{
    if (metaTypeId == QMetaType::UnknownType)
        return;
    // Qt's other built-in types read counts from the stream and reserve by them: they need a
    // codec (RegisterValueCodec) before a tree will carry them.
    if (metaTypeId < QMetaType::User && !IsSafeBuiltin(metaTypeId))
        return;
    Registry& r = R();
    std::unique_lock<std::shared_mutex> lock(r.mutex);
    r.dataStream.insert(metaTypeId);
}

void CVXVariantMapTree::RegisterValueCodec(int metaTypeId, ValueWriter writer, ValueReader reader)
{
    if (metaTypeId == QMetaType::UnknownType || !writer || !reader)
        return;
    Registry& r = R();
    std::unique_lock<std::shared_mutex> lock(r.mutex);
    r.codecs[metaTypeId] = Codec{writer, reader};
    r.dataStream.insert(metaTypeId);
}

QString CVXVariantMapTree::ValueToString(const QVariant& value)
{
    ToStringFn fn = nullptr;
    {
        Registry& r = R();
        std::shared_lock<std::shared_mutex> lock(r.mutex);
        const auto it = r.text.find(value.userType());
        if (it != r.text.end())
            fn = it->second;
    }
    return fn ? fn(value) : QString();
}

QDataStream& operator<<(QDataStream& stream, const CVXVariantMapTree& tree)
{
    return stream << tree.SerializeAsQByteArray();
}

QDataStream& operator>>(QDataStream& stream, CVXVariantMapTree& tree)
{
    QByteArray bytes;
    stream >> bytes;
    if (stream.status() == QDataStream::Ok && !tree.ParseFromQByteArray(bytes))
        stream.setStatus(QDataStream::ReadCorruptData);
    return stream;
}
