// XPStandardWidgets: the standard widget classes. The header declares only their messages and
// properties; their behaviour (behind XPGetWidgetClassFunc) is not yet simulated.
#include "XPStandardWidgets.h"
