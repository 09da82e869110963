#pragma once

// The result of `ptreport check` as people read it: a plain table for the terminal and the
// same in Markdown for a review comment, both worst first under a headline.

#include <performance_tracer/check.h>

#include <string>

namespace ptreport {

/// "FAILED: 2 regressions beyond 5% (sort blocks, outputs)", "PASSED: ..." or
/// "INCONCLUSIVE: ...".
std::string checkHeadline(const pt::CheckResult& result);
/// Why no result can be significant with these runs and how many would do; empty when some
/// result can be.
std::string insufficientRunsNote(const pt::CheckResult& result);
/// The table for the terminal: how the runs were compared, a row per comparison, the
/// headline.
std::string checkTable(const pt::CheckResult& result);
/// The same in Markdown.
std::string checkMarkdown(const pt::CheckResult& result);

}  // namespace ptreport
