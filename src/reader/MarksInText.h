#pragma once

#include "reader/ExcerptPlaces.h"
#include "toolkit/browser/PagePlace.h"

#include <QObject>
#include <QVariant>

#include <functional>
#include <memory>
#include <vector>

class TBrowserControl;
class TMarkStrip;
class TpFIBDataSet;

/// The marks of the text on show and the hits of a search, as lines of the strip beside its page. Reads the marks,
/// finds their words in the page and asks how far down they stand, all in pieces of a few milliseconds between which
/// the window lives; what belongs to a page that has gone is dropped. The page is only read.
class MarksInText : public QObject
{
public:
    /// Borrows both, which outlive this.
    MarksInText(TBrowserControl &page, TMarkStrip &strip);
    ~MarksInText() override;

    /// Another text comes on show, or the same anew: reads its marks; 0 for none.
    void OpenText(int text);
    /// How many marks the text has, found in the page or not.
    int Count() const { return m_count; }
    /// Marks have been added, edited or deleted.
    void MarksChanged();
    /// The control has been given another page; it is complete.
    void PageLeft();
    void PageCame();
    /// Parts of the page stand elsewhere than before, or there are other hits.
    void PlacesChanged();
    /// The lines show all that is known, and nothing is to be done.
    bool IsIdle() const;

    /// The number of marks may be another.
    std::function<void()> OnCount;
    /// The reader wants to go to a place of the page; to see a mark, by its key.
    std::function<void(const PagePlace &place)> OnGo;
    std::function<void(int key)> OnOpen;
    /// The strip has got its lines.
    std::function<void()> OnShow;

private:
    struct TextMark
    {
        int key = 0;
        int priority = 0;
        QString hint;
    };
    /// What a line of the strip is: a mark by its key, at a character of the page; or a hit by its number.
    struct Target
    {
        int mark = 0;
        qsizetype character = 0;
        qsizetype hit = -1;
    };

    void CountMarks();
    void BeginReading();
    void Advance();
    void AdvanceLater();
    /// Asks the page; what comes is taken unless it is of a page or of marks that have gone.
    void Ask(QStringView function, const QVariant &argument, void (MarksInText::*take)(const QVariantMap &));
    void ReadSome();
    void ReadMark(int row);
    void TakeText(const QVariantMap &answer);
    void FindSome();
    void AskHeights();
    void TakeHeights(const QVariantMap &answer);
    void TakeHits(const QVariantMap &answer);
    void Show();
    void GoTo(qsizetype line);
    void OpenMark(qsizetype line) const;

    TBrowserControl &m_page;
    TMarkStrip &m_strip;
    quint64 m_turn = 0;
    int m_text = 0;
    int m_count = 0;
    bool m_isPageHere = false;
    bool m_isWaiting = false; ///< for the page, or for the next turn of the event loop

    std::unique_ptr<TpFIBDataSet> m_rows; ///< while the marks are read
    int m_row = 0;
    QByteArray m_excerpt; ///< memory for reading
    QList<TextMark> m_reading;
    QStringList m_excerptsRead;
    QList<TextMark> m_marks;
    QStringList m_excerpts; ///< of the marks, by their letters

    WrittenText m_written; ///< the page's text
    bool m_hasText = false;
    std::unique_ptr<ExcerptFinder> m_finder;
    bool m_isFindingDue = false;
    QList<ExcerptPlace> m_places;

    bool m_areHeightsDue = false;
    bool m_isAskingHeights = false;
    bool m_areHitsHere = false;
    QList<double> m_heights;    ///< of the places
    QList<double> m_hitHeights; ///< of the hits
    std::vector<Target> m_targets;
};
