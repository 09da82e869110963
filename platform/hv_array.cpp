#include "hv_array.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>

namespace {

/// The dimensions as kept: at least two, trailing ones past the second dropped.
std::size_t normalisedRank(std::size_t ndim, const std::size_t* dims) {
    while (ndim > 2 && dims[ndim - 1] == 1) {
        --ndim;
    }
    if (ndim > std::numeric_limits<std::uint8_t>::max()) {
        throw std::length_error("hvArray: too many dimensions");
    }
    return std::max<std::size_t>(ndim, 2);
}

std::size_t checkedMultiply(std::size_t a, std::size_t b) {
    if (b != 0 && a > std::numeric_limits<std::size_t>::max() / b) {
        throw std::bad_alloc();
    }
    return a * b;
}

bool isPlainData(hvClassID classID) { return hvElementSize(classID) != 0; }

template <typename T>
double firstAsDouble(const hvArray& value) {
    T element;
    std::memcpy(&element, value.data(), sizeof element);
    return static_cast<double>(element);
}

hvClassID classOf(const hvArray* value) { return value ? value->classID : hvClassID::Unknown; }

}  // namespace

hvArray* hvArray::make(hvClassID classID, std::size_t ndim, const std::size_t* dims,
                       std::size_t fieldCount) {
    if (classID == hvClassID::Unknown || classID > hvClassID::UInt64) {
        throw std::invalid_argument("hvArray: no such class");
    }
    const std::size_t rank = normalisedRank(ndim, dims);
    std::size_t count = 1;
    for (std::size_t i = 0; i < rank; ++i) {
        count = checkedMultiply(count, i < ndim ? dims[i] : 1);
    }
    std::size_t payload;
    if (const std::size_t size = hvElementSize(classID); size != 0) {
        payload = checkedMultiply(count, size);
    } else if (classID == hvClassID::Cell) {
        payload = checkedMultiply(count, sizeof(hvUniqueArray));
    } else {
        checkedMultiply(count, fieldCount);
        payload = sizeof(hvCompound*);
    }
    const std::size_t header = sizeof(hvArray) + rank * sizeof(std::size_t);
    if (payload > std::numeric_limits<std::size_t>::max() - header) {
        throw std::bad_alloc();
    }
    void* storage = ::operator new(header + payload);
    auto* value = new (storage) hvArray();
    value->classID = classID;
    value->ndim = static_cast<std::uint8_t>(rank);
    value->count = count;
    for (std::size_t i = 0; i < rank; ++i) {
        value->dims()[i] = i < ndim ? dims[i] : 1;
    }
    if (classID == hvClassID::Cell) {
        std::uninitialized_value_construct_n(reinterpret_cast<hvUniqueArray*>(value->data()),
                                             count);
    } else if (classID == hvClassID::Struct) {
        try {
            auto compound = std::make_unique<hvCompound>();
            compound->elements.resize(count * fieldCount);
            *reinterpret_cast<hvCompound**>(value->data()) = compound.release();
        } catch (...) {
            ::operator delete(storage);
            throw;
        }
    } else {
        std::memset(value->data(), 0, payload);
    }
    return value;
}

void hvArray::destroy(hvArray* value) noexcept {
    if (!value) {
        return;
    }
    if (value->classID == hvClassID::Cell) {
        std::destroy_n(reinterpret_cast<hvUniqueArray*>(value->data()), value->count);
    } else if (value->classID == hvClassID::Struct) {
        delete value->compound();
    }
    value->~hvArray();
    ::operator delete(value);
}

std::span<hvUniqueArray> hvArray::elements() {
    if (classID == hvClassID::Cell) {
        return {reinterpret_cast<hvUniqueArray*>(data()), count};
    }
    return compound()->elements;
}

std::span<const hvUniqueArray> hvArray::elements() const {
    if (classID == hvClassID::Cell) {
        return {reinterpret_cast<const hvUniqueArray*>(data()), count};
    }
    return compound()->elements;
}

namespace {

hvArray* makeArray(hvClassID classID, std::size_t ndim, const std::size_t* dims,
                   std::size_t fieldCount = 0) {
    return hvArray::make(classID, ndim, dims, fieldCount);
}

}  // namespace

const char* hvClassName(hvClassID classID) {
    switch (classID) {
        case hvClassID::Cell: return "cell";
        case hvClassID::Struct: return "struct";
        case hvClassID::Logical: return "logical";
        case hvClassID::Char: return "char";
        case hvClassID::Double: return "double";
        case hvClassID::Int8: return "int8";
        case hvClassID::UInt8: return "uint8";
        case hvClassID::Int16: return "int16";
        case hvClassID::UInt16: return "uint16";
        case hvClassID::Int32: return "int32";
        case hvClassID::UInt32: return "uint32";
        case hvClassID::Int64: return "int64";
        case hvClassID::UInt64: return "uint64";
        case hvClassID::Unknown: break;
    }
    return "unknown";
}

