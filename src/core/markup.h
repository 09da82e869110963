#pragma once

#include <string>
#include <string_view>

namespace pt {

/// Text taken from data, made safe to stand in markup: &, <, >, " and ' become entities.
/// Text without them comes back unchanged.
std::string escapeMarkup(std::string_view text);

}  // namespace pt
