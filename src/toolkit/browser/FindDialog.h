#pragma once

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class FindDialog;
}

/// The dialog by which the reader finds a text in a page. Stays open beside the page.
class FindDialog : public QDialog
{
    Q_OBJECT
public:
    explicit FindDialog(QWidget *parent);
    ~FindDialog() override;

    /// Shows the dialog, ready to type; a selection of one line becomes the text to find.
    void Open(const QString &selection);
    QString Text() const;
    bool IsCaseMatched() const;
    bool IsWholeWord() const;
    /// Tells whether the last step found something.
    void ShowResult(bool isFound);

    std::function<void(bool isBackward)> OnFind;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void Find(bool isBackward);

    std::unique_ptr<Ui::FindDialog> m_ui;
};
