#include "system_info.h"

#include <performance_tracer/number_text.h>

#include <pt_platform/hvx.h>
#include <pt_platform/ut.h>

#include <memory>

#include "messages.h"
#include "method_frame.h"
#include "report/system_info_source.h"

namespace performance_tracer {

namespace {

/// What a host function answered: refused, or its one output (which may be missing).
struct HostAnswer {
    bool refused;
    hvUniqueArray value;
};

HostAnswer askHost(const char* function, hvArray* argument) {
    hvArray* answer = nullptr;
    hvArray* inputs[] = {argument};
    const int status =
        hvxCallOrvia(1, &answer, argument ? 1 : 0, argument ? inputs : nullptr, function);
    return {status != 0, hvUniqueArray(status == 0 ? answer : nullptr)};
}

/// The text answer of a host function; empty when the host refuses, an error when it answers
/// with anything but text.
std::string askHostText(const char* function, hvArray* argument, const char* word) {
    const HostAnswer answer = askHost(function, argument);
    if (answer.refused) {
        return {};
    }
    if (!isPlainText(answer.value.get())) {
        raise<Errors::UnexpectedValue>(std::string(word));
    }
    return textOf(answer.value.get());
}

constexpr const char* kHostInfoWord = "CPU information";

std::string coreCount() {
    const hvUniqueArray argument(hvCreateString("numCores"));
    const HostAnswer answer = askHost("hostfeature", argument.get());
    if (answer.refused) {
        return {};
    }
    if (!hvIsDouble(answer.value.get()) || !hvIsScalar(answer.value.get())) {
        raise<Errors::UnexpectedValue>(std::string("Number of Cores"));
    }
    // Precision 0 leaves one significant digit, so that twelve cores read 1e+01.
    return ptNumberText(hvGetScalar(answer.value.get()), 0);
}

std::string hostVersion(const char* option) {
    const hvUniqueArray argument(option ? hvCreateString(option) : nullptr);
    return askHostText("version", argument.get(), kHostInfoWord);
}

}  // namespace

std::string callHostString(const std::string& function, const std::string& argument) {
    const hvUniqueArray input(hvCreateString(argument));
    return askHostText(function.c_str(), input.get(), kHostInfoWord);
}

SystemInfoRecord collectSystemInfo() {
    static SystemInfoRecord record;
    static bool collected = false;
    if (!collected) {
        // In this order; each field is kept as soon as it is known.
        record.processorStr = callHostString("hostinfo", "getcpu");
        record.cpuSpeedStr = ptClockSpeedText(utCPUspeedOS());
        record.numCoresStr = coreCount();
        record.totalPhysMemStr = "N/A";
        record.OrviaVersionStr = hostVersion(nullptr);
        record.javaVMVersionStr = hostVersion("-jvm");
        std::string system = callHostString("hostinfo", "getos");
        record.operatingSystemStr = system + " " + callHostString("hostinfo", "getwinsys");
        const hvUniqueArray ver(hvCreateString("ver"));
        record.installedProductsStr =
            askHostText("evalcapture", ver.get(), "installed products: [evalcapture('ver')]");
        collected = true;
    }
    return record;
}

SystemInfoRecord& cachedSystemInfo() {
    static std::unique_ptr<SystemInfoRecord> record;
    static bool filled = false;
    if (!filled) {
        if (!record) {
            record = std::make_unique<SystemInfoRecord>();
        }
        *record = collectSystemInfo();
        filled = true;
    }
    return *record;
}

std::string queryOrviaRoot() {
    static std::string root;
    const HostAnswer answer = askHost("orviaroot", nullptr);
    if (!answer.refused) {
        if (!isPlainText(answer.value.get())) {
            raise<Errors::UnexpectedValue>(std::string("Orvia Root"));
        }
        root = textOf(answer.value.get());
    }
    return root;
}

namespace {

void switchStringTable(const char* what) {
    try {
        const std::string text(what);
        feval(hvm::Factory::getCurrentLocalHVM(), "kssvInternal", text);
    } catch (...) {
        // The switches are a courtesy to the host; they never fail their caller.
    }
}

}  // namespace

void kssvStringTableDoGarbageCollection() { switchStringTable("kssvStringTableCollectGarbageNow"); }

void kssvStringTableDisableGarbageCollection() { switchStringTable("kssvEnterTableNoLeakMode"); }

void kssvStringTableEnableGarbageCollection() { switchStringTable("kssvExitTableNoLeakMode"); }

}  // namespace performance_tracer

namespace {

// Reports written without a record of their own show the one the host gives this process.
const bool kSystemInfoSourceRegistered = [] {
    pt::report::setSystemInfoSource(
        []() -> const SystemInfoRecord& { return performance_tracer::cachedSystemInfo(); });
    return true;
}();

}  // namespace
