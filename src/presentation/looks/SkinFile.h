#pragma once

#include "presentation/looks/Skin.h"

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <stdexcept>

/// A skin file is one JSON document, described in docs/skins.md, that holds any number of whole skins.

/// The file can't be opened. Text() names it and says why, in the system's words.
class SkinFileError : public std::runtime_error
{
public:
    explicit SkinFileError(const QString &text) : std::runtime_error(text.toUtf8().constData()), m_text(text) {}
    const QString &Text() const { return m_text; }

private:
    QString m_text;
};

/// The names of a file's skins in the file's order. Content that can't be read holds none. Throws SkinFileError.
QStringList SkinNames(const QString &path);

/// The skin of that name; the first one where a file has it twice. None where the file has no such skin or its content
/// can't be read. A picture that is none is left out. Throws SkinFileError.
std::optional<Skin> LoadSkin(const QString &path, const QString &name);
