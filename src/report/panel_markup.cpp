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
