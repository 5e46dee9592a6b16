#include "fuzz/conversation.h"

#include "base/clock.h"
#include "base/process.h"
#include "fuzz/fuzz.h"
#include "search/engineParameters.h"
#include "search/idaVariant.h"
#include "uci/uciEngine.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <thread>
#include <vector>

namespace {

// Of one conversation. An endless search takes long to see that it is to stop.
constexpr int MOST_GOES = 2;
constexpr int MOST_ENDLESS_GOES = 1;
constexpr Milliseconds LONGEST_STEP = Milliseconds{1} << 32;

std::atomic<Milliseconds> now = 0;
std::atomic<Milliseconds> step = 100;

struct Conversation {
    std::string text;
    int goes = 0; // that must be answered, or may if it ends with `quit`
    bool isQuit = false;
};

// The conversation up to `quit`, without the searches beyond the most.
Conversation conversationOf(const FrontEnd& frontEnd, const std::string& text) {
    Conversation conversation;
    int endlessGoes = 0;
    std::istringstream stream(text);
    for (std::string line; !conversation.isQuit && std::getline(stream, line);) {
        const std::vector<std::string> words = UciEngine::splitString(line);
        conversation.isQuit = words == std::vector<std::string>{"quit"};
        if (!words.empty() && frontEnd.isTooLong(words)) {
            continue;
        }
        if (!words.empty() && words[0] == "go" && frontEnd.isAnswered(words)) {
            const bool isEndless = frontEnd.isEndless(words);
            if (conversation.goes == MOST_GOES || (isEndless && endlessGoes == MOST_ENDLESS_GOES)) {
                continue;
            }
            ++conversation.goes;
            endlessGoes += isEndless ? 1 : 0;
        }
        conversation.text += line + '\n';
    }
    return conversation;
}

void requireAnswers(const FrontEnd& frontEnd, const Conversation& conversation,
                    const std::string& output) {
    int answers = 0;
    std::istringstream stream(output);
    for (std::string line; std::getline(stream, line);) {
        answers += line.starts_with("bestmove ") ? 1 : 0;
        require(line.starts_with("bestmove ") || frontEnd.isOwnLine(line) ||
                    line.starts_with("id ") || line == "uciok" || line == "readyok",
                "no line of the protocol: " + line);
    }
    require(conversation.isQuit ? answers <= conversation.goes : answers == conversation.goes,
            "not one bestmove a go");
}

// What is written to standard output while such an object lives.
class Output {
public:
    Output() : old(stdout) { stdout = open_memstream(&text, &size); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output() {
        std::fclose(stdout);
        std::free(text);
        stdout = old;
    }
    std::string take() {
        std::fflush(stdout);
        return {text, size};
    }

private:
    std::FILE* old;
    char* text = nullptr;
    std::size_t size = 0;
};

} // namespace

// The linker puts these in the place of functions of the engine, whose names they bear
// as the compiler writes them.

Milliseconds runningClock() __asm__("__wrap__Z17clockMillisecondsv");
Milliseconds runningClock() {
    return now;
}

void shortSleep(Milliseconds duration) __asm__("__wrap__Z17sleepMillisecondsl");
void shortSleep(Milliseconds /*duration*/) {
    std::this_thread::sleep_for(std::chrono::microseconds(100));
    now += step;
    step = std::min(2 * step, LONGEST_STEP);
}

void realWait(IdaVariant* variant,
              Milliseconds duration) __asm__("__real__ZN10IdaVariant13waitToBeWokenEl");
void shortWait(IdaVariant* variant,
               Milliseconds duration) __asm__("__wrap__ZN10IdaVariant13waitToBeWokenEl");
void shortWait(IdaVariant* variant, Milliseconds duration) {
    shortSleep(duration);
    realWait(variant, 0);
}

void forbiddenEnd() __asm__("__wrap__Z10endProcessv");
void forbiddenEnd() {
    require(false, "the process ends itself");
}

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    std::cerr.setstate(std::ios::badbit); // hides the messages about rejected texts
    return 0;
}

void converse(const FrontEnd& frontEnd, const std::string& text) {
    const Conversation conversation = conversationOf(frontEnd, text);
    step = 100;
    std::istringstream input(conversation.text);
    std::streambuf* oldInput = std::cin.rdbuf(input.rdbuf());
    std::cin.clear();
    Output output;
    {
        EngineConfig config;
        config.hashTableSize = 1024;
        UciEngine uciEngine(config, frontEnd.makePolicy());
        uciEngine.start();
    }
    std::cin.rdbuf(oldInput);
    requireAnswers(frontEnd, conversation, output.take());
}
