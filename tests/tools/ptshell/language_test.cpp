// The shell's language without a module: parsing, evaluation, display and the limits that keep
// a run from hanging. The scripted sessions show the display of most classes and the errors
// of the tracer's methods; these cases hold what they do not.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <sstream>
#include <thread>
#include <tuple>
#include <vector>

#include "golden_text.h"
#include "large_inputs.h"
#include "parser.h"
#include "session.h"

namespace ptshell {
namespace {

struct Outcome {
    std::string out;
    std::string err;
    Session::Outcome outcome = Session::Outcome::Done;
    int status = 0;
    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& r, std::ostream* os) {
    *os << "{out " << ::testing::PrintToString(r.out) << ", err " << ::testing::PrintToString(r.err)
        << ", outcome " << static_cast<int>(r.outcome) << ", status " << r.status << "}";
}

Outcome run(const std::string& text, EvalOptions options = {}) {
    std::ostringstream out, err;
    Session session(out, err, options);
    Outcome result;
    result.outcome = session.run(text, result.status);
    result.out = out.str();
    result.err = err.str();
    return result;
}

std::string syntaxErrorOf(const std::string& text) {
    try {
        parse(text);
    } catch (const SyntaxError& error) {
        return std::to_string(error.line) + ":" + std::to_string(error.column) + " " +
               error.message;
    }
    return "none";
}

TEST(Language, SyntaxErrorsNameLineAndColumn) {
    const std::pair<std::string, std::string> cases[] = {
        {"x = (1 + 2", "1:11 the text ends before ')'"},
        {"a = 1\nb = 2 3", "2:7 unexpected '3'"},
        {"for i = 1:3\n  print(i)\n", "3:1 the block has no 'end'"},
        {"x = 'open", "1:5 the text has no closing quote"},
        {"end", "1:1 'end' without a block to close"},
        {"x(1) = 2", "1:6 only a variable can be assigned to"},
        {"x = 1 $", "1:7 unexpected character '$'"},
        {"# only a comment\n\n;,", "none"},
    };
    for (const auto& [text, error] : cases) {
        EXPECT_EQ(syntaxErrorOf(text), error) << text;
    }
    // A value may follow an operator on the next line.
    EXPECT_EQ((std::vector{Session::isComplete("for i = 1:2"), Session::isComplete("x = {1, 2"),
                           Session::isComplete("x = 1 +"), Session::isComplete("x = 1)")}),
              (std::vector{false, false, false, true}));
    // Nothing runs before the whole text parses.
    EXPECT_EQ(run("x = 1\ny = )"),
              (Outcome{"", "Error: Syntax error at line 2, column 5: unexpected ')'.\n",
                       Session::Outcome::Failed}));
}

TEST(Language, EvaluationAndDisplay) {
    const Outcome r =
        run("t = 'it''s', e = '', d = 3.14159265, big = 123456.7, b = true, i = int8(-200)\n"
            "u = uint64(7), l = logical([1 0]), r = 1:0, s = struct('n', int32(5))\n"
            "x = 2 * (3 + 4) / 7 - -1; print(x), print(x == 3), print(1 ~= 1)\n"
            "print(~0), print(2 >= 3)\n"
            "v = [1, 2 3 -4 5 - 1]; print(count(v)), print(v(4)), print(size(v))\n"
            "s = ['ab', 'c'; 'def']; print(s), print(typeof(s)), print(s(2, 3))\n"
            "c = {1, 'two', {3}}; print(c{2}), print(c{3}{1}), print(typeof(c(2)))\n"
            "print(isempty({}))\n"
            "p = struct('a', struct('b', 'deep')); print(p.a.b), print(typeof(p))\n"
            "total = 0;\nfor i = 1:4\n  total = total + i;\nend\nprint(total)\n"
            "for k = {'x', 'y'}, print(k{1}), end\n"
            "print(double('A')), print(char([72 105])), print(uint8(300)), print(int32(2.5))\n"
            "print(2.5), print(true), print(int16(-3)), print([1 2; 3 4]), print({'a'})\n"
            "try\n  undefined_thing\ncatch err\n  print(err.id), print(err.message)\nend\n"
            "try, x = {1}; x{3}, catch e, print(e.id), end\n"
            "try, print(1, 2), catch e, print(e.id), end\n"
            "try, Nope.Class.method(1), catch e, print(e.id), end\n"
            "try, 'a' + {1}, catch e, print(e.message), end\n");
    EXPECT_EQ(r.err, "");
    pt::testing::expectGoldenText(PT_PTSHELL_GOLDEN_DIR, "evaluation_and_display", r.out);

    // An uncaught error ends the run.
    EXPECT_EQ(run("print('before')\nprint(1, 2)\nprint('after')"),
              (Outcome{"before\n", "Error in print: Takes 1 arguments, but 2 were given.\n",
                       Session::Outcome::Failed}));
}

TEST(Language, ExitAndTheLimitsOfARun) {
    EXPECT_EQ(run("print(1), exit(3), print(2)"),
              (Outcome{"1\n", "", Session::Outcome::Exited, 3}));

    const EvalOptions limited{
        .allowSleep = false, .allowExit = false, .maxLoopSteps = 100, .maxElements = 1000};
    const std::pair<const char*, const char*> cases[] = {
        {"exit", "Error in exit: exit is switched off in this run.\n"},
        {"sleep(100)", "Error in sleep: sleep is switched off in this run.\n"},
        {"for i = 1:50, for j = 1:50, end, end",
         "Error: The run took more loop steps than it may.\n"},
        {"x = 1:1e12", "Error: The range has too many elements.\n"},
        {"x = [1:600, 1:600]", "Error: The value has too many elements.\n"},
        {"x = {1}; for i = 1:40, x = {x, x}; end", "Error: The value has too many elements.\n"},
        {"x = {1}; for i = 1:40, x = struct('a', x, 'b', x); end",
         "Error in struct: The value has too many elements.\n"},
    };
    for (const auto& [text, err] : cases) {
        EXPECT_EQ(run(text, limited).err, err) << text;
    }
    EXPECT_EQ(run("x = {1}; for i = 1:300, x = {x}; end").err,
              "Error: The value nests too deeply.\n");
}

TEST(Language, ChainsOfAnyLengthAndDeepNesting) {
    // A chain of binary operators is read and evaluated in a loop, from the left.
    EXPECT_EQ(run("print(10 - 2 - 3), print(2 * 3 - 8 / 4 + 1), print(1 < 2 == 1)").out,
              "5\n5\n1\n");
    const int terms = pt::testing::largeSize(1000000, 100000);
    std::string sum = "x = 1";
    for (int term = 1; term < terms; ++term) {
        sum += "+1";
    }
    EXPECT_EQ(run(sum + "; print(x == " + std::to_string(terms) + ")").out, "1\n");

    // Nesting has a limit of its own, however the nesting is written.
    EXPECT_NE(syntaxErrorOf(std::string(100000, '(')).find("the statement nests too deeply"),
              std::string::npos);
    for (const char open : {'(', '-', '{', '['}) {
        const Outcome r = run("x = " + std::string(100000, open) + "1");
        EXPECT_NE(r.err.find("the statement nests too deeply"), std::string::npos) << open;
    }
}

TEST(Language, ValuesOverTheLimitAreRefusedBeforeTheyAreMade) {
    const EvalOptions small{.maxValueBytes = std::size_t{1} << 20};
    const struct {
        std::string text;
        const char* err;  // after "Error", if any
    } cases[] = {
        {"x = 1:1e5;", ""},
        {"x = 1:2e5;", ": The value would take more than 1 MiB."},
        {"a = 1:1e5; b = [a a];", ": The value would take more than 1 MiB."},
        {"a = 1:1e5; b = {a a};", ": The value would take more than 1 MiB."},
        {"a = 1:1e5; b = struct('x', a, 'y', a);",
         " in struct: The value would take more than 1 MiB."},
        {"s = '" + std::string(300000, 'a') + "'; d = double(s);",
         " in double: The value would take more than 1 MiB."},
    };
    for (const auto& c : cases) {
        const Outcome r = run(c.text, small);
        EXPECT_EQ(r.err, *c.err ? std::string("Error") + c.err + "\n" : "") << c.text;
    }
    // The doubling stops at the first value over the limit, and the one before stays: twelve
    // doublings of {1} hold 2^12 numbers in 2^13 - 1 cells, some 0.7 MiB; a thirteenth would
    // hold 1.4 MiB.
    EXPECT_EQ(run("c = {1}; try, for i = 1:100, c = {c c}; end, catch e, print(e.id), end\n"
                  "print(i), print(count(c))",
                  small)
                  .out,
              "ptshell:TooLarge\n13\n2\n");
    // By default a value may hold 1 GiB; a larger one is refused without being made.
    EXPECT_EQ(run("x = 1:2e8;").err, "Error: The value would take more than 1 GiB.\n");
}

TEST(Language, AnInterruptStopsTheRunningStatement) {
    std::atomic<bool> interrupt{false};
    const EvalOptions options{.interrupt = &interrupt};
    const std::string endless = "for i = 1:1e6, for j = 1:1e6, end, end";
    const std::string cases[][3] = {
        // text, out, err
        {endless, "", "Error: Interrupted\n"},
        {"try, " + endless + ", catch e, print(e.id), print(e.message), end",
         "ptshell:Interrupted\nInterrupted\n", ""},
        {"sleep(1000)", "", "Error in sleep: Interrupted\n"}};
    for (const auto& [text, out, err] : cases) {
        std::thread press([&interrupt] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            interrupt = true;
        });
        const Outcome r = run(text, options);
        press.join();
        // The flag is taken when it stops the statement.
        EXPECT_EQ(std::tuple(r.out, r.err, interrupt.load()), std::tuple(out, err, false)) << text;
    }
}

}  // namespace
}  // namespace ptshell
