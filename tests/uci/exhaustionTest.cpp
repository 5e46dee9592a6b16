// The engine without memory for the table or anything else, and without threads.

#include "search/engineParameters.h"
#include "testing/frontEndSupport.h"
#include "testing/readUntil.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <optional>
#include <set>
#include <sstream>
#include <system_error>
#include <tuple>

namespace {

int creations = 0;     // of threads, since the last reset
unsigned failures = 0; // the creations that fail, as bits

} // namespace

// The linker redirects every start of a std::thread in this program to scarceStart(). The arguments
// are the object, a pointer to what it runs, and a function that is not needed.
#define START_THREAD                                                                               \
    "_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE"
void realStart(void* thread, void* state, void (*depend)()) __asm__("__real_" START_THREAD);
void scarceStart(void* thread, void* state, void (*depend)()) __asm__("__wrap_" START_THREAD);
void scarceStart(void* thread, void* state, void (*depend)()) {
    if ((failures >> creations++ & 1U) != 0) {
        throw std::system_error(EAGAIN, std::generic_category());
    }
    realStart(thread, state, depend);
}

namespace {

// ---- No memory ----

constexpr UciProcess::Timeout PATIENCE{5000};
const std::string ENGINE = KESTRAN_BINARY_DIR "/kestran";
const std::string BUSY = "position fen 6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1";

// Searches for a move in no time. Returns what the engine sends.
std::vector<std::string> searchBriefly(UciProcess& process) {
    process.send(BUSY + "\ngo movetime 0");
    return readUntil(process, "bestmove", PATIENCE);
}

// The engine's process gets at most 400 MiB, including the table of 192 MiB.
TEST(Memory, MayBeTooLittleForATable) {
#ifdef KESTRAN_SLOW_BUILD
    GTEST_SKIP() << "a sanitizer needs more memory than there is";
#endif
    UciProcess process("/bin/bash", {"-c", "ulimit -v 409600; exec \"$0\"", ENGINE});
    // Plays a move and returns the size of the table after it.
    const auto sizeAfterAMove = [&process] {
        EXPECT_GE(searchBriefly(process).size(), 3U) << "no report";
        process.send("uci");
        const std::vector<std::string> lines = readUntil(process, "option", PATIENCE);
        return lines.empty() ? "" : lines.back().substr(lines.back().rfind("default"));
    };
    EXPECT_EQ(sizeAfterAMove(), "default 192 ");
    const std::string rejection = "Hash rejected: not enough memory, searching without a table\n";
    std::string rejections;
    for (const std::string size :
         {"512", "513", "24000", "1000000", "2147483647", "99999999999999999999", "-1"}) {
        process.send("setoption name Hash value " + size);
        EXPECT_EQ(sizeAfterAMove(), "default 0 ") << size;
        EXPECT_EQ(sizeAfterAMove(), "default 0 ") << size << ", without a second rejection";
        rejections += size == "-1" ? "" : rejection;
        process.send("setoption name Hash value 64");
        EXPECT_EQ(sizeAfterAMove(), "default 63 ") << size;
    }
    process.send("quit");
    const auto end = process.waitForEnd(PATIENCE);
    EXPECT_TRUE(end && end->exited && end->status == 0);
    EXPECT_EQ(process.readErrors(), rejections);
}

// The memory of earlier tables is freed.
TEST(Memory, GoesBackToTheSystem) {
#ifdef KESTRAN_SLOW_BUILD
    GTEST_SKIP() << "a sanitizer keeps what is freed";
#endif
    UciProcess process(ENGINE);
    const auto residentWith = [&process](int hash) {
        process.send("setoption name Hash value " + std::to_string(hash));
        EXPECT_FALSE(searchBriefly(process).empty());
        return process.getResidentKib();
    };
    const auto before = residentWith(1);
    for (int round = 0; round < 4; ++round) {
        for (const int hash : {16, 1, 30, 192}) {
            residentWith(hash);
        }
    }
    EXPECT_LT(residentWith(1), before + 4096);
}

#ifdef KESTRAN_SCARCE_MEMORY

struct ShortTalk {
    UciProcess::End end;
    bool isAnswered; // all of it
    std::string errors;
};

// A whole conversation, in which one allocation fails, or none with number 0.
ShortTalk talkWithFailing(long allocation) {
    UciProcess process("/usr/bin/env", {"LD_PRELOAD=" KESTRAN_SCARCE_MEMORY,
                                        "KESTRAN_FAILING_ALLOCATION=" + std::to_string(allocation),
                                        KESTRAN_BINARY_DIR "/kestran"});
    process.sendRaw("uci\nsetoption name Hash value 16\n" + BUSY +
                    " moves c3c4\ngo movetime 150\nisready\n");
    // The order of the last two answers depends on whether the go thread could be created.
    std::set<std::string> awaited = {"uciok", "readyok", "bestmove"};
    while (!awaited.empty()) {
        const std::optional<std::string> line = process.readLine(PATIENCE);
        if (!line) {
            break;
        }
        awaited.erase(line->substr(0, line->find(' ')));
    }
    process.send("position fen");
    process.send("quit");
    const std::optional<UciProcess::End> end = process.waitForEnd(PATIENCE);
    return {end.value_or(UciProcess::End{false, 0}), awaited.empty(), process.readErrors()};
}

// Lets every 61st allocation fail, one per process. Some of the first are the loader's, most others
// the book's. KESTRAN_ALLOCATION_STEP=1 skips none; see docs/reliability.md.
TEST(Memory, MayEndAtAnyAllocation) {
    const std::string errors = talkWithFailing(0).errors;
    const std::string mark = "allocations: ";
    ASSERT_NE(errors.find(mark), std::string::npos) << errors;
    const long count = std::stol(errors.substr(errors.find(mark) + mark.size()));
    ASSERT_GT(count, 1000);
    const char* wish = std::getenv("KESTRAN_ALLOCATION_STEP");
    const long step = wish == nullptr ? 61 : std::max(std::atol(wish), 1L);
    int ended = 0;
    for (long allocation = 1; allocation <= count; allocation += step) {
        const auto [end, isAnswered, text] = talkWithFailing(allocation);
        const bool hasEnded =
            end.exited && end.status == 1 && text.ends_with("kestran: out of memory\n");
        const bool wentOn = end.exited && end.status == 0 && isAnswered;
        EXPECT_TRUE(hasEnded || wentOn) << "allocation " << allocation << ": status " << end.status
                                        << (end.exited ? ", " : " (signal), ") << text;
        ended += hasEnded ? 1 : 0;
    }
    EXPECT_GT(ended, 10);
    std::cout << count << " allocations, " << ended << " ends\n";
}

#endif

// ---- No thread ----

// What an engine sends, but for its reports, to a whole conversation. The creations of threads
// whose bits are set fail.
std::string talk(const std::string& conversation, unsigned failingCreations) {
    creations = 0;
    failures = failingCreations;
    EngineConfig config;
    config.hashTableSize = 1024;
    UciEngine uciEngine(config);
    std::istringstream output(outputOf(uciEngine, conversation));
    failures = 0;
    std::string lines;
    for (std::string line; std::getline(output, line);) {
        lines += line.find("score") == std::string::npos ? line + '\n' : "";
    }
    return lines;
}

// Here only a search finds the move.
const std::string MATE_IN_ONE = "position fen k7/8/1K6/8/8/8/8/7R w - - 0 1\n";

// The first `go` makes two threads: its own, and that of the search. Without the first, the loop
// searches, and `isready` is answered after that; without the second, there is no move.
TEST(NoThread, EachGoIsAnswered) {
    const std::tuple<const char*, unsigned, const char*, int> cases[] = {
        // words, creations that fail, lines, creations
        {"go movetime 0\nisready\n", 0b1, "info pv h1h8\nbestmove h1h8\nreadyok\n", 2},
        {"go movetime 0\n", 0b10, "info pv\nbestmove (none)\n", 2},
        {"go infinite\ngo movetime 0\n", 0b11,
         "info pv\nbestmove (none)\ninfo pv h1h8\nbestmove h1h8\n", 4},
        {"go movetime 0\ngo infinite\nquit\n", ~0U,
         "info pv\nbestmove (none)\ninfo pv\nbestmove (none)\n", 4},
    };
    for (const auto& [words, failing, lines, count] : cases) {
        EXPECT_EQ(talk(MATE_IN_ONE + words, failing), lines) << words;
        EXPECT_EQ(creations, count) << words;
    }
}

} // namespace
