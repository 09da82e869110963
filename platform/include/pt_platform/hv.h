#pragma once

// Host values: the arrays that scripts of the host see and that methods take and give.
//
// Every value is an array of one class with at least two dimensions, stored in column-major
// order. A value owns its data; a container (cell or structure) owns its elements. Values are
// handed around as raw pointers, as the host does: whoever holds a pointer that no container
// owns must pass it to hvDestroyArray, or wrap it in an hvUniqueArray.
//
// Character data are 16-bit code units. Text crosses into and out of the host as UTF-8; a byte
// that is not part of well-formed UTF-8 is carried as the lone code unit 0xDC00 + byte, so that
// any byte string survives the trip into a value and back unchanged.

#include <pt_platform/export.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct hvArray;

enum class hvClassID : std::uint8_t {
    Unknown,
    Cell,
    Struct,
    Logical,
    Char,
    Double,
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
};

using hvChar = char16_t;

// ---- Classes -------------------------------------------------------------------------------

/// The script-level name of a class: "char", "double", "logical", "int8" ... "uint64", "cell",
/// "struct"; "unknown" otherwise.
PT_PLATFORM_API const char* hvClassName(hvClassID classID);
/// True for the eight integer classes.
PT_PLATFORM_API bool hvIsIntegerClass(hvClassID classID);
/// Bytes per element of a class that holds plain data (logical, char, double, integers); 0 for
/// cell, structure and unknown.
PT_PLATFORM_API std::size_t hvElementSize(hvClassID classID);

// ---- Creation --------------------------------------------------------------------------------
// Dimension lists shorter than two are padded with ones, trailing ones past the second are
// dropped. Every creator throws std::bad_alloc when the element count overflows, and
// std::invalid_argument when asked for a class it does not make. New data are zero, new cell
// elements and structure fields empty (null).

/// A 1-by-n character row holding the UTF-8 text; the empty text gives 1-by-0.
PT_PLATFORM_API hvArray* hvCreateString(std::string_view utf8);
PT_PLATFORM_API hvArray* hvCreateCharArray(std::size_t ndim, const std::size_t* dims);
PT_PLATFORM_API hvArray* hvCreateLogicalScalar(bool value);
PT_PLATFORM_API hvArray* hvCreateLogicalArray(std::size_t ndim, const std::size_t* dims);
PT_PLATFORM_API hvArray* hvCreateDoubleScalar(double value);
/// An m-by-n real double matrix of zeros.
PT_PLATFORM_API hvArray* hvCreateDoubleMatrix(std::size_t m, std::size_t n);
/// An array of zeros of a numeric class: double or one of the eight integer classes.
PT_PLATFORM_API hvArray* hvCreateNumericArray(std::size_t ndim, const std::size_t* dims,
                                              hvClassID classID);
PT_PLATFORM_API hvArray* hvCreateCellMatrix(std::size_t m, std::size_t n);
PT_PLATFORM_API hvArray* hvCreateCellArray(std::size_t ndim, const std::size_t* dims);
/// A structure array with the given fields; names must be distinct, else invalid_argument.
PT_PLATFORM_API hvArray* hvCreateStructArray(std::size_t ndim, const std::size_t* dims, int nfields,
                                             const char* const* fieldNames);
PT_PLATFORM_API hvArray* hvCreateStructMatrix(std::size_t m, std::size_t n, int nfields,
                                              const char* const* fieldNames);

/// A deep copy; null for null.
PT_PLATFORM_API hvArray* hvDuplicateArray(const hvArray* value);
/// Releases a value with everything it owns; accepts null.
PT_PLATFORM_API void hvDestroyArray(hvArray* value);

struct hvArrayDeleter {
    void operator()(hvArray* value) const noexcept { hvDestroyArray(value); }
};
using hvUniqueArray = std::unique_ptr<hvArray, hvArrayDeleter>;

// ---- Shape and class -----------------------------------------------------------------------
// All queries accept null and then answer as for an empty double (class Unknown, no elements).

PT_PLATFORM_API hvClassID hvGetClassID(const hvArray* value);
PT_PLATFORM_API std::size_t hvGetNumberOfDimensions(const hvArray* value);
PT_PLATFORM_API const std::size_t* hvGetDimensions(const hvArray* value);
/// Rows.
PT_PLATFORM_API std::size_t hvGetM(const hvArray* value);
/// Columns: the product of all dimensions after the first.
PT_PLATFORM_API std::size_t hvGetN(const hvArray* value);
PT_PLATFORM_API std::size_t hvGetNumberOfElements(const hvArray* value);

