#pragma once

// Value files (.hvf): named host values kept on disk. A file opened for reading is read and
// checked whole before hvfOpen answers, so that a damaged, truncated or foreign file gives
// null there and a null from hvfGetVariable only ever means that the variable is absent.
// A file opened for writing is written as variables are put, and finished by hvfClose.
// docs/value_files.md gives the format.

#include <pt_platform/export.h>

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
/// Finishes and closes the file, and frees the handle; 0 on success.
PT_PLATFORM_API int hvfClose(hvFile* file);
