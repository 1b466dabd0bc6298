#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

/// The letters of an excerpt's page: its visible text without blanks and what nobody sees, as PageText has that of a
/// page, so that an excerpt is found again however either is laid out.
QString LettersOfExcerpt(const QByteArray &excerpt);

/// The text of a page by its letters, and where each is written. Places are in UTF-16 units.
class WrittenText
{
public:
    /// A further piece.
    void Add(QStringView written);
    /// How much has been added.
    qsizetype Size() const { return m_size; }
    const QString &Letters() const { return m_letters; }
    /// Where a letter is written.
    qsizetype PlaceOf(qsizetype letter) const;

private:
    /// 64 characters as they are written.
    struct Stretch
    {
        quint64 letters = 0;  ///< a bit for each that is a letter, the lowest for the first
        qsizetype before = 0; ///< letters
    };

    QString m_letters;
    std::vector<Stretch> m_stretches; ///< a number for each letter would cost more memory than the text
    qsizetype m_size = 0;
};

/// Where an excerpt stands in the letters of a page.
struct ExcerptPlace
{
    qsizetype letter = 0; ///< its first, in UTF-16 units
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
    bool MayTake(qsizetype letter, qsizetype excerpt) const;
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
