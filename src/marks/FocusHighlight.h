#pragma once

#include "base/Reading.h"
#include "toolkit/program/NewestWait.h"

#include <QTimer>
#include <QWidget>

#include <memory>

namespace Ui {
class frmFocusHighlight;
}

/// The browser of marks: lists marks, filters them by title and keywords, shows their excerpts, edits and deletes them,
/// and can open a mark's text in the main window. A tool window: opened by OpenForm(), deleted when closed. It works on
/// the marks' dataset, which the editor uses too, and needs the client module and the main window, which outlive it.
class TfrmFocusHighlight : public QWidget
{
    Q_OBJECT
public:
    explicit TfrmFocusHighlight(Reading &reading, QWidget *parent = nullptr);
    ~TfrmFocusHighlight() override;

    /// Lists the marks that match the search box and shows the first one. Drops a pending edit. Throws DatabaseError.
    void LoadFocusHighLight();
    /// Goes to a mark by its key; if the search box leaves it out, that is emptied. Throws DatabaseError.
    void ShowMark(int key);

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /// The row last shown, so that it isn't shown again when the list also reports it.
    struct Shown
    {
        int opening = 0; ///< which opening of the dataset
        int row = -1;
        int number = 0; ///< of its text: after a deletion the next row has the same position
        QByteArray excerpt;
        bool operator==(const Shown &) const = default;
    };

    void SetUpControls();
    void SetUpCommands();
    void FormShow();
    bool HasRow() const;
    void GoOnSearching();
    Shown CurrentRow() const;
    void ViewHighLight();
    void Show(const Shown &row);
    void FollowMark();
    void gtvFocusSelectionChanged();
    void bIsViewSuttaClick();
    void cbSuttaTypePropertiesChange();
    void edSearchKeyUp(int key);
    void UpdateCommands();

    Reading &m_reading;
    std::unique_ptr<Ui::frmFocusHighlight> ui;
    bool vIsInitFocus = true;
    bool vIsViewSutta = false;
    int m_openings = 0;
    Shown m_shown;
    NewestWait m_following{*this};
    QTimer m_searching; ///< the search goes on in the next turn of the event loop
    int m_stepsDue = 0; ///< rows to go down, as soon as they are found
};
