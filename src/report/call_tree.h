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
    PTCallTreeNode() = default;
    PTCallTreeNode(const PTCallTreeNode&) = delete;
    PTCallTreeNode& operator=(const PTCallTreeNode&) = delete;
    /// Releases the subtree from a list of its own, so that a deep one does not recurse.
    ~PTCallTreeNode();

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

/// The most createNode calls nested in one statement of the page. A node this deep gets its
/// children from a statement of their own, nodeArray[index].children = [...], written after
/// the statement that made it, so that a tree of any depth stays within what a browser
/// parses. Trees no deeper are written as one nested statement per root.
inline constexpr std::size_t kCallTreeStatementDepth = 256;

namespace pt::report {

/// The writing of one page's nodes: their numbering in pre-order, node 0 starting it afresh,
/// and the statements that fill the children of nodes nested too deep for their statement.
struct PTCallTreeNumbering {
    std::int32_t nextNodeIndex = 0;
    std::int32_t currentParent = 0;
    std::string laterStatements;
};

/// The page's call tree data from roots already keyed and folded.
std::string ptHtmlCallTreeRoots(const PTCallTreeList& roots);

}  // namespace pt::report

/// b names a direct child of a: exactly one dotted part more, and a's parts as its prefix.
bool ptIsDirectChildNumber(const std::string& a, const std::string& b);
/// The MD5 digest of the id's four bytes, its four 32-bit words added modulo 2^32.
std::uint32_t ptFoldIdHash(std::int32_t id);
/// The rows as a forest, in order of their starts, at any depth; a row whose number has no
/// open parent is a root.
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
/// The nested createNode call of a node and its subtree, numbered in pre-order. Subtrees that
/// begin kCallTreeStatementDepth calls down are written into numbering.laterStatements, which
/// must stand after the returned text.
std::string ptHtmlCallTreeNode(const PTCallTreeNode& node, bool setParent, bool isFirst,
                               pt::report::PTCallTreeNumbering& numbering);
