#include "hv_array.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace {

template <typename Dims>
std::size_t checkedProduct(const Dims& dims) {
    std::size_t count = 1;
    for (std::size_t d : dims) {
        if (d != 0 && count > std::numeric_limits<std::size_t>::max() / d) {
            throw std::bad_alloc();
        }
        count *= d;
    }
    return count;
}

using Dims = boost::container::small_vector<std::size_t, 2>;

Dims normalisedDims(std::size_t ndim, const std::size_t* dims) {
    Dims out(dims, dims + ndim);
    while (out.size() < 2) {
        out.push_back(1);
    }
    while (out.size() > 2 && out.back() == 1) {
        out.pop_back();
    }
    return out;
}

hvArray* makeArray(hvClassID classID, std::size_t ndim, const std::size_t* dims,
                   std::size_t fieldCount = 0) {
    auto value = std::make_unique<hvArray>();
    value->classID = classID;
    value->dims = normalisedDims(ndim, dims);
    const std::size_t count = checkedProduct(value->dims);
    if (std::size_t size = hvElementSize(classID); size != 0) {
        if (count > std::numeric_limits<std::size_t>::max() / size) {
            throw std::bad_alloc();
        }
        value->data.assign(count * size, 0);
    } else if (classID == hvClassID::Cell) {
        value->compound = std::make_unique<hvCompound>();
        value->elements().resize(count);
    } else if (classID == hvClassID::Struct) {
        if (fieldCount != 0 && count > std::numeric_limits<std::size_t>::max() / fieldCount) {
            throw std::bad_alloc();
        }
        value->compound = std::make_unique<hvCompound>();
        value->elements().resize(count * fieldCount);
    }
    return value.release();
}

bool isPlainData(hvClassID classID) { return hvElementSize(classID) != 0; }

template <typename T>
double firstAsDouble(const hvArray& value) {
    T element;
    std::memcpy(&element, value.data.data(), sizeof element);
    return static_cast<double>(element);
}

hvClassID classOf(const hvArray* value) { return value ? value->classID : hvClassID::Unknown; }

}  // namespace

std::size_t hvArray::numberOfElements() const {
    std::size_t count = 1;
    for (std::size_t d : dims) {
        count *= d;
    }
    return count;
}

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
    value->data[0] = flag ? 1 : 0;
    return value;
}

hvArray* hvCreateLogicalArray(std::size_t ndim, const std::size_t* dims) {
    return makeArray(hvClassID::Logical, ndim, dims);
}

hvArray* hvCreateDoubleScalar(double number) {
    hvArray* value = hvCreateDoubleMatrix(1, 1);
    std::memcpy(value->data.data(), &number, sizeof number);
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
    auto copy = std::make_unique<hvArray>();
    copy->classID = value->classID;
    copy->dims = value->dims;
    copy->data = value->data;
    if (value->compound) {
        copy->compound = std::make_unique<hvCompound>();
        copy->fieldNames() = value->fieldNames();
        copy->elements().reserve(value->elements().size());
        for (const hvUniqueArray& element : value->elements()) {
            copy->elements().emplace_back(hvDuplicateArray(element.get()));
        }
    }
    return copy.release();
}

void hvDestroyArray(hvArray* value) { delete value; }

// ---- Shape and class ----

hvClassID hvGetClassID(const hvArray* value) { return classOf(value); }

std::size_t hvGetNumberOfDimensions(const hvArray* value) { return value ? value->dims.size() : 2; }

const std::size_t* hvGetDimensions(const hvArray* value) {
    static constexpr std::size_t kEmpty[] = {0, 0};
    return value ? value->dims.data() : kEmpty;
}

std::size_t hvGetM(const hvArray* value) { return value ? value->dims[0] : 0; }

std::size_t hvGetN(const hvArray* value) {
    if (!value) {
        return 0;
    }
    std::size_t n = 1;
    for (std::size_t i = 1; i < value->dims.size(); ++i) {
        n *= value->dims[i];
    }
    return n;
}

std::size_t hvGetNumberOfElements(const hvArray* value) {
    return value ? value->numberOfElements() : 0;
}

bool hvIsEmpty(const hvArray* value) { return hvGetNumberOfElements(value) == 0; }

bool hvIsScalar(const hvArray* value) { return hvGetNumberOfElements(value) == 1; }

bool hvIsVector(const hvArray* value) {
    return value && value->dims.size() == 2 && (value->dims[0] == 1 || value->dims[1] == 1);
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
    return hvIsLogicalScalar(value) && value->data[0] != 0;
}

// ---- Data ----

double hvGetScalar(const hvArray* value) {
    if (!value || value->numberOfElements() == 0 || !isPlainData(value->classID)) {
        return 0.0;
    }
    switch (value->classID) {
        case hvClassID::Logical: return value->data[0] != 0 ? 1.0 : 0.0;
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
    return value && isPlainData(value->classID) ? value->data.data() : nullptr;
}

const void* hvGetData(const hvArray* value) {
    return value && isPlainData(value->classID) ? value->data.data() : nullptr;
}

double* hvGetDoubles(hvArray* value) {
    return hvIsDouble(value) ? reinterpret_cast<double*>(value->data.data()) : nullptr;
}

const double* hvGetDoubles(const hvArray* value) {
    return hvIsDouble(value) ? reinterpret_cast<const double*>(value->data.data()) : nullptr;
}

hvChar* hvGetChars(hvArray* value) {
    return hvIsChar(value) ? reinterpret_cast<hvChar*>(value->data.data()) : nullptr;
}

const hvChar* hvGetChars(const hvArray* value) {
    return hvIsChar(value) ? reinterpret_cast<const hvChar*>(value->data.data()) : nullptr;
}

bool* hvGetLogicals(hvArray* value) {
    return hvIsLogical(value) ? reinterpret_cast<bool*>(value->data.data()) : nullptr;
}

const bool* hvGetLogicals(const hvArray* value) {
    return hvIsLogical(value) ? reinterpret_cast<const bool*>(value->data.data()) : nullptr;
}

std::string hvArrayToStdString(const hvArray* value) {
    if (!hvIsChar(value)) {
        return {};
    }
    return hvCharsToUtf8(hvGetChars(value), value->numberOfElements());
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
    if (field < 0 || field >= nfields || index >= structure->numberOfElements()) {
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
    if (field < 0 || field >= nfields || index >= structure->numberOfElements()) {
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
    const std::size_t count = structure->numberOfElements();
    std::vector<hvUniqueArray> widened(count * (oldFields + 1));
    for (std::size_t e = 0; e < count; ++e) {
        for (std::size_t f = 0; f < oldFields; ++f) {
            widened[e * (oldFields + 1) + f] = std::move(structure->elements()[e * oldFields + f]);
        }
    }
    structure->elements() = std::move(widened);
    structure->fieldNames().emplace_back(name);
    return static_cast<int>(oldFields);
}

// ---- Comparison ----

bool hvIsEqual(const hvArray* a, const hvArray* b) {
    if (!a || !b) {
        return a == b;
    }
    if (a->classID != b->classID || a->dims != b->dims || a->data != b->data ||
        !a->compound != !b->compound) {
        return false;
    }
    if (!a->compound) {
        return true;
    }
    if (a->fieldNames() != b->fieldNames() || a->elements().size() != b->elements().size()) {
        return false;
    }
    for (std::size_t i = 0; i < a->elements().size(); ++i) {
        if (!hvIsEqual(a->elements()[i].get(), b->elements()[i].get())) {
            return false;
        }
    }
    return true;
}
