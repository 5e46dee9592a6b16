// Lines of a book, in both notations.

#include "fuzz/fuzz.h"
#include "notation/letters.h"
#include "opening/polyglot.h"
#include "testing/boardSupport.h"

namespace {

void readLine(const std::string& text, bool polyglotNotation) {
    const std::vector<HashEntryPair> line = getLineFromString(text, polyglotNotation);
    require(line.size() * 5 <= text.size() + 1, "more moves than the text has room for");
    const std::vector<HashEntryPair> begun =
        getLineFromString(text.substr(0, line.size() * 5), polyglotNotation);
    require(begun.size() == line.size(), "the moves alone are another line");
    for (std::size_t i = 0; i < line.size(); ++i) {
        require(line[i].polyglotEntry.getFrom() == parseField(text[5 * i], text[5 * i + 1]),
                "a move of the line is not the one that the text names");
    }

    PolyglotBook book;
    addLine(book, text, polyglotNotation);
    for (const HashEntryPair& pair : line) {
        require(!book.get(pair.hash).empty(), "a move of the line is not in the book");
    }
    Position position = positionOf(START_FEN);
    const Move move = book.getMove(position);
    require((move.from == PolyglotBook::NO_BOOK_MOVE) == line.empty(),
            "the first move of the line is not the move of the book");
    if (!line.empty()) {
        DoMoveContext context;
        require(doMove(position, move, context), "the book's move is not legal");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readLine(textOf(data, size), false);
    readLine(textOf(data, size), true);
    return 0;
}
