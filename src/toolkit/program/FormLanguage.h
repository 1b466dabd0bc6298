#pragma once

class QWidget;
class TDKLanguageController;

/// Gives a window built from its .ui file the table of its texts, the resource ":/langdata/" with the window's name.
/// The window owns the controller.
TDKLanguageController *AddFormTexts(QWidget &form);

/// The same, and applies the current language. If that can't be read, keeps the designed texts and reports it: once,
/// not again for each further window.
TDKLanguageController *TranslateForm(QWidget &form);
