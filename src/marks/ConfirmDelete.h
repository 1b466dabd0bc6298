#pragma once

/// Asks whether the chosen data shall be deleted, in Vietnamese under every interface language. Returns if the reader
/// agrees, else throws SilentAbort.
void ConfirmDelete();
