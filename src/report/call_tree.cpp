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
        if (row.numChildren >= 1 && open.size() < kCallTreeMaxDepth) {
            open.push_front(raw);
        }
    }
}

std::uint32_t ptCallTreeKey(PTCallTreeNode& node) {
    if (node.isGap) {
        return 0;
    }
    std::uint32_t key = node.key;
    std::uint32_t previous = 0;
    for (const PTCallTreeNodePtr& child : node.children) {
        const std::uint32_t value = ptCallTreeKey(*child);
        if (value != previous) {
            key += value;
        }
        previous = value;
    }
    node.key = key;
    return key;
}

void ptMergeCallTreeSiblings(PTCallTreeList& list) {
    std::unordered_map<std::uint32_t, PTCallTreeNode*> firstOfKey;
    PTCallTreeList kept;
    kept.reserve(list.size());
    for (PTCallTreeNodePtr& node : list) {
        ptMergeCallTreeSiblings(node->children);
        const auto [entry, isNew] = firstOfKey.try_emplace(node->key, node.get());
        if (isNew) {
            kept.push_back(std::move(node));
            continue;
        }
        PTCallTreeNode& first = *entry->second;
        first.IDs.insert(first.IDs.end(), node->IDs.begin(), node->IDs.end());
        ptMergeCallTreeChildren(first, *node);
    }
    list = std::move(kept);
}

void ptMergeCallTreeChildren(PTCallTreeNode& a, PTCallTreeNode& b) {
    if (a.children.empty() || b.children.empty()) {
        return;
    }
    std::size_t i = 0;
    std::size_t j = 0;
    // The round counter is not reset when only one side moves: after a gap is taken over, the
    // walk of a's children goes on from the round's number.
    for (std::size_t round = 1; i < a.children.size() && j < b.children.size(); ++round) {
        PTCallTreeNode& na = *a.children[i];
        const PTCallTreeNodePtr& nb = b.children[j];
        if (na.key == nb->key) {
            na.IDs.insert(na.IDs.end(), nb->IDs.begin(), nb->IDs.end());
            if (!na.children.empty()) {
                ptMergeCallTreeChildren(na, *nb);
            }
            ++i;
            ++j;
        } else if (na.isGap) {
            ++i;
        } else if (nb->isGap) {
            a.children.insert(a.children.begin() + static_cast<std::ptrdiff_t>(i), nb);
            ++j;
            i = round;
        } else {
            ++j;
        }
    }
}

std::string ptHtmlCallTreeNode(const PTCallTreeNode& node, bool setParent, bool isFirst,
                               pt::report::PTCallTreeNumbering& numbering) {
    std::int32_t index = 0;
    if (isFirst) {
        numbering.nextNodeIndex = 1;
    } else {
        index = numbering.nextNodeIndex++;
    }
    if (setParent) {
        numbering.currentParent = index;
    }
    std::string text = "createNode(" + std::to_string(index) + "," +
                       std::to_string(numbering.currentParent) + ", [";
    for (std::size_t k = 0; k < node.IDs.size(); ++k) {
        if (k > 0) {
            text += ", ";
        }
        text += std::to_string(node.IDs[k]);
    }
    text += "], \n[";
    if (!node.children.empty()) {
        const std::int32_t savedParent = numbering.currentParent;
        numbering.currentParent = index;
        for (std::size_t k = 0; k < node.children.size(); ++k) {
            if (k > 0) {
                text += ",";
            }
            text += ptHtmlCallTreeNode(*node.children[k], false, false, numbering);
        }
        numbering.currentParent = savedParent;
    }
    return text + "])";
}

namespace pt::report {

std::string ptHtmlCallTreeData(const PTProcessedData& data) {
    PTCallTreeList roots;
    ptBuildCallTree(data, roots);
    for (const PTCallTreeNodePtr& root : roots) {
        ptCallTreeKey(*root);
    }
    ptMergeCallTreeSiblings(roots);

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
    }
    return text + "        CTDataView.AllCTChecked = false;\n";
}

}  // namespace pt::report
