#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

/// The one slot that holds a skin.
inline constexpr char16_t UserSkin[] = u"UserSkin";

/// Appends the names of a file's skins, in the file's order. True if there are any. Throws SkinFileError.
bool ListSkins(const QString &path, QStringList &names);
/// Loads a skin of a file into the slot. Returns false, with the slot unchanged, if the file has no such skin. The skin
/// takes effect at the next Refresh. Throws SkinFileError.
bool LoadUserSkin(const QString &path, const QString &name);

/// Applies the slot's skin to all windows of the program, including those opened later.
class TdxSkinController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool NativeStyle MEMBER NativeStyle)
    Q_PROPERTY(QString SkinName MEMBER SkinName)
    Q_PROPERTY(bool UseSkins MEMBER UseSkins)
public:
    using QObject::QObject;

    bool NativeStyle = false; ///< the platform's look, whatever is in the slot
    QString SkinName;         ///< the slot to follow
    bool UseSkins = true;     ///< paint by skin at all

    /// Repaints all windows: with the skin if skins are used and the slot has one, else in the platform's style.
    void Refresh();
};
