#pragma once

// Everything instrumented code and its tools use. The module entry points, which only a host
// calls, are in <performance_tracer/module.h>.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/check.h>
#include <performance_tracer/comparison.h>
#include <performance_tracer/constants.h>
#include <performance_tracer/data_blocks.h>
#include <performance_tracer/export.h>
#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/mem_stats.h>
#include <performance_tracer/names.h>
#include <performance_tracer/number_text.h>
#include <performance_tracer/processed_points.h>
#include <performance_tracer/raw_points.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/reports.h>
#include <performance_tracer/runs.h>
#include <performance_tracer/scope.h>
#include <performance_tracer/system_info_record.h>
#include <performance_tracer/tracer.h>
