#include "host/system_info.h"

#include <pt_platform/hvm.h>
#include <pt_platform/hvx.h>

#include "host/messages.h"
#include "method_test_support.h"

// collectSystemInfo and cachedSystemInfo keep what they find for the life of the process, so
// each test of them runs in a process of its own (as CTest runs them) and asks only once.

namespace pt::testing {
namespace {

class SystemInfo : public MethodTest {
protected:
    void TearDown() override { hvxRestoreHostFunctions(); }

    static std::string errorOfCollect() try {
        performance_tracer::collectSystemInfo();
        return "none";
    } catch (const foundation::core::except::IMsgIDException& e) {
        return e.getErrorID() + "|" + e.getMessageText();
    }
};

TEST_F(SystemInfo, AHostThatRefusesEverything) {
    for (const char* name : {"hostinfo", "hostfeature", "version", "evalcapture", "orviaroot"}) {
        answer(name, [] { return nullptr; });
    }
    const SystemInfoRecord info = performance_tracer::collectSystemInfo();
    EXPECT_EQ((std::vector{info.processorStr, info.numCoresStr, info.operatingSystemStr,
                           info.OrviaVersionStr, info.javaVMVersionStr, info.installedProductsStr,
                           info.totalPhysMemStr}),
              (std::vector<std::string>{"", "", " ", "", "", "", "N/A"}));
    EXPECT_FALSE(info.cpuSpeedStr.empty());  // read without the host
    EXPECT_EQ(performance_tracer::queryOrviaRoot(), "");
}

TEST_F(SystemInfo, FieldsAreAskedInTheirOrder) {
    std::vector<std::string> asked;
    for (const char* name : {"hostinfo", "hostfeature", "version", "evalcapture"}) {
        hvxSetHostFunction(name, [&asked, name](int, hvArray** plhs, int nrhs, hvArray** prhs) {
            asked.push_back(std::string(name) + (nrhs ? " " + hvArrayToStdString(prhs[0]) : ""));
            plhs[0] =
                std::string(name) == "hostfeature" ? hvCreateDoubleScalar(12) : hvCreateString("x");
            return 0;
        });
    }
    const SystemInfoRecord info = performance_tracer::collectSystemInfo();
    EXPECT_EQ(asked, (std::vector<std::string>{"hostinfo getcpu", "hostfeature numCores", "version",
                                               "version -jvm", "hostinfo getos",
                                               "hostinfo getwinsys", "evalcapture ver"}));
    EXPECT_EQ(info.operatingSystemStr, "x x");
    EXPECT_EQ(info.numCoresStr, "1e+01");  // read at precision zero
}

TEST_F(SystemInfo, AnswersOfTheWrongClass) {
    using Make = hvArray* (*)();
    for (const auto& [function, make, field] :
         {std::tuple<const char*, Make, const char*>{
              "hostinfo", [] { return hvCreateDoubleScalar(1); }, "CPU information"},
          {"hostfeature", [] { return hvCreateString("8"); }, "Number of Cores"},
          {"version", [] { return hvCreateLogicalScalar(true); }, "CPU information"},
          {"evalcapture", [] { return hvCreateCellMatrix(1, 1); },
           "installed products: [evalcapture('ver')]"}}) {
        answer(function, make);
        EXPECT_EQ(errorOfCollect(), tracerError("UnexpectedValue") + "|The value for \"" + field +
                                        "\" is of an unexpected class.");
        hvxRestoreHostFunctions();
    }
    // Success without an answer is no text.
    hvxSetHostFunction("hostinfo", [](int, hvArray**, int, hvArray**) { return 0; });
    EXPECT_NE(errorOfCollect().find("CPU information"), std::string::npos);
    hvxRestoreHostFunctions();
    // After failures the record is asked for anew, from the first field; then it is kept.
    const SystemInfoRecord info = performance_tracer::collectSystemInfo();
    EXPECT_TRUE(info.operatingSystemStr.starts_with("Linux ")) << info.operatingSystemStr;
    EXPECT_TRUE(info.cpuSpeedStr.ends_with("Hz")) << info.cpuSpeedStr;
    EXPECT_NE(info.installedProductsStr.find("Kestrune"), std::string::npos);
    answer("hostinfo", [] { return hvCreateString("changed"); });
    EXPECT_EQ(performance_tracer::collectSystemInfo().processorStr, info.processorStr);
    EXPECT_EQ(&performance_tracer::cachedSystemInfo(), &performance_tracer::cachedSystemInfo());
}

TEST_F(SystemInfo, RootFolderKeepsTheLastGoodAnswer) {
    answer("orviaroot", [] { return hvCreateString("/opt/orvia"); });
    EXPECT_EQ(performance_tracer::queryOrviaRoot(), "/opt/orvia");
    answer("orviaroot", [] { return nullptr; });
    EXPECT_EQ(performance_tracer::queryOrviaRoot(), "/opt/orvia");
    // An answer of the wrong class raises: FileSafety checks it through a save.
    hvxSetHostFunction("orviaroot", [](int, hvArray**, int, hvArray**) { return 0; });
    EXPECT_THROW(performance_tracer::queryOrviaRoot(), foundation::core::except::IMsgIDException);
    hvxRestoreHostFunctions();
    EXPECT_FALSE(performance_tracer::queryOrviaRoot().empty());
}

TEST_F(SystemInfo, PackageFunctionsSwitchTheStringTable) {
    const hvm::StringTable& table = hvm::StringTable::instance();
    const int before = table.collections();
    call("PerfTools.kssvStringTableDoGarbageCollection", {});
    EXPECT_EQ(table.collections(), before + 1);
    call("PerfTools.kssvStringTableDisableGarbageCollection", {});
    EXPECT_TRUE(table.noLeakMode());
    call("PerfTools.kssvStringTableEnableGarbageCollection", {});
    EXPECT_FALSE(table.noLeakMode());
    // A host without the function: the failure is dropped.
    hvxSetHostFunction("kssvInternal", nullptr);
    call("PerfTools.kssvStringTableDoGarbageCollection", {});
    EXPECT_EQ(table.collections(), before + 1);
    EXPECT_EQ(
        errorOf("PerfTools.kssvStringTableDoGarbageCollection", valuesOf(number(1))).substr(0, 17),
        "vos:TooManyInputs");
}

}  // namespace
}  // namespace pt::testing
