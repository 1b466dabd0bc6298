#pragma once

#include "stores/settings/SettingsDisk.h"

/// The real disk whose n-th changing call fails (from 1; 0 never), as on a full disk. Once or for good.
class FailingDisk : public SettingsDisk
{
public:
    enum class Lasting { Once, ForGood };

    explicit FailingDisk(int failAt = 0, Lasting lasting = Lasting::Once) : m_failAt(failAt), m_lasting(lasting) {}
    /// Whether the failure happened.
    bool Fired() const { return m_fired; }
    /// What Now() says; the real time if invalid.
    QDateTime now;
    bool isUnreadable = false;

    ReadResult Read(const QString &path, QByteArray &bytes, QString &error) override
    {
        return isUnreadable ? ReadResult::Failed : m_real.Read(path, bytes, error);
    }
    bool MayWrite(const QString &path, QString &error) override { return m_real.MayWrite(path, error); }
    QStringList FileNames(const QString &folder) override { return m_real.FileNames(folder); }
    bool MakeFolder(const QString &path, QString &error) override
    {
        return !Fails(error) && m_real.MakeFolder(path, error);
    }
    bool WriteAtomically(const QString &path, const QByteArray &bytes, QString &error) override
    {
        return !Fails(error) && m_real.WriteAtomically(path, bytes, error);
    }
    bool Rename(const QString &from, const QString &to, QString &error) override
    {
        return !Fails(error) && m_real.Rename(from, to, error);
    }
    std::unique_ptr<Lock> Acquire(const QString &lockFile, std::chrono::milliseconds patience, QString &error) override
    {
        return Fails(error) ? nullptr : m_real.Acquire(lockFile, patience, error);
    }
    QDateTime Now() override { return now.isValid() ? now : m_real.Now(); }

private:
    bool Fails(QString &error)
    {
        ++m_calls;
        const bool fails = m_failAt > 0 && (m_lasting == Lasting::Once ? m_calls == m_failAt : m_calls >= m_failAt);
        m_fired |= fails;
        if (fails)
            error = u"No space left on device"_qs;
        return fails;
    }

    int m_failAt;
    Lasting m_lasting;
    SettingsDisk &m_real = RealSettingsDisk();
    int m_calls = 0;
    bool m_fired = false;
};
