#pragma once

#include "marks/MarksWindow.h"

#include <QWidgetList>

#include <functional>
#include <string>

/// A widget's object name, or its class.
std::string Name(const QWidget &widget);

/// What a window shows, without the inner parts of controls, which a reader meets only through these.
QWidgetList Shown(const QWidget &window);

/// True for what takes keys or presses.
bool TakesInput(const QWidget &widget);

/// The real windows with the product's skins, dictionary and English, one stored mark, and each window in turn.
class EachWindow : public MarksWindow
{
protected:
    EachWindow();
    ~EachWindow() override;

    /// Starts the program with a mark, and gives it the focus.
    void StartProgram();
    /// Opens each window, passes it to `visit` and closes it: a tabbed one once for each page.
    void VisitAll(const std::function<void(QWidget &)> &visit);
    /// The same for the print preview.
    void VisitPreview(const std::function<void(QWidget &)> &visit);
    /// Runs a test of this binary again, by another command if there is one; the output is this test's.
    void RunAgain(const QString &test, const QMap<QString, QString> &environment, const QStringList &command = {});

private:
    QString Words() const { return Beside(QStringLiteral("PALIDICT.FDB")); }
};
