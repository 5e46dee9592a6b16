// An engine at the board: its process, and all that is said to it and heard from it. Nothing
// here waits for the engine.
#pragma once

#include "support/processorWaits.h"
#include "support/uciProcess.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class Player {
public:
    using Clock = std::chrono::steady_clock;

    // Starts the engine. CannotStart if that fails.
    Player(const std::string& path, const std::vector<std::string>& arguments);

    // ProtocolFault if the engine does not listen.
    void say(const std::string& line);

    // Takes what has come from the engine.
    void listen();
    // The next line of that.
    std::optional<std::string> takeLine();
    // When something last came.
    Clock::time_point getHeard() const { return heard; }
    // Nothing more can come.
    bool isSilent() const { return process.isOutputOver(); }

    // What has been said since the last call of forgetConversation(), a line each: the
    // milliseconds since the start, ">" to the engine or "<" from it, the words.
    const std::string& getConversation() const { return conversation; }
    void forgetConversation() { conversation.clear(); }

    const UciProcess& getProcess() const { return process; }
    // From now on count how long the engine waits for a processor; milliseconds of that, of
    // all its threads together.
    void beginWaits() { waits.restart(); }
    std::int64_t getWaitedMillis() const { return waits.getMillis(); }
    // How the process has ended, or nothing if it still runs.
    std::optional<UciProcess::End> getEnd();
    // All that it has written to standard error.
    const std::string& getErrors() { return process.readErrors(); }
    // In words: whether it runs, or how it has ended.
    std::string describeEnd();

private:
    void note(Clock::time_point when, char direction, const std::string& line);

    UciProcess process;
    ProcessorWaits waits{process.getPid()};
    Clock::time_point started = Clock::now();
    Clock::time_point heard = started;
    std::string conversation;
};
