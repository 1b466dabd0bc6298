#pragma once

class QWidget;
class TDKLanguageController;

/// Gives a window that has been built from its description the table of its texts, the resource ":/langdata/" with the
/// window's name. The controller belongs to the window.
TDKLanguageController *AddFormTexts(QWidget &form);

/// The same, and the words of the current language. A language that can't be read is reported, and the window keeps the
/// words that it was designed with.
TDKLanguageController *TranslateForm(QWidget &form);
