#include <performance_tracer/groupings.h>
#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <boost/unordered_set.hpp>

// The tree lives in two fields of the tracer: _groupings (id to the names of the children)
// and the enable states. Nothing stops a name from being its own descendant, so every walk
// down the tree carries a set of the groupings it has entered: enabling and removing enter
// each grouping once (a second visit could change nothing), listing cuts off only a grouping
// that is already on the path. Without a cycle neither set cuts anything that matters.

namespace {

using Visited = boost::unordered_set<std::int32_t>;

PerformanceTracer& tracer() { return *ptTracer(); }

std::int32_t groupingID(const std::string& grouping, bool add) {
    return static_cast<std::int32_t>(tracer().nameToID(PT_TABLE_GROUPING, grouping, add));
}

/// The children of a grouping, or null if the id is not a grouping.
std::vector<std::string>* childrenOf(std::int32_t id) {
    const auto& groupings = tracer()._groupings;
    if (!groupings) {
        return nullptr;
    }
    const auto found = groupings->find(id);
    return found == groupings->end() ? nullptr : found->second.get();
}

void ensureTree() {
    PerformanceTracer& t = tracer();
    if (!t._groupings) {
        t._groupings = std::make_unique<PerformanceTracer::GroupingMap>();
    }
    if (!t._groupingEnabled) {
        t._groupingEnabled = std::make_unique<std::vector<EPTGroupingEnabled>>();
    }
}

void insertGrouping(std::int32_t id, std::vector<std::string> children) {
    (*tracer()._groupings)[id] = std::make_unique<std::vector<std::string>>(std::move(children));
}

void enableTree(const std::string& grouping, bool enable, Visited& visited) {
    const std::int32_t id = groupingID(grouping, true);
    const EPTGroupingEnabled state = enable ? PT_GROUPING_ON : PT_GROUPING_OFF;
    if (!visited.insert(id).second) {
        return;
    }
    if (const std::vector<std::string>* children = childrenOf(id)) {
        tracer().setGroupingEnabled(id, state);
        // A copy: enabling below may add groupings, never change this list, but the copy keeps
        // the walk independent of the map.
        for (const std::string& child : std::vector<std::string>(*children)) {
            enableTree(child, enable, visited);
        }
    } else {
        insertGrouping(id, {});
        tracer().setGroupingEnabled(id, state);
    }
}

bool removeTree(std::int32_t id, Visited& visited) {
    std::vector<std::string>* children = childrenOf(id);
    if (!children || !visited.insert(id).second) {
        return false;
    }
    for (const std::string& child : std::vector<std::string>(*children)) {
        const std::int32_t childID = groupingID(child, false);
        if (childrenOf(childID)) {
            removeTree(childID, visited);
        }
    }
    tracer().setGroupingEnabled(id, PT_GROUPING_UNSET);
    tracer()._groupings->erase(id);
    return true;
}

/// Lists in post-order. A name under several parents is listed under each of them; only a
/// grouping that is already on the current path is cut off, which ends a cycle.
void listTree(const std::string& grouping, Visited& onPath, std::vector<std::string>& out) {
    const std::int32_t id = groupingID(grouping, false);
    const std::vector<std::string>* children = childrenOf(id);
    if (!children || !onPath.insert(id).second) {
        return;
    }
    for (const std::string& child : *children) {
        listTree(child, onPath, out);
    }
    onPath.erase(id);
    out.push_back(grouping);
}

}  // namespace

std::int32_t ptAddGrouping(const std::string& grouping) {
    ensureTree();
    const std::int32_t id = groupingID(grouping, true);
    if (const std::vector<std::string>* children = childrenOf(id)) {
        return children->empty() ? id : -1;
    }
    insertGrouping(id, {});
    tracer().setGroupingEnabled(id, PT_GROUPING_UNSET);
    return id;
}

std::string ptAddGrouping(const std::string& grouping,
                          const std::vector<std::string>& subGroupings) {
    ensureTree();
    const std::int32_t id = groupingID(grouping, true);
    if (std::vector<std::string>* children = childrenOf(id)) {
        if (!children->empty()) {
            return "Group: " + grouping;
        }
        *children = subGroupings;  // an existing leaf keeps its enable state
    } else {
        insertGrouping(id, subGroupings);
        tracer().setGroupingEnabled(id, PT_GROUPING_UNSET);
    }
    for (const std::string& sub : std::vector<std::string>(subGroupings)) {
        if (ptAddGrouping(sub) == -1) {
            return "Sub group: " + sub;
        }
        // A new child takes its parent's explicit state; under an untouched parent it keeps
        // its own.
        if (const EPTGroupingEnabled state = tracer().groupingState(id);
            state != PT_GROUPING_UNSET) {
            ptEnableTracer(sub, state != PT_GROUPING_OFF);
        }
    }
    return {};
}

bool ptUpdateGrouping(const std::string& grouping, const std::vector<std::string>& subGroupings) {
    const std::int32_t id = groupingID(grouping, false);
    if (const std::vector<std::string>* children = childrenOf(id)) {
        for (const std::string& child : std::vector<std::string>(*children)) {
            ptRemoveGrouping(child);
        }
        // A list that reached back to the grouping itself has removed it with its children.
        if (std::vector<std::string>* current = childrenOf(id)) {
            *current = subGroupings;
        }
    } else {
        tracer().setGroupingEnabled(id, PT_GROUPING_UNSET);
    }
    return true;
}

bool ptRemoveGrouping(const std::string& grouping) {
    Visited visited;
    return removeTree(groupingID(grouping, false), visited);
}

void ptEnableTracer(const std::string& grouping, bool enable) {
    ensureTree();
    Visited visited;
    enableTree(grouping, enable, visited);
}

std::vector<std::string> ptGetGroupingList(const std::string& grouping) {
    std::vector<std::string> out;
    if (!tracer()._groupings) {
        return out;
    }
    Visited onPath;
    listTree(grouping, onPath, out);
    return out;
}
