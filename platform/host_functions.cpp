// The host functions that the tracer asks about the machine and the host, answered on Linux,
// and kssvInternal, the host's internal switchboard for its string table.

#include "host_functions.h"

#include <pt_platform/hv.h>
#include <pt_platform/hvm.h>

#include <dlfcn.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace pt::platform {

namespace {

/// The text of a sole text input, or false.
bool textInput(int nrhs, hvArray** prhs, std::string& text) {
    if (nrhs != 1 || !hvIsCharVector(prhs[0])) {
        return false;
    }
    text = hvArrayToStdString(prhs[0]);
    return true;
}

/// A field of the kernel's processor listing, such as "model name"; empty if absent.
std::string cpuInfoField(const std::string& field) {
    std::ifstream cpuinfo("/proc/cpuinfo");
    for (std::string line; std::getline(cpuinfo, line);) {
        if (line.rfind(field, 0) == 0) {
            const std::size_t colon = line.find(':');
            if (colon != std::string::npos) {
                const std::size_t start = line.find_first_not_of(" \t", colon + 1);
                return start == std::string::npos ? std::string() : line.substr(start);
            }
        }
    }
    return {};
}

std::string processorName() {
    for (const char* field : {"model name", "Hardware", "Processor", "cpu model"}) {
        if (std::string name = cpuInfoField(field); !name.empty()) {
            return name;
        }
    }
    utsname system{};
    return uname(&system) == 0 ? system.machine : "";
}

std::string operatingSystem() {
    utsname system{};
    if (uname(&system) != 0) {
        return {};
    }
    return std::string(system.sysname) + " " + system.release;
}

std::string windowSystem() {
    if (const char* wayland = std::getenv("WAYLAND_DISPLAY"); wayland && *wayland) {
        return "Wayland";
    }
    if (const char* display = std::getenv("DISPLAY"); display && *display) {
        return "X11";
    }
    return {};
}

/// The installation folder: the one above the folder that holds this library.
std::string installationFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&installationFolder), &info) == 0 || !info.dli_fname) {
        return {};
    }
    std::error_code error;
    const std::filesystem::path library = std::filesystem::canonical(info.dli_fname, error);
    return error ? std::string() : library.parent_path().parent_path().string();
}

std::string productListing() {
    const std::string rule(76, '-');
    std::string text = rule + "\n";
    text += std::string("Orvia Version ") + kHostVersion + "\n";
    text += "Operating System: " + operatingSystem() + "\n";
    text += rule + "\n";
    for (const char* product : {"Orvia", "Kestrune", "Ylvane", "Performance Tracer"}) {
        std::string line = product;
        line.resize(40, ' ');
        text += line + "Version " + kHostVersion + "\n";
    }
    return text;
}

int answerText(int nlhs, hvArray** plhs, const std::string& text) {
    if (nlhs >= 1) {
        plhs[0] = hvCreateString(text);
    }
    return 0;
}

int hostinfo(int nlhs, hvArray** plhs, int nrhs, hvArray** prhs) {
    std::string what;
    if (!textInput(nrhs, prhs, what)) {
        return 1;
    }
    if (what == "getcpu") {
        return answerText(nlhs, plhs, processorName());
    }
    if (what == "getos") {
        return answerText(nlhs, plhs, operatingSystem());
    }
    if (what == "getwinsys") {
        return answerText(nlhs, plhs, windowSystem());
    }
    return 1;
}

int hostfeature(int nlhs, hvArray** plhs, int nrhs, hvArray** prhs) {
    std::string what;
    if (!textInput(nrhs, prhs, what) || what != "numCores") {
        return 1;
    }
    if (nlhs >= 1) {
        plhs[0] = hvCreateDoubleScalar(static_cast<double>(sysconf(_SC_NPROCESSORS_ONLN)));
    }
    return 0;
}

int version(int nlhs, hvArray** plhs, int nrhs, hvArray** prhs) {
    if (nrhs == 0) {
        return answerText(nlhs, plhs, kHostVersion);
    }
    std::string what;
    if (!textInput(nrhs, prhs, what) || what != "-jvm") {
        return 1;
    }
    return answerText(nlhs, plhs, "No Java VM is available in this host.");
}

int evalcapture(int nlhs, hvArray** plhs, int nrhs, hvArray** prhs) {
    std::string command;
    if (!textInput(nrhs, prhs, command) || command != "ver") {
        return 1;
    }
    return answerText(nlhs, plhs, productListing());
}

int orviaroot(int nlhs, hvArray** plhs, int nrhs, hvArray**) {
    if (nrhs != 0) {
        return 1;
    }
    return answerText(nlhs, plhs, installationFolder());
}

int kssvInternal(int, hvArray**, int nrhs, hvArray** prhs) {
    if (nrhs < 1 || !hvIsCharVector(prhs[0])) {
        return 1;
    }
    const std::string what = hvArrayToStdString(prhs[0]);
    hvm::StringTable& table = hvm::StringTable::instance();
    if (what == "kssvStringTableCollectGarbageNow" && nrhs == 1) {
        table.collectGarbageNow();
    } else if (what == "kssvEnterTableNoLeakMode" && nrhs == 1) {
        table.setNoLeakMode(true);
    } else if (what == "kssvExitTableNoLeakMode" && nrhs == 1) {
        table.setNoLeakMode(false);
    } else if (what == "kssvSetSkipDetailedStackDiagnostics" && nrhs == 2 &&
               hvIsLogicalScalar(prhs[1])) {
        table.setSkipDetailedStackDiagnostics(hvIsLogicalScalarTrue(prhs[1]));
    } else {
        return 1;
    }
    return 0;
}

}  // namespace

std::map<std::string, hvxHostFunction> hostFunctions() {
    return {{"hostinfo", hostinfo},   {"hostfeature", hostfeature},
            {"version", version},     {"evalcapture", evalcapture},
            {"orviaroot", orviaroot}, {"kssvInternal", kssvInternal}};
}

}  // namespace pt::platform
