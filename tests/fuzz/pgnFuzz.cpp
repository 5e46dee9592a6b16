// Files of games and of positions.

#include "fuzz/fuzz.h"
#include "notation/epd.h"
#include "notation/fen.h"
#include "notation/pgnReader.h"

#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    PgnReader reader(text);
    while (const auto game = reader.next()) {
        const std::string written = toPgn(*game);
        PgnReader writtenReader(written);
        const auto again = writtenReader.next();
        require(again && toPgn(*again) == written, "not read back as written: " + written);
        require(again->moves.size() == game->moves.size(), "moves are lost: " + written);
        require(!writtenReader.next() && !writtenReader.getFault(), "more than a game: " + written);
    }
    if (const auto& fault = reader.getFault()) {
        require(fault->line >= 1 && fault->column >= 1, "a fault outside the text");
        require(static_cast<std::size_t>(fault->column) <= size + 1, "a fault outside the text");
    }

    std::istringstream stream(text);
    for (const EpdRecord& record : readEpd(stream).records) {
        Position position;
        require(readPlayableFen(position, record.fen).empty(), "no position: " + record.fen);
    }
    return 0;
}
