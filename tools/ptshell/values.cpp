#include "values.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "evaluator.h"

namespace ptshell {

namespace {

template <typename T>
T fromDouble(double d) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(d);
    } else {
        if (std::isnan(d)) {
            return 0;
        }
        d = std::round(d);
        if (d <= static_cast<double>(std::numeric_limits<T>::min())) {
            return std::numeric_limits<T>::min();
        }
        if (d >= static_cast<double>(std::numeric_limits<T>::max())) {
            return std::numeric_limits<T>::max();
        }
        return static_cast<T>(d);
    }
}

template <typename T>
void store(hvArray* value, std::size_t i, double d) {
    const T element = fromDouble<T>(d);
    std::memcpy(static_cast<char*>(hvGetData(value)) + i * sizeof(T), &element, sizeof(T));
}

}  // namespace

double elementAsDouble(const hvArray* value, std::size_t i) {
    const char* data = static_cast<const char*>(hvGetData(value));
    const auto read = [&](auto sample) {
        decltype(sample) element;
        std::memcpy(&element, data + i * sizeof element, sizeof element);
        return static_cast<double>(element);
    };
    switch (hvGetClassID(value)) {
        case hvClassID::Double: return read(double{});
        case hvClassID::Logical: return hvGetLogicals(value)[i] ? 1.0 : 0.0;
        case hvClassID::Char: return static_cast<double>(hvGetChars(value)[i]);
        case hvClassID::Int8: return read(std::int8_t{});
        case hvClassID::UInt8: return read(std::uint8_t{});
        case hvClassID::Int16: return read(std::int16_t{});
        case hvClassID::UInt16: return read(std::uint16_t{});
        case hvClassID::Int32: return read(std::int32_t{});
        case hvClassID::UInt32: return read(std::uint32_t{});
        case hvClassID::Int64: return read(std::int64_t{});
        case hvClassID::UInt64: return read(std::uint64_t{});
        default: return 0.0;
    }
}

double realScalar(const hvArray* value, const char* what) {
    const hvClassID cls = hvGetClassID(value);
    if (!hvIsScalar(value) || cls == hvClassID::Cell || cls == hvClassID::Struct) {
        fail("ptshell:WrongType", std::string(what) + " must be a real scalar.");
    }
    return elementAsDouble(value, 0);
}

hvUniqueArray convertTo(const hvArray* value, hvClassID classID) {
    const hvClassID from = hvGetClassID(value);
    if (from == hvClassID::Cell || from == hvClassID::Struct || !value) {
        fail("ptshell:WrongType", std::string("A ") + hvClassName(from) + " cannot become " +
                                      hvClassName(classID) + ".");
    }
    const std::size_t count = hvGetNumberOfElements(value);
    const std::size_t ndim = hvGetNumberOfDimensions(value);
    const std::size_t* dims = hvGetDimensions(value);
    hvUniqueArray out;
    if (classID == hvClassID::Char) {
        out.reset(hvCreateCharArray(ndim, dims));
        for (std::size_t i = 0; i < count; ++i) {
            const double code = std::round(elementAsDouble(value, i));
            hvGetChars(out.get())[i] =
                static_cast<hvChar>(std::isnan(code) ? 0 : std::clamp(code, 0.0, 65535.0));
        }
        return out;
    }
    if (classID == hvClassID::Logical) {
        out.reset(hvCreateLogicalArray(ndim, dims));
        for (std::size_t i = 0; i < count; ++i) {
            hvGetLogicals(out.get())[i] = elementAsDouble(value, i) != 0.0;
        }
        return out;
    }
    out.reset(hvCreateNumericArray(ndim, dims, classID));
    for (std::size_t i = 0; i < count; ++i) {
        const double d = elementAsDouble(value, i);
        switch (classID) {
            case hvClassID::Double: store<double>(out.get(), i, d); break;
            case hvClassID::Int8: store<std::int8_t>(out.get(), i, d); break;
            case hvClassID::UInt8: store<std::uint8_t>(out.get(), i, d); break;
            case hvClassID::Int16: store<std::int16_t>(out.get(), i, d); break;
            case hvClassID::UInt16: store<std::uint16_t>(out.get(), i, d); break;
            case hvClassID::Int32: store<std::int32_t>(out.get(), i, d); break;
            case hvClassID::UInt32: store<std::uint32_t>(out.get(), i, d); break;
            case hvClassID::Int64: store<std::int64_t>(out.get(), i, d); break;
            case hvClassID::UInt64: store<std::uint64_t>(out.get(), i, d); break;
            default: break;
        }
    }
    return out;
}

