#pragma once

// The diagnostic report: a plain table of the raw points of a grouping in logged order, for
// debugging instrumentation. The rows that the matching pass could not pair are painted red.

#include <performance_tracer/raw_points.h>

#include <cstdint>
#include <string>

class PerformanceTracer;

/// Writes the report of the points (a snapshot, which receives the pass's generated points;
/// they have no rows). False if the file cannot be opened.
bool writeDiagnosticReport(PerformanceTracer& tracer, const std::string& htmlFile,
                           const std::string& grouping, PTRawDataVector* points);
/// How many pairs of name columns the table needs: 0, 1 (model, target) or 2 (and machine,
/// chart), by the widest point of the grouping ("GLOBAL" for all).
std::int32_t maxPointType(PerformanceTracer& tracer, const PTRawDataVector* points,
                          const std::string& grouping);
/// The header row for that many column pairs.
std::string diagnosticHeader(PerformanceTracer& tracer, std::int32_t level);
