#pragma once

// What reports and saved files say about the machine and the host, asked of the running host,
// and the tracer's calls of the host's internal functions through the engine.

#include <performance_tracer/system_info_record.h>

#include <pt_platform/hvm.h>

#include <string>
#include <tuple>

namespace performance_tracer {

/// The text answer of a host function with one text argument; empty when the host refuses.
/// An answer that is no text raises UnexpectedValue "CPU information".
std::string callHostString(const std::string& function, const std::string& argument);
/// The eight texts, asked of the host once per process and kept; a failure leaves nothing
/// kept, and the next demand asks again from the first field.
SystemInfoRecord collectSystemInfo();
/// A second record, filled from the first on first demand.
SystemInfoRecord& cachedSystemInfo();
/// The host's root folder, asked at every call; the last good answer (or empty text) when the
/// host refuses.
std::string queryOrviaRoot();

/// Runs a host function on the engine with text and flag arguments and waits for its end; a
/// failure of the request is raised here.
template <typename... Args>
void feval(const boost::shared_ptr<hvm::HVM>& engine, const std::string& function,
           const Args&... args) {
    cmddistributor::RunOptions options(3);
    options.setOutSink(engine->wrapSink(options.getOutSink(), 0));
    options.setErrSink(engine->wrapSink(options.getErrSink(), 1));
    cmddistributor::CmdDistributor& distributor = engine->getCmdDistributor();
    auto request = std::make_shared<cmddistributor::FEvalCmdRequest<Args...>>(
        options, function, std::tuple<const Args&...>(args...));
    distributor.enqueueWithFuture(request).get();
}

// The package functions of PerfTools: switches of the host's string table. Failures are
// dropped without a word.
void kssvStringTableDoGarbageCollection();
void kssvStringTableDisableGarbageCollection();
void kssvStringTableEnableGarbageCollection();

}  // namespace performance_tracer
