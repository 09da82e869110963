// What the shell tells about the methods: help, Tab completion, and the names a refused
// name-value call takes.

#include <gtest/gtest.h>

#include <sstream>

#include "completion.h"
#include "method_help.h"
#include "session.h"

namespace ptshell {
namespace {

using Names = std::vector<std::string>;

Names complete(const std::string& line, const Names& variables = {}) {
    // The word starts where the line editor starts it: after the last break character.
    const std::size_t lastBreak = line.find_last_of(kWordBreaks);
    const std::size_t start = lastBreak == std::string::npos ? 0 : lastBreak + 1;
    return completeWord(line, start, line.size(), variables);
}

TEST(Help, EveryMethodOfTheClassIsExplained) {
    // The table covers the class's twenty-six methods and the package's three functions.
    EXPECT_EQ(methodHelp().size(), 29u);
    for (const MethodHelp& method : methodHelp()) {
        const std::string text = helpText(method);
        EXPECT_NE(text.find("Example:\n  " + method.example), std::string::npos) << text;
        for (const ParameterHelp& parameter : method.parameters) {
            EXPECT_NE(text.find(parameter.name), std::string::npos) << method.qualifiedName;
        }
    }
    const MethodHelp* save = findMethodHelp("saveKsStartupData");
    ASSERT_TRUE(save && findMethodHelp("PerfTools.Tracer.saveKsStartupData") == save);
    EXPECT_NE(helpText(*save).find("file = 'KsStartupData.hvf'"), std::string::npos);

    std::ostringstream out, err;
    Session session(out, err);
    int status = 0;
    EXPECT_EQ(session.run("help\nhelp PerfTools.Tracer.generateHTMLReport\nhelp('enable')", status),
              Session::Outcome::Done);
    for (const char* shown : {"diagnosticReport('htmlfile', FILE, ...)", "'showmeta' = true",
                              "enable(grouping, enable)"}) {
        EXPECT_NE(out.str().find(shown), std::string::npos) << shown;
    }
    EXPECT_EQ(session.run("help nothing.here", status), Session::Outcome::Failed);
    EXPECT_NE(err.str().find("There is no help for 'nothing.here'"), std::string::npos);
    // "help" stays a name like any other where it is not a command.
    out.str("");
    EXPECT_EQ(session.run("help = 3; print(help + 1)", status), Session::Outcome::Done);
    EXPECT_EQ(out.str(), "4\n");
}

TEST(Help, RefusedNamesAreNamedWithTheValidOnes) {
    const MethodHelp& report = *findMethodHelp("generateHTMLReport");
    EXPECT_EQ(unknownNameHint(report, {"htmlfile", "HvfFile", "colour"}, true),
              "'colour' is not a name that generateHTMLReport takes; it takes 'htmlfile', "
              "'grouping', 'hvffile', 'showmeta' and 'metric'.");
    EXPECT_EQ(unknownNameHint(report, {"htmlfile", "grouping"}, true), "");
    // The diagnostic report compares names as they stand.
    const MethodHelp& diagnostic = *findMethodHelp("diagnosticReport");
    EXPECT_NE(unknownNameHint(diagnostic, {"HTMLFILE"}, false), "");
    EXPECT_EQ(unknownNameHint(*findMethodHelp("saveToFile"), {"x"}, true), "");
}

TEST(Help, TabCompletesNamesWhereTheyCanStand) {
    EXPECT_EQ(complete("PerfTools.Tracer.sav"),
              (Names{"PerfTools.Tracer.saveKsStartupData", "PerfTools.Tracer.saveToFile"}));
    EXPECT_EQ(complete("PerfT"), Names{"PerfTools."});
    EXPECT_EQ(complete("x = cou", {"counter", "x"}), (Names{"count", "counter"}));
    EXPECT_EQ(complete("PerfTools.Tracer.generateHTMLReport('h"), (Names{"htmlfile'", "hvffile'"}));
    EXPECT_EQ(complete("PerfTools.Tracer.diagnosticReport('htmlfile', 'a.html', 'g"),
              Names{"grouping'"});
    // Inside the quotes of a value, or after the call has closed, there is nothing to offer.
    EXPECT_EQ(complete("PerfTools.Tracer.generateHTMLReport('htmlfile', 'r.html'), x = '"),
              Names{});
    EXPECT_EQ(complete("print('"), Names{});
}

}  // namespace
}  // namespace ptshell
