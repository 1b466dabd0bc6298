#pragma once

/// Lets Shift+F10 open the menu of what has the focus, as the menu key does: many keyboards have no such key, and the
/// toolkit knows that one alone. Call once, after the application object exists.
void InstallMenuKey();
