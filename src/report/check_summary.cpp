#include "report/check_summary.h"

#include "report/fragments.h"
#include "report/page_files.h"
#include "report/page_variant.h"
#include "report/report_file.h"

namespace pt::report {

bool writeCheckSummary(const std::string& htmlFile, const pt::CheckResult& result) {
    ReportFile file(htmlFile);
    if (!file.isOpen()) {
        return false;
    }
    // The style sheet of the single reports, for the tab bar and the tables, and the page's own.
    const std::string style = resolvePageText(pageFile("style.css"), {{"comparison", false}},
                                              {{"phaseDepthStyles", ""}}) +
                              std::string(pageFile("check_summary.css"));
    file << ptHtmlDoctype()
         << "<head>\n<title>Performance Check</title>\n"
            "<meta http-equiv=\"Content-type\" content=\"text/html;charset=UTF-8\" />\n"
            "<style type=\"text/css\" media=\"screen\">\n"
         << style
         << "</style>\n</head>\n"
            "<body onload=\"showCheck()\">\n"
            "<table id=\"headerTable\" border=\"0\" cellspacing=\"0\" cellpadding=\"0\" "
            "width=\"100%\">\n<tr>\n<td class=\"headerTable\">\n"
            "<div id=\"header\">\n<ul id=\"primary\">\n<li><span>Check</span></li>\n</ul>\n"
            "</div>\n</td>\n</tr>\n</table>\n"
            "<div id=\"checkSummary\" class=\"checkSummary\">\n"
            "<div id=\"checkHeadline\"></div>\n"
            "<div id=\"checkMethod\" class=\"checkMethod\"></div>\n"
            "<div id=\"checkNotice\" class=\"checkNotice\"></div>\n"
            "<table id=\"checkTable\" class=\"dataTable checkTable\" cellspacing=\"0\"></table>\n"
            "<div id=\"checkRuns\" class=\"checkRuns\"></div>\n"
            "</div>\n"
         << ptHtmlScriptOpen() << "var checkData = " << checkResultJson(result) << ";\n"
         << ptHtmlScriptClose() << ptHtmlScriptOpen() << std::string(pageFile("check_summary.js"))
         << ptHtmlScriptClose() << ptHtmlBodyClose() << ptHtmlClose();
    return true;
}

}  // namespace pt::report
