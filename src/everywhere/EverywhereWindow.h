#pragma once

#include "base/Reading.h"
#include "everywhere/EverywhereTexts.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class EverywhereModel;
class EverywhereQuery;
class EverywhereScan;

namespace Ui {
class frmFindEverywhere;
}

/// The search of everything: pages in every language, names and marks, as the words are typed. Lists each place, and
/// the page follows the list. A tool window, see OpenForm(). Borrows the reader and the modules of canon and marks,
/// which outlive it.
class TfrmFindEverywhere : public QWidget
{
    Q_OBJECT
public:
    explicit TfrmFindEverywhere(Reading &reading, QWidget *parent = nullptr);
    ~TfrmFindEverywhere() override;

    /// Comes to the front, ready to type.
    void Ready();
    /// Shows the texts that code composes anew, after a change of the interface's language.
    void ShowTexts();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    using TakeLines = std::function<void(const QList<EverywhereLine> &)>;

    void SetUpKeys();
    EverywhereQuery Query() const;
    void Seek();
    void GoOn();
    void TellCounts();
    /// -1 if none is.
    int ChosenRow() const;
    void Walk(bool isBackward);
    void Open(int row);
    void GoToPage();
    bool TakesKey(int key);
    void CopyList();
    void SaveList();
    /// Hands over the whole list once the search has ended and all its words are read; a new search drops that.
    void Gather(TakeLines take);
    void GatherMore();
    void EndGathering();

    Reading &m_reading;
    std::unique_ptr<EverywhereScan> m_scan;
    EverywhereModel *m_model;
    Reading::Search m_search;
    QTimer m_working;
    bool m_isFilling = false; ///< the list changes by itself, and must open no text
    QList<EverywhereLine> m_lines;
    TakeLines m_takeLines;
    std::unique_ptr<Ui::frmFindEverywhere> ui;
};