PT_PLATFORM_API bool hvIsEmpty(const hvArray* value);
/// True for a one-by-one value of any class.
PT_PLATFORM_API bool hvIsScalar(const hvArray* value);
/// True for a two-dimensional value with one row or one column (1-by-0 included).
PT_PLATFORM_API bool hvIsVector(const hvArray* value);
PT_PLATFORM_API bool hvIsChar(const hvArray* value);
PT_PLATFORM_API bool hvIsCell(const hvArray* value);
PT_PLATFORM_API bool hvIsStruct(const hvArray* value);
PT_PLATFORM_API bool hvIsLogical(const hvArray* value);
PT_PLATFORM_API bool hvIsDouble(const hvArray* value);
/// Double or an integer class.
PT_PLATFORM_API bool hvIsNumeric(const hvArray* value);
PT_PLATFORM_API bool hvIsCharVector(const hvArray* value);
PT_PLATFORM_API bool hvIsLogicalScalar(const hvArray* value);
PT_PLATFORM_API bool hvIsLogicalScalarTrue(const hvArray* value);

// ---- Data ----------------------------------------------------------------------------------

/// The first element of a numeric, logical or character value as a double; 0.0 for an empty
/// value, a cell, a structure or null.
PT_PLATFORM_API double hvGetScalar(const hvArray* value);
/// The element storage of a numeric, logical or character value; null for other classes.
PT_PLATFORM_API void* hvGetData(hvArray* value);
PT_PLATFORM_API const void* hvGetData(const hvArray* value);
PT_PLATFORM_API double* hvGetDoubles(hvArray* value);
PT_PLATFORM_API const double* hvGetDoubles(const hvArray* value);
PT_PLATFORM_API hvChar* hvGetChars(hvArray* value);
PT_PLATFORM_API const hvChar* hvGetChars(const hvArray* value);
PT_PLATFORM_API bool* hvGetLogicals(hvArray* value);
PT_PLATFORM_API const bool* hvGetLogicals(const hvArray* value);

/// The characters of a character value in column-major order, as UTF-8; the empty string for
/// a value of any other class or null.
PT_PLATFORM_API std::string hvArrayToStdString(const hvArray* value);

/// The linear index of a list of zero-based subscripts, one per dimension (missing ones count
/// as zero, extra ones must be zero). Subscripts are not checked against the dimensions.
PT_PLATFORM_API std::size_t hvCalcSingleSubscript(const hvArray* value, std::size_t nsubs,
                                                  const std::size_t* subs);

// ---- Cells ---------------------------------------------------------------------------------

/// The element at a linear index, owned by the cell; null for an empty element, an index past
/// the end or a value that is not a cell.
PT_PLATFORM_API hvArray* hvGetCell(const hvArray* cell, std::size_t index);
/// Stores a value at a linear index; the cell takes ownership and releases what stood there.
/// A bad index or a value that is not a cell releases the value and throws std::out_of_range.
PT_PLATFORM_API void hvSetCell(hvArray* cell, std::size_t index, hvArray* value);

// ---- Structures ----------------------------------------------------------------------------

PT_PLATFORM_API int hvGetNumberOfFields(const hvArray* structure);
/// The name of a field by zero-based number; null when there is no such field.
PT_PLATFORM_API const char* hvGetFieldNameByNumber(const hvArray* structure, int field);
/// The number of a named field, or -1.
PT_PLATFORM_API int hvGetFieldNumber(const hvArray* structure, const char* name);
/// The value of a field of one element, owned by the structure; null when empty or absent.
PT_PLATFORM_API hvArray* hvGetFieldByNumber(const hvArray* structure, std::size_t index, int field);
PT_PLATFORM_API hvArray* hvGetField(const hvArray* structure, std::size_t index, const char* name);
/// Stores a field value; the structure takes ownership and releases what stood there. A bad
/// index or field releases the value and throws std::out_of_range.
PT_PLATFORM_API void hvSetFieldByNumber(hvArray* structure, std::size_t index, int field,
                                        hvArray* value);
/// Adds a field (empty in every element) and returns its number; an existing name answers its
/// number and changes nothing. -1 if the value is not a structure.
PT_PLATFORM_API int hvAddField(hvArray* structure, const char* name);

// ---- Comparison and text ----------------------------------------------------------------------

/// True when both values have the same class, dimensions, field names and data, recursively;
/// null equals only null. Doubles compare bitwise, so NaN equals the same NaN.
PT_PLATFORM_API bool hvIsEqual(const hvArray* a, const hvArray* b);

/// UTF-8 to 16-bit character codes and back; see the note at the top of this file.
PT_PLATFORM_API std::u16string hvUtf8ToChars(std::string_view utf8);
PT_PLATFORM_API std::string hvCharsToUtf8(const hvChar* chars, std::size_t count);
