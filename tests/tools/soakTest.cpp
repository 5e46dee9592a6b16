// The long run itself: a healthy engine gets through it, and one that does wrong does not.

#include "kestran-soak/soak.h"
#include "support/uciProcess.h"
#include "testing/toolSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>

namespace {

const std::string ENGINE = KESTRAN_BINARY_DIR "/kestran";

// A game of an engine whose words go through a filter of the shell.
SoakReport playFiltered(const std::string& filter) {
    return runSoak({.engine = "/bin/sh",
                    .arguments = {"-c", ENGINE + " | " + filter},
                    .plies = 6,
                    .records = TestFolder().path});
}

TEST(Soak, HealthyEngine) {
    const SoakReport report = runSoak({.engine = ENGINE, .plies = 40});
    EXPECT_EQ(report.games, 1);
    EXPECT_GT(report.plies, 0);
    EXPECT_EQ(report.illegalMoves, std::vector<std::string>());
    EXPECT_EQ(report.protocolFaults, std::vector<std::string>());
    ASSERT_EQ(report.memory.size(), 1U);
    EXPECT_GT(report.memory[0].first, 1000);
}

TEST(Soak, GrowingMemoryIsAFault) {
    SoakReport report;
    report.memory = {{.first = 9000, .last = 9500}};
    EXPECT_TRUE(report.isClean());
    report.memory = {{.first = 9000, .last = 9500}, {.first = 9000, .last = 19000}};
    EXPECT_FALSE(report.isClean());
}

TEST(Soak, EngineThatIsNotThere) {
    EXPECT_THROW(runSoak({.engine = ENGINE + "-not", .games = 3, .jobs = 2}), CannotStart);
}

TEST(Soak, StopsWhenItIsToldTo) {
    int asked = 0;
    const SoakReport report =
        runSoak({.engine = ENGINE, .games = 5, .isStopWanted = [&asked] { return ++asked > 3; }});
    EXPECT_EQ(report.games, 1);
    EXPECT_EQ(report.unfinished, 1);
    EXPECT_TRUE(report.isClean());
    ASSERT_EQ(report.record.size(), 1U);
    EXPECT_EQ(report.record[0].termination, "unterminated");
}

TEST(Soak, IllegalMoveLeavesItsGameInAFile) {
    const TestFolder folder;
    const std::string filter = R"(sed -u '/score/!s/^\(info pv\|bestmove\) .*/\1 a1a1/')";
    const SoakReport report = runSoak({.engine = "/bin/sh",
                                       .arguments = {"-c", ENGINE + " | " + filter},
                                       .first = 3,
                                       .records = folder.path + "/new"});
    ASSERT_EQ(report.illegalMoves.size(), 1U);
    EXPECT_EQ(report.protocolFaults, std::vector<std::string>());
    EXPECT_FALSE(report.isClean());
    const std::string name = folder.path + "/new/soak-seed1-game3.txt";
    EXPECT_TRUE(report.illegalMoves[0].ends_with("all of it in " + name)) << report.illegalMoves[0];
    std::ostringstream text;
    text << std::ifstream(name).rdbuf();
    for (const char* part :
         {"^Fault: game 3, ply 0, .*: a1a1\n", "\nAgain: tools/soak 1 --seed 1 --first 3\n",
          "\nStart: \\S+ [wb] .* 1\n", "\nMoves:\n", "\nPosition: \\S+ [wb] \\S+ \\S+ \\d+\n",
          "\n +\\d+ > uci\n", "\n +\\d+ > position fen .*\n", "\n +\\d+ < bestmove a1a1\n"}) {
        EXPECT_TRUE(std::regex_search(text.str(), std::regex(part))) << part << text.str();
    }
}

TEST(Soak, GamesInPgn) {
    const PlayedGame game = {.number = 7,
                             .seed = 2,
                             .fen = "6k1/5ppp/8/8/8/8/1P6/R5K1 b - - 3 1",
                             .moves = {"h7h6", "a1a8", "g8h7", "b2b4"},
                             .termination = "abandoned",
                             .timeControl = "40/5",
                             .fault = "said {\"x\"}, which is a text that is longer than a line"};
    const std::string text = toPgn(game);
    EXPECT_EQ(std::regex_replace(text, std::regex("20\\d\\d\\.\\d\\d\\.\\d\\d"), "today"),
              "[Event \"Soak, seed 2\"]\n[Site \"?\"]\n[Date \"today\"]\n[Round \"7\"]\n"
              "[White \"Kestran\"]\n[Black \"Kestran\"]\n[Result \"*\"]\n"
              "[Termination \"abandoned\"]\n[TimeControl \"40/5\"]\n[SetUp \"1\"]\n"
              "[FEN \"6k1/5ppp/8/8/8/8/1P6/R5K1 b - - 3 1\"]\n\n"
              "1... h6 2. Ra8+ Kh7 3. b4 {said \"x\", which is a text that is longer than a\n"
              "line} *\n\n");
}

// What it refuses before it plays.
TEST(Soak, RefusesWhatMakesNoSense) {
    for (const auto& [words, reason] : std::vector<std::pair<std::string, std::string>>{
             {"1 --engine " + ENGINE + "-not", "cannot start "},
             {"1 --engine /bin/true --pgn /no/games", "\"/no/games\" cannot be written"},
             {"1 --engine /bin/true --pgn /", "\"/\" cannot be written"},
             {"0 --engine /bin/true", "GAMES is a whole number from 1"},
             {"--engine /bin/true", "how many games"},
         }) {
        UciProcess soak("/bin/sh", {"-c", "exec \"$0\" $1", ENGINE + "-soak", words});
        const auto end = soak.waitForEnd(UciProcess::Timeout(20000));
        ASSERT_TRUE(end && end->exited) << words;
        EXPECT_EQ(end->status, 2) << words;
        EXPECT_NE(soak.readErrors().find(reason), std::string::npos) << soak.readErrors();
    }
}

TEST(Soak, LateAnswer) {
    const SoakReport report =
        playFiltered("while IFS= read -r line; do case \"$line\" in bestmove*) sleep 0.4;; esac;"
                     " printf '%s\\n' \"$line\"; done");
    EXPECT_EQ(report.timeLosses.size(), 1U);
    EXPECT_EQ(report.whiteWins + report.blackWins, 1);
    EXPECT_FALSE(report.isClean());
}

TEST(Soak, ProtocolFaults) {
    for (const char* filter : {
             "sed -u '/^bestmove/p'",                  // two answers
             "sed -u '/^info pv/{/score/!d}'",         // no closing line
             R"(sed -u 's/\( nps .*\) $/\1/')",        // a report without its last blank
             "sed -u '/score/s/pv [^ ]*/& a1a1/'",     // a line that is not legal
             "sed -u 's/^bestmove .*/bestmove a1a1/'", // another answer than the closing line
             R"(sed -u 's/^readyok/&\n/')",            // an unknown line
             "sed -u 's/Hash/hash/'",                  // another greeting
             "head -n 9",                              // an early end
         }) {
        const SoakReport report = playFiltered(filter);
        EXPECT_EQ(report.protocolFaults.size(), 1U) << filter;
        EXPECT_EQ(report.illegalMoves, std::vector<std::string>()) << filter;
        EXPECT_FALSE(report.isClean()) << filter;
    }
}

} // namespace
