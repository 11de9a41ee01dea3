// The relay from the simulator's callbacks to the scripts' Python callables.
#pragma once

// Passes one SDK error message to every error callback that scripts registered, in order.
void CV_DispatchErrorCallbacks(const char* message);
