// An engine that plays: its process, the form of its lines, its memory, and all that was said.
#pragma once

#include "kestran-soak/game.h"
#include "support/uciLines.h"
#include "support/uciProcess.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

struct PlayerOptions {
    std::string path{};
    std::vector<std::string> arguments{};
    int pause = 0; // milliseconds; longest random pause before a `go`
    // How long to wait for an answer, beyond the time of a move.
    std::chrono::milliseconds patience{10000};
};

class Player {
public:
    // `job` makes its pauses differ from those of other jobs.
    Player(PlayerOptions playerOptions, int job)
        : options(std::move(playerOptions)), random(static_cast<unsigned>(job)) {}

    const std::string& getPath() const { return options.path; }

    // The next four throw Fault if the engine breaks the protocol.

    // Starts the engine if it does not run, UsageError if that fails, and prepares it for a game.
    void beginGame(int hash);
    // Lets the engine search, and checks all that it says. The move, and the milliseconds.
    std::pair<std::string, std::int64_t> think(const SoakGame& game);
    // Measures the memory after a game.
    void endGame(GameRecord& record);
    // Ends the engine.
    void quit();

    // Describes a fault in one line. Ends the process, unless the engine was only late.
    std::string settle(const Fault& fault);
    // Since the game began, for a person: milliseconds since the engine was started, "<" or ">",
    // and the line.
    const std::string& getConversation() const { return conversation; }

private:
    void say(const std::string& line);
    std::string hear(std::chrono::milliseconds timeout);
    void expectReady();
    // Waits for `time`. Standard error has to be empty then, too.
    void expectSilence(std::chrono::milliseconds time);
    std::pair<std::string, std::int64_t> search(const plain::Position& board, const std::string& go,
                                                std::int64_t allowed);
    void note(char direction, const std::string& line);

    const PlayerOptions options;
    std::mt19937 random;               // for the pauses
    std::optional<UciProcess> process; // while there is a sound one
    const UciDialect* dialect = &OTHER_DIALECT;
    std::chrono::steady_clock::time_point started;
    std::string conversation;
    std::vector<std::int64_t> resident; // KiB after each game of the process
};
