#pragma once

/// What must hold in the process before the application object exists: texts of the system in UTF-8, so that files can
/// be named in any letters, pages open to screen readers, and drawing without a graphics card.
void PrepareProcess();

/// Makes sure of the texts in UTF-8 once more, after the application object, which takes the locale from the
/// environment. Call before the first database.
void SettleLocale();
