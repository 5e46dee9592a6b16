#include "support/bookChoices.h"

#include "board/makeMove.h"

#include <algorithm>
#include <functional>

std::vector<BookChoice> getBookChoices(const PolyglotBook& book, const Position& position) {
    std::vector<PolyglotEntry> entries = book.get(position.incremental.hash);
    std::vector<BookChoice> choices;
    while (!entries.empty()) {
        const PolyglotEntry first = entries.front();
        const auto count = std::erase_if(entries, [&](const PolyglotEntry& entry) {
            return entry.getMoveInt() == first.getMoveInt();
        });
        // What names no move of the position is never played.
        if (const auto move = findLegalMove(position, first)) {
            choices.push_back({*move, static_cast<int>(count)});
        }
    }
    std::ranges::stable_sort(choices, std::greater(), &BookChoice::count);
    return choices;
}

std::optional<Move> findLegalMove(const Position& position, const PolyglotEntry& entry) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    const int index = entry.getMove(moves.first(count));
    return index >= 0 ? std::optional(moves[index]) : std::nullopt;
}
