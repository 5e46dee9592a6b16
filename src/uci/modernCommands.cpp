#include "uci/modernCommands.h"

#include "board/attacks.h"
#include "board/checkersAndPins.h"
#include "board/evaluationTerms.h"
#include "board/makeMove.h"
#include "board/perft.h"
#include "board/setUp.h"
#include "engine/bench.h"
#include "notation/diagram.h"
#include "notation/fen.h"
#include "notation/letters.h"
#include "notation/longAlgebraicMove.h"
#include "search/evaluation.h"
#include "search/score.h"
#include "search/searchParameters.h"
#include "uci/words.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// ---- eval ----

struct Term {
    const char* name;
    ByColor<int> values; // each for its own side
};

// The values of the pieces of a type on their squares, in the phase of the position.
ByColor<int> getSquareValues(const Position& position, PieceType type) {
    ByColor<int> values = {0, 0};
    for (const Piece& piece : position.pieces) {
        if (piece.pieceType == type) {
            const Color color = position.board[piece.boardPosition].color;
            const PieceSum sum = pieceSums[color][type][piece.boardPosition];
            const int value =
                isEndGame(totalMaterial(position)) ? sum.getEndGame() : sum.getMiddleGame();
            values[color] += color == WHITE ? value : -value;
        }
    }
    return values;
}

std::vector<Term> getTerms(const Position& position) {
    const PieceSum sum = position.incremental.sum;
    std::vector<Term> terms = {{"material", position.incremental.material}};
    for (const auto& [name, type] :
         {std::pair("pawns", PAWN), {"knights", KNIGHT}, {"bishops", BISHOP}, {"kings", KING}}) {
        terms.push_back({name, getSquareValues(position, type)});
    }
    Term pair = {"bishop pair", {0, 0}};
    Term rooks = {"advanced rooks", {0, 0}};
    for (const Color color : COLORS) {
        pair.values[color] = sum.getBishops(color) > 1 ? BISHOP_PAIR_BONUS : 0;
        rooks.values[color] = bonusOf(sum, color) - pair.values[color];
    }
    terms.push_back(pair);
    terms.push_back(rooks);
    return terms;
}

// ---- perft ----

constexpr int LARGEST_PERFT = 20;      // plies
constexpr int DEPTH_BETWEEN_POLLS = 3; // plies; well below a millisecond

// The number of move sequences; meaningless once `isStopped`, which is remembered in `stopped`.
std::int64_t countMoves(Position& position, int depth, const std::function<bool()>& isStopped,
                        bool& stopped) {
    stopped = stopped || isStopped();
    if (stopped) {
        return 0;
    }
    if (depth <= DEPTH_BETWEEN_POLLS) {
        return perft(position, depth, false);
    }
    std::int64_t sum = 0;
    visitLegalMoves(
        position, [&](const Move&) { sum += countMoves(position, depth - 1, isStopped, stopped); });
    return sum;
}

void runPerft(Position position, int depth, const LongCommandContext& context) {
    std::int64_t sum = 0;
    bool stopped = false;
    visitLegalMoves(position, [&](const Move& move) {
        const std::int64_t nodes = countMoves(position, depth - 1, context.isStopped, stopped);
        if (!stopped) {
            sum += nodes;
            context.send(LongAlgebraicMove(move).toString() + ": " + std::to_string(nodes));
        }
    });
    if (!stopped) {
        context.send("Nodes searched: " + std::to_string(sum));
    }
}

// The depth that a word gives, from 1 to `most`. Otherwise reports that on standard error.
std::optional<int> readDepth(const std::string& command, const std::string& word, int most) {
    const std::optional<int> depth = numberOf(word);
    if (depth && *depth >= 1 && *depth <= most) {
        return depth;
    }
    std::cerr << command << " rejected: needs a depth from 1 to " << most << std::endl;
    return std::nullopt;
}

} // namespace

std::vector<std::string> describePosition(const Position& position) {
    std::ostringstream text;
    text << position;
    printPieces(text, position);
    // The engine does not keep the number of the move.
    text << "Fen: " << getFen(position) << " 1\nKey: " << std::hex << std::uppercase
         << std::setfill('0') << std::setw(16) << position.incremental.hash << "\nCheckers:";
    const FieldSet checkers = CheckersAndPins(position).getCheckers();
    for (const FieldIndex field : BOARD_FIELDS) {
        if (contains(checkers, field)) {
            text << ' ' << fieldToString(field, true);
        }
    }
    std::string lines = text.str();
    constexpr char SOLID_BLOCK = '\xDB'; // of a light square, in a code page that few consoles use
    std::replace(lines.begin(), lines.end(), SOLID_BLOCK, '#');
    return linesOf(lines);
}

std::vector<std::string> describeEvaluation(const Position& position) {
    std::ostringstream text;
    const auto row = [&text](const std::string& name, const auto& white, const auto& black) {
        text << std::left << std::setw(14) << name << std::right << std::setw(8) << white
             << std::setw(8) << black << '\n';
    };
    row("", "White", "Black");
    ByColor<int> total = {0, 0};
    for (const auto& [name, values] : getTerms(position)) {
        row(name, values[WHITE], values[BLACK]);
        for (const Color color : COLORS) {
            total[color] += values[color];
        }
    }
    row("total", total[WHITE], total[BLACK]);
    text << "Score for the side to move: ";
    printEval(text, total[position.colorToMove] - total[position.oppositeColorToMove()]);
    return linesOf(text.str());
}

LongCommand getLongCommand(const std::vector<std::string>& words, const Position& position) {
    const auto nothing = [](const LongCommandContext&) {};
    if (words[0] == "go" && words.size() > 1 && words[1] == "perft") {
        const auto depth = readDepth("go perft", words.size() > 2 ? words[2] : "", LARGEST_PERFT);
        return depth
                   ? LongCommand([=](const auto& context) { runPerft(position, *depth, context); })
                   : nothing;
    }
    if (words[0] != "bench") {
        return {};
    }
    std::optional<int> depth;
    if (words.size() > 1 && !(depth = readDepth("bench", words[1], MAX_PASSES))) {
        return nothing;
    }
    return [depth](const LongCommandContext& context) {
        if (const auto total = runBench(depth, context.isStopped)) {
            context.send(std::to_string(total->nodes) + " nodes " +
                         std::to_string(nodesPerSecond(total->nodes, total->millis)) + " nps");
        }
    };
}
