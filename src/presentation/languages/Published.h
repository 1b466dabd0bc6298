#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaProperty>
#include <QObject>
#include <QString>

#include <functional>

/// Language tables call properties by published names ("Caption", "Hint"), whatever the toolkit calls them ("text",
/// "windowTitle", "toolTip"). Texts are string properties, lists of strings and the entries of combo boxes; dynamic
/// properties count like declared ones. Main thread only.

/// The published name of a text property. `classChain` are the object's classes by name, the most derived first.
/// Empty if the property is not published: the object's name, the toolkit's internal ones, looks, and names that a more
/// derived class has given to another property.
QString PublishedName(const QList<QByteArray> &classChain, const QByteArray &property);

/// One text property of a live object.
class PublishedText
{
public:
    enum class Kind { None, Declared, Dynamic, ComboItems };

    PublishedText() = default;
    bool IsValid() const { return m_kind != Kind::None; }
    /// Whether a window's description would hold the property.
    bool IsStored() const;
    /// Lines of a list are parted by CR LF; a list with an empty last line ends in one more.
    QString Read() const;
    /// Line breaks of a list part its lines; in a string they become LF, which is what controls show as a line break.
    /// A combo box keeps its choice and tells nobody.
    void Write(const QString &text) const;

private:
    friend class PublishedWalk;
    Kind m_kind = Kind::None;
    QObject *m_object = nullptr;
    QMetaProperty m_property;
    QByteArray m_dynamicName;
};

/// Asked on the way to each property, with its full name and, where it is an object, that object:
/// false leaves the property and everything below it out.
using PublishedFilter = std::function<bool(const QString &fullName, const QObject *object)>;

/// The text property of a full name, such as "Properties.Items[0].Description"; invalid if there is none or if `filter`
/// refuses it or what holds it.
PublishedText FindPublished(QObject *component, const QString &fullName, const PublishedFilter &filter = {});

/// Visits every text property of a component, nested objects and collections included; its name is none of them.
void WalkPublished(QObject *component, const PublishedFilter &filter,
                   const std::function<void(const QString &fullName, const PublishedText &)> &visit);
