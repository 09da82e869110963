// The start of every page: doctype, root element, and the head with the style sheet.

#include "report/escape.h"
#include "report/fragments.h"
#include "report/page_files.h"
#include "report/page_variant.h"

namespace pt::report {

std::string ptHtmlDoctype() {
    // No blank between the namespace and xml:lang: that is how the pages have always begun.
    return "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Strict//EN\" "
           "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd\">\n"
           "<html xmlns=\"http://www.w3.org/1999/xhtml\"xml:lang=\"en\" lang=\"en\">\n";
}

std::string ptHtmlPhaseDepthStyles(int depth) {
    std::string rules;
    for (int level = 0; level < depth; ++level) {
        rules += "table.dataTable td.phaseNameCell" + std::to_string(level) + " {\n";
        rules += level % 2 == 0 ? "    background-color: #FFFFFF;\n"
                                : "    background-color: #E7EBF5;\n";
        rules += "    padding-left: " + std::to_string(10 + 25 * level) + "px;\n}\n";
    }
    return rules;
}

std::string ptHtmlHead(int depth, const std::string& title, bool isComparison) {
    std::string shown = title;
    if (title == "GLOBAL") {
        shown = "Full Tracer Report";
    } else if (title.empty()) {
        shown = "Performance Tracer Report";
    }
    std::string depthRules = ptHtmlPhaseDepthStyles(depth < 1 ? 8 : depth);
    depthRules.pop_back();  // the placeholder's own line ends the last rule
    const PageFlags flags = {{"comparison", isComparison}};
    return "<head>\n<title>" + markupText(shown) +
           "</title>\n"
           "<meta http-equiv=\"Content-type\" content=\"text/html;charset=UTF-8\" />\n"
           "<style type=\"text/css\" media=\"screen\">\n" +
           resolvePageText(pageFile("style.css"), flags, {{"phaseDepthStyles", depthRules}}) +
           "</style>\n</head>\n";
}

}  // namespace pt::report
