#pragma once

#include <QWidget>

#include <functional>
#include <memory>

namespace Ui {
class frmWelcome;
}

/// What a new reader is told once: what the sample is, how to bring texts of one's own, how to look a word up. A tool
/// window, see OpenForm(). It leaves the focus to the main window.
class TfrmWelcome : public QWidget
{
    Q_OBJECT
public:
    /// What its two buttons do.
    TfrmWelcome(std::function<void()> import, std::function<void()> openGuide, QWidget *parent = nullptr);
    ~TfrmWelcome() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    std::unique_ptr<Ui::frmWelcome> ui;
};
