#pragma once

#include "stores/settings/Registry.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

/// A typed value of the settings. Unknown: of a later version's type.
struct SettingsValue
{
    RegistryType type = RegistryType::Unknown;
    QString text;     ///< String and ExpandString
    int number = 0;   ///< Integer
    QByteArray bytes; ///< Binary
};

/// The content of the settings file: keys by path, in each key values by name. Keeps the case of paths and names but
/// ignores it in look-ups. Keeps unknown content. Does not access the disk.
class SettingsFile
{
public:
    /// An empty one, as on a first run.
    SettingsFile();
    /// None if the bytes are not settings: not JSON, truncated, or of another structure.
    static std::optional<SettingsFile> Parse(const QByteArray &bytes);
    QByteArray ToBytes() const;

    /// Paths are separated by backslashes; leading and trailing ones are ignored. A key also exists if one below it
    /// does.
    bool HasKey(const QString &path) const;
    /// Nothing happens if there is one.
    void AddKey(const QString &path);

    /// None if there is no such value.
    std::optional<SettingsValue> Value(const QString &path, const QString &name) const;
    /// Makes the key if necessary. An existing value keeps the spelling of its name and changes its type.
    void SetValue(const QString &path, const QString &name, const SettingsValue &value);

    /// The path as it is stored: single backslashes, none at the ends.
    static QString NormalPath(const QString &path);

private:
    QJsonObject m_root;
};
