#pragma once

#include <QString>

#include <stdexcept>

/// A failure of the interface translation: a damaged language file or table, or a misuse of the manager.
/// what() is UTF-8, Text() the same as QString; lines are separated by "\r\n".
class EDKLangError : public std::runtime_error
{
public:
    explicit EDKLangError(const QString &text) : std::runtime_error(text.toUtf8().constData()), m_text(text) {}
    const QString &Text() const { return m_text; }

private:
    QString m_text;
};
