#pragma once

#include <QTranslator>

/// Qt's own words, those of its dialogs, buttons and menus, in the interface's language: in Vietnamese out of a table;
/// English is what Qt says by itself, and any other language reads English.
class QtWords : public QTranslator
{
    Q_OBJECT
public:
    using QTranslator::QTranslator;
    /// Null for what keeps Qt's English, and for every text that is not Qt's.
    QString translate(const char *context, const char *source, const char *disambiguation, int n) const override;
    bool isEmpty() const override { return false; }
};

/// Puts Qt's words into the interface's language. Call when the application object exists, and after each change of the
/// language, which Qt's open windows then hear of.
void ShowQtWords();
