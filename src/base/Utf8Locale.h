#pragma once

/// Makes the environment name a UTF-8 locale, so that file names may have any letters. Call before the application
/// object, which takes the locale from the environment and, from Qt 6.5 on, complains of any other on standard error.
void ForceUtf8Environment();

/// Sets the UTF-8 locale again after the application object. Call before opening the first database: the engine refuses
/// file names outside ASCII in a process without one.
void SettleLocale();
