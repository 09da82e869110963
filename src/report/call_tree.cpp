// Building, keying and folding the call tree, and writing it as the page's createNode calls.

#include "report/call_tree.h"

#include <pt_platform/ut_md5.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <unordered_map>

#include "report/fragments.h"

bool ptIsDirectChildNumber(const std::string& a, const std::string& b) {
    const auto dotsOf = [](const std::string& text) {
        return std::count(text.begin(), text.end(), '.');
    };
    const auto aDots = dotsOf(a);
    const auto bDots = dotsOf(b);
    if (aDots == 0 && bDots == 0) {
        return false;
    }
    if (bDots != aDots + 1) {
        return false;
    }
    // b is a's parts, a dot, and one part more.
    return b.size() > a.size() && b.compare(0, a.size(), a) == 0 && b[a.size()] == '.';
}

std::uint32_t ptFoldIdHash(std::int32_t id) {
    ut_md5ChecksumRec checksum;
    checksum.addn(&id, sizeof id);
    const std::array<std::uint8_t, 16> digest = checksum.digest();
    std::uint32_t folded = 0;
    for (std::size_t word = 0; word < 4; ++word) {
        std::uint32_t value = 0;
        std::memcpy(&value, digest.data() + 4 * word, sizeof value);
        folded += value;
    }
    return folded;
}

namespace {

PTCallTreeNodePtr nodeOf(const PTOrviaProcessedDataPoint& row) {
    auto node = std::make_shared<PTCallTreeNode>();
    node->IDs.push_back(row.HTMLRowNumber - 1);
    node->number = row.HTMLPhaseNumString;
    if (row.gapRow) {
        node->key = ptFoldIdHash(row.phaseID());
        node->isGap = true;
    } else {
        node->key = ptFoldIdHash(row.groupingID()) + ptFoldIdHash(row.phaseID()) +
                    ptFoldIdHash(row.modelID()) + ptFoldIdHash(row.targetID());
    }
    return node;
}

}  // namespace

PTCallTreeNode::~PTCallTreeNode() {
    PTCallTreeList pending = std::move(children);
    while (!pending.empty()) {
        PTCallTreeNodePtr last = std::move(pending.back());
        pending.pop_back();
        // A node no one else holds gives its children up before it goes, so that its
        // destructor finds none; a node held elsewhere keeps them.
        if (last && last.use_count() == 1) {
            for (PTCallTreeNodePtr& child : last->children) {
                pending.push_back(std::move(child));
            }
            last->children.clear();
        }
    }
}

void ptBuildCallTree(const PTProcessedData& data, PTCallTreeList& roots) {
    // The open nodes, innermost at the front.
    std::deque<PTCallTreeNode*> open;
    for (const auto& info : data._rows) {
        const PTOrviaProcessedDataPoint& row = *info->_point;
        PTCallTreeNodePtr node = nodeOf(row);
        while (!open.empty() && !ptIsDirectChildNumber(open.front()->number, node->number)) {
            open.pop_front();
        }
        PTCallTreeNode* raw = node.get();
        if (open.empty()) {
            roots.push_back(std::move(node));
        } else {
            open.front()->children.push_back(std::move(node));
        }
        if (row.numChildren >= 1) {
            open.push_front(raw);
        }
    }
}

namespace {

/// A node whose key is being extended: its children are taken in turn.
struct KeyFrame {
    PTCallTreeNode* node;
    std::size_t next;
    std::uint32_t key;
    std::uint32_t previous;

    /// A child's key counts unless it repeats the child's before it.
    void add(std::uint32_t value) {
        if (value != previous) {
            key += value;
        }
        previous = value;
    }
};

}  // namespace

