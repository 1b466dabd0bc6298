#pragma once

#include "stores/SettingsDisk.h"

/// The real disk whose n-th changing call fails (from 1; 0 never), as on a full disk. Once or for good.
class FailingDisk : public SettingsDisk
{
public:
    enum class Lasting { Once, ForGood };

    explicit FailingDisk(int failAt = 0, Lasting lasting = Lasting::Once, SettingsDisk &real = RealSettingsDisk())
        : m_failAt(failAt), m_lasting(lasting), m_real(real)
    {}
    /// Whether the failure happened.
    bool Fired() const { return m_fired; }
    /// What Now() says; the real time if invalid.
    QDateTime now;
    bool isUnreadable = false;

    ReadResult Read(const QString &path, QByteArray &bytes, QString &errorText) override
    {
        return isUnreadable ? ReadResult::Failed : m_real.Read(path, bytes, errorText);
    }
    bool MayWrite(const QString &path, QString &errorText) override { return m_real.MayWrite(path, errorText); }
    QStringList FileNames(const QString &folder) override { return m_real.FileNames(folder); }
    bool MakeFolder(const QString &folder, QString &errorText) override
    {
        return !Fails(errorText) && m_real.MakeFolder(folder, errorText);
    }
    bool WriteAtomically(const QString &path, const QByteArray &bytes, QString &errorText) override
    {
        return !Fails(errorText) && m_real.WriteAtomically(path, bytes, errorText);
    }
    bool Rename(const QString &from, const QString &to, QString &errorText) override
    {
        return !Fails(errorText) && m_real.Rename(from, to, errorText);
    }
    std::unique_ptr<Lock> Acquire(const QString &lockFile, std::chrono::milliseconds patience,
                                  QString &errorText) override
    {
        return Fails(errorText) ? nullptr : m_real.Acquire(lockFile, patience, errorText);
    }
    QDateTime Now() override { return now.isValid() ? now : m_real.Now(); }

private:
    bool Fails(QString &errorText)
    {
        ++m_calls;
        const bool fails = m_failAt > 0 && (m_lasting == Lasting::Once ? m_calls == m_failAt : m_calls >= m_failAt);
        m_fired |= fails;
        if (fails)
            errorText = u"No space left on device"_qs;
        return fails;
    }

    int m_failAt;
    Lasting m_lasting;
    SettingsDisk &m_real;
    int m_calls = 0;
    bool m_fired = false;
};
