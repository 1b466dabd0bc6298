#include "stores/settings/JsonRegistry.h"

#include "stores/settings/AutostartEntry.h"
#include "stores/settings/Options.h"

#include <cerrno>

namespace {

const QString EntrySuffix = QStringLiteral(".desktop");

QString NoSuchKeyText()
{
    return qt_error_string(ENOENT);
}

QString NotPermittedText()
{
    return qt_error_string(EACCES);
}

[[noreturn]] void FailRead(const QString &name)
{
    throw RegistryError(QStringLiteral("The settings hold no value \"%1\" of the type asked for.").arg(name));
}

/// Whether a value of the start list can have this name, which becomes a file name.
bool IsEntryName(const QString &name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && !name.contains(QChar(u'\0'));
}

} // namespace

JsonRegistry::JsonRegistry(QString settingsFolder, QString autostartFolder, SettingsDisk &disk)
    : m_settingsFolder(std::move(settingsFolder)), m_autostartFolder(std::move(autostartFolder)), m_disk(disk)
{}

JsonRegistry::Place JsonRegistry::PlaceOf(const QString &path)
{
    if (RootKey == RegistryRoot::CurrentUser)
        return m_settingsFolder.isEmpty() ? Place::None : Place::Settings;
    const QString startList = SettingsFile::NormalPath(QString::fromUtf16(RunKey));
    const bool isStartList = SettingsFile::NormalPath(path).compare(startList, Qt::CaseInsensitive) == 0;
    return isStartList && !m_autostartFolder.isEmpty() ? Place::Autostart : Place::None;
}

bool JsonRegistry::Refuse(const QString &text)
{
    CloseKey();
    m_lastErrorText = text;
    return false;
}

bool JsonRegistry::OpenKey(const QString &path, bool create)
{
    CloseKey();
    switch (PlaceOf(path)) {
    case Place::Settings:
        return OpenSettings(path, create);
    case Place::Autostart:
        return OpenAutostart();
    case Place::None:
        break;
    }
    return Refuse(NotPermittedText());
}

bool JsonRegistry::OpenSettings(const QString &path, bool create)
{
    QString errorText;
    if (create && !m_disk.MakeFolder(m_settingsFolder, errorText))
        return Refuse(errorText);
    if (!m_disk.MayWrite(SettingsPath(), errorText) || !m_disk.MayWrite(LockPath(), errorText))
        return Refuse(errorText);
    const auto file = Load(errorText);
    if (!file)
        return Refuse(errorText);
    if (!file->HasKey(path)) {
        if (!create)
            return Refuse(NoSuchKeyText());
        if (!Change([&path](SettingsFile &fresh) { fresh.AddKey(path); }, errorText))
            return Refuse(errorText);
    }
    m_place = Place::Settings;
    m_key = path;
    m_isWritable = true;
    return true;
}

bool JsonRegistry::OpenAutostart()
{
    QString errorText;
    if (!m_disk.MakeFolder(m_autostartFolder, errorText) ||
        !m_disk.MayWrite(m_autostartFolder + QStringLiteral("/new") + EntrySuffix, errorText))
        return Refuse(errorText);
    m_place = Place::Autostart;
    m_isWritable = true;
    return true;
}

bool JsonRegistry::OpenKeyReadOnly(const QString &path)
{
    CloseKey();
    const Place place = PlaceOf(path);
    if (place == Place::None)
        return Refuse(NoSuchKeyText());
    if (place == Place::Settings) {
        QString errorText;
        const auto file = Load(errorText);
        if (!file)
            return Refuse(errorText);
        if (!file->HasKey(path))
            return Refuse(NoSuchKeyText());
    }
    m_place = place;
    m_key = path;
    return true;
}

void JsonRegistry::CloseKey()
{
    m_place = Place::None;
    m_isWritable = false;
    m_key.clear();
}

std::optional<SettingsFile> JsonRegistry::ReadOnce(bool &isDamaged, QString &errorText) const
{
    QByteArray bytes;
    switch (m_disk.Read(SettingsPath(), bytes, errorText)) {
    case SettingsDisk::ReadResult::Missing:
        return SettingsFile();
    case SettingsDisk::ReadResult::Failed:
        return std::nullopt;
    case SettingsDisk::ReadResult::Read:
        break;
    }
    auto file = SettingsFile::Parse(bytes);
    isDamaged = !file;
    return file;
}

std::optional<SettingsFile> JsonRegistry::Load(QString &errorText) const
{
    bool isDamaged = false;
    if (auto file = ReadOnce(isDamaged, errorText); !isDamaged)
        return file;

    // If it can't be renamed, the settings are still as on a first run; only writing fails.
    QString ignored;
    if (const auto lock = m_disk.Acquire(LockPath(), LockPatience, ignored)) {
        if (auto file = LoadLocked(ignored))
            return file;
    }
    return SettingsFile();
}

std::optional<SettingsFile> JsonRegistry::LoadLocked(QString &errorText) const
{
    // Again, because another copy may have repaired it while this one waited.
    bool isDamaged = false;
    if (auto file = ReadOnce(isDamaged, errorText); !isDamaged)
        return file;
    if (!SetAside(errorText))
        return std::nullopt;
    return SettingsFile();
}

