#include <pt_platform/hv.h>
#include <pt_platform/hvm.h>
#include <pt_platform/hvx.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using Request = cmddistributor::FEvalCmdRequest<std::string, bool>;

/// Queues a call of a host function on the engine and waits for it.
void evaluate(const std::string& function, const std::string& text, bool flag) {
    const auto engine = hvm::Factory::getCurrentLocalHVM();
    cmddistributor::RunOptions options;
    options.setOutSink(engine->wrapSink(options.getOutSink(), 0));
    auto request = std::make_shared<Request>(
        options, function, std::tuple<const std::string&, const bool&>(text, flag));
    engine->getCmdDistributor().enqueueWithFuture(request).get();
}

class Engine : public ::testing::Test {
protected:
    void TearDown() override { hvxRestoreHostFunctions(); }
};

// A request runs on the engine's own thread; a failure there is raised by the future.
TEST_F(Engine, FailuresReachTheFuture) {
    EXPECT_THROW(evaluate("no such function", "x", false), std::exception);
    std::atomic<std::thread::id> ranOn;
    hvxSetHostFunction("refuses", [&](int, hvArray**, int, hvArray**) {
        ranOn = std::this_thread::get_id();
        return 3;
    });
    EXPECT_THROW(evaluate("refuses", "x", false), std::exception);
    EXPECT_NE(ranOn.load(), std::this_thread::get_id());
    EXPECT_THROW(evaluate("kssvInternal", "no such switch", false), std::exception);
    EXPECT_THROW(hvm::Factory::getCurrentLocalHVM()->getCmdDistributor().enqueueWithFuture(nullptr),
                 std::invalid_argument);
    evaluate("kssvInternal", "kssvSetSkipDetailedStackDiagnostics", true);  // still serving
    EXPECT_TRUE(hvm::StringTable::instance().skipsDetailedStackDiagnostics());
}

TEST_F(Engine, SerialisedValuesComeBackEqual) {
    const char* names[] = {"a", "b"};
    hvUniqueArray s(hvCreateStructMatrix(1, 2, 2, names));
    hvSetFieldByNumber(s.get(), 0, 0, hvCreateString("text"));
    hvUniqueArray cell(hvCreateCellMatrix(2, 1));
    hvSetCell(cell.get(), 1, hvCreateLogicalScalar(true));
    hvSetFieldByNumber(s.get(), 1, 1, cell.release());
    const std::size_t dims[] = {2, 3, 2};
    hvUniqueArray numbers(hvCreateNumericArray(3, dims, hvClassID::Int16));
    static_cast<std::int16_t*>(hvGetData(numbers.get()))[11] = -7;
    hvUniqueArray empty(hvCreateCellMatrix(1, 0));
    const auto bytes =
        cmddistributor::detail::serializeHvArrays({s.get(), numbers.get(), empty.get(), nullptr});
    const auto back = cmddistributor::detail::deserializeHvArrays(bytes);
    ASSERT_EQ(back.size(), 4u);
    // A 1-by-0 cell stays 1-by-0.
    EXPECT_EQ(
        std::tuple(hvIsEqual(back[0].get(), s.get()), hvIsEqual(back[1].get(), numbers.get()),
                   hvIsEqual(back[2].get(), empty.get()), hvGetM(back[2].get()), back[3].get()),
        std::tuple(true, true, true, 1u, nullptr));

    // Truncated or altered bytes are refused, never half read.
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        const std::vector<std::uint8_t> truncated(bytes.begin(), bytes.begin() + cut);
        EXPECT_ANY_THROW(cmddistributor::detail::deserializeHvArrays(truncated)) << cut;
    }
}

}  // namespace
