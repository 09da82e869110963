#pragma once

// Value files (.hvf): named host values kept on disk. A file opened for reading is read and
// checked whole before hvfOpen answers (its values are made when they are asked for), so that a
// damaged, truncated or foreign file gives null there and a null from hvfGetVariable only ever
// means that the variable is absent. Only a regular file is read; a folder, a pipe or a device
// gives null at once. A file opened for writing is written as variables are put, and takes the
// place of an earlier file only when hvfClose has finished it whole (a device is written in
// place). docs/value_files.md gives the format; <pt_platform/hvf_rows.h> writes and reads a
// long cell variable without making its elements.

#include <pt_platform/export.h>

struct hvArray;
struct hvFile;

/// Opens path with mode "r" or "w"; null if the file cannot be opened, or, for reading, is no
/// regular file or no well-formed value file.
PT_PLATFORM_API hvFile* hvfOpen(const char* path, const char* mode);
/// A new value of the named variable, or null if the file has none (or is not open for
/// reading).
PT_PLATFORM_API hvArray* hvfGetVariable(hvFile* file, const char* name);
/// Writes a variable; 0 on success. A name already written, a null value or a failed write
/// answer non-zero, and so does every put after a failed one. A put answers for the bytes that
/// the compressor has let go of; the close answers for the rest.
PT_PLATFORM_API int hvfPutVariable(hvFile* file, const char* name, const hvArray* value);
/// Finishes and closes the file, and frees the handle; 0 on success. A file being written is
/// in place only on success: on any failure, the earlier file at its name is as it was.
PT_PLATFORM_API int hvfClose(hvFile* file);
/// Closes a file without finishing it, and frees the handle; a file being written leaves the
/// earlier file at its name as it was. Accepts null.
PT_PLATFORM_API void hvfDiscard(hvFile* file);
