#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// A text that a window's description stores for a component.
struct UiText
{
    QByteArray property;            ///< Qt's name, such as "toolTip"; "items" for the lines of a combo box
    QStringList lines;              ///< one for a plain text, any number for a list of strings
    bool isList = false;            ///< the property is a list of strings
    bool isMeantForReaders = false; ///< not marked as a name that stays the same in every language
};

/// A named component of a window.
struct UiComponent
{
    QString name;
    QList<QByteArray> classChain; ///< class names from the most derived up to QObject
    QList<UiText> texts;          ///< in the order of the description
};

/// What the tool needs of a window's description (.ui).
struct UiWindow
{
    QList<UiComponent> components; ///< the window itself first, then the rest in the order of the description

    const QString &Name() const { return components.first().name; }
};

/// Reads a description. Throws ToolError with the place for what cannot be read, for two components of one name, for an
/// unknown class, and for texts in places that no property stands for (tab titles, items of lists and tables): such a
/// text would silently stay in one language.
UiWindow ReadUiFile(const QString &path);
