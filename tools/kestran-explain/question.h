// What the user of kestran-explain asks for.
#pragma once

#include "base/clock.h"
#include "notation/pgn.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

enum class ReportFormat { PLAIN, TREE, HTML, JSON };

struct Question {
    NumberedGame game;
    std::vector<Move> line; // empty for the search's own
    int depth;              // plies
    std::optional<Milliseconds> time;
    std::optional<int> hashTableSize;  // entries
    std::vector<std::string> settings; // of the engine, such as "QuiscenceMaxDepth=4"
    ReportFormat format;
    bool all;                          // every move tried along the line
    std::optional<int> pass;           // the only one to show, if there is such a pass
    std::optional<int> maxLines;       // of the report on the passes
    std::optional<std::string> output; // a file; standard output if there is none
    std::optional<std::string> record; // a file for the record of every move
    std::optional<PgnGame> review;     // a game to annotate
    int nodes;                         // to search in each position of that game
};

// Parses the command line of kestran-explain, passes the question to `answer`, which returns the
// exit status, and returns that.
int ask(int argc, const char* const* argv, const std::function<int(const Question&)>& answer);
