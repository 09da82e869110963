// The Call Tree tab's markup: the container of its table and its filter panel.

#include "report/fragments.h"
#include "report/panel_markup.h"

namespace pt::report {

namespace {

std::string callTreeFilterTable() {
    const std::pair<const char*, const char*> filters[] = {
        {"Phase:", "CT_phasename"},
        {"Grouping:", "CT_groupingname"},
        {"Model:", "CT_modelname"},
        {"Target:", "CT_targetname"},
    };
    std::string table = "<table id=\"CT_FilterData\" style=\"display:none\">\n";
    for (std::size_t i = 0; i < std::size(filters); i += 2) {
        table += "<tr>" +
                 panelLabelled(filters[i].first, panelInput(filters[i].second, filters[i].second)) +
                 panelLabelled(filters[i + 1].first,
                               panelInput(filters[i + 1].second, filters[i + 1].second)) +
                 "</tr>\n";
    }
    return table + "</table>\n";
}

}  // namespace

std::string ptHtmlCallTreePanel() {
    return "<div id=\"callTreeSummaryDiv\" style=\"text-align:left; height:100%\">\n"
           "<div id=\"callTreeSummaryTableDiv\" style=\"height:100%; display:none\"></div>\n"
           "<div id=\"CT_userInputs\">\n"
           "<table id=\"CT_UserInputsTableId\" class=\"dataTable\" width=\"99%\">\n"
           "<tr><td>\n" +
           panelBlock("Filters", "CT_FilterData", "CT_FilterExpandCollapse", callTreeFilterTable(),
                      "CT_FilterDataDisp") +
           "</td></tr>\n"
           "<tr><td><input type=\"submit\" value=\"Refresh\" "
           "onclick=\"CT_userInputsAction(); return true;\" /></td></tr>\n"
           "</table>\n</div>\n</div>\n";
}

}  // namespace pt::report
