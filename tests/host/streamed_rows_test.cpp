// A save writes the points' rows one at a time and a load reads them one at a time. Both must
// give exactly what the whole-variable forms give: rawDataToCells put with hvfPutVariable, and
// readRawDataCells of hvfGetVariable.

#include <pt_platform/hvf.h>
#include <pt_platform/hvx.h>

#include <boost/make_shared.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <unistd.h>

#include "host/persistence.h"
#include "method_test_support.h"

namespace pt::testing {
namespace {

class StreamedRows : public MethodTest {
protected:
    void SetUp() override {
        MethodTest::SetUp();
        _folder =
            std::filesystem::temp_directory_path() / ("pt_streamed_" + std::to_string(getpid()));
        std::filesystem::create_directories(_folder);
    }
    void TearDown() override { std::filesystem::remove_all(_folder); }

    std::string path(const std::string& name) const { return (_folder / name).string(); }

    static std::string bytesOf(const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    /// Every field of every point, ids included: both reads run against the same tables.
    static std::vector<std::string> describe(const PTRawDataVector& points) {
        std::vector<std::string> out;
        for (const auto& p : points) {
            const PTOrviaDataPoint& point = *p;
            std::string text = typeid(point).name();
            for (double figure : {double(p->_pointType), double(p->_phaseID),
                                  double(p->_groupingID), double(p->_statisticsTypeID),
                                  double(p->_isPhaseStart), p->_wcTime, p->_cpuTime}) {
                text += "|" + std::to_string(figure);
            }
            if (p->_detailedMem) {
                text += "|d" + std::to_string(p->_detailedMem->freeMem) +
                        std::to_string(p->_detailedMem->nonprocessMem);
            }
            if (p->_basicMem) {
                text += "|b" + std::to_string(p->_basicMem->procMemUsage) +
                        std::to_string(p->_basicMem->procVMSize);
            }
            if (const auto* k = dynamic_cast<const PTKestruneDataPoint*>(p.get())) {
                text += "|" + std::to_string(k->_modelID) + "|" + std::to_string(k->_targetID);
            }
            if (const auto* y = dynamic_cast<const PTYlvaneDataPoint*>(p.get())) {
                text += "|" + std::to_string(y->_machineID) + "|" + std::to_string(y->_chartID);
            }
            out.push_back(text);
        }
        return out;
    }

    /// A cell of a random class, sometimes one a row expects there.
    static hvArray* randomCell(std::mt19937& rng) {
        switch (rng() % 7) {
            case 0: return hvCreateDoubleScalar(static_cast<double>(rng() % 1000) / 7);
            case 1: return hvCreateString(rng() % 2 ? "1" : "name " + std::to_string(rng() % 5));
            case 2: return hvCreateLogicalScalar(rng() % 2);
            case 3: {
                const std::size_t dims[] = {1, 1};
                hvArray* number = hvCreateNumericArray(2, dims, hvClassID::Int32);
                *static_cast<std::int32_t*>(hvGetData(number)) = static_cast<int>(rng() % 4);
                return number;
            }
            case 4: return hvCreateCellMatrix(1, rng() % 3);
            case 5: return hvCreateDoubleMatrix(rng() % 3, 2);
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

    std::filesystem::path _folder;
};

TEST_F(StreamedRows, ASaveWritesTheBytesOfTheWholeRow) {
    ptAddGrouping("Run");
    ptEnableGlobalLogging(true);
    for (int i = 0; i < 3000; ++i) {  // rows enough for several compressed blocks
        ptLogOrviaData("Run", "/opt/orvia/toolbox/f" + std::to_string(i % 17) + ".m", i % 2 == 0);
        ptLogKestruneData("Run", "m", "t", "k" + std::to_string(i % 5), i % 2 == 0);
        ptLogYlvaneData("Run", "m", "t", "mc", "c", "y", i % 2 == 0);
    }
    ptEnableGlobalLogging(false);
    (*ptTracer()->_rawData)[4]->_detailedMem =
        boost::make_shared<pt::DetailedMemStats>(1, 2, 3, 4, 5);
    hvxSetHostFunction("orviaroot", [](int, hvArray** plhs, int, hvArray**) {
        plhs[0] = hvCreateString("/opt/orvia");
        return 0;
    });
    call("PerfTools.Tracer.saveToFile", valuesOf(text(path("streamed.hvf"))));

    hvFile* whole = hvfOpen(path("whole.hvf").c_str(), "w");
    const hvUniqueArray cells(performance_tracer::rawDataToCells(*ptTracer()->snapshotRawData()));
    const hvUniqueArray info(performance_tracer::systemInfoToStruct());
    const hvUniqueArray root(hvCreateString("/opt/orvia"));
    EXPECT_EQ(hvfPutVariable(whole, performance_tracer::kRawDataVariable, cells.get()), 0);
    EXPECT_EQ(hvfPutVariable(whole, performance_tracer::kSystemInfoVariable, info.get()), 0);
    EXPECT_EQ(hvfPutVariable(whole, performance_tracer::kRootVariable, root.get()), 0);
    EXPECT_EQ(hvfClose(whole), 0);
    hvxRestoreHostFunctions();

    const std::string streamed = bytesOf(path("streamed.hvf"));
    EXPECT_GT(streamed.size(), 1000u);
    EXPECT_TRUE(streamed == bytesOf(path("whole.hvf")));
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

        ASSERT_EQ(describe(streamed), describe(whole)) << "round " << round;
    }
}

}  // namespace
}  // namespace pt::testing
