#include "kestran-explain/question.h"

#include "explain/treeGeneratorDebug.h"
#include "search/engineParameters.h"
#include "search/hashTable.h"
#include "search/searchParameters.h"
#include "support/gameInput.h"
#include "support/textFile.h"

#include <charconv>
#include <limits>
#include <map>

const char* const EXPLAIN_HELP =
    R"(Usage: kestran-explain [FEN] [--line "MOVES"] [--moves "MOVES"] [--depth N] [--time S]
                       [--format=plain|tree|html] [-o FILE] [--all] [--pass N]
                       [--max-lines N] [--hash MIB]

Searches a position as the engine does, watches a line of moves, and tells why the
search did not follow it. Moves are written as players do, Nf3 exd6 O-O e8=Q, with or
without their numbers, or g1f3 e5d6 e1g1 e7e8q.

  FEN              the position, quoted or not; startpos, or nothing, for the start
  --line "MOVES"   the line to watch, at most 19 moves; if not given, the search's own
  --moves "MOVES"  a game from FEN to the position to search, so that repetitions count
  --depth N        plies to search, 1 to 20; 5 if neither depth nor time is given
  --time S         seconds for all, such as 10 or 0.5; the last pass may come to no end
  --format=plain   the record as the search keeps it, in thousandths of a pawn (the default)
  --format=tree    a tree and one sentence that answers, in pawns
  --format=html    a page for a browser: the line on a board, the passes in a chart, and
                   the tree, with nodes that open and close
  -o FILE          writes the report to FILE, whole or not at all
  --all            every move tried along the line, not only those that raised alfa
  --pass N         pass N alone, as the report counts them
  --max-lines N    at most N lines on the passes; the last pass comes first
  --hash MIB       size of the transposition table; as in play if not given

Ctrl-C ends the search, and what has been found by then is reported.

Exit status: 0; 1 if the search came to nothing before its end or the output cannot be
written; 2 for input that makes no sense. Colour is used on a terminal unless NO_COLOR is
set or TERM is "dumb".
)";

namespace {

constexpr int DEFAULT_DEPTH = 5;
constexpr int MAX_SECONDS = 1'000'000;
constexpr int ANY_NUMBER = std::numeric_limits<int>::max();

std::optional<Milliseconds> takeTime(CommandLine& commandLine) {
    const auto text = commandLine.takeOption("--time");
    if (!text) {
        return std::nullopt;
    }
    double seconds = 0;
    const char* end = text->data() + text->size();
    const auto [stopped, fault] =
        std::from_chars(text->data(), end, seconds, std::chars_format::fixed);
    // Put so that what is no number at all does not pass.
    const bool isGood =
        fault == std::errc() && stopped == end && seconds > 0 && seconds <= MAX_SECONDS;
    if (!isGood) {
        throw UsageError("--time is a number of seconds above 0, at most " +
                         std::to_string(MAX_SECONDS) + ", not \"" + *text + "\"");
    }
    return static_cast<Milliseconds>(seconds * 1000);
}

ReportFormat takeFormat(CommandLine& commandLine) {
    const std::string format = commandLine.takeOption("--format").value_or("plain");
    const std::map<std::string, ReportFormat> formats = {
        {"plain", ReportFormat::PLAIN}, {"tree", ReportFormat::TREE}, {"html", ReportFormat::HTML}};
    const auto found = formats.find(format);
    if (found == formats.end()) {
        throw UsageError("--format is plain, tree or html, not \"" + format + "\"");
    }
    return found->second;
}

std::vector<Move> readLine(const Position& position, const std::string& text) {
    std::vector<Move> line = readMoves(position, text, "the line");
    if (line.empty()) {
        throw UsageError("--line needs at least one move");
    }
    if (line.size() > Explain::MAX_LINE) {
        throw UsageError("a line has at most " + std::to_string(Explain::MAX_LINE) +
                         " moves, this one has " + std::to_string(line.size()));
    }
    return line;
}

} // namespace

Question readQuestion(CommandLine& commandLine) {
    Question question = {};
    question.all = commandLine.takeFlag("--all");
    question.format = takeFormat(commandLine);
    question.time = takeTime(commandLine);
    const auto depth = takeNumber(commandLine, "--depth", 1, MAX_PASSES);
    question.depth = depth.value_or(question.time ? MAX_PASSES : DEFAULT_DEPTH);
    question.pass = takeNumber(commandLine, "--pass", 0, ANY_NUMBER);
    question.maxLines = takeNumber(commandLine, "--max-lines", 1, ANY_NUMBER);
    if (const auto mebibytes =
            takeNumber(commandLine, "--hash", EngineConfig::HASH_MIN, EngineConfig::HASH_MAX)) {
        question.hashTableSize = entriesOf(*mebibytes);
    }
    if (question.maxLines && question.format == ReportFormat::HTML) {
        throw UsageError("--max-lines goes with --format=plain and --format=tree; a page has nodes "
                         "that close");
    }
    question.output = commandLine.takeOption("-o");
    const std::string moves = commandLine.takeOption("--moves").value_or("");
    const auto line = commandLine.takeOption("--line");
    question.game = readGame(commandLine.takeRest(), moves);
    if (line) {
        question.line = readLine(question.game.position, *line);
    }
    if (question.output) {
        requireWritable(*question.output);
    }
    return question;
}
