// The check of many runs against many, on any times a damaged or foreign file could give:
// NaN, infinities, negative and huge figures, ties, phases that come and go. It refuses what
// it must refuse, never crashes, and its JSON always holds every phase.
//
// Bytes: runs on the base side and on the new side (1 to 12 each), the number of phase names
// (1 to 6), the threshold and alpha as bytes; then, for each run and phase, a byte that says
// whether the run has it and two doubles, its self and total time.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "processing/run_check.h"

namespace {

class Reader {
public:
    Reader(const std::uint8_t* data, std::size_t size) : _data(data), _size(size) {}

    std::uint8_t byte() { return _at < _size ? _data[_at++] : 0; }
    double number() {
        std::uint8_t bytes[8] = {};
        for (std::uint8_t& b : bytes) {
            b = byte();
        }
        double value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

private:
    const std::uint8_t* _data;
    std::size_t _size;
    std::size_t _at = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Reader in(data, size);
    const int baseRuns = 1 + in.byte() % 12;
    const int newRuns = 1 + in.byte() % 12;
    const int phases = 1 + in.byte() % 6;
    pt::CheckOptions options;
    options.threshold = in.byte() / 100.0;
    options.alpha = (1 + in.byte() % 50) / 100.0;
    options.failOnMissing = in.byte() % 2 == 1;
    const auto side = [&](int runs) {
        std::vector<PTRunPhaseTimes> side(static_cast<std::size_t>(runs));
        for (PTRunPhaseTimes& run : side) {
            for (int phase = 0; phase < phases; ++phase) {
                const bool present = in.byte() % 4 != 0;
                const double self = in.number();
                const double total = in.number();
                if (present) {
                    run["phase " + std::to_string(phase)] = {self, total};
                }
            }
        }
        return side;
    };
    const std::vector<PTRunPhaseTimes> base = side(baseRuns);
    const std::vector<PTRunPhaseTimes> changed = side(newRuns);
    pt::CheckResult result;
    try {
        result = ptCheckRuns(base, changed, options);
    } catch (const std::invalid_argument&) {
        return 0;  // times that are not finite
    }
    const std::string json = pt::checkResultJson(result);
    std::size_t rows = 0;
    for (std::size_t at = json.find("\"phase\": "); at != std::string::npos;
         at = json.find("\"phase\": ", at + 1)) {
        ++rows;
    }
    if (rows != result.phases.size() || json.find_first_of("<>&") != std::string::npos) {
        std::abort();
    }
    for (const pt::PhaseCheck& check : result.phases) {
        if (check.adjustedP < check.p || check.adjustedP > 1.0 ||
            (check.verdict == pt::CheckVerdict::Regression && !(check.ratio > 1.0))) {
            std::abort();
        }
    }
    return 0;
}
