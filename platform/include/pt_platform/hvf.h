#pragma once

// Value files (.hvf): named host values kept on disk. A file opened for reading is read and
// checked whole before hvfOpen answers (its values are made when they are asked for), so that a
// damaged, truncated or foreign file gives null there and a null from hvfGetVariable only ever
// means that the variable is absent. A file opened for writing is written as variables are put, and
// finished by hvfClose. docs/value_files.md gives the format.

#include <pt_platform/export.h>

#include <cstddef>
#include <functional>

struct hvArray;
struct hvFile;

/// Opens path with mode "r" or "w"; null if the file cannot be opened, or, for reading, is no
/// well-formed value file.
PT_PLATFORM_API hvFile* hvfOpen(const char* path, const char* mode);
/// A new value of the named variable, or null if the file has none (or is not open for
/// reading).
PT_PLATFORM_API hvArray* hvfGetVariable(hvFile* file, const char* name);
/// Writes a variable; 0 on success. A name already written, a null value or a failed write
/// answer non-zero.
PT_PLATFORM_API int hvfPutVariable(hvFile* file, const char* name, const hvArray* value);
/// Writes a 1-by-count cell row, making each element only when it is due: element(i) returns a
/// new value (or null for an empty element), which is destroyed once written. The file holds
/// the same bytes as hvfPutVariable of the whole row, without the row ever being held.
/// 0 on success.
PT_PLATFORM_API int hvfPutCellRow(hvFile* file, const char* name, std::size_t count,
                                  const std::function<hvArray*(std::size_t)>& element);
/// Makes the elements of a cell variable one at a time, in order, and hands each to visit
/// (null for an empty element) until visit answers false; each is destroyed after its visit.
/// A variable of another class visits nothing. False if the file has no such variable.
PT_PLATFORM_API bool hvfForEachCell(hvFile* file, const char* name,
                                    const std::function<bool(const hvArray*)>& visit);
/// Finishes and closes the file, and frees the handle; 0 on success.
PT_PLATFORM_API int hvfClose(hvFile* file);
