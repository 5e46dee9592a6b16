#include "kestran-book/book.h"

#include "board/makeMove.h"
#include "board/setUp.h"
#include "support/bookChoices.h"
#include "support/commandLine.h"
#include "support/gameInput.h"
#include "support/san.h"
#include "support/textFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <optional>

namespace {

constexpr const char* HELP =
    R"(Usage: kestran-book [FEN] [--moves "MOVES"] [--tree DEPTH]
       kestran-book --check FILE [--polyglot-castling]

Lists the moves that the engine's opening book has for a position, each with the number
of book lines that play it there and with its chance to be drawn. What counts is the
position: lines that reach it by another order of moves count, too, so the replies to a
move can be more than the lines that play this move.

  FEN               the position, quoted or not; startpos, or nothing, for the start
  --moves "MOVES"   a game from FEN to the position: 1. e4 e5 2. Nf3, with or without its
                    numbers, or e2e4 e7e5 g1f3
  --tree DEPTH      the book from there as a tree of that many plies, 1 to 40
  --check FILE      reads a text of book lines, one line each, and reports every line that
                    stops before its end
  --polyglot-castling
                    in FILE, castling is the king taking its own rook, e1h1 not e1g1

Exit status: 0; 1 if FILE has a line that stops early or the output cannot be written;
2 for input that makes no sense or a file that cannot be read.
)";

constexpr int MAX_TREE_DEPTH = 40;
constexpr std::size_t MOVE_STRIDE = 5; // characters of a book line from move to move
constexpr std::size_t MOVE_LENGTH = 4;

int sumOf(const std::vector<BookChoice>& choices) {
    int sum = 0;
    for (const BookChoice& choice : choices) {
        sum += choice.count;
    }
    return sum;
}

// Such as "43.1 %".
std::string chanceText(int count, int sum) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "%.1f %%", 100.0 * count / sum);
    return text.data();
}

void printTreeNode(const PolyglotBook& book, const Position& position, int ply, int depth,
                   const std::string& prefix, std::ostream& stream) {
    if (ply == depth) {
        return;
    }
    const std::vector<BookChoice> choices = getBookChoices(book, position);
    const int sum = sumOf(choices);
    for (std::size_t i = 0; i < choices.size(); ++i) {
        const auto& [move, count] = choices[i];
        const bool isLast = i + 1 == choices.size();
        stream << prefix << (isLast ? "└─ " : "├─ ") << toNumberedSan(position, move, ply) << "  "
               << count << "  " << chanceText(count, sum) << '\n';
        printTreeNode(book, positionAfter(position, move), ply + 1, depth,
                      prefix + (isLast ? "   " : "│  "), stream);
    }
}

std::string faultText(std::size_t index, const std::string& move, const std::string& what) {
    return "move " + std::to_string(index + 1) + ", \"" + move + "\", " + what;
}

int check(const std::string& path, bool polyglotCastling) {
    std::ifstream file = openText(path);
    return checkBookText(file, path, polyglotCastling, std::cout) ? 0 : 1;
}

int run(CommandLine& commandLine) {
    const bool polyglotCastling = commandLine.takeFlag("--polyglot-castling");
    const auto path = commandLine.takeOption("--check");
    const auto moves = commandLine.takeOption("--moves");
    const auto depth = commandLine.takeOption("--tree");
    const std::vector<std::string> rest = commandLine.takeRest();
    if (path) {
        if (moves || depth || !rest.empty()) {
            throw UsageError("--check goes with nothing but a file and --polyglot-castling");
        }
        return check(*path, polyglotCastling);
    }
    if (polyglotCastling) {
        throw UsageError("--polyglot-castling goes with --check only");
    }
    const PolyglotBook book = PolyglotBook::getStandard();
    const Position position = readGame(rest, moves.value_or("")).position;
    if (depth) {
        printBookTree(book, position, parseNumber(*depth, "--tree", 1, MAX_TREE_DEPTH), std::cout);
    } else {
        printBookMoves(book, position, std::cout);
    }
    return 0;
}

} // namespace

void printBookMoves(const PolyglotBook& book, const Position& position, std::ostream& stream) {
    const std::vector<BookChoice> choices = getBookChoices(book, position);
    if (choices.empty()) {
        stream << "The book has no move for this position.\n";
        return;
    }
    const int sum = sumOf(choices);
    for (const auto& [move, count] : choices) {
        std::array<char, 64> line;
        std::snprintf(line.data(), line.size(), "%-7s %4d of %d  %7s\n",
                      toSan(position, move).c_str(), count, sum, chanceText(count, sum).c_str());
        stream << line.data();
    }
}

void printBookTree(const PolyglotBook& book, const Position& position, int depth,
                   std::ostream& stream) {
    if (getBookChoices(book, position).empty()) {
        stream << "The book has no move for this position.\n";
        return;
    }
    printTreeNode(book, position, 0, depth, "", stream);
}

std::string findLineFault(const std::string& line, bool polyglotCastling) {
    const std::size_t written = (line.size() + 1) / MOVE_STRIDE;
    const std::vector<HashEntryPair> pairs = getLineFromString(line, polyglotCastling);
    const auto textOf = [&](std::size_t i) { return line.substr(i * MOVE_STRIDE, MOVE_LENGTH); };
    Position position;
    initializeToStartPosition(position);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        // The book takes such a move, and reads on as if it had not been made.
        const auto move = findLegalMove(position, pairs[i].polyglotEntry);
        if (!move) {
            return faultText(i, textOf(i), "leaves the king in check");
        }
        position = positionAfter(position, *move);
    }
    if (pairs.size() < written) {
        return faultText(pairs.size(), textOf(pairs.size()), "is no move of the position");
    }
    const std::size_t readTo = std::min(written * MOVE_STRIDE, line.size());
    const std::size_t restStart = line.find_first_not_of(" \t\r", readTo);
    if (restStart != std::string::npos) {
        return faultText(written, line.substr(restStart), "is an unfinished rest");
    }
    return "";
}

bool checkBookText(std::istream& text, const std::string& name, bool polyglotCastling,
                   std::ostream& stream) {
    int lines = 0;
    int faults = 0;
    for (std::string line; std::getline(text, line);) {
        ++lines;
        const std::string fault = findLineFault(line, polyglotCastling);
        if (!fault.empty()) {
            ++faults;
            stream << name << ':' << lines << ": " << fault << '\n';
        }
    }
    stream << lines << " lines, of which " << faults << " stop before their end\n";
    return faults == 0;
}

int bookMain(int argc, const char* const* argv) {
    return runTool("kestran-book", HELP, argc, argv, run);
}
