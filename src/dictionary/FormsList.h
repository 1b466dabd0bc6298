#pragma once

#include "dictionary/FormFinder.h"

#include <QListWidget>

#include <functional>

/// The strip of words behind a form: each with its dictionary and how it comes from what stands in the text. As high as
/// its words, where there is room, and hidden without one. A click or Enter opens a word.
class TFormsList : public QListWidget
{
    Q_OBJECT
public:
    explicit TFormsList(QWidget *parent = nullptr);

    /// The dictionaries are named in a language of the interface.
    void ShowWords(const QList<FoundWord> &words, int language);
    const QList<FoundWord> &Words() const { return m_words; }

    /// Runs under the general guard.
    std::function<void(const FoundWord &word)> OnOpen;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void Open(int row);
    int RowHeight(int row) const;

    QList<FoundWord> m_words;
};
