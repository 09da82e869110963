#pragma once

// The call tree's passes exactly as first described, each recursing into the subtrees: the
// keys, the folding of siblings and of children, and the nested createNode text. Tests compare
// the library's passes, which keep stacks of their own, with them on trees of ordinary depth.

#include <cstdint>
#include <string>
#include <unordered_map>

#include "report/call_tree.h"

namespace pt::testing::direct {

inline std::uint32_t callTreeKey(PTCallTreeNode& node) {
    if (node.isGap) {
        return 0;
    }
    std::uint32_t key = node.key;
    std::uint32_t previous = 0;
    for (const PTCallTreeNodePtr& child : node.children) {
        const std::uint32_t value = callTreeKey(*child);
        if (value != previous) {
            key += value;
        }
        previous = value;
    }
    node.key = key;
    return key;
}

inline void mergeChildren(PTCallTreeNode& a, PTCallTreeNode& b) {
    if (a.children.empty() || b.children.empty()) {
        return;
    }
    std::size_t i = 0;
    std::size_t j = 0;
    for (std::size_t round = 1; i < a.children.size() && j < b.children.size(); ++round) {
        PTCallTreeNode& na = *a.children[i];
        const PTCallTreeNodePtr nb = b.children[j];
        if (na.key == nb->key) {
            na.IDs.insert(na.IDs.end(), nb->IDs.begin(), nb->IDs.end());
            if (!na.children.empty()) {
                mergeChildren(na, *nb);
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

inline void mergeSiblings(PTCallTreeList& list) {
    std::unordered_map<std::uint32_t, PTCallTreeNode*> firstOfKey;
    PTCallTreeList kept;
    for (PTCallTreeNodePtr& node : list) {
        mergeSiblings(node->children);
        const auto [entry, isNew] = firstOfKey.try_emplace(node->key, node.get());
        if (isNew) {
            kept.push_back(std::move(node));
            continue;
        }
        entry->second->IDs.insert(entry->second->IDs.end(), node->IDs.begin(), node->IDs.end());
        mergeChildren(*entry->second, *node);
    }
    list = std::move(kept);
}

inline std::string nodeText(const PTCallTreeNode& node, bool setParent, bool isFirst,
                            std::int32_t& nextNodeIndex, std::int32_t& currentParent) {
    std::int32_t index = 0;
    if (isFirst) {
        nextNodeIndex = 1;
    } else {
        index = nextNodeIndex++;
    }
    if (setParent) {
        currentParent = index;
    }
    std::string text =
        "createNode(" + std::to_string(index) + "," + std::to_string(currentParent) + ", [";
    for (std::size_t k = 0; k < node.IDs.size(); ++k) {
        text += (k > 0 ? ", " : "") + std::to_string(node.IDs[k]);
    }
    text += "], \n[";
    if (!node.children.empty()) {
        const std::int32_t savedParent = currentParent;
        currentParent = index;
        for (std::size_t k = 0; k < node.children.size(); ++k) {
            text += (k > 0 ? "," : "") +
                    nodeText(*node.children[k], false, false, nextNodeIndex, currentParent);
        }
        currentParent = savedParent;
    }
    return text + "])";
}

}  // namespace pt::testing::direct
