#include "host_cells.h"

#include <pt_platform/hv.h>

#include <algorithm>
#include <cstring>

namespace pt {

namespace {

template <typename T>
hvArray* makeScalar(T value, hvClassID classID) {
    const std::size_t dims[] = {1, 1};
    hvArray* scalar = hvCreateNumericArray(2, dims, classID);
    std::memcpy(hvGetData(scalar), &value, sizeof value);
    return scalar;
}

}  // namespace

hvArray* makeInt32(std::int32_t value) { return makeScalar(value, hvClassID::Int32); }

hvArray* makeUInt32(std::uint32_t value) { return makeScalar(value, hvClassID::UInt32); }

std::int32_t readInt32(const hvArray* value) {
    if (!hvIsIntegerClass(hvGetClassID(value))) {
        return 0;
    }
    // The first 32 bits of the data, in the machine's order; a value of fewer bytes reads as
    // if zeros followed it.
    const std::size_t bytes =
        hvGetNumberOfElements(value) * hvElementSize(hvGetClassID(value));
    std::uint32_t bits = 0;
    std::memcpy(&bits, hvGetData(value), std::min<std::size_t>(bytes, sizeof bits));
    return static_cast<std::int32_t>(bits);
}

double readDouble(const hvArray* value) { return hvIsScalar(value) ? hvGetScalar(value) : 0.0; }

bool readBool(const hvArray* value) { return hvIsLogicalScalarTrue(value); }

std::string readText(const hvArray* value) { return hvArrayToStdString(value); }

}  // namespace pt
