// The differences between the front ends. Everything else is in UciEngine.
#pragma once

#include "board/game.h"
#include "engine/engine.h"
#include "search/infoStruct.h"
#include "search/searchLimits.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

// A command that takes long. It runs on the go thread, in its turn with the searches, sends its
// lines by `send`, and ends soon when `isStopped`.
struct LongCommandContext {
    std::function<void(const std::string&)> send;
    std::function<bool()> isStopped;
};
using LongCommand = std::function<void(const LongCommandContext&)>;

// Lines have no line ends. `words` are all words of a line. The const functions are called from
// search threads, the others only from the command loop.
class UciPolicy {
public:
    UciPolicy() = default;
    UciPolicy(const UciPolicy&) = delete;
    UciPolicy& operator=(const UciPolicy&) = delete;
    virtual ~UciPolicy() = default;

    // ---- Commands ----

    // The reply to `uci`, given the current size of the hash table in mebibytes.
    virtual std::vector<std::string> getUciReply(int hashMebibytes) = 0;
    // Sets the option of a `setoption` line, if it exists. Returns the wanted size of the hash
    // table in mebibytes if that is the option.
    virtual std::optional<int> setOption(const std::vector<std::string>& words) = 0;
    // The limits that a `go` line sets for the search of `position`. The time runs from `start`.
    // Returns nothing if the line gets no answer.
    virtual std::optional<SearchLimits> readGo(const std::vector<std::string>& words,
                                               const Position& position, Milliseconds start) = 0;

    // The long command that a line asks for, about the current game; empty if none. Asked of each
    // line first.
    virtual LongCommand readLongCommand(const std::vector<std::string>& /*words*/,
                                        const Game& /*game*/) {
        return {};
    }
    // The lines that answer a command that UciEngine does not know, at once.
    virtual std::vector<std::string> answerCommand(const std::vector<std::string>& /*words*/,
                                                   const Game& /*game*/) {
        return {};
    }
    // Whether a line lets the time of the pondering searches run that were asked for before it.
    virtual bool startsClock(const std::vector<std::string>& /*words*/) { return false; }

    // ---- Searches ----

    // How the go thread waits for the end of a search. Called once, by the constructor of
    // UciEngine.
    virtual WaitPolicy getWaitPolicy() const = 0;
    // Whether a `stop` that arrives while no search is running ends the next one.
    virtual bool keepsIdleStop() const = 0;
    // The `info` line of a report on a search of `game`.
    virtual std::string getReportLine(const InfoStruct& report, const Game& game) const = 0;
    // The `info` line about the root move that is searched; nothing for no line.
    virtual std::optional<std::string> getCurrentMoveLine(const CurrentMove& /*current*/) const {
        return std::nullopt;
    }
    // The lines that close the search of `game`, the answer last.
    virtual std::vector<std::string> getAnswerLines(const SearchResult& result,
                                                    const Game& game) const = 0;
};

// The number at the start of an option's value, 0 if there is none. The name is for the log.
int getIntOption(const std::string& name, const std::string& value);
