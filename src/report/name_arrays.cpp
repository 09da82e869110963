// The name arrays of a page: the tracer's name tables, which the data blocks index by id.

#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include "core/name_table.h"
#include "report/escape.h"
#include "report/fragments.h"

namespace pt::report {

namespace {

constexpr const char* kArrayNames[] = {"Phase",  "Grouping", "StatisticsType", "Model",
                                       "Target", "Machine",  "Chart"};

}  // namespace

std::string ptHtmlNameArray(PerformanceTracer& tracer, std::uint32_t kind) {
    std::string array = std::string("        var ") + kArrayNames[kind] + " = [";
    if (const PTNameTable* table = tracer.nameTable(kind)) {
        for (std::size_t id = 0; id < table->size(); ++id) {
            const std::string* name = table->find(static_cast<std::int32_t>(id));
            std::string text = name ? *name : std::string();
            if (kind == PT_TABLE_PHASE) {
                text = ptDisplayPhaseName(text, false);
            }
            array += (id == 0 ? "\"" : ", \n\"") + scriptString(text) + "\"";
        }
    }
    return array + "];\n";
}

std::string ptHtmlNameArrays(PerformanceTracer& tracer) {
    std::string arrays;
    for (std::uint32_t kind : {PT_TABLE_PHASE, PT_TABLE_GROUPING, PT_TABLE_MODEL, PT_TABLE_TARGET,
                               PT_TABLE_MACHINE, PT_TABLE_CHART}) {
        arrays += ptHtmlNameArray(tracer, kind);
    }
    for (const char* lengths : {"PhaseLengths", "GroupingLengths", "ModelLengths", "TargetLengths",
                                "MachineLengths", "ChartLengths", "ExpandStrLengths"}) {
        arrays += std::string("        var ") + lengths + " = new Array();\n";
    }
    arrays += "        var ExpandStr = [\"&nbsp;&nbsp;&nbsp;\", \"[+]\", \"[-]\"];\n";
    for (const char* name :
         {"phaseStrToShow", "modelStrToShow", "machineStrToShow", "chartStrToShow", "phaseStr",
          "modelStr", "machineStr", "chartStr", "targetStr", "groupingStr"}) {
        arrays += std::string("        var ") + name + " = \"\";\n";
    }
    return arrays;
}

}  // namespace pt::report
