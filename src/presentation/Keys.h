#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class frmKeys;
}

/// The keys of the program as a table, read from the actions that bear them: those of the main window, and those that
/// every tool window has. A tool window, see OpenForm(). Borrows the main window, which outlives it.
class TfrmKeys : public QWidget
{
    Q_OBJECT
public:
    explicit TfrmKeys(QWidget &main, QWidget *parent = nullptr);
    ~TfrmKeys() override;

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void ShowKeys();
    void AddKeysOf(QWidget &window, const QString &place);

    QWidget &m_main;
    std::unique_ptr<Ui::frmKeys> ui;
};
