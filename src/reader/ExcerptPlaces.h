#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

/// The letters of an excerpt's page, without blanks and what nobody sees: that is how the browser's scripts read a page
/// by its letters, too, so that an excerpt is found again however either is laid out.
QString LettersOfExcerpt(const QByteArray &excerpt);

/// Where an excerpt stands in the letters of a page.
struct ExcerptPlace
{
    qsizetype letter = 0; ///< the first, in UTF-16 units
    qsizetype excerpt = 0;

    bool operator==(const ExcerptPlace &) const = default;
};

/// Finds excerpts in a page, all of them in one pass over its letters, whatever their number.
class ExcerptFinder
{
public:
    /// Of words that come again and again the first so many are told.
    static constexpr int MostPlaces = 50;

    /// Both by their letters; an excerpt without any is nowhere.
    ExcerptFinder(const QString &page, const QStringList &excerpts);

    /// Goes on through about so many letters; false at the end.
    bool Go(qsizetype letters);
    /// What has been found, in the order of the page once that has been read to its end. Places of one excerpt do not
    /// overlap.
    const QList<ExcerptPlace> &Found() const { return m_found; }

private:
    struct Head
    {
        quint64 hash;
        qsizetype excerpt;
    };
    struct State
    {
        qsizetype end = 0; ///< of the last place
        int count = 0;
    };

    void LookAt(qsizetype letter, quint64 hash);
    void Take(qsizetype letter, qsizetype excerpt);
    void FindShort();

    QString m_page;
    QStringList m_excerpts;
    std::vector<Head> m_heads; ///< by their hashes
    std::vector<bool> m_isHead;
    std::vector<State> m_states;
    QList<ExcerptPlace> m_found;
    qsizetype m_at = 0;
};
