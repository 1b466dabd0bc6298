#pragma once

#include "stores/settings/Registry.h"
#include "stores/settings/SettingsDisk.h"
#include "stores/settings/SettingsFile.h"

#include <chrono>
#include <functional>

/// The registry of a system without one. The current user's keys are in one file, registry.json; of the machine's keys
/// only the start list exists, as the desktop's autostart folder.
/// Nothing is cached: each read reads the file, each write reads it again under a lock and changes one value, so that
/// no copy of the program undoes another's changes. A damaged file is renamed with the time in its name, and the
/// settings are then as on a first run.
class JsonRegistry : public TRegistry
{
public:
    /// `settingsFolder` is for registry.json and may be missing. Empty names mean a user without a home: then nothing
    /// can be read or written. The disk must outlive the registry.
    JsonRegistry(QString settingsFolder, QString autostartFolder, SettingsDisk &disk = RealSettingsDisk());

    /// How long a write waits for another copy of the program.
    static constexpr std::chrono::milliseconds LockPatience{500};

    bool OpenKey(const QString &path, bool create) override;
    bool OpenKeyReadOnly(const QString &path) override;
    void CloseKey() override;
    QString LastErrorText() const override { return m_lastErrorText; }

    int ReadInteger(const QString &name) const override;
    QString ReadString(const QString &name) const override;
    RegistryType GetDataType(const QString &name) const override;
    int GetDataSize(const QString &name) const override;
    QByteArray ReadBinaryData(const QString &name) const override;

    void WriteInteger(const QString &name, int value) override;
    void WriteString(const QString &name, const QString &value) override;
    void WriteExpandString(const QString &name, const QString &value) override;
    void WriteBinaryData(const QString &name, const QByteArray &bytes) override;

private:
    enum class Place { None, Settings, Autostart };

    Place PlaceOf(const QString &path);
    bool OpenSettings(const QString &path, bool create);
    bool OpenAutostart();
    bool Refuse(const QString &text);

    /// The file's settings, empty ones if there is none. None if it can't be read or is damaged; only in the latter
    /// case sets `isDamaged`.
    std::optional<SettingsFile> ReadOnce(bool &isDamaged, QString &errorText) const;
    /// The current settings; renames a damaged file. None, with the reason, if they can't be read.
    std::optional<SettingsFile> Load(QString &errorText) const;
    /// The same with the lock already held.
    std::optional<SettingsFile> LoadLocked(QString &errorText) const;
    bool SetAside(QString &errorText) const;
    /// Reads, changes and writes under the lock.
    bool Change(const std::function<void(SettingsFile &)> &change, QString &errorText) const;

    std::optional<SettingsValue> Value(const QString &name) const;
    /// Throws RegistryError if there is none of that type.
    SettingsValue ValueOfType(RegistryType type, const QString &name) const;
    void Write(const QString &name, const SettingsValue &value);
    std::optional<SettingsValue> AutostartValue(const QString &name) const;
    void WriteAutostart(const QString &name, const SettingsValue &value);
    /// Full path of the start list's file for a value, by the spelling on the disk if there is one.
    QString AutostartFile(const QString &name) const;

    QString SettingsPath() const { return m_settingsFolder + QStringLiteral("/registry.json"); }
    QString LockPath() const { return m_settingsFolder + QStringLiteral("/registry.lock"); }

    QString m_settingsFolder;
    QString m_autostartFolder;
    SettingsDisk &m_disk;
    Place m_place = Place::None;
    bool m_isWritable = false;
    QString m_key;
    QString m_lastErrorText;
};
