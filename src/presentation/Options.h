#pragma once

#include <QDialog>

#include <memory>

class QAction;
class QPushButton;

namespace Ui {
class frmOptions;
}

/// The options dialog. It reads the settings store, not the running program's values. OK writes its values to both;
/// "default" writes the defaults to the store at once and does not change the program. The check box of the start list
/// writes whenever it gains or loses the focus, whatever button follows. Needs the canon module, which outlives it.
class TfrmOptions : public QDialog
{
    Q_OBJECT
public:
    explicit TfrmOptions(QWidget *parent = nullptr);
    ~TfrmOptions() override;

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void FormCreate();
    void FormShow();
    void LoadOptions();
    void FitSize();
    void acOKExecute();
    void acDefaultExecute();
    void cbStartWinFocusChanged();

    std::unique_ptr<Ui::frmOptions> ui;
};
