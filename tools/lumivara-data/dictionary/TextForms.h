#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/// The word forms of texts with their numbers. A form is a run of letters and "’" in lower case and composed letters,
/// without "’" at its ends.
class TextForms
{
public:
    /// Different forms that are kept.
    static constexpr qsizetype MostForms = 2'000'000;

    /// Adds a text's forms. Throws ToolError behind MostForms.
    void Add(const QString &text);

    /// Each form once, in the order of the first places.
    const QStringList &All() const { return m_forms; }
    qsizetype Count(const QString &form) const { return m_counts.value(form); }
    /// Of all forms together.
    qsizetype Total() const { return m_total; }

private:
    QStringList m_forms;
    QHash<QString, qsizetype> m_counts;
    qsizetype m_total = 0;
};
