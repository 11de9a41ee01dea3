// The control panel. Its menu and windows are built in a later stage of the plugin; until then the
// panel's lists collect their lines in PanelState and nothing is shown.
#include "ControlPanel.h"

void SetupWidgets(const char* text) { (void)text; }

void DestroyWidgets() {}
