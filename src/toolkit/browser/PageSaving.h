#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class QWidget;
class TBrowserControl;

/// Lets the reader save the control's page: its original bytes, or its plain text in UTF-8.
void SavePage(TBrowserControl &control, const QString &fallbackTitle);

/// A form in which something can be saved.
struct SavedForm
{
    QString filter;       ///< as a file dialog shows it
    QStringList suffixes; ///< without the dot; a file without one gets the first
};
struct SavingPlace
{
    QString path;
    qsizetype form = 0; ///< that of the path's suffix, else the chosen one
};
/// Asks where to save and in which of the forms; none if the reader cancels, or the window goes meanwhile.
std::optional<SavingPlace> AskWhereToSave(QWidget *window, const QString &title, const QList<SavedForm> &forms);
/// WriteWhole(), and tells a failure.
void SaveBytes(const QString &path, const QByteArray &bytes);

/// A file name without suffix that every file system accepts: bad characters become blanks. Never empty.
QString FileNameFor(const QString &title);
/// Writes the file completely, or leaves the old one. Empty on success, else the reason.
QString WriteWhole(const QString &path, const QByteArray &bytes);
