// The call tree of Detail pages: keys and the folding of equal calls against the recursive
// passes, and the createNode text the page reads, at any depth.

#include <gtest/gtest.h>

#include "processing/random_log.h"
#include "report/call_tree.h"
#include "report/direct_call_tree.h"
#include "report/fragments.h"

namespace {

using pt::testing::makePoint;

PTCallTreeNodePtr node(std::uint32_t key, std::vector<std::int32_t> ids, bool isGap = false) {
    auto made = std::make_shared<PTCallTreeNode>();
    made->key = key;
    made->IDs = std::move(ids);
    made->isGap = isGap;
    return made;
}

/// The deepest nesting of createNode calls in any statement of the text.
std::size_t deepestStatement(const std::string& text) {
    std::size_t deepest = 0;
    std::size_t depth = 0;
    const std::string call = "createNode(";
    const std::size_t calls = text.find("var callTreeArray = new Array();");
    EXPECT_NE(calls, std::string::npos);
    for (std::size_t at = calls; at < text.size(); ++at) {
        if (text.compare(at, call.size(), call) == 0) {
            deepest = std::max(deepest, ++depth);
        } else if (text.compare(at, 2, "])") == 0 && depth > 0) {
            --depth;
        } else if (text[at] == ';') {
            EXPECT_EQ(depth, 0u) << "a statement ends inside a call";
            depth = 0;
        }
    }
    return deepest;
}

TEST(CallTree, AChainDeeperThanAStatementStaysOneTree) {
    const int depth = 5 * static_cast<int>(kCallTreeStatementDepth) + 50;
    PTRawDataVector points;
    for (int i = 0; i < 2 * depth; ++i) {  // the starts down the chain, then the ends back up
        const int level = i < depth ? i : 2 * depth - 1 - i;
        points.push_back(
            makePoint(0, "Run", level % 2 == 0 ? "even" : "odd", i < depth, 0.01 * (i + 1)));
    }
    const PTProcessedData data = ptGetProcessedDataForGroupings(&points, {"Run"});
    PTCallTreeList roots;
    ptBuildCallTree(data, roots);
    ASSERT_EQ(roots.size(), 1u);
    ptCallTreeKey(*roots[0]);
    ptMergeCallTreeSiblings(roots);
    std::size_t levels = 0;
    for (const PTCallTreeNode* at = roots[0].get(); at; ++levels) {
        EXPECT_EQ(at->IDs, std::vector<std::int32_t>{static_cast<std::int32_t>(levels)});
        at = at->children.empty() ? nullptr : at->children[0].get();
    }
    EXPECT_EQ(levels, static_cast<std::size_t>(depth));

    // The statement of the root holds the first levels; each later one gives the node where
    // the one before it stopped its children, in the order the nodes are made.
    const std::string text = pt::report::ptHtmlCallTreeData(data);
    EXPECT_EQ(deepestStatement(text), kCallTreeStatementDepth);
    const auto at = [&](std::size_t level, std::size_t parent) {
        return "createNode(" + std::to_string(level) + "," + std::to_string(parent) + ", [";
    };
    std::size_t from = 0;
    for (const std::string& marker :
         {std::string("callTreeArray[0] = ") + at(0, 0) + "0], \n[" + at(1, 0),
          at(kCallTreeStatementDepth - 1, kCallTreeStatementDepth - 2) +
              std::to_string(kCallTreeStatementDepth - 1) + "], \n[])])",
          "        nodeArray[" + std::to_string(kCallTreeStatementDepth - 1) + "].children = [" +
              at(kCallTreeStatementDepth, kCallTreeStatementDepth - 1),
          "        nodeArray[" + std::to_string(2 * kCallTreeStatementDepth - 1) +
              "].children = ["}) {
        from = text.find(marker, from);
        ASSERT_NE(from, std::string::npos) << marker;
    }
}

TEST(CallTree, AHundredThousandLevelsKeyFoldAndWriteWithoutRecursion) {
    constexpr int kLevels = 100000;
    // Two equal chains side by side: a, b, a, b, ... down, with a gap beside every tenth node.
    const auto chain = [](std::int32_t firstId) {
        PTCallTreeNodePtr root = node(1, {firstId});
        PTCallTreeNode* at = root.get();
        for (int level = 1; level < kLevels; ++level) {
            at->children.push_back(node(level % 2 == 0 ? 1 : 2, {firstId + level}));
            if (level % 10 == 0) {
                at->children.push_back(node(3, {-1}, true));
            }
            at = at->children.front().get();
        }
        return root;
    };
    PTCallTreeList roots = {chain(0), chain(kLevels)};
    EXPECT_EQ(ptCallTreeKey(*roots[0]), ptCallTreeKey(*roots[1]));
    ptMergeCallTreeSiblings(roots);
    ASSERT_EQ(roots.size(), 1u);
    int levels = 0;
    for (const PTCallTreeNode* at = roots[0].get(); at; ++levels) {
        ASSERT_EQ(at->IDs, (std::vector<std::int32_t>{levels, kLevels + levels})) << levels;
        at = at->children.empty() ? nullptr : at->children.front().get();
    }
    EXPECT_EQ(levels, kLevels);

    const std::string text = pt::report::ptHtmlCallTreeRoots(roots);
    EXPECT_EQ(deepestStatement(text), kCallTreeStatementDepth);
    std::size_t calls = 0;
    for (std::size_t at = 0; (at = text.find("createNode(", at)) != std::string::npos; ++at) {
        ++calls;
    }
    EXPECT_EQ(calls, kLevels + (kLevels - 1) / 10 + 1);  // the gaps, and createNode's definition
}

// On trees of ordinary depth the passes give what the recursive passes give, node for node and
// letter for letter of the page's text. The trees are random with few keys, so that many
// siblings fold and many gaps are taken over.
PTCallTreeList randomForest(std::mt19937& rng, int depth, int& nextId) {
    PTCallTreeList list;
    const int count = std::uniform_int_distribution<int>(0, depth > 0 ? 5 : 0)(rng);
    for (int k = 0; k < count; ++k) {
        const bool isGap = std::uniform_int_distribution<int>(0, 4)(rng) == 0;
        auto made =
            node(std::uniform_int_distribution<std::uint32_t>(1, 3)(rng), {nextId++}, isGap);
        if (!isGap) {
            made->children = randomForest(rng, depth - 1, nextId);
        }
        list.push_back(made);
    }
    return list;
}

TEST(CallTree, RandomTreesFoldAndWriteAsTheRecursivePassesDo) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        const auto forest = [seed] {
            std::mt19937 rng(seed);
            int id = 0;
            return randomForest(rng, 5, id);
        };
        PTCallTreeList roots = forest(), direct = forest();
        for (std::size_t r = 0; r < roots.size(); ++r) {
            ASSERT_EQ(ptCallTreeKey(*roots[r]), pt::testing::direct::callTreeKey(*direct[r]));
        }
        ptMergeCallTreeSiblings(roots);
        pt::testing::direct::mergeSiblings(direct);
        ASSERT_EQ(roots.size(), direct.size()) << "seed " << seed;
        pt::report::PTCallTreeNumbering numbering;
        std::int32_t nextNodeIndex = 0;
        std::int32_t currentParent = 0;
        for (std::size_t r = 0; r < roots.size(); ++r) {
            EXPECT_EQ(ptHtmlCallTreeNode(*roots[r], true, r == 0, numbering),
                      pt::testing::direct::nodeText(*direct[r], true, r == 0, nextNodeIndex,
                                                    currentParent))
                << "seed " << seed << " root " << r;
            EXPECT_EQ(numbering.laterStatements, "");
        }
    }
}

}  // namespace