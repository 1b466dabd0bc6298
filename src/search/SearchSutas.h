#pragma once

#include "base/Reading.h"
#include "stores/data/DataSource.h"
#include "stores/data/FIBDataSet.h"
#include "stores/data/MemData.h"
#include "toolkit/program/NewestWait.h"

#include <QMargins>
#include <QWidget>

#include <memory>

namespace Ui {
class frmSearchSutas;
}

/// The search window: searches all passages for a word, in the current language mode, lists those that contain it, and
/// opens each in the main window when the list's cursor moves to it. A tool window: opened by OpenForm(), deleted when
/// closed. Borrows the reader and the canon module, which outlive it.
class TfrmSearchSutas : public QWidget
{
    Q_OBJECT
public:
    explicit TfrmSearchSutas(Reading &reading, QWidget *parent = nullptr);
    ~TfrmSearchSutas() override;

    /// Searches for the trimmed text of edSearchText, fills the list and opens its first row. Skips unreadable
    /// passages; any other failure is thrown (DatabaseError) and leaves cursor and bar as they are.
    void LoadSutas();

    TpFIBDataSet qryListSutas;
    TdxMemData mdSearchResult;
    TDataSource dsSearchResult;

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void DeclareListData();
    void DeclareResultData();
    void FormShow();
    void FormClose();
    void PlaceAtTheRight();
    void acSearchExecute();
    void acClearExecute();
    void edSearchTextKeyPress(int key);
    void edSearchTextChange();
    int Scan(const QString &word);
    void AppendResult(const QString &sample);
    void GoToFirstResult();
    void dsSearchResultDataChange();
    void ColourPage();
    void ShowNameColumn(int language);
    void ShowResultCount(int count);

    Reading &m_reading;
    std::unique_ptr<Ui::frmSearchSutas> ui;
    bool vIsLoadData = false; ///< the list is being filled and must open no passage
    bool m_hasShown = false;
    int m_searches = 0;
    QMargins m_frame; ///< the frame margins for which the window was placed
    NewestWait m_colouring{*this};
};