hvUniqueArray elementOf(const hvArray* value, std::size_t i) {
    const hvClassID cls = hvGetClassID(value);
    if (cls == hvClassID::Cell) {
        hvUniqueArray one(hvCreateCellMatrix(1, 1));
        hvSetCell(one.get(), 0, hvDuplicateArray(hvGetCell(value, i)));
        return one;
    }
    if (cls == hvClassID::Struct) {
        const int nfields = hvGetNumberOfFields(value);
        std::vector<const char*> names;
        for (int f = 0; f < nfields; ++f) {
            names.push_back(hvGetFieldNameByNumber(value, f));
        }
        hvUniqueArray one(hvCreateStructMatrix(1, 1, nfields, names.data()));
        for (int f = 0; f < nfields; ++f) {
            hvSetFieldByNumber(one.get(), 0, f, hvDuplicateArray(hvGetFieldByNumber(value, i, f)));
        }
        return one;
    }
    const std::size_t one[] = {1, 1};
    hvUniqueArray out(cls == hvClassID::Char      ? hvCreateCharArray(2, one)
                      : cls == hvClassID::Logical ? hvCreateLogicalArray(2, one)
                                                  : hvCreateNumericArray(2, one, cls));
    const std::size_t size = hvElementSize(cls);
    std::memcpy(hvGetData(out.get()), static_cast<const char*>(hvGetData(value)) + i * size, size);
    return out;
}

hvUniqueArray columnOf(const hvArray* value, std::size_t column) {
    const std::size_t rows = hvGetM(value);
    if (rows == 1) {
        return elementOf(value, column);
    }
    const hvClassID cls = hvGetClassID(value);
    const std::size_t first = column * rows;
    const std::size_t dims[] = {rows, 1};
    if (cls == hvClassID::Cell) {
        hvUniqueArray out(hvCreateCellArray(2, dims));
        for (std::size_t r = 0; r < rows; ++r) {
            hvSetCell(out.get(), r, hvDuplicateArray(hvGetCell(value, first + r)));
        }
        return out;
    }
    if (cls == hvClassID::Struct) {
        const int nfields = hvGetNumberOfFields(value);
        std::vector<const char*> names;
        for (int f = 0; f < nfields; ++f) {
            names.push_back(hvGetFieldNameByNumber(value, f));
        }
        hvUniqueArray out(hvCreateStructArray(2, dims, nfields, names.data()));
        for (std::size_t r = 0; r < rows; ++r) {
            for (int f = 0; f < nfields; ++f) {
                hvSetFieldByNumber(out.get(), r, f,
                                   hvDuplicateArray(hvGetFieldByNumber(value, first + r, f)));
            }
        }
        return out;
    }
    hvUniqueArray out(cls == hvClassID::Char      ? hvCreateCharArray(2, dims)
                      : cls == hvClassID::Logical ? hvCreateLogicalArray(2, dims)
                                                  : hvCreateNumericArray(2, dims, cls));
    const std::size_t size = hvElementSize(cls);
    std::memcpy(hvGetData(out.get()), static_cast<const char*>(hvGetData(value)) + first * size,
                rows * size);
    return out;
}

std::size_t deepCount(const hvArray* value, std::size_t limit) {
    std::size_t total = hvGetNumberOfElements(value);
    const hvClassID cls = hvGetClassID(value);
    if (cls != hvClassID::Cell && cls != hvClassID::Struct) {
        return total;
    }
    const int nfields = cls == hvClassID::Struct ? hvGetNumberOfFields(value) : 1;
    const std::size_t count = hvGetNumberOfElements(value);
    for (std::size_t i = 0; i < count && total <= limit; ++i) {
        for (int f = 0; f < nfields && total <= limit; ++f) {
            const hvArray* inner =
                cls == hvClassID::Cell ? hvGetCell(value, i) : hvGetFieldByNumber(value, i, f);
            total += deepCount(inner, limit - std::min(total, limit));
        }
    }
    return total;
}

