// A save writes the points' rows straight from the points, and a load reads them straight into
// points, without making a host value for each cell. Both must give exactly what the forms
// through host values give: rawDataToCells put with hvfPutVariable, and readRawDataCells of
// hvfGetVariable.

#include <pt_platform/hvf.h>

#include <boost/make_shared.hpp>

#include <array>
#include <cmath>
#include <limits>
#include <random>

#include "host/persistence.h"
#include "method_test_support.h"

namespace pt::testing {
namespace {

class StreamedRows : public FileMethodTest {
protected:
    /// A cell of a random class, sometimes one a row expects there.
    static hvArray* randomCell(std::mt19937& rng) {
        const char* texts[] = {"1", "2", "name 1", "name 2", "caf\xC3\xA9", "\xFF", ""};
        switch (rng() % 11) {
            case 0: return hvCreateDoubleScalar(static_cast<double>(rng() % 1000) / 7);
            case 1: return hvCreateString(texts[rng() % std::size(texts)]);
            case 2: return hvCreateLogicalScalar(rng() % 2);
            case 3: {
                const hvClassID classes[] = {hvClassID::Int32, hvClassID::UInt8, hvClassID::Int64,
                                             hvClassID::Int16};
                const std::size_t dims[] = {1, 1 + rng() % 2};
                hvArray* number = hvCreateNumericArray(2, dims, classes[rng() % 4]);
                *static_cast<std::uint8_t*>(hvGetData(number)) = static_cast<std::uint8_t>(rng());
                return number;
            }
            case 4: return hvCreateCellMatrix(1, rng() % 3);
            case 5: return hvCreateDoubleMatrix(rng() % 3, 2);
            case 6: {  // text as a column, or as a matrix, which is no character vector
                const std::size_t dims[] = {rng() % 3 + 1, rng() % 2 + 1};
                hvArray* chars = hvCreateCharArray(2, dims);
                std::fill_n(hvGetChars(chars), hvGetNumberOfElements(chars), u'1');
                return chars;
            }
            case 7: return hvCreateLogicalArray(2, std::array<std::size_t, 2>{1, rng() % 3}.data());
            case 8: return hvCreateString("\xE2\x82\xAC" + std::to_string(rng() % 3));
            case 9: return hvCreateStructMatrix(1, 1, 1, std::array{"f"}.data());
            default: return nullptr;
        }
    }

