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
    };
    /// `file` is the path where the reason is one of a file.
    explicit Refusal(Reason reason, const QString &file = {});

    /// The same in the interface's language.
    QString Sentence() const;

private:
    Reason m_reason;
    QString m_file;
};

/// What a failure means and what can be done, in the interface's language, and below it what Firebird itself says.
/// Failures of which nothing is known but that stay as they are.
QString ExplainedFailure(const DatabaseError &error);
