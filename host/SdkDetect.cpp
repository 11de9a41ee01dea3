// SDK capability detection.
#include "SdkDetect.h"

#include <dlfcn.h>

#include <cstdio>

#define CV_SDK_POINTER_DEFINITION(name) decltype(&name) name##_ptr = nullptr;
CV_SDK_POINTER_DEFINITION(XPLMFindSymbol)
CV_SDK_OPTIONAL_FUNCTIONS(CV_SDK_POINTER_DEFINITION)
#undef CV_SDK_POINTER_DEFINITION

void* XPLoadDLL(const char* path) {
    void* handle = dlopen(path, RTLD_NOW | RTLD_GLOBAL);
    if (handle == nullptr) {
        const char* error = dlerror();
        if (error) printf("dlerror: %s\n", error);
    }
    return handle;
}

void* XPFindSymbol(void* handle, const char* name) {
    if (handle == nullptr) return nullptr;
    dlerror();
    void* symbol = dlsym(handle, name);
    if (symbol == nullptr) {
        const char* error = dlerror();
        if (error) printf("dlerror: %s\n", error);
    }
    return symbol;
}

void XPUnloadDLL(void* handle) {
    if (handle) dlclose(handle);
}

int FoundSDK200(const char* xplmPath) {
    // The handle stays open for the life of the process.
    void* library = XPLoadDLL(xplmPath);
    if (library == nullptr) return 0;
    XPLMFindSymbol_ptr = reinterpret_cast<decltype(XPLMFindSymbol_ptr)>(XPFindSymbol(library, "XPLMFindSymbol"));
    if (XPLMFindSymbol_ptr != nullptr) {
#define CV_SDK_LOOKUP(name) name##_ptr = reinterpret_cast<decltype(name##_ptr)>(XPLMFindSymbol_ptr(#name));
        CV_SDK_OPTIONAL_FUNCTIONS(CV_SDK_LOOKUP)
#undef CV_SDK_LOOKUP
        return 1;
    }
#define CV_SDK_CLEAR(name) name##_ptr = nullptr;
    CV_SDK_OPTIONAL_FUNCTIONS(CV_SDK_CLEAR)
#undef CV_SDK_CLEAR
    return 0;
}
