#pragma once

#include "base/Reading.h"
#include "toolkit/program/NewestWait.h"

#include <QWidget>

#include <memory>

namespace Ui {
class frmFocusHighlight;
}

/// The browser of marks: lists them, filters them by words of title and keywords, shows each excerpt, lets its words be
/// edited or the mark deleted, and may move the main window to the text it came from. A tool window: opened by
/// OpenForm(), gone when closed. It works on the marks' dataset itself, which the editor shares, and needs the client
/// module and the main window, which outlive it.
class TfrmFocusHighlight : public QWidget
{
    Q_OBJECT
public:
    explicit TfrmFocusHighlight(Reading &reading, QWidget *parent = nullptr);
    ~TfrmFocusHighlight() override;

    /// Lists what the search box asks for and shows the first row. A pending edit is dropped. Throws DatabaseError.
    void LoadFocusHighLight();

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    /// The row last shown, so that it isn't shown again when the list tells of it, too.
    struct Shown
    {
        int opening = 0; ///< which opening of the dataset
        int row = -1;
        int number = 0; ///< of its text: when a row is deleted, the next one takes its place
        QByteArray excerpt;
        bool operator==(const Shown &) const = default;
    };

    void SetUpControls();
    void SetUpCommands();
    void FormShow();
    bool HasRow() const;
    Shown CurrentRow() const;
    void ViewHighLight();
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
};
