// FEN text into the engine and out again, and a few plies on every board that it accepts.

#include "board/positionCheck.h"
#include "engine/engine.h"
#include "fuzz/fuzz.h"
#include "search/engineParameters.h"
#include "support/plainRules.h"
#include "testing/boardSupport.h"

#include <algorithm>
#include <vector>

namespace {

void requireSound(const Position& position) {
    const std::string fault = findInconsistency(position);
    require(fault.empty(), fault + ": " + getFen(position));
}

// Plays every legal move and takes it back; then continues after one of them.
void walk(Position position, int plies) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    for (int i = 0; i < count; ++i) {
        const Position before = position;
        DoMoveContext context;
        require(doMove(position, moves[i], context), "a legal move is refused");
        requireSound(position);
        undoMove(position, moves[i], context);
        requireSound(position);
        require(getFen(position) == getFen(before) &&
                    position.incremental.hash == before.incremental.hash,
                "undone is not as before: " + getFen(before));
    }
    if (count > 0 && plies > 0) {
        const auto drawn = position.incremental.hash % static_cast<std::uint64_t>(count);
        walk(positionAfter(position, moves[static_cast<int>(drawn)]), plies - 1);
    }
}

// The plain twin of the rules knows the same moves.
void requireSameMoves(const Position& position) {
    std::vector<std::string> texts = textsOf(legalMovesOf(position));
    std::ranges::sort(texts);
    require(texts == plain::Position(getFen(position)).legalMoves(),
            "other moves than the rules: " + getFen(position));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const EngineConfig config = [] {
        EngineConfig withoutTable;
        withoutTable.hashTableSize = 0;
        return withoutTable;
    }();
    static Engine engine(config);
    engine.init();
    const std::string before = getFen(engine.getPosition());
    const std::string text = textOf(data, size);
    if (!engine.init(text).empty()) {
        require(getFen(engine.getPosition()) == before, "a rejected text has changed the game");
        return 0;
    }
    const Position accepted = engine.getPosition();
    const std::string fen = getFen(accepted);
    requireSound(accepted);
    require(engine.init(fen).empty(), "our own text is rejected: " + fen);
    require(getFen(engine.getPosition()) == fen &&
                engine.getPosition().incremental.hash == accepted.incremental.hash,
            "not read back as written: " + fen);
    requireSameMoves(accepted);
    walk(accepted, 4);
    return 0;
}
