// Disturbances from outside the engine: signals, a clock that jumps, streams that fail, input in
// pieces, `go` and `stop` in any order.

#include "testing/readUntil.h"
#include "testing/uciTalk.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <gtest/gtest.h>
#include <iostream>
#include <random>

namespace {

const std::string BUSY = "6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1";
const std::string QUEENS = "qqqqqqqk/qqqqqqqq/8/8/8/8/QQQQQQQQ/QQQQQQQK w - - 0 1";

// ---- Signals, and time that is lost ----

TEST(Outside, SignalsInterruptNothing) {
    UciTalk talk;
    talk.hold("ready | signals 30 | > uci | greet 192 | > position fen " + BUSY +
              " | > go movetime 600 | signals 60 | answer * 400-1200 | reported | legal " + BUSY +
              " | > go infinite | signals 60 | think 100 | > stop | answer * 0-350");
}

TEST(Outside, MachineIsSuspended) {
    UciTalk talk;
    // The time passed nevertheless; the search ends at its next poll.
    talk.hold("> position fen " + QUEENS +
              " | > go movetime 500 | pause 50 | halt 700 | answer * 750-950");
    talk.hold("halt 300 | > go movetime 250 | answer * 190-450");
    talk.hold("> go infinite | think 50 | halt 300 | think 150 | > stop | answer * 0-350");
}

constexpr UciProcess::Timeout SOON{5000};

#ifdef KESTRAN_JUMPING_CLOCK
TEST(Outside, TimeOfDayMayJump) {
    UciProcess process("/usr/bin/env",
                       {"LD_PRELOAD=" KESTRAN_JUMPING_CLOCK, KESTRAN_BINARY_DIR "/kestran"});
    process.sendRaw("position fen " + QUEENS + "\nisready\n");
    EXPECT_FALSE(readUntil(process, "readyok", SOON).empty());
    const auto start = std::chrono::steady_clock::now();
    process.send("go movetime 450");
    EXPECT_FALSE(readUntil(process, "bestmove", SOON).empty());
    const auto taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(taken, Millis(390));
    EXPECT_LE(taken, patience(650));
}
#endif

// ---- Streams ----

UciProcess engineWith(const std::string& redirection) {
    return UciProcess("/bin/sh", {"-c", "exec " KESTRAN_BINARY_DIR "/kestran " + redirection});
}

bool hasEndedCleanly(UciProcess& process) {
    const std::optional<UciProcess::End> end = process.waitForEnd(SOON);
    return end && end->exited && end->status == 0;
}

TEST(Outside, StandardErrorMayBeLost) {
    for (const char* redirection : {"2>/dev/full", "2>&-"}) {
        UciProcess process = engineWith(redirection);
        process.sendRaw("position nonsense\nposition fen " + BUSY + "\ngo movetime 150\n");
        EXPECT_FALSE(readUntil(process, "bestmove", SOON).empty()) << redirection;
        process.send("quit");
        EXPECT_TRUE(hasEndedCleanly(process)) << redirection;
    }
}

TEST(Outside, LostStreamsEndTheEngine) {
    for (const char* redirection : {">/dev/full", ">&-", "</dev/null", "<&-", "</"}) {
        UciProcess process = engineWith(redirection);
        process.send("isready");
        EXPECT_TRUE(hasEndedCleanly(process)) << redirection;
        EXPECT_EQ(process.readErrors(), "") << redirection;
    }
}

TEST(Outside, InputComesByteByByte) {
    UciTalk talk;
    for (const char byte :
         "uci\r\nposition startpos moves e2e4 e7e5\nsetoption name Hash value 16\n") {
        talk.hold(std::string(">> ") + byte);
    }
    talk.hold("greet 192 | ready | > uci | greet 15");
}

TEST(Outside, InputComesInOnePieceOf100Mebibytes) {
#ifdef KESTRAN_SLOW_BUILD
    constexpr std::size_t SIZE = 10U << 20U;
#else
    constexpr std::size_t SIZE = 100U << 20U;
#endif
    UciProcess process = engineWith("");
    EXPECT_TRUE(process.sendRaw("uci" + std::string(SIZE, ' ') + "\nisready\n"));
    EXPECT_EQ(readUntil(process, "readyok", SOON * 4).size(), 5U);
    process.send("quit");
    EXPECT_TRUE(hasEndedCleanly(process));
}

// ---- `go` and `stop` in random order ----

// Sends them and knows the required answers. A `stop` ends the search that polls for it next, now
// or later; several before that poll count as one.
class RandomTalk {
public:
    explicit RandomTalk(unsigned seed) : random(seed) {}

