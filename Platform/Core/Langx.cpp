#include "Platform/Core/Langx.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/ProductPath.h"

#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QReadWriteLock>
#include <QRegularExpression>

#include <optional>

namespace core::langx {
namespace {

const QString kChinese = QStringLiteral("zh_CN");

struct State
{
    QReadWriteLock lock;
    QString language = kChinese;
    QHash<int, QString> texts;
};

State& S()
{
    static State s;
    return s;
}

bool IsValidLanguageName(const QString& language)
{
    // The name becomes part of a file path: no separators, no "..".
    static const QRegularExpression pattern(QStringLiteral("^[A-Za-z]{2,8}([_-][A-Za-z0-9]{1,8})*$"));
    return pattern.match(language).hasMatch();
}

// Reads and checks the whole catalogue; nothing is applied unless every entry is sound.
std::optional<QHash<int, QString>> ReadCatalogue(const QString& filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        VXLOG_ERROR("langx::LoadCatalogue: cannot open {}: {}", filePath, file.errorString());
        return std::nullopt;
    }
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError) {
        VXLOG_ERROR("langx::LoadCatalogue: {} is not JSON at offset {}: {}", filePath, error.offset,
                    error.errorString());
        return std::nullopt;
    }
    if (!doc.isObject()) {
        VXLOG_ERROR("langx::LoadCatalogue: {} is not a JSON object", filePath);
        return std::nullopt;
    }
    const QJsonObject object = doc.object();
    QHash<int, QString> texts;
    texts.reserve(object.size());
    for (auto it = object.begin(); it != object.end(); ++it) {
        bool ok = false;
        const int id = it.key().toInt(&ok);
        if (!ok) {
            VXLOG_ERROR("langx::LoadCatalogue: {}: key \"{}\" is not a text id", filePath, it.key());
            return std::nullopt;
        }
        if (!it.value().isString()) {
            VXLOG_ERROR("langx::LoadCatalogue: {}: text {} is not a string", filePath, it.key());
            return std::nullopt;
        }
        texts.insert(id, it.value().toString());
    }
    return texts;
}

} // namespace

bool SetLanguage(const QString& language)
{
    if (language == kChinese) {
        QWriteLocker locker(&S().lock);
        S().language = kChinese;
        S().texts.clear();
        return true;
    }
    if (!IsValidLanguageName(language)) {
        VXLOG_ERROR("langx::SetLanguage: \"{}\" is not a language name", language);
        return false;
    }
    const QString path =
        product_path::GetResourceFolder() + QStringLiteral("/lang/") + language + QStringLiteral(".json");
    return LoadCatalogue(language, path);
}

QString GetLanguage()
{
    QReadLocker locker(&S().lock);
    return S().language;
}

bool LoadCatalogue(const QString& language, const QString& filePath)
{
    if (language.isEmpty()) {
        VXLOG_ERROR("langx::LoadCatalogue: empty language name for {}", filePath);
        return false;
    }
    auto texts = ReadCatalogue(filePath);
    if (!texts) {
        VXLOG_ERROR("langx::LoadCatalogue: catalogue for \"{}\" refused, keeping \"{}\"", language,
                    GetLanguage());
        return false;
    }
    QWriteLocker locker(&S().lock);
    S().language = language;
    S().texts = std::move(*texts);
    return true;
}

QString tr(int id, const QString& fallback)
{
    QReadLocker locker(&S().lock);
    auto it = S().texts.constFind(id);
    return it == S().texts.constEnd() ? fallback : *it;
}

QString tr(int id, const char* fallbackUtf8)
{
    return tr(id, QString::fromUtf8(fallbackUtf8));
}

void ResetForTest()
{
    QWriteLocker locker(&S().lock);
    S().language = kChinese;
    S().texts.clear();
}

} // namespace core::langx
