#include "testing/uciTalk.h"

#include "base/cppIoUtils.h"
#include "support/uciLines.h"
#include "testing/regex.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <sstream>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int REPLY_TIME = 500;
constexpr int END_TIME = 400;
constexpr int ANSWER_TIME = 2000;
// Added to the upper bounds of answers and ends, as the machine may be busy. Medians of several
// answers are held against narrower bounds elsewhere.
constexpr Millis BUSY_TIME{500};
constexpr std::size_t MAX_DEPTH = 20;
constexpr long long SELECTIVE_DEPTH = 10; // of a report, beyond its depth
constexpr long long MAX_CENTIPAWNS = 214748364;

// The lines that ask for a search.
int countGoes(const std::string& bytes) {
    std::istringstream stream(bytes);
    int goes = 0;
    for (std::string line; std::getline(stream, line);) {
        std::replace(line.begin(), line.end(), '\0', ' ');
        const std::vector<std::string> words = splitString(line);
        goes += words.size() > 1 && words[0] == "go" ? 1 : 0;
    }
    return goes;
}

bool isReport(const std::optional<std::string>& line) {
    return line && line->find(" score ") != std::string::npos;
}

// The engine of this build, or the program that KESTRAN_ENGINE names, such as a script that runs
// the engine of another system.
std::string enginePath() {
    const char* wish = std::getenv("KESTRAN_ENGINE");
    return wish == nullptr ? KESTRAN_BINARY_DIR "/kestran" : wish;
}

} // namespace

Millis patience(int millis) {
    static const double factor = [] {
        const char* wish = std::getenv("KESTRAN_TIME_FACTOR");
        return KESTRAN_BUILD_TIME_FACTOR * (wish == nullptr ? 1.0 : std::max(std::atof(wish), 1.0));
    }();
    return Millis(static_cast<long>(millis * factor));
}

UciTalk::UciTalk(const std::vector<std::string>& arguments)
    : process(enginePath(), arguments), lastSaid(Clock::now()) {
}

UciTalk::~UciTalk() {
    if (!hasEnded) {
        EXPECT_FALSE(process.waitForEnd(Millis(0))) << "the engine has ended unasked";
        say("quit");
        expectEnd(END_TIME);
    }
    if (testing::Test::HasFailure()) {
        std::cerr << transcript << process.readErrors();
    }
}

// ---- The script ----

void UciTalk::hold(const std::string& script) {
    const std::string SEPARATOR = " | ";
    for (std::size_t start = 0, end = 0; end < script.size(); start = end + SEPARATOR.size()) {
        end = std::min(script.find(SEPARATOR, start), script.size());
        const std::string step = script.substr(start, end - start);
        const std::size_t blank = std::min(step.find(' '), step.size());
        act(step.substr(0, blank), step.substr(std::min(blank + 1, step.size())));
    }
}

void UciTalk::act(const std::string& verb, const std::string& rest) {
    const int number = std::atoi(rest.c_str());
    const std::map<std::string, std::function<void()>> steps = {
        {">", [&] { sayRaw(rest + '\n'); }},
        {">>", [&] { sayRaw(rest); }},
        {"pause", [&] { std::this_thread::sleep_for(Millis(number)); }},
        {"halt", [&] { halt(number); }},
        {"signals", [&] { sendSignals(number); }},
        {"eof", [&] { process.closeInput(); }},
        {"lose", [&] { process.closeOutput(); }},
        {"term", [&] { kill(process.getPid(), SIGTERM); }},
        {"=", [&] { expectNext(rest); }},
        {"greet", [&] { expectGreeting(number); }},
        {"ready", [&] { expectReady(); }},
        {"reports", [&] { expectReports(number); }},
        {"answer", [&] { expectAnswer(splitString(rest)); }},
        {"reported", [&] { EXPECT_GT(answer.reports, 0U); }},
        {"bare", [&] { EXPECT_EQ(answer.reports, 0U); }},
        {"legal", [&] { expectLegal(plain::Position(rest)); }},
        {"complain", [&] { expectComplaint(); }},
        {"end", [&] { expectEnd(rest.empty() ? END_TIME : number); }},
        {"silent", [&] { expectSilence(number); }},
        {"think", [&] { expectNoAnswer(number); }},
    };
    const auto step = steps.find(verb);
    ASSERT_TRUE(step != steps.end()) << "no such step: " << verb;
    if (verb == "eof" || verb == "lose" || verb == "term") {
        transcript += "> (" + verb + ")\n";
        lastSaid = Clock::now();
    }
    step->second();
}

void UciTalk::halt(int millis) {
    kill(process.getPid(), SIGSTOP);
    std::this_thread::sleep_for(Millis(millis));
    kill(process.getPid(), SIGCONT);
}

void UciTalk::sendSignals(int times) {
    for (int i = 0; i < times; ++i) {
        for (const int signal : {SIGSTOP, SIGWINCH, SIGURG, SIGCHLD, SIGPIPE, SIGCONT}) {
            kill(process.getPid(), signal);
        }
        std::this_thread::sleep_for(Millis(1));
    }
}

void UciTalk::sayRaw(const std::string& bytes) {
    constexpr std::size_t LONGEST = 200;
    transcript += "> " + bytes.substr(0, LONGEST) + (bytes.size() > LONGEST ? "...\n" : "|\n");
    awaited += countGoes(bytes);
    lastSaid = Clock::now();
    process.sendRaw(bytes);
}

// ---- What comes ----

Millis UciTalk::getAge() const {
    return std::chrono::duration_cast<Millis>(Clock::now() - lastSaid);
}

