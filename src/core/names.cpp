#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <algorithm>
#include <string_view>

namespace {

/// The root prefix that ptDisplayPhaseName strips; set by the methods that save, load and
/// write reports. Not part of the tracer object, so no clear touches it.
std::string& pathStripRoot() {
    static std::string root;
    return root;
}

std::string withForwardSlashes(std::string text) {
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

/// Removes the first occurrence of pattern, if the text is longer than it and holds it.
void eraseFirst(std::string& text, std::string_view pattern) {
    if (text.size() <= pattern.size()) {
        return;
    }
    if (const auto at = text.find(pattern); at != std::string::npos) {
        text.erase(at, pattern.size());
    }
}

}  // namespace

std::uint32_t ptNameID(std::uint32_t kind, const std::string& name) {
    return ptTracer()->nameToID(kind, name, true);
}

std::string ptNameStr(std::uint32_t kind, std::int32_t id) {
    return ptTracer()->idToName(kind, id);
}

std::string ptGetPhaseStr(int id) { return ptNameStr(PT_TABLE_PHASE, id); }
std::string ptGetStatisticsTypeStr(int id) { return ptNameStr(PT_TABLE_STATISTICS_TYPE, id); }
std::string ptGetModelStr(int id) { return ptNameStr(PT_TABLE_MODEL, id); }
std::string ptGetTargetStr(int id) { return ptNameStr(PT_TABLE_TARGET, id); }
std::string ptGetMachineStr(int id) { return ptNameStr(PT_TABLE_MACHINE, id); }
std::string ptGetChartStr(int id) { return ptNameStr(PT_TABLE_CHART, id); }

std::string ptDisplayPhaseName(const std::string& name, bool stripCustomization) {
    std::string shown = withForwardSlashes(name);
    if (const std::string& root = pathStripRoot(); shown.starts_with(root)) {
        shown.erase(0, root.size());
    }
    if (shown.starts_with('/')) {
        shown.erase(0, 1);
    }
    if (stripCustomization) {
        eraseFirst(shown, "/ks_internal_customization");
        eraseFirst(shown, "/ks_customization");
    } else if (shown.rfind('/') == 0) {
        shown.erase(0, 1);
    }
    return shown;
}

void setPathStripRoot(const std::string& path) { pathStripRoot() = withForwardSlashes(path); }
