#include <pt_platform/hv.h>
#include <pt_platform/hvx.h>

#include <map>
#include <mutex>

#include "host_functions.h"

namespace {

/// The host functions by name. Methods call them on their own thread, the engine on its own,
/// so the table is guarded.
struct FunctionTable {
    std::mutex mutex;
    std::map<std::string, hvxHostFunction> functions = pt::platform::hostFunctions();
};

FunctionTable& table() {
    static FunctionTable instance;
    return instance;
}

}  // namespace

int hvxCallOrvia(int nlhs, hvArray** plhs, int nrhs, hvArray** prhs, const char* functionName) {
    hvxHostFunction function;
    {
        std::lock_guard lock(table().mutex);
        const auto found = table().functions.find(functionName ? functionName : "");
        if (found == table().functions.end()) {
            return 1;
        }
        function = found->second;
    }
    for (int i = 0; i < nlhs; ++i) {
        plhs[i] = nullptr;
    }
    int status;
    try {
        status = function(nlhs, plhs, nrhs, prhs);
    } catch (...) {
        status = 1;
    }
    if (status != 0) {
        for (int i = 0; i < nlhs; ++i) {
            hvDestroyArray(plhs[i]);
            plhs[i] = nullptr;
        }
    }
    return status;
}

hvxHostFunction hvxSetHostFunction(const std::string& name, hvxHostFunction function) {
    std::lock_guard lock(table().mutex);
    hvxHostFunction previous;
    if (const auto found = table().functions.find(name); found != table().functions.end()) {
        previous = std::move(found->second);
        table().functions.erase(found);
    }
    if (function) {
        table().functions[name] = std::move(function);
    }
    return previous;
}

void hvxRestoreHostFunctions() {
    std::lock_guard lock(table().mutex);
    table().functions = pt::platform::hostFunctions();
}
