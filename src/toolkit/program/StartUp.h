#pragma once

/// Prepares the process; call before the application object exists. Sets a UTF-8 locale, so that file names may have
/// any letters, makes pages accessible to screen readers, and selects drawing without a graphics card.
void PrepareProcess();
