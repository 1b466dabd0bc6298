#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

/// The one slot that holds a skin.
inline constexpr char16_t UserSkin[] = u"UserSkin";

/// Adds the names of a file's skins to a list, in the file's order. True if there is any. Throws SkinFileError.
bool ListSkins(const QString &path, QStringList &names);
/// Loads a skin of a file into the slot; false, and the slot as it was, if the file has no such skin. Nothing is
/// painted with it before a Refresh. Throws SkinFileError.
bool LoadUserSkin(const QString &path, const QString &name);

/// Puts the skin of the slot on all windows of the program, those opened later included.
class TdxSkinController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool NativeStyle MEMBER NativeStyle)
    Q_PROPERTY(QString SkinName MEMBER SkinName)
    Q_PROPERTY(bool UseSkins MEMBER UseSkins)
public:
    using QObject::QObject;

    bool NativeStyle = false; ///< the platform's own look, whatever the slot holds
    QString SkinName;         ///< the slot to follow
    bool UseSkins = true;     ///< paint by skin at all

    /// Repaints all windows: with the skin where it is to be used and the slot has one, else as the platform paints.
    void Refresh();
};
