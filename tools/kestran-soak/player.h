// An engine at the board: its process in the words of the protocol, each of them checked.
#pragma once

#include "support/naiveRules.h"
#include "support/uciProcess.h"

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

// An engine that does not keep to the protocol.
class ProtocolFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// All that talks or listens to the engine throws ProtocolFault if it does not keep to the
// protocol.
class Player {
public:
    using Clock = std::chrono::steady_clock;

    // Starts the engine. CannotStart if that fails.
    Player(const std::string& path, const std::vector<std::string>& arguments);

    // The first words that are exchanged.
    void greet();
    void say(const std::string& line);
    // Nothing stands in the pipe, and the engine hears.
    void expectQuiet();
    void setHash(int mebibytes);
    // The move of the answer to a `go`. The lines of the answer are checked, and as moves
    // on `board`, except that its own move may be illegal.
    std::string readAnswer(const NaiveBoard& board);
    // When the last answer came.
    Clock::time_point getAnswered() const { return answered; }
    // Resident memory in KiB, with the smallest table in force.
    long getResidentKib();
    // Ends the process, which must do so at once and without complaint.
    void quit();

    // What has been said since the last call of forgetConversation(), a line each: the
    // milliseconds since the start, ">" to the engine or "<" from it, the words.
    const std::string& getConversation() const { return conversation; }
    void forgetConversation() { conversation.clear(); }
    pid_t getPid() const { return process.getPid(); }
    // In words: whether the process runs or how it has ended, and its standard error.
    std::string describeProcess();

private:
    // Exactly this line comes next.
    void expect(const std::string& wanted);
    std::optional<std::string> readLine(UciProcess::Timeout timeout);
    void note(char direction, const std::string& line);

    UciProcess process;
    Clock::time_point started = Clock::now();
    Clock::time_point answered;
    std::string conversation;
};
