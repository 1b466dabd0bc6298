#pragma once

#include "stores/engine/DatabaseError.h"

/// A change that was refused before anything was stored, for a reason of our own.
class Refusal : public DatabaseError
{
public:
    enum class Reason {
        ChangedElsewhere, ///< another copy of the program was faster
        FileAway,         ///< renamed, replaced or deleted since it was opened
        FileReadOnly,
        KeyTwice,   ///< several rows have the key
        Unstorable, ///< a character that the column's character set cannot take over this connection
    };
    /// `detail` is the path where the reason is one of a file, the number of rows with one key.
    explicit Refusal(Reason reason, const QString &detail = {});

    /// The same in the interface's language.
    QString Sentence() const;

private:
    Reason m_reason;
    QString m_detail;
};

/// What a failure means and what can be done, in the interface's language, and below it what Firebird itself says.
/// Failures of which nothing is known but that stay as they are.
QString ExplainedFailure(const DatabaseError &error);
