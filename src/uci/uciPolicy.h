// What a front end does in its own way. All else is UciEngine's.
#pragma once

#include "board/position.h"
#include "engine/engine.h"
#include "search/infoStruct.h"
#include "search/searchLimits.h"

#include <optional>
#include <string>
#include <vector>

// Lines come and go without their line ends. `words` are those of a line, its first one
// included. What a front end sends while it searches is const: the threads of a search ask
// for it, all else is asked on the thread of the command loop.
class UciPolicy {
public:
    UciPolicy() = default;
    UciPolicy(const UciPolicy&) = delete;
    UciPolicy& operator=(const UciPolicy&) = delete;
    virtual ~UciPolicy() = default;

    // ---- Commands ----

    // The reply to `uci`, with the present size of the table in mebibytes.
    virtual std::vector<std::string> getUciReply(int hashMebibytes) = 0;
    // Sets the option of a `setoption` line, if there is such a one. The result is the size of the
    // table that it wants, in mebibytes, if it is about that.
    virtual std::optional<int> setOption(const std::vector<std::string>& words) = 0;
    // What a `go` line asks for in `position`, with a time that began to run at `start`. Nothing
    // if the line gets no answer.
    virtual std::optional<SearchLimits> readGo(const std::vector<std::string>& words,
                                               const Position& position, Milliseconds start) = 0;

    // ---- Searches ----

    virtual WaitPolicy getWaitPolicy() const = 0;
    // Whether a `stop` that comes while no search is under way ends the next one.
    virtual bool keepsIdleStop() const = 0;
    // The line of a report.
    virtual std::string getReportLine(const InfoStruct& report) const = 0;
    // The lines that close the search of `position`, the answer last.
    virtual std::vector<std::string> getAnswerLines(const SearchResult& result,
                                                    const Position& position) const = 0;
};

// The number that the value of an option begins with, 0 if it does not. The name is for the log.
int getIntOption(const std::string& name, const std::string& value);
