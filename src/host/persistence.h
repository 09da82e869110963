#pragma once

// Raw data in value files: the variables PerformanceTracingRawDataVector (a cell row of point
// rows), PerformanceTracingSystemInfo (a structure of eight texts) and OrviaRoot (text).

#include <performance_tracer/raw_points.h>
#include <performance_tracer/system_info_record.h>

#include <string>

struct hvArray;
struct hvFile;

namespace performance_tracer {

inline constexpr const char* kRawDataVariable = "PerformanceTracingRawDataVector";
inline constexpr const char* kSystemInfoVariable = "PerformanceTracingSystemInfo";
inline constexpr const char* kRootVariable = "OrviaRoot";

/// A new 1-by-n cell row of the points' rows. The stored root must be set first: the rows'
/// phase names are stripped of it.
hvArray* rawDataToCells(const PTRawDataVector& points);
/// Writes the variable that rawDataToCells makes, byte for byte, making one row at a time;
/// the hvfPutVariable answer.
int putRawDataCells(hvFile* file, const char* name, const PTRawDataVector& points);
/// Appends the point of a row, of the class its element count gives; false for an empty row.
bool appendPointOfRow(const hvArray* row, PTRawDataVector& points);
/// Appends the points of a cell row (null adds nothing). A row of 18 elements is read as a
/// block-diagram point, one of 20 as a state-chart point, any other as a host-language point.
/// An empty element hides itself and everything after it.
void readRawDataCells(const hvArray* cells, PTRawDataVector& points);
/// A new 1-by-1 structure of the system information of this machine.
hvArray* systemInfoToStruct();
/// Reads the eight texts by position from element one of a structure; null or another class
/// leaves the record as it is, a missing or non-text field gives empty text.
void readSystemInfoStruct(const hvArray* structure, SystemInfoRecord& record);
/// Reads the points and the system information of a value file into the given set and
/// record; true on success. Raises OpenFileFailed if the file cannot be opened, and
/// WriteFileFailed if closing it fails.
bool loadSavedData(const std::string& file, PTRawDataVector& points, SystemInfoRecord& record,
                   std::string& root);

}  // namespace performance_tracer
