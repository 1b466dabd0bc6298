#pragma once

#include <QFrame>

#include <functional>
#include <memory>

namespace Ui {
class FindBar;
}

/// The bar below a page for finding a text in it. In a narrow window its parts stand one below the other.
class FindBar : public QFrame
{
    Q_OBJECT
public:
    explicit FindBar(QWidget *parent);
    ~FindBar() override;

    /// Shows the bar, ready to type; a selection of one line becomes the text to find.
    void Open(const QString &selection);
    QString Text() const;
    bool IsCaseMatched() const;
    bool IsWholeWord() const;
    /// Shows the number of places, and which of them the reader is at; 0 for none. Without a place for the text it says
    /// so.
    void ShowResult(int at, int count);
    void ClearResult();

    std::function<void(bool isBackward)> OnStep;
    /// The text, or how to compare it, has changed.
    std::function<void()> OnChange;
    std::function<void()> OnClose;

    QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void Step(bool isBackward);
    void Change();
    void TellResult(const QString &places, const QString &message);
    void FollowSkin();
    /// Puts the parts side by side where there is room.
    void Arrange();
    /// The width around the parts.
    int Frame() const;

    std::unique_ptr<Ui::FindBar> m_ui;
};
