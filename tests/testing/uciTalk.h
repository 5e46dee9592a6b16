// A conversation with the built engine, driven from outside. Whatever a test asks for,
// every line of the engine is held against the exact form of its kind and against its
// place: reports belong to a `go` that is under way, each `go` has one closing line and
// one `bestmove`, and an unasked line fails the test.
#pragma once

#include "support/plainRules.h"
#include "support/uciProcess.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

using Millis = std::chrono::milliseconds;

// An upper bound of time for the build at hand: longer under a sanitizer, and by the
// factor that the environment variable KESTRAN_TIME_FACTOR names.
Millis patience(int millis);

// What came for one `go`.
struct UciAnswer {
    // The moves of its `info` lines in order, the closing line's last.
    std::vector<std::vector<std::string>> lines;
    std::size_t reports = 0; // how many of the lines carry a score
    std::string bestMove;    // as in the line, or "(none)"
    Millis age{};            // from our last words to the `bestmove` line
};

class UciTalk {
public:
    explicit UciTalk(const std::vector<std::string>& arguments = {});
    UciTalk(const UciTalk&) = delete;
    UciTalk& operator=(const UciTalk&) = delete;
    // Ends the engine with `quit` if it still runs, and checks how it ends. Shows the
    // whole talk if the test has failed.
    ~UciTalk();

    // Holds a conversation of steps with " | " between them. What we do:
    //   > TEXT        send a line           >> BYTES    send the bytes as they are
    //   pause N       wait                  eof         the end of the engine's input
    //   lose          read no more          term        send SIGTERM
    //   halt N        stop the process for that time, as a machine that is suspended does
    //   signals N     N times the signals that interrupt it without a consequence
    // What must come, with numbers in milliseconds and upper bounds through patience(), to which
    // answers and ends get half a second more:
    //   = TEXT        exactly this line next
    //   greet N       the reply to `uci` with this size of the table
    //   ready         `isready` is answered, with nothing but reports before it
    //   reports N     that many reports next
    //   answer PATTERN MIN-MAX    an answer in that time from our last words on
    //   reported      the last answer had reports; bare: it had none
    //   legal FEN     all lines of the last answer were legal in that position
    //   complain      one more line on standard error
    //   end N         the process ends by itself with status 0, without an answer
    // What must not come for N milliseconds:
    //   silent N      any line
    //   think N       an answer, though a search is under way
    // Words after `answer` and `end` can be left out.
    void hold(const std::string& script);

    void say(const std::string& line) { sayRaw(line + '\n'); }
    void expectReady();
    void expectAnswer(const std::string& pattern, int atLeast, int atMost);
    // All lines of the last answer are legal in that position.
    void expectLegal(const plain::Position& position);

    // Of the last answer, also of one that has only begun.
    const UciAnswer& getAnswer() const { return answer; }
    // From our last words until now.
    Millis getAge() const;
    const UciProcess& getProcess() const { return process; }

private:
    void act(const std::string& verb, const std::string& rest);
    void halt(int millis);
    void sendSignals(int times);
    void sayRaw(const std::string& bytes);
    std::optional<std::string> hear(Millis timeout);
    void takeInfo(const std::string& line);
    void takeBestMove(const std::string& line);
    void expectNext(const std::string& line);
    void expectGreeting(int hash);
    void expectSilence(int millis);
    void expectReports(int count);
    void expectAnswer(const std::vector<std::string>& words);
    void expectComplaint();
    void expectComplaints();
    void expectEnd(int atMost);
    void expectNoAnswer(int millis);

    UciProcess process;
    std::string transcript;
    std::chrono::steady_clock::time_point lastSaid;
    int awaited = 0;        // `go` lines that have no answer yet
    int complaints = 0;     // lines that standard error must hold
    bool isComplete = true; // the last answer; otherwise one has begun
    bool hasEnded = false;  // as expected or not
    UciAnswer answer;
};
