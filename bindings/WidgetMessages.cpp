// Widget message parameters that point to structures, copied without trusting the script's address.
#include <Python.h>

#include <errno.h>
#include <sys/uio.h>
#include <unistd.h>

#include "BindingSupport.h"
#include "WidgetMessages.h"

namespace {

// Moves `size` bytes through a pipe: the kernel does the reading and the writing and answers EFAULT
// for memory that is not there, where a plain copy would end the simulator.
bool CopyThroughPipe(const void* from, void* to, size_t size) {
    int fds[2];
    if (pipe(fds) != 0) return false;
    bool ok =
        write(fds[1], from, size) == static_cast<ssize_t>(size) && read(fds[0], to, size) == static_cast<ssize_t>(size);
    close(fds[0]);
    close(fds[1]);
    return ok;
}

}  // namespace

bool CV_CopyFromAddress(intptr_t address, void* out, size_t size) {
    if (address == 0) return false;
    struct iovec local = {out, size};
    struct iovec remote = {reinterpret_cast<void*>(address), size};
    const ssize_t copied = process_vm_readv(getpid(), &local, 1, &remote, 1, 0);
    if (copied == static_cast<ssize_t>(size)) return true;
    // Where the system refuses that call, a pipe does the same check.
    if (copied >= 0 || (errno != ENOSYS && errno != EPERM)) return false;
    return CopyThroughPipe(reinterpret_cast<const void*>(address), out, size);
}

bool CV_CopyToAddress(intptr_t address, const void* in, size_t size) {
    if (address == 0) return false;
    struct iovec local = {const_cast<void*>(in), size};
    struct iovec remote = {reinterpret_cast<void*>(address), size};
    const ssize_t copied = process_vm_writev(getpid(), &local, 1, &remote, 1, 0);
    if (copied == static_cast<ssize_t>(size)) return true;
    if (copied >= 0 || (errno != ENOSYS && errno != EPERM)) return false;
    return CopyThroughPipe(in, reinterpret_cast<void*>(address), size);
}

CV_WidgetMessageParams::CV_WidgetMessageParams(XPWidgetMessage message, intptr_t param1, intptr_t param2)
    : message_(message), original2_(param2), param1_(param1), param2_(param2) {
    auto copy = [this](intptr_t& param, void* storage, size_t size) {
        if (CV_CopyFromAddress(param, storage, size))
            param = reinterpret_cast<intptr_t>(storage);
        else
            usable_ = false;
    };
    switch (message) {
        case xpMsg_MouseDown:
        case xpMsg_MouseDrag:
        case xpMsg_MouseUp:
        case xpMsg_MouseWheel:
            copy(param1_, &first_.mouse, sizeof first_.mouse);
            break;
        case xpMsg_KeyPress:
            copy(param1_, &first_.key, sizeof first_.key);
            break;
        case xpMsg_Reshape:
            copy(param2_, &second_.change, sizeof second_.change);
            break;
        case xpMsg_CursorAdjust:
            copy(param1_, &first_.mouse, sizeof first_.mouse);
            copy(param2_, &cursor_, sizeof cursor_);
            given_ = cursor_;
            break;
        default:
            break;
    }
}

void CV_WidgetMessageParams::CopyBack() const {
    if (usable_ && message_ == xpMsg_CursorAdjust && cursor_ != given_)
        CV_CopyToAddress(original2_, &cursor_, sizeof cursor_);
}

void CV_ReportUnusableMessage(const char* module, const char* function) {
    PrintException(module, function, CV_PARAMETER_ERROR);
}