std::size_t nestingDepth(const hvArray* value, std::size_t limit) {
    const hvClassID cls = hvGetClassID(value);
    if ((cls != hvClassID::Cell && cls != hvClassID::Struct) || limit == 0) {
        return cls == hvClassID::Cell || cls == hvClassID::Struct ? 1 : 0;
    }
    const int nfields = cls == hvClassID::Struct ? hvGetNumberOfFields(value) : 1;
    std::size_t deepest = 0;
    const std::size_t count = hvGetNumberOfElements(value);
    for (std::size_t i = 0; i < count && deepest < limit; ++i) {
        for (int f = 0; f < nfields && deepest < limit; ++f) {
            const hvArray* inner =
                cls == hvClassID::Cell ? hvGetCell(value, i) : hvGetFieldByNumber(value, i, f);
            deepest = std::max(deepest, nestingDepth(inner, limit - 1));
        }
    }
    return deepest + 1;
}

namespace {

/// A value's header with its two dimensions, and what a structure keeps for each field name.
constexpr std::size_t kValueHeader = 32;
constexpr std::size_t kFieldName = 32;

/// What the allocator takes for a block: a word of its own, rounded up to 16 bytes.
std::size_t allocated(std::size_t bytes) {
    constexpr std::size_t kMax = std::numeric_limits<std::size_t>::max() - 32;
    return bytes > kMax ? std::numeric_limits<std::size_t>::max()
                        : std::max<std::size_t>(32, (bytes + 8 + 15) / 16 * 16);
}

std::size_t multiplyBytes(std::size_t a, std::size_t b) {
    return b != 0 && a > std::numeric_limits<std::size_t>::max() / b
               ? std::numeric_limits<std::size_t>::max()
               : a * b;
}

}  // namespace

std::size_t addBytes(std::size_t a, std::size_t b) {
    return a > std::numeric_limits<std::size_t>::max() - b ? std::numeric_limits<std::size_t>::max()
                                                           : a + b;
}

std::size_t newValueBytes(hvClassID classID, std::size_t count, std::size_t fields) {
    std::size_t payload = 0;
    if (classID == hvClassID::Cell) {
        payload = multiplyBytes(count, sizeof(void*));
    } else if (classID == hvClassID::Struct) {
        payload = addBytes(multiplyBytes(multiplyBytes(count, fields), sizeof(void*)),
                           multiplyBytes(fields, kFieldName));
    } else {
        payload = multiplyBytes(count, hvElementSize(classID));
    }
    return allocated(addBytes(kValueHeader, payload));
}

std::size_t valueBytes(const hvArray* value, std::size_t limit) {
    if (!value) {
        return 0;
    }
    const hvClassID cls = hvGetClassID(value);
    const std::size_t count = hvGetNumberOfElements(value);
    const std::size_t extraDims = (hvGetNumberOfDimensions(value) - 2) * sizeof(std::size_t);
    const int nfields = cls == hvClassID::Struct ? hvGetNumberOfFields(value) : 1;
    std::size_t total = addBytes(
        extraDims, newValueBytes(cls, count, static_cast<std::size_t>(std::max(nfields, 0))));
    if (cls != hvClassID::Cell && cls != hvClassID::Struct) {
        return total;
    }
    for (std::size_t i = 0; i < count && total <= limit; ++i) {
        for (int f = 0; f < nfields && total <= limit; ++f) {
            const hvArray* inner =
                cls == hvClassID::Cell ? hvGetCell(value, i) : hvGetFieldByNumber(value, i, f);
            total = addBytes(total, valueBytes(inner, limit - total));
        }
    }
    return total;
}

std::string byteText(std::size_t bytes) {
    for (const auto& [unit, name] :
         {std::pair{std::size_t{1} << 30, " GiB"}, std::pair{std::size_t{1} << 20, " MiB"},
          std::pair{std::size_t{1} << 10, " KiB"}}) {
        if (bytes >= unit && bytes % unit == 0) {
            return std::to_string(bytes / unit) + name;
        }
    }
    return std::to_string(bytes) + " bytes";
}

hvUniqueArray doubleRow(const std::vector<double>& numbers) {
    hvUniqueArray row(hvCreateDoubleMatrix(1, numbers.size()));
    std::copy(numbers.begin(), numbers.end(), hvGetDoubles(row.get()));
    return row;
}

}  // namespace ptshell
