// The Universal Chess Interface on standard input and output.
//
// The command loop runs on the caller's thread and never waits for a search. It puts each `go` into
// a queue, which the go thread processes in order. That thread starts when a `go` arrives and ends
// when the queue is empty.
#pragma once

#include "base/thread.h"
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
    // Uses the standard front end, or that of a policy. `config` is shared and must outlive the
    // object.
    explicit UciEngine(const EngineConfig& config);
    UciEngine(const EngineConfig& config, std::unique_ptr<UciPolicy> _policy);
    UciEngine(const UciEngine&) = delete;
    UciEngine& operator=(const UciEngine&) = delete;
    // Ends the searches without an answer and waits for their threads.
    ~UciEngine();

    // Runs the command loop. Returns after `quit`, or at the end of input once the searches have
    // answered.
    void start();
    // Executes one line, as if the input were over after it.
    void start(const std::string& onlyLine);
    // Executes one line of input. Returns false for `quit`.
    bool handleLine(const std::string& line);

    // The words of a line, separated by line feeds, carriage returns, blanks and NULs. A tab is
    // part of a word.
    static std::vector<std::string> splitString(const std::string& str);

    // Sends the `info` line of a report, unless its `go` has been answered: the search thread may
    // finish one more pass while it winds down.
    void onInfo(const InfoStruct& info) override;
    void onCurrentMove(const CurrentMove& current) override;
    // Reports on standard error that the wanted hash table does not fit into memory.
    void onTableMissing() override;
    // Whether the running search must stop. Ends the process if the reader of the output is gone.
    // Clears a kept `stop`; see UciPolicy::keepsIdleStop().
    bool checkForStop() override;
    std::optional<Milliseconds> getClockStart() override;

private:
    // An entry of the queue: a search, or a long command with its number in `request`.
    struct Go {
        SearchRequest request;
        LongCommand command;
    };

    void send(std::string_view str);
    void sendAll(const std::vector<std::string>& lines);
    bool readLine(std::string& line);

    void handlePosition(const std::string& line, const std::vector<std::string>& vec);
    void playMoves(const std::vector<std::string>& vec, std::size_t first);

    void finish();

    void handleGoSeparateThread(const std::vector<std::string>& vec);
    void enqueue(SearchLimits limits, LongCommand command);
    void runGoQueue();
    std::optional<Go> takeFromGoQueue();
    void handleGo(const SearchRequest& request);
    void openReports(const SearchRequest& request);
    void closeReports();
    void startClock();

    void handleSetOption(const std::vector<std::string>& vec);

    const std::unique_ptr<UciPolicy> policy;
    std::mutex infoMutex;                    // serialises reports, guards `reported`
    const SearchRequest* reported = nullptr; // the current search; null between searches
    std::atomic<bool> stop = false;          // set by the loop, cleared by checkForStop()
    std::atomic<int> stoppedGo = 0;          // number of the last `go` before the last `stop`
    std::atomic<int> hitGo = 0;              // number of the last `go` whose time may run
    std::atomic<Milliseconds> hitTime = 0;   // when the time of hitGo began to run
    std::atomic<bool> inputEnded = false;    // no further `stop` can come
    std::atomic<bool> quitting = false;      // searches end without an answer
    int lastGo = 0;                          // number of the last `go`; used by the loop only
    int currentGo = 0;                       // number of the current search; for the go thread only
    bool infinite = false;                   // whether that search is infinite; likewise
    bool pondering = false;                  // whether it waits for startClock(); likewise
    Engine engine;

    std::mutex goMutex;     // guards the queue and isGoThreadRunning
    std::deque<Go> goQueue; // oldest first; numbered from 1
    bool isGoThreadRunning = false;
    Thread goThread;
};
