// The Universal Chess Interface on standard input and output.
//
// The command loop runs on the caller's thread and never waits for a search. A `go`
// is put into a queue that the go thread works off, one at a time and in order; that
// thread lives from a `go` that finds the queue idle to the last `bestmove`.
#pragma once

#include "base/engineParameters.h"
#include "engine/engine.h"
#include "search/infoStruct.h"

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <pthread.h>
#include <string>
#include <vector>

class UciEngine final : public InfoListenerInterface, public StopListenerInterface {
public:
    // `config` is shared and must outlive the object.
    explicit UciEngine(EngineConfig* config);
    // An engine with a small configuration of its own.
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

    // Sends the `info` line of a report, unless the search has been answered: its thread
    // may finish one more pass before it winds down.
    void onInfo(const InfoStruct& info) override;
    // Whether the running search is to stop; a `stop` line is used up by it.
    bool checkForStop() override;

    // Works out the time for a move from the words of a `go` line and the side to
    // move: afterwards getMoveTime() and isInfinite() tell the result.
    void handleGoCommandProps(const std::vector<std::string>& commands, Color colorToMove);
    // Milliseconds for the present `go`, -1 for none given.
    Milliseconds getMoveTime() const { return moveTime; }
    bool isInfinite() const { return infinite; }

    const Engine& getEngine() const { return engine; }

private:
    // One `go` line with all that it is about.
    struct ThreadData {
        std::vector<std::string> vec; // its words
        Game game;                    // the game when it came
        Milliseconds clockStart;      // the time when it came
    };

    void init();
    void send(const std::string& str);
    bool readLine(std::string& line);

    void handlePosition(const std::string& line, const std::vector<std::string>& vec);
    void playMoves(const std::vector<std::string>& vec, std::size_t first);

    void handleGoSeparateThread(const std::vector<std::string>& vec);
    static void* pthreadStart(void* uciEngineVoid);
    void workOffGoQueue();
    std::optional<ThreadData> takeFromGoQueue();
    void handleGo(const ThreadData& data);
    void setAnswered(bool answered);
    void joinGoThread();

    void sendAllOptions();
    void sendOption(const std::string& name, const std::string& type, int min, int max,
                    int defaultVal);
    void handleSetOption(const std::vector<std::string>& vec);
    void setOption(const std::string& name, const std::string& value);
    void sendPvInfo(const Variant& variant);

    std::unique_ptr<EngineConfig> ownConfig; // only of the second constructor
    std::mutex infoMutex;                    // serialises onInfo(), guards isAnswered
    bool isAnswered = false;                 // no report belongs to the last `go` any more
    std::atomic<bool> stop = false;          // set by the loop, cleared by checkForStop()
    std::atomic<bool> inputEnded = false;    // no further `stop` can come
    std::atomic<bool> quitting = false;      // searches end without an answer
    bool debug = false;                      // set by `debug on`; nothing else reads it
    Milliseconds moveTime = -1;              // of the present `go`, in milliseconds
    bool infinite = false;                   // whether the present `go` has no limit
    Engine engine;

    std::mutex goMutex;             // guards the queue and isGoThreadRunning
    std::deque<ThreadData> goQueue; // `go` lines that wait, in order
    bool isGoThreadRunning = false;
    std::optional<pthread_t> goThread; // the last go thread, if it has not been joined
};
