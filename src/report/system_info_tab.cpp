// The System Info tab: the machine and the product a data set was taken on.

#include "report/escape.h"
#include "report/fragments.h"

namespace pt::report {

namespace {

/// The long text of a record, for a pre element.
std::string longText(const SystemInfoRecord* record) {
    return record ? markupText(record->installedProductsStr) : std::string();
}

}  // namespace

std::string ptHtmlSystemInfoRows(const SystemInfoRecord* record) {
    if (!record) {
        return {};
    }
    const std::pair<const char*, const std::string*> rows[] = {
        {"Processor: ", &record->processorStr},
        {"CPU Speed: ", &record->cpuSpeedStr},
        {"Cores: ", &record->numCoresStr},
        {"Total Physical Memory (MB): ", &record->totalPhysMemStr},
        {"Operating System: ", &record->operatingSystemStr},
        {"Orvia Version: ", &record->OrviaVersionStr},
        {"Java VM Version: ", &record->javaVMVersionStr},
    };
    std::string table = "<table class=\"SystemInfoText\" align=\"left\">\n";
    for (const auto& [label, value] : rows) {
        table += std::string("<tr><td><b>") + label + "</b></td><td>" + markupText(*value) +
                 "</td></tr>\n";
    }
    return table + "<tr><td>&nbsp;</td></tr>\n</table>\n";
}

std::string ptHtmlSystemInfoTab(const SystemInfoRecord* record) {
    return "<div id=\"systemInfoTableDiv\" style=\"align:center; overflow:auto; border:2px "
           "solid #324678\">\n"
           "<table id=\"systemInfoTable\" class=\"dataTable systemInfo\" cellpadding=\"0\" "
           "cellspacing=\"0\">\n"
           "<tr><th>Hardware/Software</th></tr>\n"
           "<tr><td>\n" +
           ptHtmlSystemInfoRows(record) +
           "</td></tr>\n"
           "<tr><th>OS/Product Details</th></tr>\n"
           "<tr><td><pre class=\"SystemInfoText\">" +
           longText(record) + "</pre></td></tr>\n</table>\n</div>\n";
}

std::string ptHtmlSystemInfoDiffTab(const SystemInfoRecord* left, const SystemInfoRecord* right) {
    return "<div id=\"systemInfoTableDiv\" style=\"border:2px solid rgb(50, 70, 120); "
           "width:100%; align:center; overflow:auto\">\n"
           "<table id=\"systemInfoTable\" class=\"dataTable systemInfo\" cellpadding=\"0\" "
           "cellspacing=\"0\">\n"
           "<tr><th colspan=\"2\">Hardware/Software</th></tr>\n"
           "<tr><td>\n" +
           ptHtmlSystemInfoRows(left) + "</td><td>\n" + ptHtmlSystemInfoRows(right) +
           "</td></tr>\n"
           "<tr><th colspan=\"2\">OS/Product Details</th></tr>\n"
           "<tr><td colspan=\"2\"><div class=\"SystemInfoComparisonDiv\">\n"
           "<table width=\"100%\">\n"
           "<tr class=\"SystemInfoTextComparison\"><td><pre>" +
           longText(left) + "</pre></td><td><pre>" + longText(right) +
           "</pre></td></tr>\n</table>\n</div></td></tr>\n</table>\n</div>\n";
}

}  // namespace pt::report
