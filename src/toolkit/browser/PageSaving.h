#pragma once

#include <QByteArray>
#include <QString>

class TBrowserControl;

/// Lets the reader save the control's page: its bytes as they were handed over, or its plain text in UTF-8.
void SavePage(TBrowserControl &control, const QString &fallbackTitle);

/// A file name, without suffix, that every file system takes: bad characters become blanks; never empty.
QString FileNameFor(const QString &title);
/// Writes the file whole or leaves what stands there. Empty on success, else why not.
QString WriteWhole(const QString &path, const QByteArray &bytes);