bool JsonRegistry::SetAside(QString &errorText) const
{
    const QString base = m_settingsFolder + QStringLiteral("/registry.damaged-") +
                         m_disk.Now().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QStringList present = m_disk.FileNames(m_settingsFolder);
    QString target = base + QStringLiteral(".json");
    for (int number = 2; present.contains(target.mid(m_settingsFolder.size() + 1)); ++number)
        target = QStringLiteral("%1-%2.json").arg(base).arg(number);
    return m_disk.Rename(SettingsPath(), target, errorText);
}

bool JsonRegistry::Change(const std::function<void(SettingsFile &)> &change, QString &errorText) const
{
    const auto lock = m_disk.Acquire(LockPath(), LockPatience, errorText);
    if (!lock)
        return false;
    auto file = LoadLocked(errorText);
    if (!file)
        return false;
    const QByteArray before = file->ToBytes();
    change(*file);
    const QByteArray after = file->ToBytes();
    // A start stores many unchanged values, and each write to the disk is slow.
    return after == before || m_disk.WriteAtomically(SettingsPath(), after, errorText);
}

std::optional<SettingsValue> JsonRegistry::Value(const QString &name) const
{
    if (m_place == Place::Autostart)
        return AutostartValue(name);
    QString errorText;
    const auto file = m_place == Place::Settings ? Load(errorText) : std::nullopt;
    return file ? file->Value(m_key, name) : std::nullopt;
}

SettingsValue JsonRegistry::ValueOfType(RegistryType type, const QString &name) const
{
    auto value = Value(name);
    if (!value || value->type != type)
        FailRead(name);
    return *value;
}

int JsonRegistry::ReadInteger(const QString &name) const
{
    return ValueOfType(RegistryType::Integer, name).number;
}

QString JsonRegistry::ReadString(const QString &name) const
{
    const auto value = Value(name);
    if (value && value->type != RegistryType::String && value->type != RegistryType::ExpandString)
        FailRead(name);
    return value ? value->text : QString();
}

RegistryType JsonRegistry::GetDataType(const QString &name) const
{
    const auto value = Value(name);
    return value ? value->type : RegistryType::Unknown;
}

int JsonRegistry::GetDataSize(const QString &name) const
{
    const auto value = Value(name);
    return value && value->type == RegistryType::Binary ? static_cast<int>(value->bytes.size()) : -1;
}

QByteArray JsonRegistry::ReadBinaryData(const QString &name) const
{
    return ValueOfType(RegistryType::Binary, name).bytes;
}

void JsonRegistry::Write(const QString &name, const SettingsValue &value)
{
    if (!m_isWritable)
        throw RegistryError(NotPermittedText());
    if (m_place == Place::Autostart) {
        WriteAutostart(name, value);
        return;
    }
    QString errorText;
    if (!Change([&](SettingsFile &file) { file.SetValue(m_key, name, value); }, errorText))
        throw RegistryError(errorText);
}

void JsonRegistry::WriteInteger(const QString &name, int value)
{
    SettingsValue stored;
    stored.type = RegistryType::Integer;
    stored.number = value;
    Write(name, stored);
}

void JsonRegistry::WriteString(const QString &name, const QString &value)
{
    SettingsValue stored;
    stored.type = RegistryType::String;
    stored.text = value;
    Write(name, stored);
}

void JsonRegistry::WriteExpandString(const QString &name, const QString &value)
{
    SettingsValue stored;
    stored.type = RegistryType::ExpandString;
    stored.text = value;
    Write(name, stored);
}

void JsonRegistry::WriteBinaryData(const QString &name, const QByteArray &bytes)
{
    SettingsValue stored;
    stored.type = RegistryType::Binary;
    stored.bytes = bytes;
    Write(name, stored);
}

QString JsonRegistry::AutostartFile(const QString &name) const
{
    const QStringList names = m_disk.FileNames(m_autostartFolder);
    for (const QString &present : names) {
        if (present.compare(name + EntrySuffix, Qt::CaseInsensitive) == 0)
            return m_autostartFolder + QLatin1Char('/') + present;
    }
    return m_autostartFolder + QLatin1Char('/') + name + EntrySuffix;
}

std::optional<SettingsValue> JsonRegistry::AutostartValue(const QString &name) const
{
    QByteArray bytes;
    QString errorText;
    if (!IsEntryName(name) || m_disk.Read(AutostartFile(name), bytes, errorText) != SettingsDisk::ReadResult::Read)
        return std::nullopt;
    const AutostartEntry entry = ReadAutostartFile(bytes);
    SettingsValue value;
    value.type = entry.isExpandable ? RegistryType::ExpandString : RegistryType::String;
    value.text = entry.command;
    return value;
}

void JsonRegistry::WriteAutostart(const QString &name, const SettingsValue &value)
{
    // The value becomes a file that other programs read; it can only be a command.
    const bool isCommand = value.type == RegistryType::String || value.type == RegistryType::ExpandString;
    if (!isCommand || !IsEntryName(name))
        throw RegistryError(qt_error_string(EINVAL));
    QString errorText;
    AutostartEntry entry{value.text, value.type == RegistryType::ExpandString, {}};
    // A program installed for all users is started through its launcher, and not at all once that is gone.
    QByteArray note;
    if (const QString place = LauncherNoteOf(value.text);
        !place.isEmpty() && m_disk.Read(place, note, errorText) == SettingsDisk::ReadResult::Read)
        entry.launcher = ReadLauncherNote(note);
    if (!m_disk.WriteAtomically(AutostartFile(name), AutostartFileOf(name, entry), errorText))
        throw RegistryError(errorText);
}
