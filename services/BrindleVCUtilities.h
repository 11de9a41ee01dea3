// The shared data items through which scripts drive a separate virtual-camera plugin, and the
// script module BrindleVCUtilities that reads and writes them.
#pragma once

// Takes part in sharing the fourteen items, in their fixed order (each item's index is its refcon).
// Called when the interpreter starts, before the modules are created.
void CV_ShareVirtualCameraItems();
// Withdraws from sharing them, in the same order and with the same arguments.
void CV_UnshareVirtualCameraItems();
