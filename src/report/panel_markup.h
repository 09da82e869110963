#pragma once

// Markup shared by the input panels of the Details and Call Tree tabs.

#include <string>
#include <utility>
#include <vector>

namespace pt::report {

/// A text input whose name is given apart from its id; an optional size in characters.
std::string panelInput(const std::string& id, const std::string& name, const char* size = nullptr);
/// A label cell and the cell of its field.
std::string panelLabelled(const std::string& label, const std::string& field);
/// A hidden table of labelled text inputs, two to a row: (label, input id and name) pairs.
std::string panelFilterTable(const char* id,
                             const std::vector<std::pair<const char*, const char*>>& filters);
/// A block of a panel: its header row with the link that opens it (and, where display names
/// one, a div beside the link that shows what is in force), its arrow, then its table.
std::string panelBlock(const char* link, const char* inputType, const char* arrow,
                       const std::string& content, const char* display = nullptr);

}  // namespace pt::report
