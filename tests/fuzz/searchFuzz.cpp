// The search that plays against its plain twin, on any position that the front end accepts.
//
// The first line of an input is FEN. Of the bytes after it six are settings, and each of
// the rest is a move of the game. The flag that stops a search is up from the start, so
// that no search plays more than 20001 moves.

#include "fuzz.h"

#include "search/searchComparison.h"

namespace {

constexpr std::size_t MAX_MOVES_OF_GAME = 60;

// The bytes after the FEN, then zeros.
class Bytes {
public:
    explicit Bytes(std::string _rest) : rest(std::move(_rest)) {}

    int next(int end) { // below `end`
        const int byte = place < rest.size() ? static_cast<unsigned char>(rest[place]) : 0;
        ++place;
        return byte % end;
    }
    std::size_t left() const { return place < rest.size() ? rest.size() - place : 0; }

private:
    std::string rest;
    std::size_t place = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    const std::size_t end = std::min(text.find('\n'), text.size());
    SearchCase example;
    example.fen = PlayingSearch::accept(text.substr(0, end));
    if (example.fen.empty()) {
        return 0;
    }

    Bytes bytes(text.substr(std::min(end + 1, text.size())));
    example.settings.tableSize = std::array{1000, 0, 1, 7}[at(bytes.next(4))];
    const int flags = bytes.next(16);
    example.settings.useTable = (flags & 1) == 0;
    example.settings.standPat = (flags & 2) == 0;
    example.isTwice = (flags & 4) != 0;
    example.lines = (flags & 8) != 0 ? 3 : 1;
    example.settings.quiscenceMaxDepth = bytes.next(41);
    example.settings.quiscenceDeltaWindow = std::array{2000, 0, 500, 100000}[at(bytes.next(4))];
    example.maxPasses = 1 + bytes.next(3);
    example.maxNodes = bytes.next(2) == 0 ? 500 : 5000;

    plain::Position position(example.fen);
    while (bytes.left() > 0 && example.moves.size() < MAX_MOVES_OF_GAME) {
        const std::vector<plain::Move> moves = position.moves();
        const auto number = static_cast<int>(moves.size());
        const auto move = number > 0 ? moves[at(bytes.next(number))] : plain::Move();
        const auto after = number > 0 ? position.play(move) : std::nullopt;
        if (!after) {
            break;
        }
        position = *after;
        example.moves.push_back(move.text());
    }

    static SearchComparison comparison;
    const std::string difference = comparison.run(example);
    require(difference.empty(), "the twin has searched otherwise:\n" + difference);
    return 0;
}
