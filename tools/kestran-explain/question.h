// What the user of kestran-explain asks for.
#pragma once

#include "base/clock.h"
#include "board/game.h"
#include "support/commandLine.h"

#include <optional>
#include <string>
#include <vector>

enum class ReportFormat { PLAIN, TREE, HTML };

struct Question {
    Game game;
    std::vector<Move> line; // empty for the search's own
    int depth;              // plies
    std::optional<Milliseconds> time;
    std::optional<int> hashTableSize; // entries
    ReportFormat format;
    bool all;                          // every move tried along the line
    std::optional<int> pass;           // the only one to show, if there is such a pass
    std::optional<int> maxLines;       // of the report on the passes
    std::optional<std::string> output; // a file; standard output if there is none
};

// Takes all words of the command line. UsageError if they make no sense.
Question readQuestion(CommandLine& commandLine);

extern const char* const EXPLAIN_HELP;
