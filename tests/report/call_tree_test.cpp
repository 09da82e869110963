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

/// The call tree of the rows, keyed and folded.
PTCallTreeList fold(const PTProcessedData& data) {
    PTCallTreeList roots;
    ptBuildCallTree(data, roots);
    for (const auto& root : roots) {
        ptCallTreeKey(*root);
    }
    ptMergeCallTreeSiblings(roots);
    return roots;
}

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

    PTCallTreeList folded() { return fold(data = processed()); }

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

/// The list as key, * for a gap, [IDs] and (children): "10[1,5](40[2]) 9*[3]".
std::string shape(const PTCallTreeList& list) {
    std::string text;
    for (const auto& at : list) {
        text += (text.empty() ? "" : " ") + std::to_string(at->key) + (at->isGap ? "*[" : "[");
        for (std::size_t k = 0; k < at->IDs.size(); ++k) {
            text += (k > 0 ? "," : "") + std::to_string(at->IDs[k]);
        }
        text += at->children.empty() ? "]" : "](" + shape(at->children) + ")";
    }
    return text;
}

TEST(CallTree, OutlineNumbersOfDirectChildren) {
    for (const auto& [a, b] : {std::pair{"1", "1.1"}, {"1.2", "1.2.13"}}) {
        EXPECT_TRUE(ptIsDirectChildNumber(a, b)) << a << " " << b;
    }
    for (const auto& [a, b] : {std::pair{"1", "1.1.1"},
                               {"1", "2.1"},
                               {"1", "11.1"},
                               {"1.2", "1.3.1"},
                               {"1", "2"},
                               {"", ""},
                               {"1.1", "1"}}) {
        EXPECT_FALSE(ptIsDirectChildNumber(a, b)) << a << " " << b;
    }
    // MD5 of the id's four bytes, its words added modulo 2^32.
    EXPECT_EQ(ptFoldIdHash(0), 937169022u);
    EXPECT_EQ(ptFoldIdHash(1), 2078896056u);
    EXPECT_EQ(ptFoldIdHash(-1), 4086641230u);
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
    const std::uint32_t own = roots[0]->key;
    EXPECT_EQ(ptCallTreeKey(gap), 0u);
    EXPECT_EQ(gap.key, ptFoldIdHash(gapRow.phaseID()));
    EXPECT_EQ(ptCallTreeKey(*roots[0]), own + children[0]->key + children[2]->key);

    // After a gap the next child is compared with 0: a repeated call counts twice.
    PTCallTreeNode parent;
    parent.key = 5;
    parent.children = {node(11, {1}), node(9, {2}, true), node(11, {3})};
    EXPECT_EQ(ptCallTreeKey(parent), 5u + 11u + 11u);
}

TEST(CallTree, MergingChildrenAroundGaps) {
    const auto gap = [](std::uint32_t key, std::int32_t id) { return node(key, {id}, true); };
    const struct {
        const char* what;
        PTCallTreeList a, b;
        const char* merged;
    } cases[] = {
        {"a gap on a's side is stepped over",
         {gap(90, 1), node(10, {2})},
         {node(10, {7})},
         "90*[1] 10[2,7]"},
        {"a gap on b's side is taken over before the present child",
         {node(10, {2})},
         {gap(91, 6), node(10, {7})},
         "91*[6] 10[2,7]"},
        // An unmatched child of b is dropped in round 1, the gap comes in at round 2, and the
        // walk of a's children resumes at its third child.
        {"the walk goes on from the round's number after a gap",
         {node(10, {1}), node(20, {2})},
         {node(30, {5}), gap(92, 6), node(20, {7})},
         "92*[6] 10[1] 20[2,7]"},
        {"equal children merge their own children; the rest of b is dropped",
         {node(10, {1}, false, {node(40, {2})})},
         {node(10, {5}, false, {node(40, {6})}), node(50, {7})},
         "10[1,5](40[2,6])"},
        {"a without children", {}, {node(10, {1})}, ""},
        {"b without children", {node(10, {1})}, {}, "10[1]"},
    };
    for (const auto& c : cases) {
        PTCallTreeNode a, b;
        a.children = c.a;
        b.children = c.b;
        ptMergeCallTreeChildren(a, b);
        EXPECT_EQ(shape(a.children), c.merged) << c.what;
    }
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
    for (std::size_t at = 0; (at = text.find("createNode(", at)) != std::string::npos; ++at) {
        ++calls;
    }
    EXPECT_EQ(calls, kLevels + (kLevels - 1) / 10 + 1);  // the gaps, and createNode's definition
}

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
        const PTCallTreeList roots = fold(data);

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

}  // namespace
