// The pieces of the input panels.

#include "report/panel_markup.h"

namespace pt::report {

std::string panelInput(const std::string& id, const std::string& name, const char* size) {
    return "<input type=\"text\" id=\"" + id + "\" name=\"" + name + "\"" +
           (size ? std::string(" size=\"") + size + "\"" : "") + " />";
}

std::string panelLabelled(const std::string& label, const std::string& field) {
    return "<td class=\"FiltersNameCell\">" + label + "</td><td class=\"FiltersInputCell\">" +
           field + "</td>";
}

std::string panelFilterTable(const char* id,
                             const std::vector<std::pair<const char*, const char*>>& filters) {
    std::string table = std::string("<table id=\"") + id + "\" style=\"display:none\">\n";
    for (std::size_t i = 0; i + 1 < filters.size(); i += 2) {
        table += "<tr>" +
                 panelLabelled(filters[i].first, panelInput(filters[i].second, filters[i].second)) +
                 panelLabelled(filters[i + 1].first,
                               panelInput(filters[i + 1].second, filters[i + 1].second)) +
                 "</tr>\n";
    }
    return table + "</table>\n";
}

std::string panelBlock(const char* link, const char* inputType, const char* arrow,
                       const std::string& content, const char* display) {
    std::string beside;
    if (display) {
        beside = std::string("<div id=\"") + display +
                 "\" style=\"display:inline; margin-left:10px; font-weight:normal\"></div>";
    }
    return std::string(
               "<table class=\"dataTable userInputs\">\n<tr><th><a href=\"javascript:"
               "showInputTable('") +
           inputType + "')\">" + link + "</a>" + beside + "<span id=\"" + arrow +
           "\" style=\"float:right\">&#9660;</span></th></tr>\n<tr><td>\n" + content +
           "</td></tr>\n</table>\n";
}

}  // namespace pt::report
