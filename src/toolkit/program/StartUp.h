#pragma once

/// Prepares the process; call before the application object exists. Sets a UTF-8 locale, so that file names may have
/// any letters, makes pages accessible to screen readers, and selects drawing without a graphics card.
void PrepareProcess();

/// Sets the UTF-8 locale again after the application object, which has taken the locale from the environment. Call
/// before opening the first database.
void SettleLocale();
