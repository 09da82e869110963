#include "host_cells.h"

#include <pt_platform/hv.h>

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

template <typename T>
std::int32_t firstElement(const hvArray* value) {
    T element;
    std::memcpy(&element, hvGetData(value), sizeof element);
    return static_cast<std::int32_t>(element);  // modular for the 64-bit classes
}

}  // namespace

hvArray* makeInt32(std::int32_t value) { return makeScalar(value, hvClassID::Int32); }

hvArray* makeUInt32(std::uint32_t value) { return makeScalar(value, hvClassID::UInt32); }

std::int32_t readInt32(const hvArray* value) {
    if (hvIsEmpty(value)) {
        return 0;
    }
    switch (hvGetClassID(value)) {
        case hvClassID::Int8: return firstElement<std::int8_t>(value);
        case hvClassID::UInt8: return firstElement<std::uint8_t>(value);
        case hvClassID::Int16: return firstElement<std::int16_t>(value);
        case hvClassID::UInt16: return firstElement<std::uint16_t>(value);
        case hvClassID::Int32: return firstElement<std::int32_t>(value);
        case hvClassID::UInt32: return firstElement<std::uint32_t>(value);
        case hvClassID::Int64: return firstElement<std::int64_t>(value);
        case hvClassID::UInt64: return firstElement<std::uint64_t>(value);
        default: return 0;
    }
}

double readDouble(const hvArray* value) {
    return hvIsNumeric(value) && hvIsScalar(value) ? hvGetScalar(value) : 0.0;
}

bool readBool(const hvArray* value) { return hvIsLogicalScalarTrue(value); }

std::string readText(const hvArray* value) { return hvArrayToStdString(value); }

}  // namespace pt
