// The callback registry: one list per callback kind, tying each registration to its script,
// callable and refcon.
#pragma once

// Reports registrations that scripts left behind, list by list.
void CV_CheckAllCallbacks();
