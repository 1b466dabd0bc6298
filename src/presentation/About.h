#pragma once

#include <QDialog>

#include <memory>

class QUrl;

namespace Ui {
class frmGioithieu;
}

/// The about box: name, version and owner of the program, and a page about it, which is stored in the .ui file and
/// exists in one language only. Shown modally and deleted by its caller.
class TfrmGioithieu : public QDialog
{
    Q_OBJECT
public:
    explicit TfrmGioithieu(QWidget *parent = nullptr);
    ~TfrmGioithieu() override;

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void FormCreate();
    /// Sizes are given for a window font of 13 pixels and scale with it.
    void ApplyFontSize();
    bool wbAboutBeforeNavigate2(const QUrl &url);
    void lbFernwhistleClick();

    std::unique_ptr<Ui::frmGioithieu> ui;
    bool FIsStartPage = false;
};
