#pragma once

// The host engine and its command distributor. The engine runs requests on a thread of its
// own, one after another; a caller queues a request and waits on the future it gets back. The
// inputs of a request are made into host values only when the engine is about to run it, and
// serialised under the engine's global lock, as the host does for values that cross threads.

#ifndef BOOST_THREAD_VERSION
#define BOOST_THREAD_VERSION 4
#endif

#include <pt_platform/export.h>
#include <pt_platform/hv.h>

#include <boost/shared_ptr.hpp>
#include <boost/thread/future.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

namespace cmddistributor {

/// Where the text output of a request goes.
using Sink = std::function<void(const std::string& text)>;

class PT_PLATFORM_API RunOptions {
public:
    explicit RunOptions(int mode = 3) : _mode(mode) {}

    int getMode() const { return _mode; }
    const Sink& getOutSink() const { return _out; }
    void setOutSink(Sink sink) { _out = std::move(sink); }
    const Sink& getErrSink() const { return _err; }
    void setErrSink(Sink sink) { _err = std::move(sink); }

private:
    int _mode;
    Sink _out;
    Sink _err;
};

namespace detail {
/// Host values as bytes, and back; the engine gets its inputs this way.
PT_PLATFORM_API std::vector<std::uint8_t> serializeHvArrays(const std::vector<hvArray*>& values);
PT_PLATFORM_API std::vector<hvUniqueArray> deserializeHvArrays(
    const std::vector<std::uint8_t>& bytes);
}  // namespace detail

/// The inner form of a function-evaluation request: the function's name and its serialised
/// inputs, as the engine runs it.
class PT_PLATFORM_API FEvalIIP {
public:
    FEvalIIP(std::string function, std::vector<std::uint8_t> inputs, RunOptions options);

    const std::string& function() const { return _function; }
    const std::vector<std::uint8_t>& inputs() const { return _inputs; }
    const RunOptions& options() const { return _options; }

private:
    std::string _function;
    std::vector<std::uint8_t> _inputs;
    RunOptions _options;
};

/// A request for the engine.
class PT_PLATFORM_API CmdRequest {
public:
    virtual ~CmdRequest();
    /// Made when the distributor asks for it, on the engine's thread.
    virtual std::unique_ptr<FEvalIIP> makeIIP() const = 0;
};

/// Completes a promise of a request's result.
template <typename T>
class PromiseDelegateT {
public:
    boost::future<T> getFuture() { return _promise.get_future(); }
    void complete() { _promise.set_value(); }
    void fail(boost::exception_ptr error) { _promise.set_exception(error); }

private:
    boost::promise<T> _promise;
};

class PT_PLATFORM_API CmdDistributor {
public:
    virtual ~CmdDistributor();
    /// Queues a request; the future raises the request's failure when waited on. A null
    /// request is refused with "request cannot be null.".
    virtual boost::future<void> enqueueWithFuture(std::shared_ptr<CmdRequest> request) = 0;
};

}  // namespace cmddistributor

namespace hvutil::cmddistributor {

/// Holds the engine's global lock for as long as it lives.
class PT_PLATFORM_API LockBFLHelper {
public:
    LockBFLHelper();
    ~LockBFLHelper();
    LockBFLHelper(const LockBFLHelper&) = delete;
    LockBFLHelper& operator=(const LockBFLHelper&) = delete;

private:
    std::unique_lock<std::recursive_mutex> _lock;
};

}  // namespace hvutil::cmddistributor

namespace cmddistributor {

/// A request to evaluate a host function with arguments (texts and flags) held by reference;
/// they must live until the request has run.
template <typename... Args>
class FEvalCmdRequest : public CmdRequest {
public:
    FEvalCmdRequest(RunOptions options, std::string function, std::tuple<const Args&...> args)
        : _options(std::move(options)), _function(std::move(function)), _args(args) {}

    std::unique_ptr<FEvalIIP> makeIIP() const override {
        hvutil::cmddistributor::LockBFLHelper lock;
        std::vector<hvUniqueArray> values;
        std::apply([&](const Args&... arg) { (values.push_back(toValue(arg)), ...); }, _args);
        std::vector<hvArray*> raw;
        for (const auto& value : values) {
            raw.push_back(value.get());
        }
        return std::make_unique<FEvalIIP>(_function, detail::serializeHvArrays(raw), _options);
    }

private:
    static hvUniqueArray toValue(const std::string& text) {
        return hvUniqueArray(hvCreateString(text));
    }
    static hvUniqueArray toValue(const char* text) { return hvUniqueArray(hvCreateString(text)); }
    static hvUniqueArray toValue(bool flag) { return hvUniqueArray(hvCreateLogicalScalar(flag)); }
    static hvUniqueArray toValue(double number) {
        return hvUniqueArray(hvCreateDoubleScalar(number));
    }

    RunOptions _options;
    std::string _function;
    std::tuple<const Args&...> _args;
};

}  // namespace cmddistributor

namespace hvm {

/// The host's string table, as far as its switches go: how often it was collected, and the
/// modes that the tracer's package functions switch.
class PT_PLATFORM_API StringTable {
public:
    static StringTable& instance();

    void collectGarbageNow();
    void setNoLeakMode(bool on);
    void setSkipDetailedStackDiagnostics(bool on);
    int collections() const;
    bool noLeakMode() const;
    bool skipsDetailedStackDiagnostics() const;

private:
    mutable std::mutex _mutex;
    int _collections = 0;
    bool _noLeakMode = false;
    bool _skipDetailedStackDiagnostics = false;
};

/// A host engine: runs requests on its own thread.
class PT_PLATFORM_API HVM {
public:
    virtual ~HVM();
    virtual cmddistributor::CmdDistributor& getCmdDistributor() = 0;
    /// The sink to use for a caller's sink: kind 0 for output, 1 for errors. Without a sink of
    /// the caller's, output goes to the engine's standard stream of that kind.
    virtual cmddistributor::Sink wrapSink(const cmddistributor::Sink& sink, int kind) = 0;
};

class PT_PLATFORM_API Factory {
public:
    /// The engine of this process, started on first demand.
    static boost::shared_ptr<HVM> getCurrentLocalHVM();
};

}  // namespace hvm