    void act() {
        const int chance = static_cast<int>(random() % 100);
        if (chance < 45) {
            go(ONE_MOVE[random() % ONE_MOVE.size()], "movetime 5000", {.looks = false});
        } else if (chance < 53) {
            go({BUSY.c_str(), "*"}, "movetime 1", {});
        } else if (chance < 63) {
            go(ONE_MOVE[random() % ONE_MOVE.size()], "infinite", {.isEndless = true});
            if (chance < 57 && !waiting.empty()) {
                read();
                talk.hold("think 150");
            }
        } else if (chance < 85) {
            stop();
        } else if (chance < 90) {
            stopOften();
        } else {
            read();
            talk.hold(chance < 95 || waiting.empty() ? "ready" : "ready | think 120");
        }
        if (due.size() > 8) {
            read();
        }
    }

    // Each of the rest is answered once.
    void finish() {
        while (!waiting.empty()) {
            stop();
        }
        read();
        talk.hold("silent 250");
        EXPECT_EQ(answers, goes);
        EXPECT_GT(goes, 0);
        std::cout << goes << " times go, " << stops << " times stop\n";
    }

private:
    struct Place {
        const char* fen;
        const char* answer;
    };
    static constexpr std::array ONE_MOVE = {Place{"8/8/8/8/8/8/8/K1k5 w - - 0 1", "a1a2"},
                                            Place{"8/8/8/8/8/8/8/5k1K w - - 0 1", "h1h2"},
                                            Place{"k1K5/8/8/8/8/8/8/8 b - - 0 1", "a8a7"},
                                            Place{"5K1k/8/8/8/8/8/8/8 b - - 0 1", "h8h7"}};

    struct Go {
        bool looks = true; // for a `stop`, at least once
        bool isEndless = false;
        std::string answer{};
    };

    void go(const Place& place, const std::string& words, Go kind) {
        talk.say(std::string("position fen ") + place.fen);
        talk.say("go " + words);
        kind.answer = place.answer;
        waiting.push_back(kind);
        ++goes;
        settle();
    }

    void stop() {
        // It may come before or after the poll of such a search.
        if (std::ranges::any_of(due, &Go::looks)) {
            read();
        }
        talk.say("stop");
        ++stops;
        isStopped = true;
        settle();
    }

    // Only the first may have been consumed, so a further search consumes the last.
    void stopOften() {
        if (std::ranges::count_if(waiting, &Go::isEndless) == 1) {
            stop();
            talk.hold("> stop | > stop");
            stops += 2;
            read();
            isStopped = true;
            go({BUSY.c_str(), "*"}, "movetime 1", {});
            read();
        }
    }

    // Moves what must be answered by now.
    void settle() {
        while (!waiting.empty() && (!waiting.front().isEndless || isStopped)) {
            isStopped = isStopped && !waiting.front().looks;
            due.push_back(waiting.front());
            waiting.pop_front();
        }
    }

    void read() {
        for (; !due.empty(); due.pop_front()) {
            talk.expectAnswer(due.front().answer, 0, 3000);
            ++answers;
        }
    }

    std::mt19937 random;
    UciTalk talk;
    std::deque<Go> waiting; // after a search without limit
    std::deque<Go> due;     // not read yet
    bool isStopped = false; // by a `stop` that no search has seen
    int goes = 0;
    int stops = 0;
    int answers = 0;
};

// KESTRAN_RANDOM_COMMANDS=42000 takes a quarter of an hour; see docs/reliability.md.
TEST(Outside, GoAndStopInRandomOrder) {
    const char* wish = std::getenv("KESTRAN_RANDOM_COMMANDS");
    const int commands = wish == nullptr ? 150 : std::atoi(wish);
    RandomTalk talk(1);
    for (int i = 0; i < commands && !HasFailure(); ++i) {
        talk.act();
    }
    talk.finish();
}

} // namespace
