// The Trace Event export: what each kind of row becomes, and, over random logs, the rules every
// viewer relies on: the five fields, complete events nested as the rows are, one event for each
// row of the matching pass that is not an error row, and the error rows counted.

// Keeps the old bind header, which the JSON reader includes, from announcing its deprecation.
#define BOOST_BIND_GLOBAL_PLACEHOLDERS

#include "report/trace_events.h"

#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>

#include <unistd.h>

#include "golden_text.h"
#include "processing/direct_matching_pass.h"
#include "processing/random_log.h"

namespace pt::report {
namespace {

using boost::property_tree::ptree;
using pt::testing::makePoint;

struct Event {
    std::string name;
    std::string ph;
    std::string cat;
    std::int64_t ts = 0;
    std::int64_t dur = 0;
    ptree args;

    std::int64_t end() const { return ts + dur; }
    std::string arg(const std::string& key) const { return args.get<std::string>(key, "-"); }
};

class TraceEvents : public ::testing::Test {
protected:
    void SetUp() override {
        ptClearRawData();
        _file = std::filesystem::temp_directory_path() /
                ("pt_trace_events_" + std::to_string(getpid()) + ".json");
    }
    void TearDown() override { std::filesystem::remove(_file); }

    /// Exports the list and reads the trace back; every event must carry the five fields, and the
    /// summary counts the complete events.
    std::vector<Event> exportOf(PTRawDataVector& points, const TraceEventsRequest& request) {
        EXPECT_TRUE(writeTraceEvents(*ptTracer(), _file.string(), points, request, _written));
        ptree trace;
        read_json(_file.string(), trace);
        std::vector<Event> events;
        for (const auto& [key, node] : trace.get_child("traceEvents")) {
            for (const char* field : {"name", "ph", "ts", "pid", "tid"}) {
                EXPECT_TRUE(node.get_child_optional(field)) << field << " missing";
            }
            // The times are integers, or the read throws.
            const Event& event = events.emplace_back(
                Event{node.get<std::string>("name"), node.get<std::string>("ph"),
                      node.get<std::string>("cat", ""), node.get<std::int64_t>("ts"),
                      node.get<std::int64_t>("dur", 0), node.get_child("args", ptree())});
            EXPECT_TRUE(event.ph != "X" || node.get_child_optional("dur")) << event.name;
        }
        EXPECT_EQ(_written.phases,
                  static_cast<std::size_t>(std::count_if(
                      events.begin(), events.end(), [](const Event& e) { return e.ph == "X"; })));
        return events;
    }

    static std::vector<Event> ofKind(const std::vector<Event>& events, const std::string& ph) {
        std::vector<Event> kind;
        std::copy_if(events.begin(), events.end(), std::back_inserter(kind),
                     [&](const Event& e) { return e.ph == ph; });
        return kind;
    }

    std::filesystem::path _file;
    TraceEventsSummary _written;
};

TEST_F(TraceEvents, EachKindOfRow) {
    const double mib = 1024.0 * 1024.0;
    PTRawDataVector points = {
        makePoint(0, "Run", "outer", true, 50.0, 7.0),
        makePoint(1, "Run", "inner", true, 50.01, 7.01, "plant"),
        makePoint(1, "Run", "inner", false, 50.02, 7.015, "plant"),
        // half a second that no phase accounts for, then names to escape
        makePoint(2, "Charts\\\"Build\"", "say \"hi\"\x01\xff", true, 50.52, 7.02, "plant"),
        makePoint(2, "Charts\\\"Build\"", "say \"hi\"\x01\xff", false, 50.6, 7.1, "plant"),
        makePoint(0, "Run", "outer", false, 50.61, 7.11)};
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double usage = (10.0 + static_cast<double>(i)) * mib;
        points[i]->_basicMem = boost::make_shared<pt::BasicMemStats>(usage, 2 * usage, 100 * mib);
    }
    points[0]->_statisticsTypeID = points[5]->_statisticsTypeID =
        static_cast<std::int32_t>(ptNameID(PT_TABLE_STATISTICS_TYPE, "solver"));

    // The rows, with the generated copy of the open phase over the wait, named after the phase
    // before it, and memory as counters at each row's start and end.
    exportOf(points, {.processName = "nightly", .threadName = "GLOBAL"});
    std::ifstream in(_file, std::ios::binary);
    pt::testing::expectGoldenText(PT_REPORT_GOLDEN_DIR, "trace_events",
                                  std::string(std::istreambuf_iterator<char>(in), {}));

