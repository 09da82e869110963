// The Call Tree tab's markup: the container of its table and its filter panel.

#include "report/fragments.h"
#include "report/panel_markup.h"

namespace pt::report {

std::string ptHtmlCallTreePanel() {
    return "<div id=\"callTreeSummaryDiv\" style=\"text-align:left; height:100%\">\n"
           "<div id=\"callTreeSummaryTableDiv\" style=\"height:100%; display:none\"></div>\n"
           "<div id=\"CT_userInputs\">\n"
           "<table id=\"CT_UserInputsTableId\" class=\"dataTable\" width=\"99%\">\n"
           "<tr><td>\n" +
           panelBlock("Filters", "CT_FilterData", "CT_FilterExpandCollapse",
                      panelFilterTable("CT_FilterData", {{"Phase:", "CT_phasename"},
                                                         {"Grouping:", "CT_groupingname"},
                                                         {"Model:", "CT_modelname"},
                                                         {"Target:", "CT_targetname"}}),
                      "CT_FilterDataDisp") +
           "</td></tr>\n"
           "<tr><td><input type=\"submit\" value=\"Refresh\" "
           "onclick=\"CT_userInputsAction(); return true;\" /></td></tr>\n"
           "</table>\n</div>\n</div>\n";
}

}  // namespace pt::report
