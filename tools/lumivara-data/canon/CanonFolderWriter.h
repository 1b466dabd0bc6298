#pragma once

class CanonRows;
class Console;
class ExportFolder;
class Report;

/// Writes a canon as a folder of its pages, byte for byte, with the table that an import reads. With `withSegments`
/// each text stands there as segmented JSON too, for other programs.
void WriteCanonFolder(CanonRows &rows, ExportFolder &folder, bool withSegments, Report &report, Console &console);
