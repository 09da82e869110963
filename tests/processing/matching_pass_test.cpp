#include "processing/matching_pass.h"
#include "processing/selection.h"

#include <performance_tracer/constants.h>
#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <cmath>
#include <sstream>
#include <tuple>

#include "direct_matching_pass.h"
#include "golden_text.h"
#include "large_inputs.h"
#include "random_log.h"

namespace {

using pt::testing::copyLog;
using Names = std::vector<std::string>;

/// A pass with every row it made, in the order of the points that opened them.
struct Pass {
    PTProcessedData data;
    PTPointMap map;
    std::vector<const PTOrviaProcessedDataPoint*> rows;
    bool leftOpen = false;
};

enum class Variant { Groupings, Models, Diagnostic };

Pass run(PTRawDataVector& log, const Names& names, Variant variant = Variant::Groupings) {
    Pass pass;
    PerformanceTracer& tracer = *ptTracer();
    switch (variant) {
        case Variant::Groupings: ptMatchGroupings(tracer, log, names, pass.map, pass.data); break;
        case Variant::Models: ptMatchModels(tracer, &log, names, pass.map, pass.data); break;
        case Variant::Diagnostic:
            pass.leftOpen = ptMatchDiagnostic(tracer, &log, names.at(0), pass.map, pass.data);
            break;
    }
    for (const auto& point : log) {
        const auto found = pass.map.find(point.get());
        if (found != pass.map.end() && std::find(pass.rows.begin(), pass.rows.end(),
                                                 found->second->_point.get()) == pass.rows.end()) {
            pass.rows.push_back(found->second->_point.get());
        }
    }
    return pass;
}

/// Each row as "row:number name type/depth/children start+elapsed", E for an error row, G for
/// a generated one, and its descendants' rows; one a line.
std::string rowsOf(const Pass& pass) {
    std::ostringstream s;
    for (const auto* r : pass.rows) {
        s << r->HTMLRowNumber << ':' << std::string(r->HTMLPhaseNumString) << ' '
          << ptGetPhaseStr(r->_phaseID) << ' ' << r->_pointType << '/' << r->stackDepth << '/'
          << r->numChildren << ' ' << r->wcStartTime << '+' << r->wcElapsedTime
          << (r->errorRow ? " E" : "") << (r->gapRow ? " G" : "");
        for (std::int32_t child : r->childrenIDs.toVector()) {
            s << ' ' << child;
        }
        s << '\n';
    }
    return s.str();
}

/// The list after a pass: each point's phase and + or -, * for a generated point.
std::string listOf(const PTRawDataVector& log) {
    std::string text;
    for (const auto& p : log) {
        text += ptGetPhaseStr(p->_phaseID) + (p->_isPhaseStart ? "+" : "-") +
                (p->_isGenerated ? "* " : " ");
    }
    return text;
}

std::string describe(const PTProcessedData& d, int precision = 17) {
    std::ostringstream s;
    s.precision(precision);
    s << d._totalWC << ' ' << d._totalCPU << ' ' << d._levelCount << ' ' << d._baseWC << ' '
      << d._baseCPU << ' ' << d._hasError << ' ' << d._hasDetailedMem;
    return s.str();
}

class MatchingPass : public ::testing::Test {
protected:
    void SetUp() override {
        ptClearRawData();
        ptNameID(PT_TABLE_PHASE, std::string(pt::kUnaccountedPhase));
    }
};

// Each case's rows, its list if the pass inserted points, and the figures of the pass,
// against golden/matching_pass.txt.
TEST_F(MatchingPass, RowsWaitsAndBrokenInstrumentation) {
    const auto M = Variant::Models, D = Variant::Diagnostic;
    const struct {
        const char* what;
        const char* events;
        const char* name;
        Variant variant = Variant::Groupings;
    } cases[] = {
        {"the end opens the level below as well", "A+10/1,A-12.5/1.75", "G"},
        {"waits between top-level phases are in no row nor total", "A+0,A-1,B+1.05,B-3.05", "G"},
        {"... however long", "A+0,A-1,B+2,B-4", "G"},
        {"a wait between children is a _post row, a copy of the parent before what follows",
         "1Parent+0,1a+.01,1a-.02,1b+1.02,1b-1.03,1Parent-1.04", "G"},
        {"a wait of exactly the threshold is no gap",
         "P+0,a+0,a-0,b+0.10000000149011612,b-0.10000000149011612,P-0.10000000149011612", "G"},
        {"... one just above it is",
         "P+0,a+0,a-0,b+0.10000000149011613,b-0.10000000149011613,P-0.10000000149011613", "G"},
        {"a wait before the first child is a _self row",
         "2Parent+0,2child+1,2child-1.5,2Parent-1.6", "G"},
        {"outline numbers restart under each parent",
         "p1+.01,c1+.02,c1-.03,c2+.04,c2-.05,p1-.06,p2+.07,c1+.08,c1-.09,c2+.1,c2-.11,p2-.12", "G"},
        {"an end with nothing open", "A+.01,A-.02,B-.03", "G"},
        {"an end that does not fit", "A+.01,B+.02,A-.03,B-.04", "G"},
        {"a start that never ends", "A+.01,B+.02,B-.03", "G"},
        {"two kinds interleaved", "A+.01,1A+.02,A-.03,1A-.04", "G"},
        {"the first point an end", "X-.01,A+.02,B+.03,B-.04,A-.05", "G"},
        {"... its row number used again, a level too deep for the rest", "X-0,A+.01,A-.02", "G"},
        {"a phase that never ends keeps zero times", "A+5", "G"},
        {"the _self cut from Unaccounted Phase is taken up with its grouping",
         "O:Unaccounted Phase+0,O:child+1,O:child-1.05,O:Unaccounted Phase-1.1", "O"},
        {"... and not cut for an unselected grouping",
         "U:Unaccounted Phase+0,S:child+1,S:child-1.5,U:Unaccounted Phase-1.6", "S"},
        {"a skipped point: the wait counts from the last point taken up, the generated points "
         "stand right before the point after it",
         "P+0,a+0,a-0,Skipped:s+.5,b+1,b-1,P-1", "G"},
        {"after a point without memory records a wait is Unaccounted Phase",
         "1P+0,1a+0,1a-0~,1b+1,1b-1,1P-1", "GLOBAL"},
        {"... which a model selection never takes up", "1P+0,1a+0,1a-0~,1b+1,1b-1,1P-1", "GLOBAL",
         M},
        {"an empty list", "", "G"},
        {"an empty list of models", "", "GLOBAL", M},
        {"an empty list in the diagnostic pass", "", "G", D},
        {"an unselected grouping", "A+0,A-1", "Other"},
        {"no model points", "A+0,A-1", "GLOBAL", M},
        {"the diagnostic pass ends on a wait with nothing open, without totals",
         "A+0,A-.5,B+2,B-2.5", "G", D},
        {"... marks phases left open, as no error", "A+0,A-.5,B+2,B-2.5,C+3", "G", D},
    };
    std::string text =
        "rows: row:number name type/depth/children start+elapsed, E error, G generated, "
        "descendants\nfigures: wall and CPU totals, levels, base wall and CPU, error, detailed "
        "memory\n";
    for (const auto& c : cases) {
        PTRawDataVector log = pt::testing::logOf(c.events);
        const std::string before = listOf(log);
        const Pass pass = run(log, {c.name}, c.variant);
        text += "== " + std::string(c.what) + ": " + c.events + "\n" + rowsOf(pass);
        text += listOf(log) == before ? "" : "list: " + listOf(log) + "\n";
        text += "figures: " + describe(pass.data, 6) + (pass.leftOpen ? " left open\n" : "\n");
    }
    pt::testing::expectGoldenText(PT_GOLDEN_DIR, "matching_pass", text);
    EXPECT_EQ(kGapThreshold, 0.10000000149011612);
    EXPECT_EQ(std::stod("0.10000000149011613"), std::nextafter(kGapThreshold, 1.0));
}

TEST_F(MatchingPass, PhasesNestedAHundredThousandDeep) {
    // Outline numbers and descendant lists once grew with the square of the depth.
    constexpr std::int32_t kDepth = pt::testing::largeSize(100000, 20000);
    PTRawDataVector log;
    for (std::int32_t i = 0; i < 2 * kDepth; ++i) {
        log.push_back(pt::testing::makePoint(0, "G", "p", i < kDepth, i * 1e-6));
    }
    const PTProcessedData data = ptGetProcessedDataForGroupings(&log, {"G"});
    ASSERT_FALSE(data._hasError);
    ASSERT_EQ(data._rows.size(), static_cast<std::size_t>(kDepth));
    EXPECT_EQ(data._levelCount, kDepth + 1);
    std::string deepest = "1";
    for (std::int32_t depth = 1; depth < kDepth; ++depth) {
        deepest += ".1";
    }
    for (const std::int32_t depth : {0, 1, 2, kDepth / 2, kDepth - 2, kDepth - 1}) {
        const auto d = static_cast<std::size_t>(depth);
        const PTOrviaProcessedDataPoint& row = *data._rows[d]->_point;
        EXPECT_EQ(std::make_tuple(row.stackDepth, std::string(row.HTMLPhaseNumString),
                                  row.numChildren, row.childrenIDs),
                  std::make_tuple(depth, deepest.substr(0, 2 * d + 1), depth + 1 < kDepth ? 1 : 0,
                                  PTRowRun(depth + 2, static_cast<std::size_t>(kDepth) - d - 1)));
        EXPECT_NEAR(row.wcElapsedTime, (2 * (kDepth - depth) - 1) * 1e-6, 1e-9);
    }
    if (!pt::testing::kSanitized) {
        EXPECT_LT(pt::testing::peakResidentBytes(), pt::testing::kGiB);
    }
}

// ---- The pass against its direct form, on random logs ----

/// A row as text, with every field a pass sets.
std::string describe(const PTOrviaProcessedDataPoint& r) {
    std::ostringstream s;
    s.precision(17);
    s << ptGetPhaseStr(r._phaseID) << '|' << ptNameStr(PT_TABLE_GROUPING, r._groupingID) << '|'
      << r._pointType << '|' << r.HTMLRowNumber << '|' << r.HTMLPhaseNumString << '|'
      << r.stackDepth << '|' << r.numChildren << '|' << r.errorRow << r.gapRow << '|'
      << r.wcStartTime << '|' << r.wcElapsedTime << '|' << r.cpuStartTime << '|' << r.cpuElapsedTime
      << '|' << r._basicMem->procMemUsage << ',' << r._basicMem->procMemUsageDelta << ','
      << r._detailedMem->freeMem << ',' << r._detailedMem->freeMemDelta << ','
      << r._startDetailedMem->freeMem << '|' << r._parentPhaseID << '|';
    for (std::int32_t child : r.childrenIDs) {
        s << child << ',';
    }
    return s.str();
}

/// The list as text, and for each point the row it maps to.
template <typename Map>
std::string describe(const PTRawDataVector& log, const Map& map) {
    std::ostringstream s;
    s.precision(17);
    for (const auto& p : log) {
        s << ptGetPhaseStr(p->_phaseID) << '/' << p->_groupingID << '/' << p->_pointType << '/'
          << p->_isPhaseStart << p->_isGenerated << '/' << p->_wcTime << " -> ";
        const auto row = map.find(p.get());
        s << (row == map.end() ? "-" : describe(*row->second->_point)) << '\n';
    }
    return s.str();
}

std::string describe(const PTDiagnosticInfoList& rows) {
    std::string text;
    for (const auto& row : rows) {
        text += describe(*row->_point) + "\n";
    }
    return text;
}

TEST_F(MatchingPass, GivesWhatTheDirectFormGives) {
    using Direct = pt::testing::DirectMatchingPass;
    std::mt19937 rng(99);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int round = 0; round < 400; ++round) {
        pt::testing::LogOptions options;
        options.points = 2 * std::uniform_int_distribution<int>(1, 100)(rng);
        options.gapChance = round % 7 == 0 ? 0.0 : 0.3;
        options.unaccountedChance = round % 2 ? 0.15 : 0.0;
        options.backwardsChance = round % 5 == 0 ? 0.1 : 0.0;
        options.faults = round % 3 == 0 ? 2 : 0;
        PTRawDataVector log = pt::testing::randomLog(rng, options);
        for (auto& point : log) {  // memory records of every kind: missing, zero and real
            if (unit(rng) < 0.1) {
                point->_basicMem.reset();
            } else {
                point->_basicMem =
                    boost::make_shared<pt::BasicMemStats>(std::floor(unit(rng) * 1e6), 0, 0);
            }
            if (const double detailed = unit(rng); detailed < 0.2) {
                point->_detailedMem.reset();
            } else if (detailed < 0.6) {
                point->_detailedMem = boost::make_shared<pt::DetailedMemStats>(
                    std::floor(unit(rng) * 1e6), 0, 0, 0, 0);
            }
        }
        const std::pair<Variant, Names> selections[] = {
            {Variant::Groupings, {"GLOBAL"}}, {Variant::Groupings, {"Alpha", "Beta"}},
            {Variant::Models, {"engine"}},    {Variant::Models, {"GLOBAL"}},
            {Variant::Diagnostic, {"Alpha"}}, {Variant::Diagnostic, {"GLOBAL"}}};
        for (const auto& [variant, names] : selections) {
            const std::string what = "round " + std::to_string(round) + ", " + names[0];
            PTRawDataVector expectedLog = copyLog(log);
            // The direct form's variants are in the same order.
            Direct direct(static_cast<Direct::Variant>(variant), names);
            direct.run(expectedLog);

            PTRawDataVector actualLog = copyLog(log);
            const Pass pass = run(actualLog, names, variant);
            ASSERT_EQ(describe(actualLog, pass.map), describe(expectedLog, direct.map)) << what;
            ASSERT_EQ(describe(pass.data), describe(direct.out)) << what;
            EXPECT_EQ(pass.leftOpen, variant == Variant::Diagnostic && direct.leftOpen);
            // Selections of well-formed logs, "Unaccounted Phase" in an unselected grouping
            // among them, have no error and leave nothing open.
            if (options.faults == 0) {
                EXPECT_FALSE(pass.data._hasError || pass.leftOpen) << what;
            }

            if (variant != Variant::Diagnostic) {
                PTRawDataVector selected = copyLog(log);
                const PTProcessedData data =
                    ptProcessRaw(*ptTracer(), selected, names, variant == Variant::Models);
                ASSERT_EQ(data._hasError, direct.out._hasError) << what;
                if (!data._hasError) {
                    ASSERT_EQ(describe(data._rows), describe(direct.startRows(expectedLog)))
                        << what;
                }
            }
        }
    }
}