    // No counters without memory figures.
    PTRawDataVector plain = {makePoint(1, "Run", "solve", true, 1.0),
                             makePoint(1, "Run", "solve", false, 1.5)};
    const std::vector<Event> events = exportOf(plain, {});
    EXPECT_EQ(std::pair(ofKind(events, "X").size(), ofKind(events, "C").size()),
              std::pair(1ul, 0ul));
}

/// Every pair of complete events is either disjoint or one holds the other; in file order,
/// which is the order of the starts.
void expectNested(const std::vector<Event>& phases) {
    std::vector<const Event*> open;
    std::int64_t lastStart = INT64_MIN;
    for (const Event& e : phases) {
        ASSERT_GE(e.dur, 0) << e.name;
        ASSERT_GE(e.ts, lastStart) << e.name << " starts before the event before it";
        lastStart = e.ts;
        while (!open.empty() && e.end() > open.back()->end()) {
            ASSERT_GE(e.ts, open.back()->end())
                << e.name << " " << e.arg("outline") << " overlaps " << open.back()->name << " "
                << open.back()->arg("outline");
            open.pop_back();
        }
        open.push_back(&e);
    }
}

TEST_F(TraceEvents, RandomLogsFollowTheFormatsRules) {
    using pt::testing::DirectMatchingPass;
    const struct {
        const char* what;
        pt::testing::LogOptions log;
        std::vector<std::string> names = {"GLOBAL"};
        bool byModel = false;
    } cases[] = {
        {"gaps", {.gapChance = 0.25}},
        {"unaccounted phases", {.unaccountedChance = 0.1}, {"Alpha", "Beta"}},
        {"clocks stepping backwards", {.backwardsChance = 0.2}},
        {"broken instrumentation", {.faults = 3}},
        {"one grouping", {}, {"Beta"}},
        {"models", {}, {"engine"}, true},
    };
    for (auto c : cases) {
        c.log.points = 300;
        c.log.maxDepth = 6;
        for (unsigned seed = 1; seed <= 25; ++seed) {
            SCOPED_TRACE(std::string(c.what) + ", seed " + std::to_string(seed));
            std::mt19937 rng(seed);
            const PTRawDataVector log = pt::testing::randomLog(rng, c.log);
            PTRawDataVector exported = pt::testing::copyLog(log);
            const std::vector<Event> phases = ofKind(
                exportOf(
                    exported,
                    {.names = c.names, .byModel = c.byModel, .processName = "", .threadName = ""}),
                "X");
            expectNested(phases);

            // The events are the pass's rows without the error rows, which are counted.
            PTRawDataVector direct = pt::testing::copyLog(log);
            DirectMatchingPass pass(c.byModel ? DirectMatchingPass::Variant::Models
                                              : DirectMatchingPass::Variant::Groupings,
                                    c.names);
            pass.run(direct);
            std::set<const PTDiagnosticInfo*> errorRows;
            for (const auto& [point, row] : pass.map) {
                if (row->_point->errorRow) {
                    errorRows.insert(row.get());
                }
            }
            EXPECT_EQ(_written.leftOut, errorRows.size());
            std::vector<const PTOrviaProcessedDataPoint*> rows;
            for (const auto& row : pass.startRows(direct)) {
                if (!row->_point->errorRow) {
                    rows.push_back(row->_point.get());
                }
            }
            ASSERT_EQ(phases.size(), rows.size());
            std::map<std::string, const Event*> byOutline;
            for (std::size_t i = 0; i < rows.size(); ++i) {
                const Event& e = phases[i];
                const PTOrviaProcessedDataPoint& row = *rows[i];
                ASSERT_EQ(e.name, ptDisplayPhaseName(ptGetPhaseStr(row._phaseID), false));
                ASSERT_EQ(e.arg("outline"), row.HTMLPhaseNumString);
                ASSERT_EQ(e.cat == kUnaccountedCategory, row.gapRow) << e.name;
                if (c.log.backwardsChance == 0.0 && c.log.faults == 0) {
                    // Clocks that only go forward are followed to the microsecond ...
                    ASSERT_NEAR(static_cast<double>(e.dur), row.wcElapsedTime * 1e6, 1.0);
                    // ... and each child lies inside the row its outline number names.
                    const std::string& outline = row.HTMLPhaseNumString;
                    if (const auto dot = outline.rfind('.'); dot != std::string::npos) {
                        const Event* parent = byOutline.at(outline.substr(0, dot));
                        ASSERT_GE(e.ts, parent->ts) << outline;
                        ASSERT_LE(e.end(), parent->end()) << outline;
                    }
                    byOutline[outline] = &e;
                }
            }
        }
    }
}

}  // namespace
}  // namespace pt::report
