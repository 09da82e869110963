#include <pt_platform/module.h>

#include <dlfcn.h>

#include <filesystem>

namespace {

/// libperformance_tracer.so.0 and performance_tracer.so both name "performance_tracer".
std::string moduleName(const std::string& path) {
    std::string name = std::filesystem::path(path).filename().string();
    if (name.rfind("lib", 0) == 0) {
        name.erase(0, 3);
    }
    return name.substr(0, name.find('.'));
}

}  // namespace

bool hvLoadModule(const std::string& path, hvLoadedModule& module, std::string& error) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* reason = dlerror();
        error = reason ? reason : "the module could not be loaded: " + path;
        return false;
    }
    const std::string query = "QueryHVFcnTable_" + moduleName(path);
    auto queryTable = reinterpret_cast<hvQueryFcnTable>(dlsym(handle, query.c_str()));
    const hvModuleDescriptor* descriptor = queryTable ? queryTable() : nullptr;
    if (!descriptor) {
        error = path + " is no module of this host: it has no " + query;
        return false;
    }
    if (descriptor->layoutVersion != HV_MODULE_DESCRIPTOR_VERSION) {
        error = path + " was built for another version of this host";
        return false;
    }
    if (descriptor->initialize) {
        descriptor->initialize();
    }
    module.handle = handle;
    module.descriptor = descriptor;
    return true;
}

void hvTerminateModule(const hvLoadedModule& module) {
    if (module.descriptor && module.descriptor->terminate) {
        module.descriptor->terminate();
    }
}
