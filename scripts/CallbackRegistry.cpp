// The callback registry.
#include "CallbackRegistry.h"

void CV_CheckAllCallbacks() {}
