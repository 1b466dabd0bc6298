#pragma once

#include "marks/ExcerptFile.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmFocusEdit;
}

/// The editor of a new mark. Its controls are bound to the pending row of the marks' dataset; OK posts that row, Cancel
/// drops it, the close box does neither. Shown modally by the command that inserted the row. Once the excerpt's file is
/// saved, this copy of the program keeps it locked while the window exists. Needs the client module, which outlives it.
class TfrmFocusEdit : public QDialog
{
    Q_OBJECT
public:
    explicit TfrmFocusEdit(QWidget *parent = nullptr);
    ~TfrmFocusEdit() override;

    ExcerptFile excerptFile; ///< the caller saves the excerpt there before it shows the window
    QString vFocusS;         ///< the excerpt's page
    int vSuttaID = 0;
    int vTaruneID = 0;

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void FormShow();
    void ShowExcerpt();
    void acOKExecute();
    void acCancelExecute();

    std::unique_ptr<Ui::frmFocusEdit> ui;
};
