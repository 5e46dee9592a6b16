// What the engine does at the end of its means: no memory for the table, no thread to be
// had, and positions at the edge of what it can take, under every kind of `go`.

#include "base/engineParameters.h"
#include "support/naiveRules.h"
#include "support/uciProcess.h"
#include "testing/uciTalk.h"
#include "uci/uciEngine.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <iostream>
#include <pthread.h>
#include <sstream>

namespace {

int creations = 0;     // of threads, since the last reset
unsigned failures = 0; // the creations that fail, as bits

} // namespace

// The linker leads every call of pthread_create() in this program here.
int realCreate(pthread_t* handle, const pthread_attr_t* attributes, void* (*entry)(void*),
               void* argument) __asm__("__real_pthread_create");
int scarceCreate(pthread_t* handle, const pthread_attr_t* attributes, void* (*entry)(void*),
                 void* argument) __asm__("__wrap_pthread_create");
int scarceCreate(pthread_t* handle, const pthread_attr_t* attributes, void* (*entry)(void*),
                 void* argument) {
    const bool fails = (failures >> creations++ & 1U) != 0;
    return fails ? EAGAIN : realCreate(handle, attributes, entry, argument);
}

namespace {

// ---- No memory ----

class MemoryLimit : public testing::TestWithParam<std::string> {};

// The engine's process gets no more than 400 MiB, of which the table of 192 is a part.
TEST_P(MemoryLimit, GoesOnWithoutATable) {
#ifdef KESTRAN_SLOW_BUILD
    GTEST_SKIP() << "a sanitizer needs more memory than there is";
#endif
    UciProcess process("/bin/bash",
                       {"-c", "ulimit -v 409600; exec " KESTRAN_BINARY_DIR "/kestran"});
    const auto ask = [&](const std::string& line, const std::string& last) {
        process.send(line);
        const std::vector<std::string> lines = process.readUntil(last, Millis(5000));
        return lines.empty() ? "" : lines.back();
    };
    const auto playAMove = [&] {
        process.send("position fen 6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1");
        process.send("go movetime 0");
        const std::vector<std::string> lines = process.readUntil("bestmove", Millis(5000));
        ASSERT_GE(lines.size(), 3U) << "no report"; // so it has searched
        EXPECT_TRUE(lines.back().starts_with("bestmove ")) << lines.back();
    };
    const std::string sizeOfTable = "option name Hash type spin min 0 max 512 default ";
    EXPECT_EQ(ask("uci", "option"), sizeOfTable + "192 ");
    playAMove();
    EXPECT_EQ(ask("uci", "option"), sizeOfTable + "192 ");

    process.send("setoption name Hash value " + GetParam());
    playAMove();
    EXPECT_EQ(ask("uci", "option"), sizeOfTable + "0 ") << "there was memory for it";

    process.send("setoption name Hash value 64");
    playAMove();
    EXPECT_EQ(ask("uci", "option"), sizeOfTable + "63 ");
    process.send("quit");
    const auto end = process.waitForEnd(Millis(5000));
    EXPECT_TRUE(end && end->exited && end->status == 0);
    EXPECT_EQ(process.readErrors(), "");
}

INSTANTIATE_TEST_SUITE_P(, MemoryLimit,
                         testing::Values("512", "513", "24000", "1000000", "2147483647",
                                         "99999999999999999999", "-1"));

// Tables of any size that a game had leave nothing behind.
TEST(Memory, GoesBackToTheSystem) {
#ifdef KESTRAN_SLOW_BUILD
    GTEST_SKIP() << "a sanitizer keeps what is freed";
#endif
    UciProcess process(KESTRAN_BINARY_DIR "/kestran");
    const auto residentWith = [&process](int hash) {
        process.send("setoption name Hash value " + std::to_string(hash));
        process.send("position fen 6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1");
        process.send("go movetime 0");
        EXPECT_FALSE(process.readUntil("bestmove", Millis(5000)).empty());
        return process.getResidentKib();
    };
    const long before = residentWith(1);
    for (int round = 0; round < 4; ++round) {
        residentWith(16);
        residentWith(1);
        residentWith(30);
        residentWith(192);
    }
    EXPECT_LT(residentWith(1), before + 4096);
}

// ---- No thread ----

// What an engine answers to a whole conversation, in which the creations of threads
// whose bits are set fail.
std::vector<std::string> talk(const std::string& conversation, unsigned failingCreations) {
    creations = 0;
    failures = failingCreations;
    std::istringstream input(conversation);
    std::streambuf* oldInput = std::cin.rdbuf(input.rdbuf());
    std::cin.clear();
    testing::internal::CaptureStdout();
    {
        EngineConfig config;
        config.hashTableSize = 1024;
        UciEngine uciEngine(config);
        uciEngine.start();
    }
    std::istringstream output(testing::internal::GetCapturedStdout());
    std::cin.rdbuf(oldInput);
    failures = 0;
    std::vector<std::string> lines;
    for (std::string line; std::getline(output, line);) {
        if (line.find("score") == std::string::npos) {
            lines.push_back(line);
        }
    }
    return lines;
}

// Here only a search finds the move.
const std::string MATE_IN_ONE = "position fen k7/8/1K6/8/8/8/8/7R w - - 0 1\n";

// The first `go` makes two threads: its own, and that of the search.
TEST(NoThread, GoThreadFailsAndTheLoopSearches) {
    // `isready` is answered behind the search that holds the loop up.
    EXPECT_EQ(talk(MATE_IN_ONE + "go movetime 0\nisready\n", 0b1),
              (std::vector<std::string>{"info pv h1h8", "bestmove h1h8", "readyok"}));
    EXPECT_EQ(creations, 2);
}

TEST(NoThread, SearchThreadFailsAndThereIsNoMove) {
    EXPECT_EQ(talk(MATE_IN_ONE + "go movetime 0\n", 0b10),
              (std::vector<std::string>{"info pv", "bestmove (none)"}));
    EXPECT_EQ(creations, 2);
}

TEST(NoThread, BothFailAndTheNextGoWorks) {
    EXPECT_EQ(
        talk(MATE_IN_ONE + "go infinite\ngo movetime 0\n", 0b11),
        (std::vector<std::string>{"info pv", "bestmove (none)", "info pv h1h8", "bestmove h1h8"}));
    EXPECT_EQ(creations, 4);
}

TEST(NoThread, NeverAny) {
    EXPECT_EQ(
        talk(MATE_IN_ONE + "go movetime 0\ngo infinite\nquit\n", ~0U),
        (std::vector<std::string>{"info pv", "bestmove (none)", "info pv", "bestmove (none)"}));
}

// ---- Edges of the board, under every kind of go ----

struct Edge {
    const char* name;
    const char* fen;
    const char* moves; // a pattern of the answer
};

void PrintTo(const Edge& edge, std::ostream* stream) {
    *stream << edge.name;
}

const std::vector<Edge> EDGES = {
    {"queens", "qqqqqqqk/qqqqqqqq/8/8/8/8/QQQQQQQQ/QQQQQQQK w - - 0 1", "*"},
    {"moves218", "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1", "*"},
    {"bareKings", "8/8/3k4/8/8/3K4/8/8 w - - 0 1", "*"},
    {"lockedPawns", "8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - - 0 1", "*"},
    {"pawnBeforeKing", "4k3/4P3/4K3/8/8/8/8/8 w - - 0 1", "*"},
    {"clock99", "7k/8/8/8/8/8/R7/K7 w - - 99 80", "*"},
    {"clock99Mate", "7k/8/6K1/8/8/8/8/R7 w - - 99 80", "*"},
    {"clock100", "7k/8/8/8/8/8/R7/K7 w - - 100 80", "*"},
    {"clock100Black", "7k/8/8/8/8/8/R7/K7 b - - 100 80", "*"},
    {"mate", "R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", "\\(none\\)"},
    {"mateAtClock100", "R5k1/5ppp/8/8/8/8/8/6K1 b - - 100 1", "\\(none\\)"},
    {"stalemate", "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", "\\(none\\)"},
};

class EdgePosition : public testing::TestWithParam<Edge> {};

TEST_P(EdgePosition, IsAnsweredUnderEveryGo) {
    const Edge& edge = GetParam();
    UciTalk engine;
    engine.say("position fen " + std::string(edge.fen));
    for (const char* go :
         {"depth 5", "nodes 1", "movetime 0", "movetime 250", "movetime -1", "wtime 1 btime 1",
          "wtime 250 btime 250 movestogo 1", "wtime 4000 btime 4000 winc 50 binc 50"}) {
        engine.say(std::string("go ") + go);
        engine.expectAnswer(edge.moves, 0, 2000);
        engine.expectLegal(NaiveBoard(edge.fen));
    }
    engine.hold(std::string("> go infinite | think 150 | > stop | answer ") + edge.moves +
                " | legal " + edge.fen);
}

INSTANTIATE_TEST_SUITE_P(, EdgePosition, testing::ValuesIn(EDGES),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
