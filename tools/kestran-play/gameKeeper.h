// Keeps games from being lost.
#pragma once

#include "base/thread.h"

#include <atomic>
#include <iosfwd>
#include <mutex>
#include <optional>
#include <string>

// While such an object lives, Ctrl-C and a request to terminate write the present game before
// they end the process.
class GameKeeper {
public:
    // Games are shown on `_out`, which must outlive the object, and appended to the file, if one
    // is named.
    GameKeeper(std::optional<std::string> _path, std::ostream& _out);
    GameKeeper(const GameKeeper&) = delete;
    GameKeeper& operator=(const GameKeeper&) = delete;
    ~GameKeeper();

    // Replaces the present game, in PGN; empty for none.
    void keep(const std::string& pgn);
    // Writes and shows the present game, if there is one; afterwards there is none. Throws
    // std::runtime_error, with the game, if the file cannot be written.
    void leave();

private:
    void watch();

    const std::optional<std::string> path;
    std::ostream& out;
    std::mutex mutex; // guards the next
    std::string present;
    std::atomic<bool> isOver = false;
    Thread watcher;
};
