#pragma once

#include "tools/ToolSupport.h"

#include <QByteArray>
#include <QString>

/// Small databases as strangers make them: through Firebird, with whatever else they want in them.

/// The bytes of a canon of two texts, a dictionary of two words, a file of one mark: our columns, in tables without
/// keys. `more` is a script that runs at the end; in it "%1" is a path of the caller's choice.
QByteArray StrangersCanon(const QString &more = {});
QByteArray StrangersDictionary(const QString &more = {});
QByteArray StrangersMarks(const QString &more = {});

/// A backup of a database, without a checksum of ours.
QByteArray BackupOf(const QByteArray &database);
