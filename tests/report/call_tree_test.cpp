// The call tree of Detail pages: building from outline numbers, keys, folding of equal calls,
// the merging of children around gaps, and the createNode text the page reads, at any depth
// and against the recursive passes.

#include <gtest/gtest.h>

#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <functional>

#include "processing/random_log.h"
#include "report/call_tree.h"
#include "report/direct_call_tree.h"
#include "report/fragments.h"

namespace {

using pt::testing::makePoint;

/// A log written as nested calls: phase("a", [&] { phase("b"); }) logs a around b, each point
/// 10 ms after the last; wait() leaves a gap.
class Log {
public:
    void phase(const std::string& name, const std::function<void()>& body = {}) {
        points.push_back(makePoint(0, "Run", name, true, next()));
        if (body) {
            body();
        }
        points.push_back(makePoint(0, "Run", name, false, next()));
    }
    void wait() { clock += 1.0; }

    PTProcessedData processed() { return ptGetProcessedDataForGroupings(&points, {"Run"}); }

    PTCallTreeList folded() {
        data = processed();
        PTCallTreeList roots;
        ptBuildCallTree(data, roots);
        for (const auto& root : roots) {
            ptCallTreeKey(*root);
        }
        ptMergeCallTreeSiblings(roots);
        return roots;
    }

