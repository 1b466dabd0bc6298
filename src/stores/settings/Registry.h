#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <stdexcept>

/// The settings' door to the platform: keys with typed values, as in Windows' registry. One key is open at a time. On
/// Windows it is the real registry, elsewhere JsonRegistry.

enum class RegistryRoot { CurrentUser, LocalMachine };
enum class RegistryType { Unknown = 0, String = 1, ExpandString = 2, Integer = 3, Binary = 4 };

/// A failed read or write. Text() is the system's message.
class RegistryError : public std::runtime_error
{
public:
    explicit RegistryError(const QString &text) : std::runtime_error(text.toUtf8().constData()), m_text(text) {}
    const QString &Text() const { return m_text; }

private:
    QString m_text;
};

class TRegistry
{
public:
    virtual ~TRegistry() = default;

    RegistryRoot RootKey = RegistryRoot::CurrentUser;

    /// Opens a key for reading and writing; with `create` a missing key is made at once. False when it cannot be
    /// opened. Paths are separated by backslashes; leading and trailing ones, and case, are ignored.
    virtual bool OpenKey(const QString &path, bool create) = 0;
    virtual bool OpenKeyReadOnly(const QString &path) = 0;
    virtual void CloseKey() = 0;
    /// The system's message for the last failure of OpenKey.
    virtual QString LastErrorText() const = 0;

    /// Throw RegistryError when the value is missing or of another type.
    virtual int ReadInteger(const QString &name) const = 0;
    bool ReadBool(const QString &name) const { return ReadInteger(name) != 0; }
    /// Empty for a missing or empty value; throws RegistryError for a value of another type.
    virtual QString ReadString(const QString &name) const = 0;
    virtual RegistryType GetDataType(const QString &name) const = 0;
    /// Size in bytes of a binary value; -1 for a missing one.
    virtual int GetDataSize(const QString &name) const = 0;
    virtual QByteArray ReadBinaryData(const QString &name) const = 0;

    /// Each writes one value at once; throws RegistryError when it cannot be stored.
    virtual void WriteInteger(const QString &name, int value) = 0;
    void WriteBool(const QString &name, bool value) { WriteInteger(name, value ? 1 : 0); }
    virtual void WriteString(const QString &name, const QString &value) = 0;
    virtual void WriteExpandString(const QString &name, const QString &value) = 0;
    virtual void WriteBinaryData(const QString &name, const QByteArray &bytes) = 0;
};

/// The registry of this machine and user.
std::unique_ptr<TRegistry> CreateSystemRegistry();
