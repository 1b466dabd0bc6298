#pragma once

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class FindDialog;
}

/// The dialog for finding a text in a page. It stays open beside the page.
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
    /// Shows whether the last step found something.
    void ShowResult(bool isFound);

    std::function<void(bool isBackward)> OnFind;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void Find(bool isBackward);

    std::unique_ptr<Ui::FindDialog> m_ui;
};