    PTRawDataVector points;
    PTProcessedData data;

private:
    double next() { return clock += 0.01; }
    double clock = 0.0;
};

std::string phaseOf(const PTProcessedData& data, const PTCallTreeNode& node) {
    return ptTracer()->idToName(PT_TABLE_PHASE, data._rows.at(node.IDs.front())->_point->phaseID());
}

PTCallTreeNodePtr node(std::uint32_t key, std::vector<std::int32_t> ids, bool isGap = false,
                       PTCallTreeList children = {}) {
    auto made = std::make_shared<PTCallTreeNode>();
    made->key = key;
    made->IDs = std::move(ids);
    made->isGap = isGap;
    made->children = std::move(children);
    return made;
}

std::vector<std::uint32_t> keysOf(const PTCallTreeList& list) {
    std::vector<std::uint32_t> keys;
    for (const auto& entry : list) {
        keys.push_back(entry->key);
    }
    return keys;
}

TEST(CallTree, OutlineNumbersOfDirectChildren) {
    EXPECT_TRUE(ptIsDirectChildNumber("1", "1.1"));
    EXPECT_TRUE(ptIsDirectChildNumber("1.2", "1.2.13"));
    EXPECT_FALSE(ptIsDirectChildNumber("1", "1.1.1"));
    EXPECT_FALSE(ptIsDirectChildNumber("1", "2.1"));
    EXPECT_FALSE(ptIsDirectChildNumber("1", "11.1"));
    EXPECT_FALSE(ptIsDirectChildNumber("1.2", "1.3.1"));
    EXPECT_FALSE(ptIsDirectChildNumber("1", "2"));
    EXPECT_FALSE(ptIsDirectChildNumber("", ""));
    EXPECT_FALSE(ptIsDirectChildNumber("1.1", "1"));
}

TEST(CallTree, IdHashIsTheFoldedDigestOfTheIdsBytes) {
    // MD5 of the four bytes, its words added modulo 2^32.
    EXPECT_EQ(ptFoldIdHash(0), 937169022u);
    EXPECT_EQ(ptFoldIdHash(1), 2078896056u);
    EXPECT_EQ(ptFoldIdHash(-1), 4086641230u);
    EXPECT_EQ(ptFoldIdHash(7), ptFoldIdHash(7));
}

TEST(CallTree, TenEqualCallsFoldIntoOneNode) {
    Log log;
    log.phase("main", [&] {
        for (int i = 0; i < 10; ++i) {
            log.phase("step", [&] { log.phase("solve"); });
        }
    });
    const PTCallTreeList roots = log.folded();
    ASSERT_EQ(roots.size(), 1u);
    ASSERT_EQ(roots[0]->children.size(), 1u);
    const PTCallTreeNode& step = *roots[0]->children[0];
    EXPECT_EQ(phaseOf(log.data, step), "step");
    EXPECT_EQ(step.IDs, (std::vector<std::int32_t>{1, 3, 5, 7, 9, 11, 13, 15, 17, 19}));
    ASSERT_EQ(step.children.size(), 1u);
    EXPECT_EQ(step.children[0]->IDs.size(), 10u);

    // A loop that calls the same thing ten times has the key of one that calls it once.
    Log once;
    once.phase("main", [&] { once.phase("step", [&] { once.phase("solve"); }); });
    EXPECT_EQ(once.folded()[0]->key, roots[0]->key);
}

TEST(CallTree, EqualSiblingsWithDifferentGrandchildrenStayApart) {
    Log log;
    log.phase("main", [&] {
        log.phase("worker", [&] { log.phase("a"); });
        log.phase("worker", [&] { log.phase("b"); });
        log.phase("worker", [&] { log.phase("a"); });
    });
    const PTCallTreeList roots = log.folded();
    ASSERT_EQ(roots.size(), 1u);
    const PTCallTreeList& workers = roots[0]->children;
    ASSERT_EQ(workers.size(), 2u);
    // The third worker folds into the first, which stays in its place.
    EXPECT_EQ(workers[0]->IDs, (std::vector<std::int32_t>{1, 5}));
    EXPECT_EQ(phaseOf(log.data, *workers[0]->children[0]), "a");
    EXPECT_EQ(workers[1]->IDs, (std::vector<std::int32_t>{3}));
    EXPECT_EQ(phaseOf(log.data, *workers[1]->children[0]), "b");
}

TEST(CallTree, GapsKeepTheKeyOfTheirPhaseAndAddNothingToTheParent) {
    Log log;
    log.phase("main", [&] {
        log.phase("x");
        log.wait();
        log.phase("y");
    });
    log.data = log.processed();
    PTCallTreeList roots;
    ptBuildCallTree(log.data, roots);
    ASSERT_EQ(roots.size(), 1u);
    const PTCallTreeList& children = roots[0]->children;
    ASSERT_EQ(children.size(), 3u);
    PTCallTreeNode& gap = *children[1];
    ASSERT_TRUE(gap.isGap);
    const auto& gapRow = *log.data._rows.at(gap.IDs[0])->_point;
    EXPECT_TRUE(gapRow.gapRow);
    EXPECT_EQ(gap.key, ptFoldIdHash(gapRow.phaseID()));

    const std::uint32_t own = roots[0]->key;
    const std::uint32_t x = children[0]->key;
    const std::uint32_t y = children[2]->key;
    EXPECT_EQ(ptCallTreeKey(gap), 0u);
    EXPECT_EQ(gap.key, ptFoldIdHash(gapRow.phaseID()));
    EXPECT_EQ(ptCallTreeKey(*roots[0]), own + x + y);

    // After a gap the next child is compared with 0: a repeated call counts twice.
    PTCallTreeNode parent;
    parent.key = 5;
    parent.children = {node(11, {1}), node(9, {2}, true), node(11, {3})};
    EXPECT_EQ(ptCallTreeKey(parent), 5u + 11u + 11u);
}

TEST(CallTree, MergingChildrenAroundGaps) {
    // A gap on a's side is stepped over.
    PTCallTreeNode a, b;
    a.children = {node(90, {1}, true), node(10, {2})};
    b.children = {node(10, {7})};
    ptMergeCallTreeChildren(a, b);
    EXPECT_EQ(keysOf(a.children), (std::vector<std::uint32_t>{90, 10}));
    EXPECT_EQ(a.children[1]->IDs, (std::vector<std::int32_t>{2, 7}));

    // A gap on b's side is taken over before the present child.
    PTCallTreeNode c, d;
    c.children = {node(10, {2})};
    d.children = {node(91, {6}, true), node(10, {7})};
    ptMergeCallTreeChildren(c, d);
    EXPECT_EQ(keysOf(c.children), (std::vector<std::uint32_t>{91, 10}));
    EXPECT_EQ(c.children[0]->IDs, (std::vector<std::int32_t>{6}));
    EXPECT_EQ(c.children[1]->IDs, (std::vector<std::int32_t>{2, 7}));

    // The walk of a's children goes on from the round's number after a gap is taken over:
    // an unmatched child of b is dropped in round 1, the gap comes in at round 2, and the
    // walk resumes at a's third child.
    PTCallTreeNode e, f;
    e.children = {node(10, {1}), node(20, {2})};
    f.children = {node(30, {5}), node(92, {6}, true), node(20, {7})};
    ptMergeCallTreeChildren(e, f);
    EXPECT_EQ(keysOf(e.children), (std::vector<std::uint32_t>{92, 10, 20}));
    EXPECT_EQ(e.children[1]->IDs, (std::vector<std::int32_t>{1}));
    EXPECT_EQ(e.children[2]->IDs, (std::vector<std::int32_t>{2, 7}));

    // Equal children merge their own children in turn; what is left of b is dropped.
    PTCallTreeNode g, h;
    g.children = {node(10, {1}, false, {node(40, {2})})};
    h.children = {node(10, {5}, false, {node(40, {6})}), node(50, {7})};
    ptMergeCallTreeChildren(g, h);
    ASSERT_EQ(g.children.size(), 1u);
    EXPECT_EQ(g.children[0]->children[0]->IDs, (std::vector<std::int32_t>{2, 6}));

    // Nothing happens when either side has no children.
    PTCallTreeNode empty, full;
    full.children = {node(10, {1})};
    ptMergeCallTreeChildren(empty, full);
    EXPECT_TRUE(empty.children.empty());
}

TEST(CallTree, CreateNodeTextOfASmallTree) {
    Log log;
    log.phase("first", [&] {
        log.phase("leaf");
        log.phase("inner", [&] { log.phase("deep"); });
    });
    log.phase("second");
    log.phase("second");
    const std::string text = pt::report::ptHtmlCallTreeData(log.processed());
    const std::string expected =
        "        callTreeArray[0] = createNode(0,0, [0], \n"
        "[createNode(1,0, [1], \n"
        "[]),createNode(2,0, [2], \n"
        "[createNode(3,2, [3], \n"
        "[])])]);\n"
        "        callTreeArray[1] = createNode(4,4, [4, 5], \n"
        "[]);\n"
        "        CTDataView.AllCTChecked = false;\n";
    ASSERT_GE(text.size(), expected.size());
    EXPECT_EQ(text.substr(text.size() - expected.size()), expected);
    EXPECT_NE(text.find("var callTreeArray = new Array();"), std::string::npos);

    // No rows: the array stays empty.
    PTProcessedData none;
    const std::string empty = pt::report::ptHtmlCallTreeData(none);
    EXPECT_EQ(empty.find("callTreeArray["), std::string::npos);
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
    Log log;
    const int depth = 5 * static_cast<int>(kCallTreeStatementDepth) + 50;
    std::function<void(int)> nest = [&](int level) {
        log.phase(level % 2 == 0 ? "even" : "odd",
                  level + 1 < depth ? std::function<void()>([&, level] { nest(level + 1); })
                                    : std::function<void()>());
    };
    nest(0);
    const PTCallTreeList roots = log.folded();
    ASSERT_EQ(roots.size(), 1u);
    std::size_t levels = 0;
    for (const PTCallTreeNode* at = roots[0].get(); at; ++levels) {
        EXPECT_EQ(at->IDs, std::vector<std::int32_t>{static_cast<std::int32_t>(levels)});
        at = at->children.empty() ? nullptr : at->children[0].get();
    }
    EXPECT_EQ(levels, static_cast<std::size_t>(depth));

    // The statement of the root holds the first levels; each later one gives the node where
    // the one before it stopped its children, in the order the nodes are made.
    const std::string text = pt::report::ptHtmlCallTreeData(log.data);
    EXPECT_EQ(deepestStatement(text), kCallTreeStatementDepth);
    const std::string first =
        "        nodeArray[" + std::to_string(kCallTreeStatementDepth - 1) + "].children = [";
    const std::string second =
        "        nodeArray[" + std::to_string(2 * kCallTreeStatementDepth - 1) + "].children = [";
    const std::size_t root =
        text.find("callTreeArray[0] = createNode(0,0, [0], \n[createNode(1,0,");
    ASSERT_NE(root, std::string::npos);
    EXPECT_LT(root, text.find(first));
    EXPECT_LT(text.find(first), text.find(second));
    EXPECT_NE(text.find("createNode(" + std::to_string(kCallTreeStatementDepth - 1) + "," +
                        std::to_string(kCallTreeStatementDepth - 2) + ", [" +
                        std::to_string(kCallTreeStatementDepth - 1) + "], \n[])])"),
              std::string::npos);
    EXPECT_NE(text.find(first + "createNode(" + std::to_string(kCallTreeStatementDepth) + "," +
                        std::to_string(kCallTreeStatementDepth - 1) + ", ["),
              std::string::npos);
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
    for (const auto& root : roots) {
        ptCallTreeKey(*root);
    }
    EXPECT_EQ(roots[0]->key, roots[1]->key);
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
    for (std::size_t at = text.find("createNode("); at != std::string::npos;
         at = text.find("createNode(", at + 1)) {
        ++calls;
    }
    // The gaps, and the definition of createNode itself.
    EXPECT_EQ(calls, kLevels + (kLevels - 1) / 10 + 1);
}

}  // namespace