std::uint32_t ptCallTreeKey(PTCallTreeNode& node) {
    if (node.isGap) {
        return 0;
    }
    std::vector<KeyFrame> stack{{&node, 0, node.key, 0}};
    for (;;) {
        KeyFrame& top = stack.back();
        if (top.next < top.node->children.size()) {
            PTCallTreeNode& child = *top.node->children[top.next++];
            if (child.isGap) {
                top.add(0);
            } else {
                stack.push_back({&child, 0, child.key, 0});
            }
            continue;
        }
        top.node->key = top.key;
        const std::uint32_t value = top.key;
        stack.pop_back();
        if (stack.empty()) {
            return value;
        }
        stack.back().add(value);
    }
}

namespace {

/// A list of siblings being folded; each node's own children are folded before the node.
struct SiblingFrame {
    PTCallTreeList* list;
    std::size_t next = 0;
    bool childrenFolded = false;
    std::unordered_map<std::uint32_t, PTCallTreeNode*> firstOfKey{};
    PTCallTreeList kept{};
};

/// Two nodes whose children are being paired.
struct ChildrenFrame {
    PTCallTreeNode* a;
    PTCallTreeNode* b;
    std::size_t i = 0;
    std::size_t j = 0;
    std::size_t round = 1;
};

}  // namespace

void ptMergeCallTreeSiblings(PTCallTreeList& list) {
    std::vector<SiblingFrame> stack;
    stack.push_back({&list});
    while (!stack.empty()) {
        SiblingFrame& frame = stack.back();
        if (frame.next == frame.list->size()) {
            *frame.list = std::move(frame.kept);
            stack.pop_back();
            continue;
        }
        PTCallTreeNodePtr& node = (*frame.list)[frame.next];
        if (!frame.childrenFolded) {
            frame.childrenFolded = true;
            if (!node->children.empty()) {
                PTCallTreeList* children = &node->children;
                stack.push_back({children});  // frame is not to be used after this
                continue;
            }
        }
        frame.childrenFolded = false;
        ++frame.next;
        const auto [entry, isNew] = frame.firstOfKey.try_emplace(node->key, node.get());
        if (isNew) {
            frame.kept.push_back(std::move(node));
            continue;
        }
        PTCallTreeNode& first = *entry->second;
        first.IDs.insert(first.IDs.end(), node->IDs.begin(), node->IDs.end());
        ptMergeCallTreeChildren(first, *node);
    }
}

void ptMergeCallTreeChildren(PTCallTreeNode& a, PTCallTreeNode& b) {
    std::vector<ChildrenFrame> stack;
    stack.push_back({&a, &b});
    while (!stack.empty()) {
        ChildrenFrame& frame = stack.back();
        PTCallTreeList& as = frame.a->children;
        const PTCallTreeList& bs = frame.b->children;
        if (frame.i >= as.size() || frame.j >= bs.size()) {
            stack.pop_back();
            continue;
        }
        // The round counter is not reset when only one side moves: after a gap is taken over,
        // the walk of a's children goes on from the round's number.
        const std::size_t round = frame.round++;
        PTCallTreeNode& na = *as[frame.i];
        const PTCallTreeNodePtr nb = bs[frame.j];
        if (na.key == nb->key) {
            na.IDs.insert(na.IDs.end(), nb->IDs.begin(), nb->IDs.end());
            ++frame.i;
            ++frame.j;
            if (!na.children.empty() && !nb->children.empty()) {
                stack.push_back({&na, nb.get()});  // frame is not to be used after this
            }
        } else if (na.isGap) {
            ++frame.i;
        } else if (nb->isGap) {
            as.insert(as.begin() + static_cast<std::ptrdiff_t>(frame.i), nb);
            ++frame.j;
            frame.i = round;
        } else {
            ++frame.j;
        }
    }
}

namespace {

void appendIds(std::string& text, const std::vector<std::int32_t>& ids) {
    for (std::size_t k = 0; k < ids.size(); ++k) {
        if (k > 0) {
            text += ", ";
        }
        text += std::to_string(ids[k]);
    }
}

/// A node being written: the children still to write, the parent to restore after them, and
/// where its text goes: the statement being written and the depth of the node in it.
struct WriteFrame {
    const PTCallTreeNode* node;
    std::size_t next;
    std::int32_t savedParent;
    std::string* out;
    std::size_t depth;
    /// The statement of the node's children, where they went to one of their own.
    std::string* ownStatement;
};

}  // namespace

