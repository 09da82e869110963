#include "diagnostic_report.h"

#include <performance_tracer/constants.h>
#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <algorithm>
#include <cstdio>

#include "processing/matching_pass.h"

std::int32_t maxPointType(PerformanceTracer& tracer, const PTRawDataVector* points,
                          const std::string& grouping) {
    if (!points || points->empty()) {
        return 0;
    }
    const bool all = grouping == pt::kGlobalGrouping;
    const auto id = static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_GROUPING, grouping, false));
    std::int32_t level = 0;
    for (const auto& point : *points) {
        if (point->_pointType > level && (all || point->_groupingID == id)) {
            // A type past the widest class can only come from a malformed file; it asks for
            // no more columns than the widest class.
            level = std::min(point->_pointType, 2);
            if (level == 2) {
                break;
            }
        }
    }
    return level;
}

std::string diagnosticHeader(PerformanceTracer&, std::int32_t level) {
    std::string header = "            <tr>\n";
    const auto column = [&](const char* label) {
        header += "                <th>";
        header += label;
        header += "</th>\n";
    };
    column("Point Type");
    column("Grouping");
    if (level > 0) {
        column("Model");
        column("Target");
    }
    if (level == 2) {
        column("Machine");
        column("Chart");
    }
    for (const char* label : {"Phase Name", "isPhaseStart", "WC Time", "CPU Time", "Free",
                              "Committed", "Reserved", "DLLs", "Non-process"}) {
        column(label);
    }
    return header + "            </tr>\n";
}

bool writeDiagnosticReport(PerformanceTracer& tracer, const std::string& htmlFile,
                           const std::string& grouping, PTRawDataVector* points) {
    std::FILE* file = std::fopen(htmlFile.c_str(), "w+");
    if (!file) {
        return false;
    }
    const std::int32_t level = maxPointType(tracer, points, grouping);
    PTPointMap map;
    PTProcessedData data;
    ptMatchDiagnostic(tracer, points, grouping, map, data);

    std::string page =
        "<html>\n"
        "    <body style=\"font-family:Courier New\">\n"
        "        <table border=\"1\" cellspacing=\"0\" width=\"1600px\">\n";
    page += diagnosticHeader(tracer, level);
    if (points) {
        for (const auto& point : *points) {
            const auto row = map.find(point.get());
            if (row == map.end() || row->second->_point->gapRow) {
                continue;  // only logged points that the pass took up have rows
            }
            page += point->diagnosticRow(level, row->second->_point.get());
        }
    }
    page +=
        "        </table>\n"
        "    </body>\n"
        "</html>\n";
    std::fwrite(page.data(), 1, page.size(), file);
    std::fclose(file);
    return true;
}
