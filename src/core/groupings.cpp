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

// Trees can be as deep as the data makes them (a chain of 10^5 groupings is one long path),
// so the walks keep their own stacks instead of recursing. Each takes the children in the
// order a recursive walk would, so ids are created and states set in the same order.

/// Pre-order: a grouping's state is set before its children are entered. A child's id is
/// looked up (and created) only when the walk reaches it.
void enableTree(const std::string& grouping, bool enable) {
    const EPTGroupingEnabled state = enable ? PT_GROUPING_ON : PT_GROUPING_OFF;
    Visited visited;
    std::vector<std::string> pending{grouping};  // the next name to enter at the back
    while (!pending.empty()) {
        const std::string name = std::move(pending.back());
        pending.pop_back();
        const std::int32_t id = groupingID(name, true);
        if (!visited.insert(id).second) {
            continue;
        }
        if (const std::vector<std::string>* children = childrenOf(id)) {
            tracer().setGroupingEnabled(id, state);
            // Enabling below may add groupings but never changes this list; the names are
            // copied all the same, so the walk does not depend on the map.
            pending.insert(pending.end(), children->rbegin(), children->rend());
        } else {
            insertGrouping(id, {});
            tracer().setGroupingEnabled(id, state);
        }
    }
}

/// Post-order: a grouping goes after everything below it. A child is looked up when the walk
/// reaches it, after its earlier siblings' subtrees have gone.
bool removeTree(std::int32_t root) {
    struct Frame {
        std::int32_t id;
        std::vector<std::string> children;  // as they stood when the walk entered
        std::size_t next = 0;
    };
    Visited visited;
    std::vector<Frame> path;
    const auto enter = [&](std::int32_t id) {
        const std::vector<std::string>* children = childrenOf(id);
        if (!children || !visited.insert(id).second) {
            return false;
        }
        path.push_back({id, *children});
        return true;
    };
    if (!enter(root)) {
        return false;
    }
    while (!path.empty()) {
        Frame& frame = path.back();
        if (frame.next < frame.children.size()) {
            enter(groupingID(frame.children[frame.next++], false));
            continue;
        }
        tracer().setGroupingEnabled(frame.id, PT_GROUPING_UNSET);
        tracer()._groupings->erase(frame.id);
        path.pop_back();
    }
    return true;
}

/// Lists in post-order. A name under several parents is listed under each of them; only a
/// grouping that is already on the current path is cut off, which ends a cycle.
void listTree(const std::string& grouping, std::vector<std::string>& out) {
    struct Frame {
        std::int32_t id;
        const std::string* name;
        const std::vector<std::string>* children;  // listing changes no list
        std::size_t next = 0;
    };
    Visited onPath;
    std::vector<Frame> path;
    const auto enter = [&](const std::string& name) {
        const std::int32_t id = groupingID(name, false);
        const std::vector<std::string>* children = childrenOf(id);
        if (children && onPath.insert(id).second) {
            path.push_back({id, &name, children});
        }
    };
    enter(grouping);
    while (!path.empty()) {
        Frame& frame = path.back();
        if (frame.next < frame.children->size()) {
            enter((*frame.children)[frame.next++]);
            continue;
        }
        onPath.erase(frame.id);
        out.push_back(*frame.name);
        path.pop_back();
    }
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
    return removeTree(groupingID(grouping, false));
}

void ptEnableTracer(const std::string& grouping, bool enable) {
    ensureTree();
    enableTree(grouping, enable);
}

std::vector<std::string> ptGetGroupingList(const std::string& grouping) {
    std::vector<std::string> out;
    if (!tracer()._groupings) {
        return out;
    }
    listTree(grouping, out);
    return out;
}
