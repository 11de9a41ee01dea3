// Callback dispatch.
#include "CallbackDispatch.h"

void CV_DispatchErrorCallbacks(const char* message) { (void)message; }
