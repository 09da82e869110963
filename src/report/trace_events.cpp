// The Trace Event export: metadata events, then for each row its complete event and the
// counter events of its memory figures, then the trace's otherData.

#include "report/trace_events.h"

#include <performance_tracer/names.h>
#include <performance_tracer/processed_points.h>
#include <performance_tracer/tracer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>

#include "core/name_table.h"
#include "processing/sound_rows.h"
#include "report/json_file.h"
#include "report/trace_timeline.h"

namespace pt::report {

namespace {

constexpr double kLimit = static_cast<double>(TraceTimeline::kLimit);

/// The names of the tables as JSON strings, each made once: an export repeats a few names
/// over many rows. Phase names are written as the reports show them.
class JsonNames {
public:
    explicit JsonNames(PerformanceTracer& tracer) : _tracer(tracer) {}

    /// The name of an id as a JSON string; empty for an id without a name or with an empty one.
    const std::string& operator()(std::uint32_t kind, std::int32_t id) {
        static const std::string none;
        const PTNameTable* table = _tracer.nameTable(kind);
        if (id < 0 || !table || static_cast<std::size_t>(id) >= table->size()) {
            return none;
        }
        auto& names = _names[kind];
        if (names.size() <= static_cast<std::size_t>(id)) {
            names.resize(table->size());
        }
        std::optional<std::string>& name = names[static_cast<std::size_t>(id)];
        if (!name) {
            const std::string* text = table->find(id);
            std::string shown = text ? *text : std::string();
            if (kind == PT_TABLE_PHASE) {
                shown = ptDisplayPhaseName(shown, false);
            }
            name = shown.empty() ? std::string() : jsonString(shown);
        }
        return *name;
    }

private:
    PerformanceTracer& _tracer;
    std::array<std::vector<std::optional<std::string>>, PT_TABLE_CHART + 1> _names;
};

/// One series of a counter event: its key and its figure at the end and at the start of a row.
struct Series {
    std::string_view key;
    double end;
    double delta;
};

/// The memory a row's end figures and deltas describe, as two counters.
std::array<Series, 3> basicSeries(const PTOrviaProcessedDataPoint& row) {
    const pt::BasicProcessedMemStats& m = *row._basicMem;
    return {{{"usage", m.procMemUsage, m.procMemUsageDelta},
             {"peak", m.procMemUsagePeak, m.procMemUsagePeakDelta},
             {"virtual size", m.procVMSize, m.procVMSizeDelta}}};
}

std::array<Series, 5> detailedSeries(const PTOrviaProcessedDataPoint& row) {
    const pt::DetailedProcessedMemStats& m = *row._detailedMem;
    return {{{"committed", m.commitMem, m.commitMemDelta},
             {"reserved", m.resMem, m.resMemDelta},
             {"free", m.freeMem, m.freeMemDelta},
             {"DLLs", m.dllsMem, m.dllsMemDelta},
             {"non-process", m.nonprocessMem, m.nonprocessMemDelta}}};
}

template <std::size_t N>
bool anyFigure(const std::array<Series, N>& series) {
    for (const Series& s : series) {
        if (s.end != 0.0 || s.delta != 0.0) {
            return true;
        }
    }
    return false;
}

class TraceWriter {
public:
    TraceWriter(PerformanceTracer& tracer, JsonFile& file, const TraceEventsRequest& request)
        : _names(tracer), _file(file), _request(request) {}

    /// Complete events written so far.
    std::size_t phases() const { return _phases; }

    void write(const PTDiagnosticInfoList& rows) {
        bool basic = false;
        bool detailed = false;
        for (const auto& info : rows) {
            basic = basic || anyFigure(basicSeries(*info->_point));
            detailed = detailed || anyFigure(detailedSeries(*info->_point));
        }
        _file.raw("{\"traceEvents\":[\n");
        metadata("process_name", _request.processName);
        metadata("thread_name", _request.threadName);
        TraceTimeline timeline(rows.empty() ? 0.0 : rows.front()->_point->wcStartTime);
        for (const auto& info : rows) {
            const PTOrviaProcessedDataPoint& row = *info->_point;
            const TraceTimeline::Span span =
                timeline.place(row.stackDepth, row.wcStartTime, row.wcElapsedTime);
            complete(row, span);
            if (basic) {
                counters("\"memory (MiB)\"", basicSeries(row), span);
            }
            if (detailed) {
                counters("\"address space (MiB)\"", detailedSeries(row), span);
            }
        }
        _file.raw("\n],\n\"displayTimeUnit\":\"ms\",\n\"otherData\":{\"selection\":")
            .raw(jsonString(_request.threadName));
        if (const SystemInfoRecord* info = _request.systemInfo) {
            otherData("processor", info->processorStr);
            otherData("cpuSpeed", info->cpuSpeedStr);
            otherData("numCores", info->numCoresStr);
            otherData("totalPhysMem", info->totalPhysMemStr);
            otherData("operatingSystem", info->operatingSystemStr);
            otherData("OrviaVersion", info->OrviaVersionStr);
            otherData("javaVMVersion", info->javaVMVersionStr);
            otherData("installedProducts", info->installedProductsStr);
        }
        _file.raw("}}\n");
    }

private:
    /// The opening of an event: everything up to its arguments.
    void head(std::string_view name, std::string_view phase, std::int64_t ts) {
        _file.raw(_first ? "" : ",\n")
            .raw("{\"name\":")
            .raw(name)
            .raw(",\"ph\":\"")
            .raw(phase)
            .raw("\",\"ts\":")
            .integer(ts)
            .raw(",\"pid\":1,\"tid\":1");
        _first = false;
    }