// The next line, held against its form and its place.
std::optional<std::string> UciTalk::hear(Millis timeout) {
    const std::optional<std::string> line = process.readLine(timeout);
    transcript += line ? "< " + *line + "|\n" : "< (nothing)\n";
    const bool isInfo = line && line->starts_with("info");
    if (isInfo || (line && line->starts_with("bestmove "))) {
        EXPECT_GT(awaited, 0) << "belongs to no go: " << *line;
        isInfo ? takeInfo(*line) : takeBestMove(*line);
    }
    return line;
}

void UciTalk::takeInfo(const std::string& line) {
    if (isComplete) {
        answer = {};
        isComplete = false;
    }
    EXPECT_EQ(answer.lines.size(), answer.reports) << "after the closing line: " << line;
    if (const auto closing = matchForm(line, KESTRAN_DIALECT.closing.front())) {
        answer.lines.push_back(closing->moves);
        return;
    }
    const auto report = matchForm(line, KESTRAN_DIALECT.reports.front());
    ASSERT_TRUE(report) << '"' << line << '"';
    answer.lines.push_back(report->moves);
    ++answer.reports;
    const long long score = report->numbers[0];
    const long long depth = report->numbers[1];
    const long long nodes = report->numbers[3];
    const long long time = report->numbers[4];
    EXPECT_EQ(depth, answer.reports) << "depths come one by one: " << line;
    EXPECT_LE(answer.reports, MAX_DEPTH) << line;
    EXPECT_EQ(report->numbers[2], depth + SELECTIVE_DEPTH) << line;
    EXPECT_LE(std::abs(score), MAX_CENTIPAWNS) << line;
    EXPECT_EQ(report->numbers[5], nodes * 1000 / std::max(time, 1LL)) << line;
}

void UciTalk::takeBestMove(const std::string& line) {
    answer.bestMove = line.substr(line.find(' ') + 1);
    ASSERT_TRUE(isMoveText(answer.bestMove) || answer.bestMove == "(none)") << line;
    answer.age = getAge();
    isComplete = true;
    --awaited;
    ASSERT_EQ(answer.lines.size(), answer.reports + 1) << "no closing line before " << line;
    const std::vector<std::string>& closing = answer.lines.back();
    EXPECT_EQ(answer.bestMove, closing.empty() ? "(none)" : closing.front());
}

void UciTalk::expectNext(const std::string& line) {
    EXPECT_EQ(hear(patience(REPLY_TIME)).value_or("(nothing)"), line);
}

void UciTalk::expectGreeting(int hash) {
    expectNext("id name KESTRAN CHESS 1.1.2");
    expectNext("id author Bremo Talvik");
    expectNext("option name Hash type spin min 0 max 512 default " + std::to_string(hash) + ' ');
    expectNext("uciok");
}

void UciTalk::expectReady() {
    say("isready");
    std::optional<std::string> line;
    do {
        line = hear(patience(REPLY_TIME));
    } while (isReport(line));
    EXPECT_EQ(line.value_or("(nothing)"), "readyok");
}

void UciTalk::expectReports(int count) {
    for (int i = 0; i < count; ++i) {
        EXPECT_TRUE(isReport(hear(patience(REPLY_TIME))));
    }
}

void UciTalk::expectAnswer(const std::vector<std::string>& words) {
    int atLeast = 0;
    int atMost = ANSWER_TIME;
    if (words.size() > 1) {
        std::sscanf(words[1].c_str(), "%d-%d", &atLeast, &atMost);
    }
    expectAnswer(words.empty() ? "*" : words[0], atLeast, atMost);
}

void UciTalk::expectAnswer(const std::string& pattern, int atLeast, int atMost) {
    std::optional<std::string> line;
    do {
        line = hear(std::max(patience(atMost) + BUSY_TIME - getAge(), Millis(0)));
    } while (line && line->starts_with("info "));
    ASSERT_TRUE(line && line->starts_with("bestmove ")) << line.value_or("(nothing)");
    EXPECT_TRUE(pattern == "*" ? isMoveText(answer.bestMove)
                               : TextPattern(pattern).matches(answer.bestMove))
        << answer.bestMove << ": " << pattern;
    EXPECT_GE(answer.age.count(), atLeast);
}

void UciTalk::expectLegal(const plain::Position& position) {
    for (const std::vector<std::string>& line : answer.lines) {
        plain::Position board = position;
        for (const std::string& move : line) {
            EXPECT_TRUE(board.play(move)) << move << " is not legal in its line";
        }
    }
}

void UciTalk::expectComplaint() {
    ++complaints;
    expectReady(); // so the line before it has been dealt with
    expectComplaints();
}

void UciTalk::expectComplaints() {
    const std::string& text = process.readErrors();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), complaints) << text;
}

void UciTalk::expectEnd(int atMost) {
    hasEnded = true;
    const std::optional<UciProcess::End> end = process.waitForEnd(patience(atMost) + BUSY_TIME);
    ASSERT_TRUE(end) << "the engine does not end";
    EXPECT_TRUE(end->exited) << "ended by signal " << end->status;
    EXPECT_EQ(end->status, 0);
    while (const std::optional<std::string> line = hear(Millis(0))) {
        EXPECT_TRUE(isReport(line)) << "unasked: " << *line;
    }
    expectComplaints();
}

void UciTalk::expectSilence(int millis) {
    const std::optional<std::string> line = hear(Millis(millis));
    EXPECT_FALSE(line) << *line;
}

void UciTalk::expectNoAnswer(int millis) {
    EXPECT_GT(awaited, 0) << "no search is under way";
    const Clock::time_point end = Clock::now() + Millis(millis);
    while (Clock::now() < end) {
        const std::optional<std::string> line = hear(std::chrono::ceil<Millis>(end - Clock::now()));
        EXPECT_TRUE(!line || isReport(line)) << *line;
    }
}
