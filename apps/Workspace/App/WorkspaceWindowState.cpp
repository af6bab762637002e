#include "apps/Workspace/App/WorkspaceWindowState.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/ProductPath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <limits>

namespace vx_ws {

namespace {

// Window coordinates beyond these belong to no screen.
constexpr double kMaxCoordinate = 100000.0;
constexpr double kMinSide = 100.0;

const QString kVersionKey = QStringLiteral("version");
const QString kGeometryKey = QStringLiteral("geometry");
const QString kMaximizedKey = QStringLiteral("maximized");
const QString kFrameKey = QStringLiteral("currentFrame");
const QString kWatchStockKey = QStringLiteral("watchListStock");
const QString kPagesKey = QStringLiteral("pages");
const QString kCurrentPageKey = QStringLiteral("currentPage");
const QString kShortcutsKey = QStringLiteral("shortcuts");
const QString kKindKey = QStringLiteral("kind");
const QString kTitleKey = QStringLiteral("title");
const QString kGalleryTabKey = QStringLiteral("galleryTab");
const QString kLayoutKeyKey = QStringLiteral("layoutKey");
const QString kCanvasKey = QStringLiteral("canvas");
const QString kUnsavedKey = QStringLiteral("unsaved");

// A JSON number that is an integer within [min, max].
bool ReadInt(const QJsonValue& v, double min, double max, double* out)
{
    if (!v.isDouble())
        return false;
    const double d = v.toDouble();
    if (d != static_cast<double>(static_cast<long long>(d)) || d < min || d > max)
        return false;
    *out = d;
    return true;
}

// Layout keys and stock ids exceed a double's exact integers: they travel as decimal strings.
bool ReadU64String(const QJsonValue& v, unsigned long long* out)
{
    if (!v.isString())
        return false;
    const QString s = v.toString();
    if (s.isEmpty() || s.size() > 20)
        return false;
    for (const QChar c : s) {
        if (!c.isDigit())
            return false;
    }
    bool ok = false;
    *out = s.toULongLong(&ok);
    return ok;
}

bool ReadGeometry(const QJsonValue& v, QRect* out, QString* error)
{
    if (v.isUndefined() || v.isNull()) {
        *out = QRect();
        return true;
    }
    const QJsonArray a = v.toArray();
    if (!v.isArray() || a.size() != 4) {
        *error = QStringLiteral("geometry is not [x, y, width, height]");
        return false;
    }
    double x = 0, y = 0, w = 0, h = 0;
    if (!ReadInt(a[0], -kMaxCoordinate, kMaxCoordinate, &x) ||
        !ReadInt(a[1], -kMaxCoordinate, kMaxCoordinate, &y) || !ReadInt(a[2], kMinSide, kMaxCoordinate, &w) ||
        !ReadInt(a[3], kMinSide, kMaxCoordinate, &h)) {
        *error = QStringLiteral("geometry out of range");
        return false;
    }
    *out = QRect(static_cast<int>(x), static_cast<int>(y), static_cast<int>(w), static_cast<int>(h));
    return true;
}

bool ReadPage(const QJsonValue& v, int index, CVXWorkspaceWindowState::Page* page, QString* error)
{
    const QString where = QStringLiteral("page %1: ").arg(index);
    if (!v.isObject()) {
        *error = where + QStringLiteral("not an object");
        return false;
    }
    const QJsonObject o = v.toObject();
    const QString kind = o.value(kKindKey).toString();
    const QJsonValue title = o.value(kTitleKey);
    if (!title.isString() || title.toString().size() > CVXWorkspaceWindowState::kMaxTitleLength) {
        *error = where + QStringLiteral("bad title");
        return false;
    }
    page->title = title.toString();
    if (kind == QLatin1String("gallery")) {
        page->kind = CVXWorkspaceWindowState::PageKind::Gallery;
        double tab = 0;
        if (!ReadInt(o.value(kGalleryTabKey), 0, 2, &tab)) {
            *error = where + QStringLiteral("bad gallery tab");
            return false;
        }
        page->galleryTab = static_cast<int>(tab);
        return true;
    }
    if (kind != QLatin1String("canvas")) {
        *error = where + QStringLiteral("unknown kind '%1'").arg(kind);
        return false;
    }
    page->kind = CVXWorkspaceWindowState::PageKind::Canvas;
    if (!ReadU64String(o.value(kLayoutKeyKey), &page->layoutKey)) {
        *error = where + QStringLiteral("bad layout key");
        return false;
    }
    const QJsonValue unsaved = o.value(kUnsavedKey);
    if (!unsaved.isUndefined() && !unsaved.isBool()) {
        *error = where + QStringLiteral("unsaved is not a boolean");
        return false;
    }
    page->unsaved = unsaved.toBool(false);
    const QJsonValue canvas = o.value(kCanvasKey);
    if (!canvas.isString()) {
        *error = where + QStringLiteral("no canvas record");
        return false;
    }
    const QByteArray encoded = canvas.toString().toLatin1();
    const auto decoded = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        *error = where + QStringLiteral("canvas record is not base64");
        return false;
    }
    if (!page->canvas.ParseFromQByteArray(*decoded)) {
        *error = where + QStringLiteral("canvas record does not parse");
        return false;
    }
    return true;
}

} // namespace

