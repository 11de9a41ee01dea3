// Visibility of xpsim's own control interface.
//
// XPLM_64.so is built with hidden visibility, so that only the SDK functions (marked by the SDK
// headers) and the functions marked XPSIM_API below leave the library. The XPSIM_API functions are
// the host program's and the tests' way to drive the simulated world; plugins never need them.
#pragma once

#define XPSIM_API __attribute__((visibility("default")))
