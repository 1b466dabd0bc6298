#pragma once

#include <QString>

#include <stdexcept>

/// A failed call of Firebird or of the data-access layer. what() is UTF-8, Text() the same as QString: Firebird's own
/// text, its lines joined by "\n".
class DatabaseError : public std::runtime_error
{
public:
    explicit DatabaseError(const QString &text, int engineCode = 0)
        : std::runtime_error(text.toUtf8().constData()), m_text(text), m_engineCode(engineCode)
    {}
    const QString &Text() const { return m_text; }
    /// Firebird's first error code (isc_…), 0 if the failure is our own.
    int EngineCode() const { return m_engineCode; }

private:
    QString m_text;
    int m_engineCode;
};

/// Ends an operation that the reader declined, such as a delete answered with No. The guard does not report it.
class SilentAbort : public std::exception
{
public:
    const char *what() const noexcept override { return "aborted"; }
};