bool CVXWorkspaceWindowState::IsKnownFrame(unsigned int key)
{
    return key == TabFrameKey_PanelWorkspace || key == TabFrameKey_WatchList || key == TabFrameKey_Account;
}

QByteArray CVXWorkspaceWindowState::ToJson() const
{
    QJsonObject root;
    root.insert(kVersionKey, kVersion);
    if (!geometry.isNull())
        root.insert(kGeometryKey,
                    QJsonArray{geometry.x(), geometry.y(), geometry.width(), geometry.height()});
    root.insert(kMaximizedKey, maximized);
    root.insert(kFrameKey, static_cast<double>(currentFrame));
    root.insert(kWatchStockKey, QString::number(watchListStockId));
    QJsonArray pageArray;
    for (const Page& page : pages) {
        QJsonObject o;
        o.insert(kTitleKey, page.title);
        if (page.kind == PageKind::Gallery) {
            o.insert(kKindKey, QStringLiteral("gallery"));
            o.insert(kGalleryTabKey, page.galleryTab);
        } else {
            o.insert(kKindKey, QStringLiteral("canvas"));
            o.insert(kLayoutKeyKey, QString::number(page.layoutKey));
            o.insert(kCanvasKey, QString::fromLatin1(page.canvas.SerializeAsQByteArray().toBase64()));
            o.insert(kUnsavedKey, page.unsaved);
        }
        pageArray.append(o);
    }
    root.insert(kPagesKey, pageArray);
    root.insert(kCurrentPageKey, currentPage);
    root.insert(kShortcutsKey, QJsonArray::fromStringList(shortcuts));
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

bool CVXWorkspaceWindowState::FromJson(const QByteArray& bytes, CVXWorkspaceWindowState* out, QString* error)
{
    QString why;
    const auto fail = [&why, error](const QString& reason) {
        why = reason;
        if (error)
            *error = why;
        return false;
    };
    if (bytes.size() > kMaxFileSize)
        return fail(QStringLiteral("file too large"));
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(bytes, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return fail(QStringLiteral("not JSON: ") + parseError.errorString());
    if (!doc.isObject())
        return fail(QStringLiteral("not a JSON object"));
    const QJsonObject root = doc.object();

    CVXWorkspaceWindowState state;
    double number = 0;
    if (!ReadInt(root.value(kVersionKey), 1, std::numeric_limits<int>::max(), &number))
        return fail(QStringLiteral("no version"));
    if (number > kVersion)
        return fail(QStringLiteral("written by a newer version (%1)").arg(number));
    if (!ReadGeometry(root.value(kGeometryKey), &state.geometry, &why))
        return fail(why);
    const QJsonValue maximized = root.value(kMaximizedKey);
    if (!maximized.isUndefined() && !maximized.isBool())
        return fail(QStringLiteral("maximized is not a boolean"));
    state.maximized = maximized.toBool(false);
    if (!ReadInt(root.value(kFrameKey), 0, 0xffffffffu, &number) ||
        !IsKnownFrame(static_cast<unsigned int>(number)))
        return fail(QStringLiteral("unknown current frame"));
    state.currentFrame = static_cast<EnVXTabFrameKey>(static_cast<unsigned int>(number));
    const QJsonValue stock = root.value(kWatchStockKey);
    if (!stock.isUndefined() && !ReadU64String(stock, &state.watchListStockId))
        return fail(QStringLiteral("bad watch-list security"));

    const QJsonValue pagesValue = root.value(kPagesKey);
    if (!pagesValue.isArray())
        return fail(QStringLiteral("no page list"));
    const QJsonArray pageArray = pagesValue.toArray();
    if (pageArray.size() > kMaxPages)
        return fail(QStringLiteral("too many pages (%1)").arg(pageArray.size()));
    for (int i = 0; i < pageArray.size(); ++i) {
        Page page;
        if (!ReadPage(pageArray.at(i), i, &page, &why))
            return fail(why);
        state.pages.append(page);
    }
    const double lastPage = state.pages.isEmpty() ? 0 : state.pages.size() - 1;
    if (!ReadInt(root.value(kCurrentPageKey), 0, lastPage, &number))
        return fail(QStringLiteral("current page out of range"));
    state.currentPage = static_cast<int>(number);

    const QJsonValue shortcuts = root.value(kShortcutsKey);
    if (!shortcuts.isUndefined()) {
        const QJsonArray list = shortcuts.toArray();
        if (!shortcuts.isArray() || list.size() > kMaxShortcuts)
            return fail(QStringLiteral("bad shortcut list"));
        for (const QJsonValue& v : list) {
            if (!v.isString() || v.toString().isEmpty() || v.toString().size() > kMaxTitleLength)
                return fail(QStringLiteral("bad shortcut id"));
            state.shortcuts.append(v.toString());
        }
    }
    if (out)
        *out = state;
    return true;
}

QString CVXWorkspaceWindowState::FilePath(unsigned long long userId)
{
    return QDir(core::product_path::GetUserFolder(userId))
        .filePath(QStringLiteral("WorkspaceWindowState.json"));
}

QString CVXWorkspaceWindowState::SetAsidePath(const QString& path)
{
    QString candidate = path + QStringLiteral(".corrupt");
    for (int n = 1; QFileInfo::exists(candidate); ++n)
        candidate = path + QStringLiteral(".%1.corrupt").arg(n);
    return candidate;
}

CVXWorkspaceWindowState::LoadResult CVXWorkspaceWindowState::Load(const QString& path,
                                                                  CVXWorkspaceWindowState* out)
{
    QFile file(path);
    if (!file.exists())
        return LoadResult::Missing;
    QString reason;
    if (!file.open(QIODevice::ReadOnly)) {
        reason = file.errorString();
    } else if (file.size() > kMaxFileSize) {
        reason = QStringLiteral("file too large");
    } else {
        const QByteArray bytes = file.readAll();
        file.close();
        if (FromJson(bytes, out, &reason))
            return LoadResult::Loaded;
    }
    file.close();
    const QString aside = SetAsidePath(path);
    if (QFile::rename(path, aside)) {
        VXLOG_WARN("CVXWorkspaceWindowState::Load: {} is unreadable ({}); kept as {}", path, reason, aside);
    } else {
        VXLOG_ERROR("CVXWorkspaceWindowState::Load: {} is unreadable ({}) and could not be set aside", path,
                    reason);
    }
    return LoadResult::SetAside;
}

bool CVXWorkspaceWindowState::Save(const CVXWorkspaceWindowState& state, const QString& path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        VXLOG_WARN("CVXWorkspaceWindowState::Save: cannot write {}: {}", path, file.errorString());
        return false;
    }
    const QByteArray bytes = state.ToJson();
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        VXLOG_WARN("CVXWorkspaceWindowState::Save: writing {} failed: {}", path, file.errorString());
        file.cancelWriting();
        return false;
    }
    return true;
}

} // namespace vx_ws
