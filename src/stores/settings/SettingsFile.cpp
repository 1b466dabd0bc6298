#include "stores/settings/SettingsFile.h"

#include <QJsonDocument>
#include <QStringList>

#include <cmath>
#include <limits>

namespace {

constexpr QLatin1StringView FormatMember("format");
constexpr QLatin1StringView KeysMember("keys");
constexpr QLatin1StringView TypeMember("type");
constexpr QLatin1StringView ValueMember("value");

constexpr QLatin1StringView StringType("string");
constexpr QLatin1StringView ExpandStringType("expandable");
constexpr QLatin1StringView IntegerType("integer");
constexpr QLatin1StringView BinaryType("binary");

/// The member's own spelling.
std::optional<QString> FindMember(const QJsonObject &object, const QString &name)
{
    if (object.contains(name))
        return name;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.key().compare(name, Qt::CaseInsensitive) == 0)
            return it.key();
    }
    return std::nullopt;
}

/// The key's own spelling; a hand-written one may have extra backslashes.
std::optional<QString> FindKey(const QJsonObject &keys, const QString &path)
{
    const QString normal = SettingsFile::NormalPath(path);
    for (auto it = keys.begin(); it != keys.end(); ++it) {
        if (SettingsFile::NormalPath(it.key()).compare(normal, Qt::CaseInsensitive) == 0)
            return it.key();
    }
    return std::nullopt;
}

std::optional<int> NumberOf(const QJsonValue &json)
{
    // Colours may be unsigned numbers of the same 32 bits.
    const double number = json.toDouble(std::numeric_limits<double>::quiet_NaN());
    const bool isWhole = std::trunc(number) == number;
    if (!isWhole || number < std::numeric_limits<int>::min() || number > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return static_cast<int>(static_cast<quint32>(static_cast<qint64>(number)));
}

/// None for an entry that no version of the program could have written.
std::optional<SettingsValue> ValueOf(const QJsonValue &entry)
{
    if (!entry.isObject() || !entry[TypeMember].isString())
        return std::nullopt;
    const QString type = entry[TypeMember].toString();
    const QJsonValue json = entry[ValueMember];
    SettingsValue value;
    if (type == StringType || type == ExpandStringType) {
        if (!json.isString())
            return std::nullopt;
        value.type = type == StringType ? RegistryType::String : RegistryType::ExpandString;
        value.text = json.toString();
    } else if (type == IntegerType) {
        const auto number = NumberOf(json);
        if (!number)
            return std::nullopt;
        value.type = RegistryType::Integer;
        value.number = *number;
    } else if (type == BinaryType) {
        const auto decoded =
            QByteArray::fromBase64Encoding(json.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (!json.isString() || decoded.decodingStatus != QByteArray::Base64DecodingStatus::Ok)
            return std::nullopt;
        value.type = RegistryType::Binary;
        value.bytes = decoded.decoded;
    }
    return value;
}

QJsonObject EntryOf(const SettingsValue &value)
{
    switch (value.type) {
    case RegistryType::String:
        return {{TypeMember, StringType}, {ValueMember, value.text}};
    case RegistryType::ExpandString:
        return {{TypeMember, ExpandStringType}, {ValueMember, value.text}};
    case RegistryType::Integer:
        return {{TypeMember, IntegerType}, {ValueMember, value.number}};
    case RegistryType::Binary:
        return {{TypeMember, BinaryType}, {ValueMember, QString::fromLatin1(value.bytes.toBase64())}};
    case RegistryType::Unknown:
        break;
    }
    return {};
}

bool IsKeyWellFormed(const QJsonValue &key)
{
    if (!key.isObject())
        return false;
    const QJsonObject values = key.toObject();
    for (const QJsonValue entry : values) {
        if (!ValueOf(entry))
            return false;
    }
    return true;
}

} // namespace

SettingsFile::SettingsFile() : m_root{{FormatMember, 1}, {KeysMember, QJsonObject()}} {}

std::optional<SettingsFile> SettingsFile::Parse(const QByteArray &bytes)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isObject() || !document[KeysMember].isObject())
        return std::nullopt;
    const QJsonObject keys = document[KeysMember].toObject();
    for (const QJsonValue key : keys) {
        if (!IsKeyWellFormed(key))
            return std::nullopt;
    }
    SettingsFile file;
    file.m_root = document.object();
    return file;
}

QByteArray SettingsFile::ToBytes() const
{
    return QJsonDocument(m_root).toJson(QJsonDocument::Indented);
}

QString SettingsFile::NormalPath(const QString &path)
{
    return path.split(QLatin1Char('\\'), Qt::SkipEmptyParts).join(QLatin1Char('\\'));
}

bool SettingsFile::HasKey(const QString &path) const
{
    const QString normal = NormalPath(path);
    const QString parent = normal + QLatin1Char('\\');
    const QJsonObject keys = m_root[KeysMember].toObject();
    if (normal.isEmpty() || FindKey(keys, normal))
        return true;
    for (auto it = keys.begin(); it != keys.end(); ++it) {
        if (NormalPath(it.key()).startsWith(parent, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

void SettingsFile::AddKey(const QString &path)
{
    if (HasKey(path))
        return;
    QJsonObject keys = m_root[KeysMember].toObject();
    keys.insert(NormalPath(path), QJsonObject());
    m_root.insert(KeysMember, keys);
}

std::optional<SettingsValue> SettingsFile::Value(const QString &path, const QString &name) const
{
    const QJsonObject keys = m_root[KeysMember].toObject();
    const auto storedPath = FindKey(keys, path);
    if (!storedPath)
        return std::nullopt;
    const QJsonObject key = keys[*storedPath].toObject();
    const auto storedName = FindMember(key, name);
    return storedName ? ValueOf(key[*storedName]) : std::nullopt;
}

void SettingsFile::SetValue(const QString &path, const QString &name, const SettingsValue &value)
{
    QJsonObject keys = m_root[KeysMember].toObject();
    const QString storedPath = FindKey(keys, path).value_or(NormalPath(path));
    QJsonObject key = keys[storedPath].toObject();
    key.insert(FindMember(key, name).value_or(name), EntryOf(value));
    keys.insert(storedPath, key);
    m_root.insert(KeysMember, keys);
}