bool hvIsIntegerClass(hvClassID classID) {
    return classID >= hvClassID::Int8 && classID <= hvClassID::UInt64;
}

std::size_t hvElementSize(hvClassID classID) {
    switch (classID) {
        case hvClassID::Logical:
        case hvClassID::Int8:
        case hvClassID::UInt8: return 1;
        case hvClassID::Char:
        case hvClassID::Int16:
        case hvClassID::UInt16: return 2;
        case hvClassID::Int32:
        case hvClassID::UInt32: return 4;
        case hvClassID::Double:
        case hvClassID::Int64:
        case hvClassID::UInt64: return 8;
        case hvClassID::Cell:
        case hvClassID::Struct:
        case hvClassID::Unknown: break;
    }
    return 0;
}

// ---- Creation ----

hvArray* hvCreateString(std::string_view utf8) {
    // Most names are plain ASCII, whose bytes are their characters.
    if (std::all_of(utf8.begin(), utf8.end(), [](char c) { return (c & 0x80) == 0; })) {
        const std::size_t dims[] = {1, utf8.size()};
        hvArray* value = makeArray(hvClassID::Char, 2, dims);
        std::copy(utf8.begin(), utf8.end(), hvGetChars(value));
        return value;
    }
    const std::u16string chars = hvUtf8ToChars(utf8);
    const std::size_t dims[] = {1, chars.size()};
    hvArray* value = makeArray(hvClassID::Char, 2, dims);
    std::copy(chars.begin(), chars.end(), hvGetChars(value));
    return value;
}

hvArray* hvCreateCharArray(std::size_t ndim, const std::size_t* dims) {
    return makeArray(hvClassID::Char, ndim, dims);
}

hvArray* hvCreateLogicalScalar(bool flag) {
    hvArray* value = hvCreateLogicalArray(0, nullptr);
    value->data()[0] = flag ? 1 : 0;
    return value;
}

hvArray* hvCreateLogicalArray(std::size_t ndim, const std::size_t* dims) {
    return makeArray(hvClassID::Logical, ndim, dims);
}

hvArray* hvCreateDoubleScalar(double number) {
    hvArray* value = hvCreateDoubleMatrix(1, 1);
    std::memcpy(value->data(), &number, sizeof number);
    return value;
}

hvArray* hvCreateDoubleMatrix(std::size_t m, std::size_t n) {
    const std::size_t dims[] = {m, n};
    return makeArray(hvClassID::Double, 2, dims);
}

hvArray* hvCreateNumericArray(std::size_t ndim, const std::size_t* dims, hvClassID classID) {
    if (classID != hvClassID::Double && !hvIsIntegerClass(classID)) {
        throw std::invalid_argument("hvCreateNumericArray: not a numeric class");
    }
    return makeArray(classID, ndim, dims);
}

hvArray* hvCreateCellMatrix(std::size_t m, std::size_t n) {
    const std::size_t dims[] = {m, n};
    return makeArray(hvClassID::Cell, 2, dims);
}

hvArray* hvCreateCellArray(std::size_t ndim, const std::size_t* dims) {
    return makeArray(hvClassID::Cell, ndim, dims);
}

hvArray* hvCreateStructArray(std::size_t ndim, const std::size_t* dims, int nfields,
                             const char* const* fieldNames) {
    if (nfields < 0) {
        throw std::invalid_argument("hvCreateStructArray: negative field count");
    }
    std::vector<std::string> names;
    for (int i = 0; i < nfields; ++i) {
        std::string name = fieldNames[i] ? fieldNames[i] : "";
        if (std::find(names.begin(), names.end(), name) != names.end()) {
            throw std::invalid_argument("hvCreateStructArray: duplicate field name " + name);
        }
        names.push_back(std::move(name));
    }
    hvArray* value = makeArray(hvClassID::Struct, ndim, dims, names.size());
    value->fieldNames() = std::move(names);
    return value;
}

hvArray* hvCreateStructMatrix(std::size_t m, std::size_t n, int nfields,
                              const char* const* fieldNames) {
    const std::size_t dims[] = {m, n};
    return hvCreateStructArray(2, dims, nfields, fieldNames);
}

