#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaProperty>
#include <QObject>
#include <QString>

#include <functional>

/// Language tables use published names of properties ("Caption", "Hint") instead of Qt's ("text", "windowTitle",
/// "toolTip"). Texts are string properties, string lists and the entries of combo boxes; dynamic properties count like
/// declared ones. Main thread only.

/// The published name of a text property. `classChain` are the object's classes by name, the most derived first.
/// Empty if the property is not published: the object's name, Qt's internal properties, styles, and names that a more
/// derived class has given to another property.
QString PublishedName(const QList<QByteArray> &classChain, const QByteArray &property);

/// One text property of a live object.
class PublishedText
{
public:
    enum class Kind { None, Declared, Dynamic, ComboItems };

    PublishedText() = default;
    bool IsValid() const { return m_kind != Kind::None; }
    /// Whether a .ui file would store the property.
    bool IsStored() const;
    /// Lines of a list are separated by CR LF; a list with an empty last line ends in one more.
    QString Read() const;
    /// Line breaks separate the lines of a list; in a string they become LF, which controls show as a line break.
    /// A combo box keeps its choice and emits no signal.
    void Write(const QString &text) const;

private:
    friend class PublishedWalk;
    Kind m_kind = Kind::None;
    QObject *m_object = nullptr;
    QMetaProperty m_property;
    QByteArray m_dynamicName;
};

/// Called for each property on the path, with its full name and, if it is an object, that object: false excludes the
/// property and everything below it.
using PublishedFilter = std::function<bool(const QString &fullName, const QObject *object)>;

/// The text property of a full name, such as "Properties.Items[0].Description"; invalid if there is none, or if
/// `filter` excludes it.
PublishedText FindPublished(QObject *component, const QString &fullName, const PublishedFilter &filter = {});

/// Visits every text property of a component, including nested objects and collections, excluding its name.
void WalkPublished(QObject *component, const PublishedFilter &filter,
                   const std::function<void(const QString &fullName, const PublishedText &)> &visit);
