#pragma once

#include <QString>

class Console;
class QCommandLineParser;
class Report;

/// How an import goes about its work, whatever it imports.
struct ImportManner
{
    bool isTrial = false;       ///< tells what would come of it, and writes nothing
    bool keepsBefore = false;   ///< the replaced file stays as FILE.before
    bool tellsProgress = false; ///< in lines for a program
    bool isVietnamese = false;  ///< what is told; English else
};

/// Gives an import its options, and reads them once the parser has parsed.
void AddMannerOptions(QCommandLineParser &parser);
ImportManner MannerOf(const QCommandLineParser &parser);
/// Makes the rest of the process work like that.
void Follow(const ImportManner &manner, Console &console);

/// Tells a program what the source is: the form, and the first line of a licence that lies in its folder.
void TellSource(const QString &source, const QString &form, Report &report);