// ---- The selections' entry points ----

TEST_F(MatchingPass, NullListsMeanTheLiveStore) {
    PerformanceTracer& t = *ptTracer();
    PTPointMap map;
    PTProcessedData empty, diagnostic, models, unknown;
    ptMatchModels(t, nullptr, {"GLOBAL"}, map, empty);  // an empty store: an error
    const bool open = ptMatchDiagnostic(t, nullptr, "G", map, diagnostic);
    EXPECT_EQ(std::make_tuple(empty._hasError, open, diagnostic._hasError),
              std::make_tuple(true, true, false));

    ptEnableGlobalLogging(true);
    ptAddGrouping("Live");
    ptLogKestruneData("Live", "m", "t", "phase", true);
    ptLogKestruneData("Live", "m", "t", "phase", false);
    ptLogOrviaData("Live", "host", true);
    ptLogOrviaData("Live", "host", false);
    ptEnableGlobalLogging(false);

    ptMatchModels(t, nullptr, {"m"}, map, models);
    EXPECT_EQ(std::make_tuple(models._hasError, map.size()), std::make_tuple(false, 2u));
    map.clear();
    EXPECT_FALSE(ptMatchDiagnostic(t, nullptr, "never added", map, unknown) || !map.empty());
    const PTProcessedData live = ptGetProcessedDataForGroupings(nullptr, {"Live"});
    std::string phases;
    for (const auto& row : live._rows) {
        phases += ptGetPhaseStr(row->_point->_phaseID) + std::to_string(row->_point->_pointType);
    }
    EXPECT_EQ(phases, "phase1host0");
    const PTProcessedData byModel = ptGetProcessedDataForModels(nullptr, {"m"});
    ASSERT_EQ(byModel._rows.size(), 1u);
    EXPECT_EQ(ptGetModelStr(byModel._rows[0]->_point->modelID()), "m");
    EXPECT_EQ(t._rawData->size(), 4u);  // the store itself is never changed

    // No store at all: an empty record that is no error.
    auto store = std::move(t._rawData);
    const PTProcessedData nothing = ptGetProcessedDataForGroupings(nullptr, {"GLOBAL"});
    t._rawData = std::move(store);
    EXPECT_EQ(std::make_tuple(nothing._rows.size(), nothing._hasError, nothing._totalWC,
                              nothing._levelCount),
              std::make_tuple(0u, false, 0.0, 0));
}

}  // namespace
