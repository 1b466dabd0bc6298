#pragma once

#include "presentation/looks/Skin.h"

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <stdexcept>

/// A skin file is one JSON document, described in docs/skins.md, that holds any number of whole skins.

/// The file can't be opened. Text() names it and gives the system's message.
class SkinFileError : public std::runtime_error
{
public:
    explicit SkinFileError(const QString &text) : std::runtime_error(text.toUtf8().constData()), m_text(text) {}
    const QString &Text() const { return m_text; }

private:
    QString m_text;
};

/// The names of a file's skins in the file's order; none if its content is invalid. Throws SkinFileError.
QStringList SkinNames(const QString &path);

/// The skin of that name, the first one if there are two. None if the file has no such skin or is invalid. Ignores
/// invalid pictures. Throws SkinFileError.
std::optional<Skin> LoadSkin(const QString &path, const QString &name);
