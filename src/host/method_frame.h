#pragma once

// What every method of PerfTools.Tracer shares: the names it accepts, how it reads its inputs,
// and how it hands back a result.

#include <pt_platform/hv.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace performance_tracer {

// Parameter names, in lower case.
inline constexpr std::string_view kGroupingParameter = "grouping";
inline constexpr std::string_view kTargetParameter = "target";
inline constexpr std::string_view kHtmlFileParameter = "htmlfile";
inline constexpr std::string_view kHvfFileParameter = "hvffile";
inline constexpr std::string_view kModelParameter = "model";
inline constexpr std::string_view kLhsFileParameter = "lhsfile";
inline constexpr std::string_view kRhsFileParameter = "rhsfile";
inline constexpr std::string_view kLhsLabelParameter = "lhslabel";
inline constexpr std::string_view kRhsLabelParameter = "rhslabel";
inline constexpr std::string_view kShowMetaParameter = "showmeta";
inline constexpr std::string_view kMetricParameter = "metric";
/// Declared names that no method accepts.
inline constexpr std::string_view kItemsParameter = "items";
inline constexpr std::string_view kValueParameter = "value";
/// The labels of the two sides of a comparison unless the caller names them.
inline constexpr std::string_view kDefaultLhsLabel = "LHS";
inline constexpr std::string_view kDefaultRhsLabel = "RHS";

// ---- The three tests of text ----

/// Strict: a character value that is a vector (positional texts of the log methods, file
/// names of the save and load methods).
bool isStrictText(const hvArray* value);
/// Plain: a character vector (name-value parameters, group names).
bool isPlainText(const hvArray* value);
/// The characters of a value, whatever its class (empty for no text).
std::string textOf(const hvArray* value);

// ---- Reading rules ----

/// False for null or anything that is not a logical scalar.
bool readBoolean(const hvArray* value);
/// 0.0 for null or anything that is not a scalar.
double readReal(const hvArray* value);
/// 0 for null or anything not of an integer class.
std::int32_t readInteger(const hvArray* value);
/// The texts of every element of a cell in linear order; an element that is not a character
/// vector raises AddGroupingExpectedString.
std::vector<std::string> cellStringList(const hvArray* cell);
/// "time", "basicmemory" or "detailedmemory", compared exactly.
bool isMetricName(const std::string& name);
/// Byte by byte, as tolower folds them.
std::string foldLower(std::string text);

/// Hands a new value to the host as the method's result.
void setResult(std::uint32_t& nlhs, hvArray** plhs, hvArray* value);

}  // namespace performance_tracer
