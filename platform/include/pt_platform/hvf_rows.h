#pragma once

// A cell variable of rows, written and read straight, without making a host value for each
// element: a saved run holds about twenty values for each of millions of points, and making
// and destroying them would cost far more than compressing them. Both directions give exactly
// what the value functions give: a file written here holds the bytes that hvfPutVariable of
// the same values writes, and the rules below read a cell as the hv... functions read the value
// it stands for.

#include <pt_platform/export.h>
#include <pt_platform/hv.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

struct hvFile;

namespace pt::platform {
class DeflateStream;
}

// ---- Writing ---------------------------------------------------------------------------------

class hvfRowWriter;

/// Writes a 1-by-count cell variable whose element i row(i, writer) writes: exactly one
/// element, a cellRow followed by its cells. 0 on success; a failed write, or elements that do
/// not fit what was opened, answer non-zero.
PT_PLATFORM_API int hvfPutRows(hvFile* file, const char* name, std::size_t count,
                               const std::function<void(std::size_t, hvfRowWriter&)>& row);

/// Writes the elements of a row in the form of the values named; each call is one element.
class PT_PLATFORM_API hvfRowWriter {
public:
    /// Opens an element that is a 1-by-cells cell; that many elements follow as its cells.
    void cellRow(std::size_t cells);
    /// A character row, as hvCreateString makes it.
    void text(std::string_view utf8);
    /// A 1-by-1 int32.
    void int32Scalar(std::int32_t value);
    /// As hvCreateLogicalScalar makes it.
    void logicalScalar(bool value);
    /// As hvCreateDoubleScalar makes it.
    void doubleScalar(double value);

private:
    friend int hvfPutRows(hvFile*, const char*, std::size_t,
                          const std::function<void(std::size_t, hvfRowWriter&)>&);
    explicit hvfRowWriter(pt::platform::DeflateStream& stream) : _stream(stream) {}
    /// Counts one more element against those due.
    void element();

    pt::platform::DeflateStream& _stream;
    std::size_t _due = 0;  // elements still to come before the row is whole
    bool _fits = true;     // no element came that was not due
};

// ---- Reading ---------------------------------------------------------------------------------

/// One element of a row as it stands in a value file, seen without making a value. What it
/// refers to lives only as long as the visit that hands it over.
struct hvfCell {
    /// Unknown for an empty element.
    hvClassID classID = hvClassID::Unknown;
    /// Whether the value it stands for is a vector, as hvIsVector tells.
    bool isVector = false;
    std::size_t count = 0;
    /// Character data: the text as UTF-8. Logical and numeric data: the elements' bytes,
    /// little-endian. Empty for other classes.
    std::string_view bytes;
};

/// An element of a cell variable seen without making it: its class and element count, and,
/// when it is a cell, its elements.
struct hvfRow {
    hvClassID classID = hvClassID::Unknown;
    std::size_t count = 0;
    std::span<const hvfCell> cells;
};

/// The reading rules of the hv... functions for a cell (null for a missing one):
/// hvArrayToStdString; scratch holds the text when it cannot be a view of the bytes.
PT_PLATFORM_API std::string_view hvfCellText(const hvfCell* cell, std::string& scratch);
/// hvGetScalar.
PT_PLATFORM_API double hvfCellScalar(const hvfCell* cell);
/// The first 32 bits of the data of an integer cell (zeros past the end of a shorter one).
PT_PLATFORM_API std::int32_t hvfCellInt32Bits(const hvfCell* cell);
/// hvIsLogicalScalarTrue.
PT_PLATFORM_API bool hvfCellIsTrue(const hvfCell* cell);

/// How a read of a whole file ended.
enum class hvfReadResult {
    /// The file is sound and was read.
    Read,
    /// The file cannot be opened, is no regular file, or is no sound value file; what was
    /// handed out before this was found must be dropped.
    NotOpened,
    /// The file was read but could not be closed.
    CloseFailed,
};

/// Reads a value file in one pass, holding a few of its rows at a time, and checks all that
/// hvfOpen checks. The elements of the cell variable rowsName go to row one at a time, in order
/// (null for an empty element), until row answers false. Of the other variables, those named
/// in others are made, into values at the same positions (null when absent).
PT_PLATFORM_API hvfReadResult hvfReadRows(const char* path, const char* rowsName,
                                          const std::function<bool(const hvfRow*)>& row,
                                          std::span<const char* const> others,
                                          std::span<hvUniqueArray> values);
