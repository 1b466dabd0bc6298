#pragma once

class QWidget;
class TDKLanguageController;

/// Gives a window that has been built from its description the table of its texts, the resource ":/langdata/" with the
/// window's name, and the words of the current language. A language that can't be read is reported, and the window
/// keeps the words that it was designed with. The controller belongs to the window.
TDKLanguageController *TranslateForm(QWidget &form);
