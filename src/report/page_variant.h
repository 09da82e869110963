#pragma once

// Page files hold every variant of a fragment in one text. Lines that begin with "//@" (or
// "/*@" in a style sheet) are directives, removed from the page:
//     //@if comparison && !aggregatePage
//     //@elif time
//     //@else
//     //@endif
// A condition joins flags with !, &&, || and parentheses. "@@name@@" stands for a value the
// writer supplies. A flag or value the writer does not know is a defect and throws.

#include <map>
#include <string>
#include <string_view>

namespace pt::report {

using PageFlags = std::map<std::string, bool, std::less<>>;
using PageValues = std::map<std::string, std::string, std::less<>>;

/// The text of a page file with the sections of the flags' variant and the values put in.
std::string resolvePageText(std::string_view text, const PageFlags& flags,
                            const PageValues& values = {});

/// The flags of a fragment for a report: its kind of page and its metric.
struct PageKind {
    bool comparison = false;
    /// A page without the Details tab (and without the Call Tree tab).
    bool aggregatePage = false;
    std::string metric;
};
PageFlags pageFlags(const PageKind& kind);

}  // namespace pt::report
