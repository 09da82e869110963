// Value files as a load reads them: the container, the three variables, the rows of the raw
// points, then the matching pass and the aggregation over what was loaded.
//
// The first byte chooses what the rest is. 0: a whole file, to try the container's checks.
// 1: the uncompressed content, which the target wraps in a valid header, zlib stream and
// CRC-32, so that mutations reach the MessagePack decoder and the row reader instead of
// failing the checksum.

#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <typeinfo>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include <performance_tracer/aggregation.h>
#include <performance_tracer/names.h>
#include <performance_tracer/processed_points.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include "host/persistence.h"

namespace {

/// A file in memory that the container opens by path.
class MemoryFile {
public:
    MemoryFile() : _fd(memfd_create("pt_fuzz_value_file", 0)) {
        _path = "/proc/self/fd/" + std::to_string(_fd);
    }
    ~MemoryFile() { close(_fd); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    const std::string& fill(const std::vector<unsigned char>& bytes) {
        if (ftruncate(_fd, 0) != 0 ||
            pwrite(_fd, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
            std::abort();
        }
        return _path;
    }

private:
    int _fd;
    std::string _path;
};

void putLittleEndian(std::vector<unsigned char>& out, std::uint64_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        out.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }
}

/// A container around the given content, with the lengths and checksum right.
std::vector<unsigned char> wrap(const std::uint8_t* content, std::size_t size) {
    uLongf compressedSize = compressBound(size);
    std::vector<unsigned char> compressed(compressedSize);
    if (compress2(compressed.data(), &compressedSize, content, size, Z_BEST_SPEED) != Z_OK) {
        std::abort();
    }
    std::vector<unsigned char> file = {0x89, 'H', 'V', 'F', '\r', '\n', 0x1A, '\n'};
    putLittleEndian(file, 1, 2);
    putLittleEndian(file, 0, 2);
    putLittleEndian(file, size, 8);
    putLittleEndian(file, compressedSize, 8);
    file.insert(file.end(), compressed.begin(), compressed.begin() + compressedSize);
    putLittleEndian(file, crc32_z(crc32_z(0, nullptr, 0), content, size), 4);
    return file;
}

bool samePoints(const PTRawDataVector& a, const PTRawDataVector& b) {
    const auto same = [](const PTOrviaDataPoint& x, const PTOrviaDataPoint& y) {
        const auto* kx = dynamic_cast<const PTKestruneDataPoint*>(&x);
        const auto* ky = dynamic_cast<const PTKestruneDataPoint*>(&y);
        const auto* yx = dynamic_cast<const PTYlvaneDataPoint*>(&x);
        const auto* yy = dynamic_cast<const PTYlvaneDataPoint*>(&y);
        const auto bits = [](double d) {
            std::uint64_t u;
            std::memcpy(&u, &d, sizeof u);
            return u;
        };
        return typeid(x) == typeid(y) && x._pointType == y._pointType && x._phaseID == y._phaseID &&
               x._groupingID == y._groupingID && x._statisticsTypeID == y._statisticsTypeID &&
               x._isPhaseStart == y._isPhaseStart && bits(x._wcTime) == bits(y._wcTime) &&
               bits(x._cpuTime) == bits(y._cpuTime) && !x._detailedMem == !y._detailedMem &&
               !x._basicMem == !y._basicMem &&
               (!kx || (kx->_modelID == ky->_modelID && kx->_targetID == ky->_targetID)) &&
               (!yx || (yx->_machineID == yy->_machineID && yx->_chartID == yy->_chartID));
    };
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!same(*a[i], *b[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    static MemoryFile memory;
    const std::vector<unsigned char> bytes =
        data[0] == 1 ? wrap(data + 1, size - 1) : std::vector<unsigned char>(data + 1, data + size);
    const std::string& path = memory.fill(bytes);

    // Every variable that an opened file holds can be made, and made again.
    PTRawDataVector whole;
    SystemInfoRecord wholeRecord;
    const bool opened = [&] {
        hvFile* file = hvfOpen(path.c_str(), "r");
        if (!file) {
            return false;
        }
        for (const char* name :
             {performance_tracer::kRawDataVariable, performance_tracer::kSystemInfoVariable,
              performance_tracer::kRootVariable, "absent"}) {
            hvUniqueArray value(hvfGetVariable(file, name));
            if (value && !hvIsEqual(value.get(), hvUniqueArray(hvfGetVariable(file, name)).get())) {
                std::abort();
            }
            if (name == performance_tracer::kRawDataVariable) {
                performance_tracer::readRawDataCells(value.get(), whole);
            } else if (name == performance_tracer::kSystemInfoVariable) {
                performance_tracer::readSystemInfoStruct(value.get(), wholeRecord);
            }
        }
        hvfClose(file);
        return true;
    }();

    // A load reads the file in one pass, straight into points: it must take the files that
    // hvfOpen takes, and read what the whole variables hold.
    PTRawDataVector points;
    SystemInfoRecord record;
    std::string root;
    bool loaded = true;
    try {
        performance_tracer::loadSavedData(path, points, record, root);
    } catch (const std::exception&) {
        loaded = false;  // a file that does not open is refused with a catalogue error
    }
    if (loaded != opened) {
        std::abort();
    }
    if (!loaded) {
        return 0;
    }
    if (!samePoints(points, whole) || record.processorStr != wholeRecord.processorStr ||
        record.installedProductsStr != wholeRecord.installedProductsStr) {
        std::abort();
    }

    // What was loaded goes where a report would take it.
    PTProcessedData processed = ptGetProcessedDataForGroupings(&points, {"GLOBAL"});
    ptGetAggregateProcessedData(processed._rows);
    ptGetProcessedDataForModels(&points, {"GLOBAL"});
    ptClearRawData();
    return 0;
}