hvArray* hvDuplicateArray(const hvArray* value) {
    if (!value) {
        return nullptr;
    }
    const bool isStruct = value->classID == hvClassID::Struct;
    hvUniqueArray copy(hvArray::make(value->classID, value->ndim, value->dims(),
                                     isStruct ? value->fieldNames().size() : 0));
    if (isStruct) {
        copy->fieldNames() = value->fieldNames();
    }
    if (value->classID == hvClassID::Cell || isStruct) {
        const auto from = value->elements();
        const auto to = copy->elements();
        for (std::size_t i = 0; i < from.size(); ++i) {
            to[i].reset(hvDuplicateArray(from[i].get()));
        }
    } else {
        std::memcpy(copy->data(), value->data(), value->dataSize());
    }
    return copy.release();
}

void hvDestroyArray(hvArray* value) { hvArray::destroy(value); }

// ---- Shape and class ----

hvClassID hvGetClassID(const hvArray* value) { return classOf(value); }

std::size_t hvGetNumberOfDimensions(const hvArray* value) { return value ? value->ndim : 2; }

const std::size_t* hvGetDimensions(const hvArray* value) {
    static constexpr std::size_t kEmpty[] = {0, 0};
    return value ? value->dims() : kEmpty;
}

std::size_t hvGetM(const hvArray* value) { return value ? value->dims()[0] : 0; }

std::size_t hvGetN(const hvArray* value) {
    if (!value) {
        return 0;
    }
    std::size_t n = 1;
    for (std::size_t i = 1; i < value->ndim; ++i) {
        n *= value->dims()[i];
    }
    return n;
}

std::size_t hvGetNumberOfElements(const hvArray* value) { return value ? value->count : 0; }

bool hvIsEmpty(const hvArray* value) { return hvGetNumberOfElements(value) == 0; }

bool hvIsScalar(const hvArray* value) { return hvGetNumberOfElements(value) == 1; }

bool hvIsVector(const hvArray* value) {
    return value && value->ndim == 2 && (value->dims()[0] == 1 || value->dims()[1] == 1);
}

bool hvIsChar(const hvArray* value) { return classOf(value) == hvClassID::Char; }
bool hvIsCell(const hvArray* value) { return classOf(value) == hvClassID::Cell; }
bool hvIsStruct(const hvArray* value) { return classOf(value) == hvClassID::Struct; }
bool hvIsLogical(const hvArray* value) { return classOf(value) == hvClassID::Logical; }
bool hvIsDouble(const hvArray* value) { return classOf(value) == hvClassID::Double; }

bool hvIsNumeric(const hvArray* value) {
    return hvIsDouble(value) || hvIsIntegerClass(classOf(value));
}

bool hvIsCharVector(const hvArray* value) { return hvIsChar(value) && hvIsVector(value); }

bool hvIsLogicalScalar(const hvArray* value) { return hvIsLogical(value) && hvIsScalar(value); }

bool hvIsLogicalScalarTrue(const hvArray* value) {
    return hvIsLogicalScalar(value) && value->data()[0] != 0;
}

// ---- Data ----

double hvGetScalar(const hvArray* value) {
    if (!value || value->count == 0 || !isPlainData(value->classID)) {
        return 0.0;
    }
    switch (value->classID) {
        case hvClassID::Logical: return value->data()[0] != 0 ? 1.0 : 0.0;
        case hvClassID::Char: return firstAsDouble<char16_t>(*value);
        case hvClassID::Double: return firstAsDouble<double>(*value);
        case hvClassID::Int8: return firstAsDouble<std::int8_t>(*value);
        case hvClassID::UInt8: return firstAsDouble<std::uint8_t>(*value);
        case hvClassID::Int16: return firstAsDouble<std::int16_t>(*value);
        case hvClassID::UInt16: return firstAsDouble<std::uint16_t>(*value);
        case hvClassID::Int32: return firstAsDouble<std::int32_t>(*value);
        case hvClassID::UInt32: return firstAsDouble<std::uint32_t>(*value);
        case hvClassID::Int64: return firstAsDouble<std::int64_t>(*value);
        case hvClassID::UInt64: return firstAsDouble<std::uint64_t>(*value);
        default: return 0.0;
    }
}

void* hvGetData(hvArray* value) {
    return value && isPlainData(value->classID) ? value->data() : nullptr;
}

const void* hvGetData(const hvArray* value) {
    return value && isPlainData(value->classID) ? value->data() : nullptr;
}

double* hvGetDoubles(hvArray* value) {
    return hvIsDouble(value) ? reinterpret_cast<double*>(value->data()) : nullptr;
}

const double* hvGetDoubles(const hvArray* value) {
    return hvIsDouble(value) ? reinterpret_cast<const double*>(value->data()) : nullptr;
}

hvChar* hvGetChars(hvArray* value) {
    return hvIsChar(value) ? reinterpret_cast<hvChar*>(value->data()) : nullptr;
}

const hvChar* hvGetChars(const hvArray* value) {
    return hvIsChar(value) ? reinterpret_cast<const hvChar*>(value->data()) : nullptr;
}