    void metadata(std::string_view name, const std::string& value) {
        head(jsonString(name), "M", 0);
        _file.raw(",\"args\":{\"name\":").raw(jsonString(value)).raw("}}");
    }

    void complete(const PTOrviaProcessedDataPoint& row, const TraceTimeline::Span& span) {
        const std::string& phase = _names(PT_TABLE_PHASE, row._phaseID);
        head(phase.empty() ? std::string_view("\"\"") : std::string_view(phase), "X", span.begin);
        _file.raw(",\"dur\":").integer(span.end - span.begin).raw(",\"cat\":");
        if (row.gapRow) {
            _file.raw("\"").raw(kUnaccountedCategory).raw("\"");
        } else {
            const std::string& grouping = _names(PT_TABLE_GROUPING, row._groupingID);
            _file.raw(grouping.empty() ? std::string_view("\"\"") : std::string_view(grouping));
        }
        _file.raw(",\"args\":{");
        nameArgument("model", PT_TABLE_MODEL, row.modelID());
        nameArgument("target", PT_TABLE_TARGET, row.targetID());
        nameArgument("machine", PT_TABLE_MACHINE, row.machineID());
        nameArgument("chart", PT_TABLE_CHART, row.chartID());
        nameArgument("statisticsType", PT_TABLE_STATISTICS_TYPE, row._statisticsTypeID);
        _file.raw("\"cpuTimeUs\":");
        if (std::isfinite(row.cpuElapsedTime)) {
            _file.integer(std::llround(std::clamp(row.cpuElapsedTime * 1e6, -kLimit, kLimit)));
        } else {
            _file.raw("null");
        }
        // An outline number is digits and dots, which need no escaping.
        _file.raw(",\"outline\":\"").raw(row.HTMLPhaseNumString.str()).raw("\"}}");
        ++_phases;
    }

    /// An argument that names the row; left out where the row has no such name.
    void nameArgument(std::string_view key, std::uint32_t kind, std::int32_t id) {
        const std::string& value = _names(kind, id);
        if (!value.empty()) {
            _file.raw("\"").raw(key).raw("\":").raw(value).raw(",");
        }
    }

    /// A counter (its name a JSON string) at the row's start and one at its end; figures that
    /// are not finite (only a damaged file has them) are left out, and a counter without
    /// figures with them.
    template <std::size_t N>
    void counters(std::string_view name, const std::array<Series, N>& series,
                  const TraceTimeline::Span& span) {
        for (const bool atStart : {true, false}) {
            bool any = false;
            for (const Series& s : series) {
                const double figure = atStart ? s.end - s.delta : s.end;
                if (!std::isfinite(figure)) {
                    continue;
                }
                if (!any) {
                    head(name, "C", atStart ? span.begin : span.end);
                    _file.raw(",\"args\":{");
                }
                _file.raw(any ? ",\"" : "\"").raw(s.key).raw("\":").number(figure);
                any = true;
            }
            if (any) {
                _file.raw("}}");
            }
        }
    }

    void otherData(std::string_view key, const std::string& value) {
        _file.raw(",\"").raw(key).raw("\":").raw(jsonString(value));
    }

    JsonNames _names;
    JsonFile& _file;
    const TraceEventsRequest& _request;
    bool _first = true;
    std::size_t _phases = 0;
};

}  // namespace

bool writeTraceEvents(PerformanceTracer& tracer, const std::string& jsonFile, PTRawDataVector& data,
                      const TraceEventsRequest& request, TraceEventsSummary& summary) {
    JsonFile file(jsonFile);
    if (!file.isOpen()) {
        return false;
    }
    const PTSoundRows sound = ptProcessSoundRows(tracer, data, request.names, request.byModel);
    TraceWriter writer(tracer, file, request);
    writer.write(sound.rows);
    summary.phases = writer.phases();
    summary.leftOut = sound.errorRows;
    return file.close();
}

}  // namespace pt::report
