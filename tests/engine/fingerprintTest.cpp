// Searches that are known line by line: whoever changes what the search does sees it here.
#include "testing/engineSupport.h"

#include <gtest/gtest.h>

namespace {

constexpr int TABLE_SIZE = 1398101;

struct Block {
    std::string game; // as in a position command
    std::vector<std::string> passes;
    std::vector<std::string> infos;
};

std::vector<Block> readBlocks() {
    std::ifstream file(KESTRAN_TEST_DATA "/fingerprint.txt");
    std::vector<Block> blocks;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("position ")) {
            blocks.push_back({line.substr(9), {}, {}});
        } else if (line.starts_with("pass ")) {
            blocks.back().passes.push_back(line);
        } else if (line.starts_with("info ")) {
            blocks.back().infos.push_back(line);
        }
    }
    return blocks;
}

void setUpGame(Engine& engine, const std::string& game) {
    if (!game.starts_with("startpos")) {
        ASSERT_EQ(engine.init(game), "");
        return;
    }
    for (const std::string& word : splitString(game)) { // skips what is not a move
        engine.doMoveLongAlgebraic(word);
    }
}

// A pass in the words of the data.
std::string textOf(const SearchPass& pass, const NodeCounter& nodes) {
    const char* const results[] = {"FAILLOW", "FAILHIGH", "OK", "OK_FINISH"};
    std::ostringstream text;
    text << "pass " << pass.depth << " result " << results[pass.result.value()] << " alpha "
         << pass.window.firstAlpha << " beta " << pass.window.firstBeta << " eval "
         << pass.line.evaluation << " nodes " << pass.nodes << " treenodes "
         << nodes.getSearchedTreeNodes() << " pv" << movesTextOf(pass.line);
    return text.str();
}

// A report in the words of the data.
std::string textOf(const InfoStruct& info) {
    std::ostringstream text;
    text << "info pv" << movesTextOf(info.pv) << " score cp " << info.pv.evaluation / 10
         << " depth " << info.depth << " seldepth " << info.selDepth << " nodes "
         << info.nodesSearched;
    return text.str();
}

TEST(Fingerprint, EveryPassIsAsItWas) {
    std::size_t passes = 0;
    for (const Block& block : readBlocks()) {
        SCOPED_TRACE(block.game);
        const auto config = makeConfig(TABLE_SIZE);
        Engine game(config);
        setUpGame(game, block.game);
        Ida ida(config);
        auto expected = block.passes.begin();
        ida.deepen(requestFor(game.getGame(), NO_BOOK), nullptr, [&](const SearchPass& pass) {
            EXPECT_EQ(textOf(pass, ida.getTreeGenerator().state.nodes), *expected);
            ++passes;
            return ++expected != block.passes.end() && !HasFailure();
        });
        EXPECT_EQ(expected, block.passes.end());
    }
    EXPECT_EQ(passes, 110U);
}

TEST(Fingerprint, TimedSearchReportsItsPassesAndPublishesOneOfThem) {
    std::size_t infos = 0;
    for (const Block& block : readBlocks()) {
        SCOPED_TRACE(block.game);
        const auto config = makeConfig(TABLE_SIZE);
        Reports reports;
        reports.wanted = block.infos.size();
        Engine engine(config);
        engine.setInfoListener(&reports);
        engine.setStopListener(&reports);
        setUpGame(engine, block.game);
        const Variant published = searchFor(engine, 0, true).line;
        engine.joinThread();
        // The search went on until it was stopped.
        ASSERT_GE(reports.infos.size(), block.infos.size());
        if (!reports.lines.back().empty()) {
            const auto from = reports.lines.begin() + static_cast<long>(block.infos.size()) - 1;
            EXPECT_NE(std::find(from, reports.lines.end(), movesTextOf(published)),
                      reports.lines.end());
        }
        for (std::size_t i = 0; i < block.infos.size(); ++i) {
            EXPECT_EQ(textOf(reports.infos[i]), block.infos[i]);
        }
        infos += block.infos.size();
    }
    EXPECT_EQ(infos, 100U);
}

} // namespace
