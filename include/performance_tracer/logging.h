#pragma once

// The instrument: calls at the start (isStart true) and the end of each named phase.
//
// Each call records a raw point when global logging is on or its grouping is enabled, and
// answers whether it appended one. When nothing is enabled a call costs a flag test and one
// bounded read (plus one name lookup for the overloads that take a grouping name). No call
// ever throws. Callers serialise: the tracer takes no lock.
//
// Hot paths use the overloads that take a grouping id, got once from ptAddGrouping.

#include <performance_tracer/export.h>

#include <string>

PT_API bool ptLogOrviaData(const std::string& grouping, const std::string& phase,
                           bool isStart) noexcept;
PT_API bool ptLogOrviaData(int groupingID, const std::string& phase, bool isStart) noexcept;

PT_API bool ptLogKestruneData(const std::string& grouping, const std::string& model,
                              const std::string& target, const std::string& phase,
                              bool isStart) noexcept;
PT_API bool ptLogKestruneData(int groupingID, const std::string& model, const std::string& target,
                              const std::string& phase, bool isStart) noexcept;

/// Logs a host-language point into the grouping "Kestrune Startup".
PT_API bool ptLogKsStartupData(const std::string& phase, bool isStart) noexcept;

PT_API bool ptLogYlvaneData(const std::string& grouping, const std::string& model,
                            const std::string& target, const std::string& machine,
                            const std::string& chart, const std::string& phase,
                            bool isStart) noexcept;
PT_API bool ptLogYlvaneData(int groupingID, const std::string& model, const std::string& target,
                            const std::string& machine, const std::string& chart,
                            const std::string& phase, bool isStart) noexcept;
