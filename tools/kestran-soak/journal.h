// The file that keeps each game as soon as it has been played, so that a soak can be stopped,
// in whatever way, and go on another time.
#pragma once

#include "kestran-soak/soakReport.h"
#include "support/lockedFile.h"

#include <optional>
#include <set>
#include <string>

class Journal {
public:
    // Opens the file `path`, or makes it, for a soak of this engine and of games so described,
    // and adds what it holds to `report`. UsageError if it cannot be had: it is of another
    // soak, is no journal, is in use by another process, or cannot be written.
    Journal(std::string path, const std::string& engine, const std::string& games,
            SoakReport& report);
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // The numbers of the games that it held when it was opened.
    const std::set<int>& getPlayed() const { return played; }
    // Whole on the disk, or not there at all. std::runtime_error if it cannot be written.
    void add(const GameResult& result);
    void add(const EngineResult& result);

private:
    // Takes what was kept; returns the length of that, without a line that was cut short.
    std::size_t load(const std::string& heading, SoakReport& report);
    void addLine(const std::string& line);

    std::string path;
    std::optional<LockedFile> file; // always there once the constructor has ended
    std::set<int> played;
};
