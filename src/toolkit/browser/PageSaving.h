#pragma once

#include <QByteArray>
#include <QString>

class TBrowserControl;

/// Lets the reader save the control's page: its original bytes, or its plain text in UTF-8.
void SavePage(TBrowserControl &control, const QString &fallbackTitle);

/// A file name without suffix that every file system accepts: bad characters become blanks. Never empty.
QString FileNameFor(const QString &title);
/// Writes the file completely, or leaves the old one. Empty on success, else the reason.
QString WriteWhole(const QString &path, const QByteArray &bytes);
