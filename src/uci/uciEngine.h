// The Universal Chess Interface on standard input and output.
//
// The command loop runs on the caller's thread and never waits for a search. A `go`
// is put into a queue that the go thread works off, one at a time and in order; that
// thread lives from a `go` that finds the queue idle to the last `bestmove`.
#pragma once

#include "base/platform.h"
#include "engine/engine.h"
#include "search/engineParameters.h"
#include "search/infoStruct.h"
#include "search/searchLimits.h"
#include "uci/uciPolicy.h"

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class UciEngine final : public InfoListenerInterface, public StopListenerInterface {
public:
    // The standard front end, or that of a policy. `config` is shared and must outlive the
    // object.
    explicit UciEngine(const EngineConfig& config);
    UciEngine(const EngineConfig& config, std::unique_ptr<UciPolicy> _policy);
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
    // Whether the running search is to stop; a `stop` line that was kept for it is used up.
    bool checkForStop() override;

    const Engine& getEngine() const { return engine; }

private:
    void send(std::string_view str);
    bool readLine(std::string& line);

    void handlePosition(const std::string& line, const std::vector<std::string>& vec);
    void playMoves(const std::vector<std::string>& vec, std::size_t first);

    void handleGoSeparateThread(const std::vector<std::string>& vec);
    void workOffGoQueue();
    std::optional<SearchRequest> takeFromGoQueue();
    void handleGo(const SearchRequest& request);
    void closeReports(int number);

    void handleSetOption(const std::vector<std::string>& vec);

    const std::unique_ptr<UciPolicy> policy;
    std::mutex infoMutex;                 // serialises onInfo(), guards answeredGo
    int answeredGo = 0;                   // no report of it or of an earlier one is sent
    std::atomic<bool> stop = false;       // set by the loop, cleared by checkForStop()
    std::atomic<int> stoppedGo = 0;       // the last `go` line before the last `stop`
    std::atomic<bool> inputEnded = false; // no further `stop` can come
    std::atomic<bool> quitting = false;   // searches end without an answer
    int lastGo = 0;                       // the number of the last `go` line, for the loop
    int currentGo = 0;                    // that of the one being searched, for the go thread
    bool infinite = false;                // whether that one has no limit
    Engine engine;

    std::mutex goMutex;                // guards the queue and isGoThreadRunning
    std::deque<SearchRequest> goQueue; // in order; numbered from 1
    bool isGoThreadRunning = false;
    Thread goThread;
};
