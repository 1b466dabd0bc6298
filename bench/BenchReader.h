#pragma once

#include "BenchCanon.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <functional>
#include <memory>

class TfrmDictionaryDM;
class TfrmClientsDM;
class TfrmKeloraDM;
class TfrmMain;
class PaintedProbe;

/// The real main window in this process, over a canon made for measuring. One at a time.
class BenchReader
{
public:
    /// `texts` passages; the first shows a short page, the others `page`.
    BenchReader(int texts, const QByteArray &page);
    ~BenchReader();
    BenchReader(const BenchReader &) = delete;
    BenchReader &operator=(const BenchReader &) = delete;

    TfrmMain &Window() { return *m_window; }
    QString CanonPath() const;
    QString ClientLibrary() const;
    /// The statement of the tree without a filter.
    QString TreeStatement() const;
    /// File with the bytes that a move hands to the engine.
    QString ComposedPageFile() const;

    /// Milliseconds from a key in the filter box until the handler has returned and the tree is painted.
    double FilterKeyTime(const QString &text);
    /// Milliseconds from a key in the tree until the long page is painted.
    double MoveTime();
    /// Milliseconds from the command that leads back to the middle of the long page until that is painted there;
    /// negative if another place is.
    double BackTime();
    /// Enters so many marks on the long page, which is on show, each of words that stand in it.
    void MarkLongPage(int marks);
    struct StripTimes
    {
        double shown; ///< from the page's completion until the strip beside it has its lines, the marks read anew
        double work;  ///< of the window's thread in this time
        double block; ///< for which it did not come back to its event loop
    };
    /// Milliseconds.
    StripTimes ShowStrip();
    /// Milliseconds that the long page's text takes on its way out of the engine.
    double TextTime();

private:
    void WaitPainted();

    QTemporaryDir m_folder;
    std::unique_ptr<TfrmKeloraDM> m_kelora;
    std::unique_ptr<TfrmClientsDM> m_clients;
    std::unique_ptr<TfrmDictionaryDM> m_dictionary;
    std::unique_ptr<TfrmMain> m_window;
    int m_marks = 0;
    int m_painted = 0;
    int m_seen = 0;
    std::function<void()> m_quitWhenPainted;
};
