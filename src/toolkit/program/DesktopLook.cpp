#include "toolkit/program/DesktopLook.h"

#include "base/Colour.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QObject>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int WindowColour = 5;

} // namespace

/// The portal's settings, watched.
class PortalWatch : public QObject
{
    Q_OBJECT
public:
    PortalWatch(QObject *context, std::function<void(bool isDark)> tell) : QObject(context), m_tell(std::move(tell))
    {
        const QString service = u"org.freedesktop.portal.Desktop"_s;
        const QString path = u"/org/freedesktop/portal/desktop"_s;
        const QString settings = u"org.freedesktop.portal.Settings"_s;
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            Tell({});
            return;
        }
        // Slots are matched by the names of their types, which are not known before the first message is read.
        qRegisterMetaType<QDBusVariant>();
        bus.connect(service, path, settings, u"SettingChanged"_s, this,
                    SLOT(SettingChanged(QString, QString, QDBusVariant)));
        QDBusMessage question = QDBusMessage::createMethodCall(service, path, settings, u"Read"_s);
        question << m_group << m_setting;
        auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
            const QDBusPendingReply<QDBusVariant> reply = *answer;
            answer->deleteLater();
            Tell(reply.isError() ? QVariant() : reply.value().variant());
        });
    }

private slots:
    void SettingChanged(const QString &group, const QString &setting, const QDBusVariant &value)
    {
        if (group == m_group && setting == m_setting)
            Tell(value.variant());
    }

private:
    void Tell(const QVariant &value)
    {
        const bool isDark = IsDarkByColourScheme(value).value_or(IsDarkColour(Doors().systemColour(WindowColour)));
        RunGuarded([&] { m_tell(isDark); });
    }

    const QString m_group = u"org.freedesktop.appearance"_s;
    const QString m_setting = u"color-scheme"_s;
    std::function<void(bool isDark)> m_tell;
};

std::optional<bool> IsDarkByColourScheme(QVariant value)
{
    constexpr uint dark = 1;
    constexpr uint light = 2;
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    bool isNumber = false;
    const uint scheme = value.toUInt(&isNumber);
    if (!isNumber || (scheme != dark && scheme != light))
        return std::nullopt;
    return scheme == dark;
}

void WatchDesktopLook(QObject *context, std::function<void(bool isDark)> tell)
{
    new PortalWatch(context, std::move(tell));
}

#include "DesktopLook.moc"
