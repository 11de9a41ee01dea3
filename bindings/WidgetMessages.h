// Widget messages that scripts send or pass on, and reading memory at an address a script gives.
//
// Some widget messages carry pointers (XPWidgetDefs.h): the mouse messages and the cursor question
// point to an XPMouseState_t with param1, a key press to an XPKeyState_t, a reshape to an
// XPWidgetGeometryChange_t with param2, and the cursor question to the XPLMCursorStatus to answer
// with param2. A script holds them as integers and may give any integer, while the simulator reads
// and writes through them. So the structure such a parameter points to is copied from the script's
// address without trusting it, the simulator is given the copy, and the cursor status it answers is
// copied back; a parameter that cannot be read is refused before the simulator sees it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "XPLMDisplay.h"
#include "XPWidgetDefs.h"

// Copies `size` bytes from an address a script gave into `out`; false, with nothing read, for an
// address that is 0 or not readable. Never faults.
bool CV_CopyFromAddress(intptr_t address, void* out, size_t size);
// Copies `size` bytes to an address a script gave; false for one that is not writable.
bool CV_CopyToAddress(intptr_t address, const void* in, size_t size);

// The parameters of one message as the simulator is to get them.
class CV_WidgetMessageParams {
public:
    CV_WidgetMessageParams(XPWidgetMessage message, intptr_t param1, intptr_t param2);
    // False when a parameter the message points with can not be read: the message must not be sent.
    bool Usable() const { return usable_; }
    intptr_t Param1() const { return param1_; }
    intptr_t Param2() const { return param2_; }
    // Copies the cursor status the simulator answered back to the script's address; nothing is
    // written there when the answer left it as it was.
    void CopyBack() const;

private:
    XPWidgetMessage message_;
    intptr_t original2_;
    intptr_t param1_, param2_;
    bool usable_ = true;
    union {
        XPMouseState_t mouse;
        XPKeyState_t key;
        XPWidgetGeometryChange_t change;
    } first_{}, second_{};
    XPLMCursorStatus cursor_ = 0, given_ = 0;
};

// Reports the refused message as "Parameter Error" under the module and function.
void CV_ReportUnusableMessage(const char* module, const char* function);