bool* hvGetLogicals(hvArray* value) {
    return hvIsLogical(value) ? reinterpret_cast<bool*>(value->data()) : nullptr;
}

const bool* hvGetLogicals(const hvArray* value) {
    return hvIsLogical(value) ? reinterpret_cast<const bool*>(value->data()) : nullptr;
}

std::string hvArrayToStdString(const hvArray* value) {
    if (!hvIsChar(value)) {
        return {};
    }
    return hvCharsToUtf8(hvGetChars(value), value->count);
}

std::size_t hvCalcSingleSubscript(const hvArray* value, std::size_t nsubs,
                                  const std::size_t* subs) {
    std::size_t index = 0;
    std::size_t stride = 1;
    const std::size_t ndim = hvGetNumberOfDimensions(value);
    const std::size_t* dims = hvGetDimensions(value);
    for (std::size_t i = 0; i < nsubs; ++i) {
        index += subs[i] * stride;
        stride *= i < ndim ? dims[i] : 1;
    }
    return index;
}

// ---- Cells ----

hvArray* hvGetCell(const hvArray* cell, std::size_t index) {
    if (!hvIsCell(cell) || index >= cell->elements().size()) {
        return nullptr;
    }
    return cell->elements()[index].get();
}

void hvSetCell(hvArray* cell, std::size_t index, hvArray* value) {
    hvUniqueArray owned(value);
    if (!hvIsCell(cell) || index >= cell->elements().size()) {
        throw std::out_of_range("hvSetCell: no such element");
    }
    cell->elements()[index] = std::move(owned);
}

// ---- Structures ----

int hvGetNumberOfFields(const hvArray* structure) {
    return hvIsStruct(structure) ? static_cast<int>(structure->fieldNames().size()) : 0;
}

const char* hvGetFieldNameByNumber(const hvArray* structure, int field) {
    if (field < 0 || field >= hvGetNumberOfFields(structure)) {
        return nullptr;
    }
    return structure->fieldNames()[field].c_str();
}

int hvGetFieldNumber(const hvArray* structure, const char* name) {
    if (!hvIsStruct(structure) || !name) {
        return -1;
    }
    const auto& names = structure->fieldNames();
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

hvArray* hvGetFieldByNumber(const hvArray* structure, std::size_t index, int field) {
    const int nfields = hvGetNumberOfFields(structure);
    if (field < 0 || field >= nfields || index >= structure->count) {
        return nullptr;
    }
    return structure->elements()[index * nfields + field].get();
}

hvArray* hvGetField(const hvArray* structure, std::size_t index, const char* name) {
    return hvGetFieldByNumber(structure, index, hvGetFieldNumber(structure, name));
}

void hvSetFieldByNumber(hvArray* structure, std::size_t index, int field, hvArray* value) {
    hvUniqueArray owned(value);
    const int nfields = hvGetNumberOfFields(structure);
    if (field < 0 || field >= nfields || index >= structure->count) {
        throw std::out_of_range("hvSetFieldByNumber: no such element or field");
    }
    structure->elements()[index * nfields + field] = std::move(owned);
}

int hvAddField(hvArray* structure, const char* name) {
    if (!hvIsStruct(structure) || !name) {
        return -1;
    }
    if (int existing = hvGetFieldNumber(structure, name); existing >= 0) {
        return existing;
    }
    const std::size_t oldFields = structure->fieldNames().size();
    const std::size_t count = structure->count;
    std::vector<hvUniqueArray>& elements = structure->compound()->elements;
    std::vector<hvUniqueArray> widened(count * (oldFields + 1));
    for (std::size_t e = 0; e < count; ++e) {
        for (std::size_t f = 0; f < oldFields; ++f) {
            widened[e * (oldFields + 1) + f] = std::move(elements[e * oldFields + f]);
        }
    }
    elements = std::move(widened);
    structure->fieldNames().emplace_back(name);
    return static_cast<int>(oldFields);
}

// ---- Comparison ----

bool hvIsEqual(const hvArray* a, const hvArray* b) {
    if (!a || !b) {
        return a == b;
    }
    if (a->classID != b->classID || !std::ranges::equal(a->dimSpan(), b->dimSpan())) {
        return false;
    }
    if (isPlainData(a->classID)) {
        return std::memcmp(a->data(), b->data(), a->dataSize()) == 0;
    }
    if (a->classID == hvClassID::Struct && a->fieldNames() != b->fieldNames()) {
        return false;
    }
    const auto left = a->elements();
    const auto right = b->elements();
    return std::ranges::equal(left, right, [](const hvUniqueArray& l, const hvUniqueArray& r) {
        return hvIsEqual(l.get(), r.get());
    });
}
