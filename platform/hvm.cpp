#include <pt_platform/hvm.h>
#include <pt_platform/hvx.h>

#include <boost/make_shared.hpp>

#include <condition_variable>
#include <deque>
#include <iostream>
#include <stdexcept>
#include <thread>

#include "hv_codec.h"

namespace cmddistributor {

namespace detail {

std::vector<std::uint8_t> serializeHvArrays(const std::vector<hvArray*>& values) {
    msgpack::sbuffer buffer;
    msgpack::packer<msgpack::sbuffer> packer(buffer);
    packer.pack_array(static_cast<std::uint32_t>(values.size()));
    for (const hvArray* value : values) {
        pt::platform::packValue(packer, value);
    }
    return std::vector<std::uint8_t>(buffer.data(), buffer.data() + buffer.size());
}

std::vector<hvUniqueArray> deserializeHvArrays(const std::vector<std::uint8_t>& bytes) {
    pt::platform::ValueReader reader(bytes.data(), bytes.size());
    std::uint32_t count;
    if (!reader.readArray(count)) {
        throw std::runtime_error("request inputs are not a list of values");
    }
    std::vector<hvUniqueArray> values(count);
    for (hvUniqueArray& value : values) {
        if (!reader.readValue(value)) {
            throw std::runtime_error("request input is not a host value");
        }
    }
    if (!reader.atEnd()) {
        throw std::runtime_error("request inputs are followed by other bytes");
    }
    return values;
}

}  // namespace detail

FEvalIIP::FEvalIIP(std::string function, std::vector<std::uint8_t> inputs, RunOptions options)
    : _function(std::move(function)), _inputs(std::move(inputs)), _options(std::move(options)) {}

CmdRequest::~CmdRequest() = default;
CmdDistributor::~CmdDistributor() = default;

}  // namespace cmddistributor

namespace hvutil::cmddistributor {

namespace {
std::recursive_mutex& globalLock() {
    static std::recursive_mutex mutex;
    return mutex;
}
}  // namespace

LockBFLHelper::LockBFLHelper() : _lock(globalLock()) {}
LockBFLHelper::~LockBFLHelper() = default;

}  // namespace hvutil::cmddistributor

namespace hvm {

StringTable& StringTable::instance() {
    static StringTable table;
    return table;
}

void StringTable::collectGarbageNow() {
    std::lock_guard lock(_mutex);
    ++_collections;
}

void StringTable::setNoLeakMode(bool on) {
    std::lock_guard lock(_mutex);
    _noLeakMode = on;
}

void StringTable::setSkipDetailedStackDiagnostics(bool on) {
    std::lock_guard lock(_mutex);
    _skipDetailedStackDiagnostics = on;
}

int StringTable::collections() const {
    std::lock_guard lock(_mutex);
    return _collections;
}

bool StringTable::noLeakMode() const {
    std::lock_guard lock(_mutex);
    return _noLeakMode;
}

bool StringTable::skipsDetailedStackDiagnostics() const {
    std::lock_guard lock(_mutex);
    return _skipDetailedStackDiagnostics;
}

HVM::~HVM() = default;

namespace {

/// The engine: a thread that runs queued requests one after another until the process ends.
class Engine final : public HVM, public cmddistributor::CmdDistributor {
public:
    Engine() : _thread([this] { run(); }) {}

    ~Engine() override {
        {
            std::lock_guard lock(_mutex);
            _stopping = true;
        }
        _wake.notify_all();
        _thread.join();
    }

    cmddistributor::CmdDistributor& getCmdDistributor() override { return *this; }

    cmddistributor::Sink wrapSink(const cmddistributor::Sink& sink, int kind) override {
        if (sink) {
            return sink;
        }
        return [kind](const std::string& text) { (kind == 1 ? std::cerr : std::cout) << text; };
    }

    boost::future<void> enqueueWithFuture(
        std::shared_ptr<cmddistributor::CmdRequest> request) override {
        if (!request) {
            throw std::invalid_argument("request cannot be null.");
        }
        auto promise = std::make_shared<cmddistributor::PromiseDelegateT<void>>();
        boost::future<void> future = promise->getFuture();
        {
            std::lock_guard lock(_mutex);
            _queue.push_back({std::move(request), promise});
        }
        _wake.notify_one();
        return future;
    }

private:
    struct Job {
        std::shared_ptr<cmddistributor::CmdRequest> request;
        std::shared_ptr<cmddistributor::PromiseDelegateT<void>> promise;
    };

    void run() {
        for (;;) {
            Job job;
            {
                std::unique_lock lock(_mutex);
                _wake.wait(lock, [this] { return _stopping || !_queue.empty(); });
                if (_queue.empty()) {
                    return;
                }
                job = std::move(_queue.front());
                _queue.pop_front();
            }
            try {
                execute(*job.request);
                job.promise->complete();
            } catch (...) {
                job.promise->fail(boost::current_exception());
            }
        }
    }

    static void execute(const cmddistributor::CmdRequest& request) {
        const std::unique_ptr<cmddistributor::FEvalIIP> iip = request.makeIIP();
        if (!iip) {
            throw std::logic_error("request must contain an IIP.");
        }
        std::vector<hvUniqueArray> inputs =
            cmddistributor::detail::deserializeHvArrays(iip->inputs());
        std::vector<hvArray*> prhs;
        for (auto& input : inputs) {
            prhs.push_back(input.get());
        }
        if (hvxCallOrvia(0, nullptr, static_cast<int>(prhs.size()), prhs.data(),
                         iip->function().c_str()) != 0) {
            throw std::runtime_error("the host function " + iip->function() + " failed");
        }
    }

    std::mutex _mutex;
    std::condition_variable _wake;
    std::deque<Job> _queue;
    bool _stopping = false;
    std::thread _thread;  // last: it starts running once everything above exists
};

}  // namespace

boost::shared_ptr<HVM> Factory::getCurrentLocalHVM() {
    static const boost::shared_ptr<Engine> engine = boost::make_shared<Engine>();
    return engine;
}

}  // namespace hvm
