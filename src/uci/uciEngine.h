// The Universal Chess Interface on standard input and output.
//
// The command loop runs on the caller's thread and never waits for a search. A `go`
// is put into a queue that the go thread works off, one at a time and in order; that
// thread lives from a `go` that finds the queue idle to the last `bestmove`.
#pragma once

#include "base/engineParameters.h"
#include "base/platform.h"
#include "engine/engine.h"
#include "search/infoStruct.h"

#include <atomic>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class UciEngine final : public InfoListenerInterface, public StopListenerInterface {
public:
    // `config` is shared and must outlive the object.
    explicit UciEngine(const EngineConfig& config);
    // An engine with a small configuration of its own, which lives as long as the process.
    UciEngine();
    UciEngine(const UciEngine&) = delete;
    UciEngine& operator=(const UciEngine&) = delete;
    // Ends the searches without a word and waits for their threads.
    ~UciEngine();

    // The command loop. Returns when `quit` has been read, or at the end of input
    // once the searches have answered.
    void start();
    // Carries out one line of input. False for `quit`.
    bool handleLine(const std::string& line);

    // The words of a line. Line feed, carriage return, blank and NUL separate them; a
    // tab does not.
    static std::vector<std::string> splitString(const std::string& str);

    // Sends the `info` line of a report, unless its search has been answered: its thread
    // may finish one more pass before it winds down.
    void onInfo(const InfoStruct& info) override;
    // Whether the running search is to stop; a `stop` line is used up by it.
    bool checkForStop() override;

    const Engine& getEngine() const { return engine; }

private:
    // One `go` line with all that it is about.
    struct GoLine {
        std::vector<std::string> vec; // its words
        Game game;                    // the game when it came
        Milliseconds start;           // the time when it came
    };

    void send(std::string_view str);
    bool readLine(std::string& line);

    void handlePosition(const std::string& line, const std::vector<std::string>& vec);
    void playMoves(const std::vector<std::string>& vec, std::size_t first);

    void handleGoSeparateThread(const std::vector<std::string>& vec);
    void workOffGoQueue();
    std::optional<GoLine> takeFromGoQueue();
    void handleGo(const GoLine& goLine);
    void closeReports(int searchNumber);

    void handleSetOption(const std::vector<std::string>& vec);
    void setOption(const std::string& name, const std::string& value);

    std::mutex infoMutex;                 // serialises onInfo(), guards answeredSearch
    int answeredSearch = 0;               // no report of it or of one before it is sent
    std::atomic<bool> stop = false;       // set by the loop, cleared by checkForStop()
    std::atomic<bool> inputEnded = false; // no further `stop` can come
    std::atomic<bool> quitting = false;   // searches end without an answer
    bool debug = false;                   // set by `debug on`; nothing else reads it
    bool infinite = false;                // whether the present `go` has no limit
    Engine engine;

    std::mutex goMutex;         // guards the queue and isGoThreadRunning
    std::deque<GoLine> goQueue; // `go` lines that wait, in order
    bool isGoThreadRunning = false;
    Thread goThread;
};
