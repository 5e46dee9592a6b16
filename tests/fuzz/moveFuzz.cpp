// Texts of moves, in the form of the protocol and in that of the log.

#include "fuzz/fuzz.h"
#include "notation/letters.h"
#include "notation/moveText.h"
#include "testing/boardSupport.h"

#include <cctype>
#include <iostream>
#include <sstream>

namespace {

std::string printed(const Move& move) {
    std::ostringstream stream;
    printMove(stream, move);
    return stream.str();
}

std::string changed(std::string text, int (*change)(int)) {
    for (char& c : text) {
        c = static_cast<char>(change(static_cast<unsigned char>(c)));
    }
    return text;
}

void readLongAlgebraic(const std::string& text) {
    const LongAlgebraicMove move(text);
    const std::vector<Move> moves = pseudoLegalMovesOf(positionOf(START_FEN));
    const int index = move.getIndexOfMove(moves);
    require(-1 <= index && index < std::ssize(moves), "an index outside the moves");
    require(index < 0 ||
                LongAlgebraicMove(moves[at(index)]).toString() == move.toString().substr(0, 4),
            "another move than its text: " + text);
    if (move.getFrom() != NOT_FOUND && move.getTo() != NOT_FOUND) {
        require(changed(text.substr(0, 4), std::tolower) == move.toString().substr(0, 4),
                "other fields than its text: " + text);
        require(LongAlgebraicMove(move.toString()).toString() == move.toString(),
                "not read back as written: " + text);
    }
}

void readWordy(const std::string& text, Color color) {
    const Move move = parseMove(text, color);
    const std::string once = printed(move);
    const bool isComplete =
        move.from != NOT_FOUND && move.to != NOT_FOUND && move.pieceMoved != NOT_FOUND;
    if (!isComplete && !move.isCastle()) {
        return;
    }
    require(move.isCastle() || changed(text.substr(1, 5), std::toupper) ==
                                   changed(once.substr(1, 5), std::toupper),
            "other fields than its text: " + text);
    const Move again = parseMove(once, color);
    // The mark of en passant is read in another spelling than it is written in.
    require(move.castle_ep_flag == EN_PASSANT || printed(again) == once,
            "not read back as written: " + once);
    require(again.from == move.from && again.to == move.to && again.pieceMoved == move.pieceMoved,
            "another move than its text: " + text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::cerr.setstate(std::ios::badbit); // hides the messages about meaningless texts
    const std::string text = textOf(data, size);
    readLongAlgebraic(text);
    readWordy(text, WHITE);
    readWordy(text, BLACK);
    return 0;
}
