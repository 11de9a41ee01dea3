// The plugin's own entry in the plugins menu and the control panel behind it.
#pragma once

// Builds the control menu; the panel's windows are made on first use. `text` is the print list's
// initial text.
void SetupWidgets(const char* text);
// Destroys the control panel's windows and menus.
void DestroyWidgets();