std::string ptHtmlCallTreeNode(const PTCallTreeNode& node, bool setParent, bool isFirst,
                               pt::report::PTCallTreeNumbering& numbering) {
    std::string text;
    std::vector<WriteFrame> stack;
    // In the order they are begun, which puts each after the one that makes its node.
    std::vector<std::unique_ptr<std::string>> statements;
    // Writes the opening of a node's call into out; the node's frame takes its children.
    const auto open = [&](const PTCallTreeNode& at, bool first, bool parentOfItself,
                          std::string* out, std::size_t depth) {
        std::int32_t index = 0;
        if (first) {
            numbering.nextNodeIndex = 1;
        } else {
            index = numbering.nextNodeIndex++;
        }
        if (parentOfItself) {
            numbering.currentParent = index;
        }
        *out += "createNode(" + std::to_string(index) + "," +
                std::to_string(numbering.currentParent) + ", [";
        appendIds(*out, at.IDs);
        *out += "], \n[";
        WriteFrame frame{&at, 0, numbering.currentParent, out, depth, nullptr};
        if (!at.children.empty()) {
            numbering.currentParent = index;
            if (depth + 1 >= kCallTreeStatementDepth) {
                // The children would nest too deep: the node is made with none, and a later
                // statement gives it its children.
                *out += "])";
                statements.push_back(std::make_unique<std::string>(
                    "        nodeArray[" + std::to_string(index) + "].children = ["));
                frame.ownStatement = statements.back().get();
                frame.out = frame.ownStatement;
                frame.depth = 0;
            }
        }
        stack.push_back(frame);
    };
    open(node, isFirst, setParent, &text, 0);
    while (!stack.empty()) {
        WriteFrame& top = stack.back();
        if (top.next < top.node->children.size()) {
            const std::size_t k = top.next++;
            if (k > 0) {
                *top.out += ",";
            }
            const std::size_t depth = top.ownStatement ? 0 : top.depth + 1;
            open(*top.node->children[k], false, false, top.out, depth);
            continue;
        }
        if (!top.node->children.empty()) {
            numbering.currentParent = top.savedParent;
        }
        if (top.ownStatement) {
            *top.ownStatement += "];\n";
        } else {
            *top.out += "])";
        }
        stack.pop_back();
    }
    for (const auto& statement : statements) {
        numbering.laterStatements += *statement;
    }
    return text;
}

namespace pt::report {

std::string ptHtmlCallTreeData(const PTProcessedData& data) {
    PTCallTreeList roots;
    ptBuildCallTree(data, roots);
    for (const PTCallTreeNodePtr& root : roots) {
        ptCallTreeKey(*root);
    }
    ptMergeCallTreeSiblings(roots);
    return ptHtmlCallTreeRoots(roots);
}

std::string ptHtmlCallTreeRoots(const PTCallTreeList& roots) {
    std::string text =
        "        var isIE = navigator.appName.indexOf('Microsoft') != -1;\n"
        "        var CTDataView = {'Index': new Array(), 'Checked': new Array()};\n"
        "        var nodeArray = new Array();\n"
        "        function createNode(idx, parentIdx, ids, children) {\n"
        "            var node = {'index': idx, 'IDs': ids, 'Parent': parentIdx,\n"
        "                        'show': idx == 0, 'children': children};\n"
        "            nodeArray[idx] = node;\n"
        "            return node;\n"
        "        }\n"
        "        var callTreeArray = new Array();\n";
    PTCallTreeNumbering numbering;
    for (std::size_t i = 0; i < roots.size(); ++i) {
        text += "        callTreeArray[" + std::to_string(i) +
                "] = " + ptHtmlCallTreeNode(*roots[i], true, i == 0, numbering) + ";\n";
        text += numbering.laterStatements;
        numbering.laterStatements.clear();
    }
    return text + "        CTDataView.AllCTChecked = false;\n";
}

}  // namespace pt::report
