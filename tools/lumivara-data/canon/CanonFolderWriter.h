#pragma once

class CanonRows;
class Console;
class ExportFolder;
class Report;

/// Writes a canon as a folder of its pages, byte for byte, with the table for an import. With `withSegments` also
/// writes each text as segmented JSON, for other programs.
void WriteCanonFolder(CanonRows &rows, ExportFolder &folder, bool withSegments, Report &report, Console &console);
