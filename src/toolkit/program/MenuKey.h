#pragma once

/// Lets Shift+F10 open the focused control's menu, as the menu key does: many keyboards have no menu key, and Qt knows
/// no other. Call once, after the application object exists.
void InstallMenuKey();
