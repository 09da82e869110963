// saveToFile, saveKsStartupData and loadTracerData: raw data in and out of value files.

#include <performance_tracer/constants.h>
#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>

#include "messages.h"
#include "method_frame.h"
#include "methods.h"
#include "persistence.h"
#include "system_info.h"

namespace performance_tracer {

namespace {

std::string fileNameOf(const hvArray* value) {
    if (!isStrictText(value)) {
        raise<Errors::ParameterMismatchString>(std::string("Filename"));
    }
    return textOf(value);
}

/// Writes the three variables of a value file: the points, this machine's information and
/// the host's root folder, which the points' phase names are stripped of. A save that fails,
/// whatever the reason, leaves the earlier file at that name as it was.
void save(const std::string& file,
          const PTRawDataVector* (*select)(std::unique_ptr<PTRawDataVector>& held)) {
    struct Discarder {
        void operator()(hvFile* f) const { hvfDiscard(f); }
    };
    // A NUL would end the name early, and so another file would be written.
    std::unique_ptr<hvFile, Discarder> out(
        file.find('\0') == std::string::npos ? hvfOpen(file.c_str(), "w") : nullptr);
    if (!out) {
        raise<Errors::OpenFileFailed>(file);
    }
    const std::string root = queryOrviaRoot();
    setPathStripRoot(root);
    // The rows are written straight from the points, so that they are never made as values.
    // The other two values are made first: making them may ask the host, and nothing may
    // change the points while they are written.
    const hvUniqueArray systemInfo(systemInfoToStruct());
    const hvUniqueArray rootText(hvCreateString(root));
    std::unique_ptr<PTRawDataVector> held;
    const PTRawDataVector* points = select(held);
    const PTRawDataVector none;
    if (putRawDataCells(out.get(), kRawDataVariable, points ? *points : none) != 0) {
        raise<Errors::DataWriteFail>(std::string("Raw Data"), file);
    }
    if (hvfPutVariable(out.get(), kSystemInfoVariable, systemInfo.get()) != 0) {
        raise<Errors::DataWriteFail>(std::string("System Information"), file);
    }
    if (hvfPutVariable(out.get(), kRootVariable, rootText.get()) != 0) {
        raise<Errors::DataWriteFail>(std::string("Orvia Root"), file);
    }
    // Most of a small run reaches the disk only now; whatever fails here lost the raw data.
    if (hvfClose(out.release()) != 0) {
        raise<Errors::DataWriteFail>(std::string("Raw Data"), file);
    }
}

/// The store itself: a save only reads the points, so it needs neither copies nor a list of
/// its own.
const PTRawDataVector* allPoints(std::unique_ptr<PTRawDataVector>&) {
    return ptTracer()->_rawData.get();
}

const PTRawDataVector* startupPoints(std::unique_ptr<PTRawDataVector>& held) {
    held = ptTracer()->rawDataForGrouping(std::string(pt::kKestruneStartupGrouping));
    return held.get();
}

}  // namespace

void PerformanceTracer_saveToFile::invoke(void*, std::uint32_t&, hvArray**, std::int32_t,
                                          const hvArray** prhs) {
    save(fileNameOf(prhs[0]), &allPoints);
}

void PerformanceTracer_saveKsStartupData::invoke(void*, std::uint32_t&, hvArray**,
                                                 std::int32_t nrhs, const hvArray** prhs) {
    if (nrhs > 1) {
        raise<Errors::MaxParamsExceeded>(std::string("1"));
    }
    save(nrhs == 1 ? fileNameOf(prhs[0]) : std::string("KsStartupData.hvf"), &startupPoints);
}

void PerformanceTracer_loadTracerData::invoke(void*, std::uint32_t&, hvArray**, std::int32_t,
                                              const hvArray** prhs) {
    // The root is asked for and stored before the input is looked at.
    setPathStripRoot(queryOrviaRoot());
    const std::string file = fileNameOf(prhs[0]);
    if (file.find(".hvf") == std::string::npos) {
        raise<Errors::MissingHvfExt>();
    }
    auto points = std::make_unique<PTRawDataVector>();
    SystemInfoRecord record;
    std::string root;
    if (!loadSavedData(file, *points, record, root)) {
        raise<Errors::OpenFileFailed>(file);
    }
    ::PerformanceTracer& tracer = *ptTracer();
    tracer._rawData = std::move(points);
    if (!tracer._systemInfo) {
        tracer._systemInfo = std::make_unique<SystemInfoRecord>();
    }
    *tracer._systemInfo = record;
}

}  // namespace performance_tracer
