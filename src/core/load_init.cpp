#include <performance_tracer/constants.h>
#include <performance_tracer/groupings.h>
#include <performance_tracer/tracer.h>

// Adding "EvalPrms" while the library loads makes the tracer singleton and, as the first name
// of the grouping table, gives the grouping id 0 in every process. The grouping table survives
// every clear, so the id stays valid for the life of the process.
std::int32_t KsPerformanceTracingPoint::_groupingID =
    ptAddGrouping(std::string(pt::kEvalPrmsGrouping));