    /// Rows of every count that matters, with an occasional empty row or element.
    static hvUniqueArray randomRows(std::mt19937& rng) {
        const std::size_t counts[] = {0, 1, 15, 16, 17, 18, 19, 20, 21};
        hvUniqueArray cells(hvCreateCellMatrix(1, rng() % 40));
        for (std::size_t i = 0; i < hvGetN(cells.get()); ++i) {
            if (rng() % 30 == 0) {
                continue;  // an empty element
            }
            hvArray* row = hvCreateCellMatrix(1, counts[rng() % std::size(counts)]);
            for (std::size_t c = 0; c < hvGetN(row); ++c) {
                hvSetCell(row, c, randomCell(rng));
            }
            hvSetCell(cells.get(), i, row);
        }
        return cells;
    }
};

TEST_F(StreamedRows, ASaveWritesTheBytesOfTheWholeRows) {
    // Rows enough for several compressed blocks. Names of every length class of the encoding,
    // outside ASCII and outside UTF-8, with the roots and backslashes that a phase name loses;
    // figures of every kind; every class with every point type, and ids that no table holds.
    std::vector<std::string> names = {"", "a", "caf\xC3\xA9", "\xFF\xFE", "\xF0\x9F\x99\x82"};
    names.insert(names.end(), {std::string(40, 'x'), std::string(300, 'y')});
    names.insert(names.end(),
                 {"/opt/orvia/toolbox/f.m", "C:\\opt\\orvia\\toolbox\\f.m", "C:\\work\\g.m"});
    const double inf = std::numeric_limits<double>::infinity();
    const double figures[] = {0.0, -0.0, 1.5e300, std::nan(""), -inf, 4.9e-324};
    std::mt19937 rng(5);
    const auto figure = [&] { return figures[rng() % std::size(figures)]; };
    const auto name = [&](std::uint32_t kind) {
        switch (rng() % 8) {
            case 0: return std::int32_t{-1};
            case 1: return std::int32_t{1 << 20};
            default: return static_cast<std::int32_t>(ptNameID(kind, names[rng() % names.size()]));
        }
    };
    auto& raw = *ptTracer()->_rawData;
    for (int i = 0; i < 4000; ++i) {
        boost::shared_ptr<PTOrviaDataPoint> point;
        switch (rng() % 3) {
            case 0: point = boost::make_shared<PTOrviaDataPoint>(); break;
            case 1: point = boost::make_shared<PTKestruneDataPoint>(); break;
            default: point = boost::make_shared<PTYlvaneDataPoint>();
        }
        point->_pointType = static_cast<std::int32_t>(rng() % 4);
        point->_phaseID = name(PT_TABLE_PHASE);
        point->_groupingID = name(PT_TABLE_GROUPING);
        point->_statisticsTypeID = name(PT_TABLE_STATISTICS_TYPE);
        if (auto* k = dynamic_cast<PTKestruneDataPoint*>(point.get())) {
            k->_modelID = name(PT_TABLE_MODEL);
            k->_targetID = name(PT_TABLE_TARGET);
        }
        if (auto* y = dynamic_cast<PTYlvaneDataPoint*>(point.get())) {
            y->_machineID = name(PT_TABLE_MACHINE);
            y->_chartID = name(PT_TABLE_CHART);
        }
        point->_isPhaseStart = rng() % 2;
        point->_wcTime = figure();
        point->_cpuTime = figure();
        if (rng() % 4) {
            point->_basicMem = boost::make_shared<pt::BasicMemStats>(figure(), figure(), figure());
        }
        if (rng() % 4) {
            point->_detailedMem =
                boost::make_shared<pt::DetailedMemStats>(figure(), 1, 2, figure(), 3);
        }
        raw.push_back(point);
    }
    for (const std::string root : {"/opt/orvia", "C:\\opt\\orvia"}) {
        answer("orviaroot", [root] { return hvCreateString(root); });
        call("PerfTools.Tracer.saveToFile", valuesOf(text("streamed.hvf")));
        using namespace performance_tracer;
        hvFile* whole = hvfOpen("whole.hvf", "w");
        for (const auto& [variable, value] : {std::pair{kRawDataVariable, rawDataToCells(raw)},
                                              {kSystemInfoVariable, systemInfoToStruct()},
                                              {kRootVariable, hvCreateString(root)}}) {
            EXPECT_EQ(hvfPutVariable(whole, variable, hvUniqueArray(value).get()), 0);
        }
        EXPECT_EQ(hvfClose(whole), 0);
        EXPECT_GT(bytesOf("streamed.hvf").size(), 10000u);
        EXPECT_TRUE(bytesOf("streamed.hvf") == bytesOf("whole.hvf")) << root;
    }
}

TEST_F(StreamedRows, ALoadReadsWhatTheWholeVariableGives) {
    std::mt19937 rng(11);
    for (int round = 0; round < 300; ++round) {
        // Mostly cell rows; now and then a variable of another class, or none.
        hvUniqueArray variable = randomRows(rng);
        if (round % 25 == 0) {
            variable.reset(hvCreateDoubleMatrix(1, 4));
        }
        hvFile* out = hvfOpen(path("rows.hvf").c_str(), "w");
        if (round % 40 != 1) {
            hvfPutVariable(out, performance_tracer::kRawDataVariable, variable.get());
        }
        hvfClose(out);

        PTRawDataVector streamed;
        SystemInfoRecord record;
        std::string root;
        ASSERT_TRUE(performance_tracer::loadSavedData(path("rows.hvf"), streamed, record, root));

        PTRawDataVector whole;
        hvFile* in = hvfOpen(path("rows.hvf").c_str(), "r");
        const hvUniqueArray cells(hvfGetVariable(in, performance_tracer::kRawDataVariable));
        hvfClose(in);
        performance_tracer::readRawDataCells(cells.get(), whole);

        ASSERT_EQ(describe(streamed, true), describe(whole, true)) << "round " << round;
    }
}

}  // namespace
}  // namespace pt::testing
