#pragma once

/// Asks whether to delete the chosen data, in Vietnamese in every interface language. Returns if the reader agrees,
/// else throws SilentAbort.
void ConfirmDelete();
