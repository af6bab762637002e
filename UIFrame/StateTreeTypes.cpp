#include "UIFrame/StateTreeTypes.h"

#include "UIFrame/Canvas/PanelLayoutPage.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include <QBuffer>
#include <QDataStream>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QPixmap>
#include <QRect>
#include <QThread>

QDataStream& operator<<(QDataStream& stream, VXPanelBoxType type)
{
    return stream << qint32(type);
}

QDataStream& operator>>(QDataStream& stream, VXPanelBoxType& type)
{
    qint32 value = 0;
    stream >> value;
    type = VXPanelBoxType(value);
    return stream;
}

namespace {

// The box type travels as four little-endian bytes.
void WriteBoxType(const QVariant& value, QByteArray* out)
{
    const quint32 v = quint32(*static_cast<const VXPanelBoxType*>(value.constData()));
    const char bytes[4] = {char(v & 0xFF), char((v >> 8) & 0xFF), char((v >> 16) & 0xFF), char(v >> 24)};
    out->append(bytes, 4);
}

bool ReadBoxType(const char* p, int size, QVariant* out)
{
    if (size != 4)
        return false;
    const quint32 v = quint32(quint8(p[0])) | quint32(quint8(p[1])) << 8 | quint32(quint8(p[2])) << 16 |
                      quint32(quint8(p[3])) << 24;
    *out = QVariant::fromValue(VXPanelBoxType(qint32(v)));
    return true;
}

// A pixmap exists only with a GUI application and on its thread; elsewhere the reader refuses
// and the tree keeps the bytes as a lazy entry until a Get on the GUI thread.
bool CanMakePixmaps()
{
    const QCoreApplication* app = QCoreApplication::instance();
    return qobject_cast<const QGuiApplication*>(app) && QThread::currentThread() == app->thread();
}

// PNG compresses flat images a thousandfold, so the pixel memory a payload may ask for is a
// multiple of its size plus a fixed allowance that covers any real thumbnail.
constexpr qint64 kPixmapBytesPerPayloadByte = 64;
constexpr qint64 kPixmapAllowanceBytes = 8 * 1024 * 1024;

void WritePixmap(const QVariant& value, QByteArray* out)
{
    const QPixmap& pixmap = *static_cast<const QPixmap*>(value.constData());
    if (pixmap.isNull())
        return;
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    pixmap.save(&buffer, "PNG");
    out->append(png);
}

bool ReadPixmap(const char* p, int size, QVariant* out)
{
    if (!CanMakePixmaps())
        return false;
    if (size == 0) {
        *out = QVariant(QPixmap());
        return true;
    }
    QByteArray bytes = QByteArray::fromRawData(p, size);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "png");
    reader.setDecideFormatFromContent(false);
    const QSize imageSize = reader.size();
    if (!imageSize.isValid() || imageSize.isEmpty())
        return false;
    const qint64 pixelBytes = qint64(imageSize.width()) * qint64(imageSize.height()) * 4;
    if (pixelBytes > kPixmapBytesPerPayloadByte * size + kPixmapAllowanceBytes)
        return false;
    QImage image;
    if (!reader.read(&image) || image.isNull())
        return false;
    *out = QVariant(QPixmap::fromImage(image));
    return true;
}

template <typename T> void RegisterTextForm()
{
    const int id = qMetaTypeId<T>();
    if (!CVXVariantMapTree::HasRegisteredTextStreamOperator(id))
        CVXVariantMapTree::RegisterTextStreamOperator(id, &TVXVariantToStringHelper<T>);
}

} // namespace

void RegisterStateTreeTypes()
{
    static const bool s_registered = [] {
        // The value types of the table whose binary forms the core already knows: only their
        // text forms are UIFrame's.
        RegisterTextForm<int>();
        RegisterTextForm<bool>();
        RegisterTextForm<qulonglong>();
        RegisterTextForm<qlonglong>();
        RegisterTextForm<QString>();
        RegisterTextForm<QByteArray>();
        RegisterTextForm<QRect>();
        RegisterTextForm<QStringList>();
        RegisterTextForm<QList<QString>>();
        RegisterTextForm<QVector<QString>>();
        RegisterTextForm<QVector<qlonglong>>();
        RegisterTextForm<QMap<QString, int>>();
        RegisterTextForm<CVXVariantMapTree>();
        RegisterTextForm<QVector<CVXVariantMapTree>>();

        CVXVariantMapTree::RegisterValueCodec(QMetaType::QPixmap, &WritePixmap, &ReadPixmap);
        RegisterTextForm<QPixmap>();

        const int boxTypeId = qRegisterMetaType<VXPanelBoxType>("VXPanelBoxType");
        qRegisterMetaTypeStreamOperators<VXPanelBoxType>("VXPanelBoxType");
        CVXVariantMapTree::RegisterValueCodec(boxTypeId, &WriteBoxType, &ReadBoxType);
        RegisterTextForm<VXPanelBoxType>();

        // The gallery's tab page: its stream form is one qint32 and reads no counts, so Qt's
        // stream operators are safe for any input and it needs no codec.
        using TabPage = CVXPanelLayoutPage::TabPage;
        const int tabPageId = qRegisterMetaType<TabPage>("CVXPanelLayoutPage::TabPage");
        qRegisterMetaTypeStreamOperators<TabPage>("CVXPanelLayoutPage::TabPage");
        CVXVariantMapTree::MarkDataStreamOperatorRegistered(tabPageId);
        RegisterTextForm<TabPage>();

        // The other UIFrame value types join here as they are written: the jump page-type enum
        // and the expanded-region layout record.
        return true;
    }();
    Q_UNUSED(s_registered);
}

namespace {
// At library load, so that trees parsed before any typed access already know these types.
const bool s_registeredAtLoad = (RegisterStateTreeTypes(), true);
} // namespace
