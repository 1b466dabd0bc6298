#pragma once

#include "stores/settings/Registry.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

/// A typed value of the settings. Unknown: of a type that a later version has made.
struct SettingsValue
{
    RegistryType type = RegistryType::Unknown;
    QString text;     ///< String and ExpandString
    int number = 0;   ///< Integer
    QByteArray bytes; ///< Binary
};

/// The content of the settings file: keys by path, in each key values by name. Case of paths and names is kept and does
/// not count. What it does not understand stays in it. No disk.
class SettingsFile
{
public:
    /// An empty one, as on a first run.
    SettingsFile();
    /// None if the bytes are no settings: not JSON, cut short, or of another shape.
    static std::optional<SettingsFile> Parse(const QByteArray &bytes);
    QByteArray ToBytes() const;

    /// Paths are parted by backslashes; leading and trailing ones do not count. A key exists also when one below does.
    bool HasKey(const QString &path) const;
    /// Nothing happens if there is one.
    void AddKey(const QString &path);

    /// None if there is no such value.
    std::optional<SettingsValue> Value(const QString &path, const QString &name) const;
    /// Makes the key if need be. An existing value keeps the spelling of its name and changes its type.
    void SetValue(const QString &path, const QString &name, const SettingsValue &value);

    /// The path as it is stored: single backslashes, none at the ends.
    static QString NormalPath(const QString &path);

private:
    QJsonObject m_root;
};
