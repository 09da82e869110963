#pragma once

// The call tree of a Detail page: the phase rows as a tree of calls, with runs of equal
// subtrees folded into one node whose IDs list every execution it stands for.

#include <performance_tracer/processed_points.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct PTCallTreeNode;
using PTCallTreeNodePtr = std::shared_ptr<PTCallTreeNode>;
using PTCallTreeList = std::vector<PTCallTreeNodePtr>;

struct PTCallTreeNode {
    /// Positions in procData of all rows folded into this node, the node's own row first.
    std::vector<std::int32_t> IDs;
    /// In order of their starts.
    PTCallTreeList children;
    /// The row's outline number.
    std::string number;
    /// Structural key: equal keys are equal subtrees, up to repetitions of a child.
    std::uint32_t key = 0;
    /// The row was made up for unaccounted time.
    bool isGap = false;
};

/// Nesting deeper than this hangs from the top level: the page's nested createNode calls
/// stay within what a browser parses, and the recursive passes within the stack.
inline constexpr std::size_t kCallTreeMaxDepth = 1024;

namespace pt::report {

/// The numbering of one page's nodes in pre-order; node 0 starts it afresh.
struct PTCallTreeNumbering {
    std::int32_t nextNodeIndex = 0;
    std::int32_t currentParent = 0;
};

}  // namespace pt::report

/// b names a direct child of a: exactly one dotted part more, and a's parts as its prefix.
bool ptIsDirectChildNumber(const std::string& a, const std::string& b);
/// The MD5 digest of the id's four bytes, its four 32-bit words added modulo 2^32.
std::uint32_t ptFoldIdHash(std::int32_t id);
/// The rows as a forest, in order of their starts; a row whose number has no open parent is a
/// root.
void ptBuildCallTree(const PTProcessedData& data, PTCallTreeList& roots);
/// Extends the node's key over its subtree; a run of equal child keys counts once, and a gap
/// counts as 0. Returns the key, 0 for a gap.
std::uint32_t ptCallTreeKey(PTCallTreeNode& node);
/// Folds equal siblings (equal keys) into the first of them, recursively, keeping the order
/// of the rest.
void ptMergeCallTreeSiblings(PTCallTreeList& list);
/// Folds b's children into a's, pairing them by key, taking b's gaps over and dropping what
/// has no partner.
void ptMergeCallTreeChildren(PTCallTreeNode& a, PTCallTreeNode& b);
/// The nested createNode call of a node and its subtree, numbered in pre-order.
std::string ptHtmlCallTreeNode(const PTCallTreeNode& node, bool setParent, bool isFirst,
                               pt::report::PTCallTreeNumbering& numbering);