// Keys are sums of the names' hashes over a subtree, blind to which table an id comes from
// and to where in the subtree it stands: subtrees whose names trade places fold together. So
// the test asks only what folding must keep: no row twice, no gap folded with a call.
TEST(CallTree, RandomLogsFoldEveryRowAtMostOnce) {
    std::mt19937 rng(20261121);
    for (int run = 0; run < 100; ++run) {
        pt::testing::LogOptions options;
        options.points = 400;
        options.maxDepth = 6;
        options.gapChance = 0.2;
        options.unaccountedChance = 0.05;
        PTRawDataVector log = pt::testing::randomLog(rng, options);
        const PTProcessedData data = ptGetProcessedDataForGroupings(&log, {"GLOBAL"});
        PTCallTreeList roots;
        ptBuildCallTree(data, roots);
        for (const auto& root : roots) {
            ptCallTreeKey(*root);
        }
        ptMergeCallTreeSiblings(roots);

        std::vector<int> seen(data._rows.size(), 0);
        std::function<void(const PTCallTreeNode&)> walk = [&](const PTCallTreeNode& at) {
            const auto& first = *data._rows.at(at.IDs.front())->_point;
            for (const std::int32_t id : at.IDs) {
                ++seen.at(static_cast<std::size_t>(id));
                const auto& row = *data._rows.at(static_cast<std::size_t>(id))->_point;
                EXPECT_EQ(row.gapRow, first.gapRow) << "run " << run;
            }
            for (const auto& child : at.children) {
                walk(*child);
            }
        };
        for (const auto& root : roots) {
            walk(*root);
        }
        // Folding drops only children of b that found no partner; everything else stands once.
        for (std::size_t row = 0; row < seen.size(); ++row) {
            EXPECT_LE(seen[row], 1) << "run " << run << " row " << row;
        }
    }
}

// On trees of ordinary depth the passes give what the recursive passes give, node for node and
// letter for letter of the page's text. The trees are random with few keys, so that many
// siblings fold and many gaps are taken over.
namespace {

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

}  // namespace

TEST(CallTree, RandomTreesFoldAndWriteAsTheRecursivePassesDo) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        std::mt19937 rng(seed);
        int id = 0;
        PTCallTreeList roots = randomForest(rng, 5, id);
        rng.seed(seed);
        id = 0;
        PTCallTreeList direct = randomForest(rng, 5, id);
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
