#include "kestran-explain/bookText.h"

#include "notation/san.h"
#include "support/bookChoices.h"

std::string bookText(const Position& position) {
    std::string moves;
    for (const auto& [move, count] : getBookChoices(PolyglotBook::getStandard(), position)) {
        moves += (moves.empty() ? "" : ", ") + toSan(position, move);
    }
    return moves.empty() ? "" : "In play it would not search here: its book has " + moves + '.';
}
