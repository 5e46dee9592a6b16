#include "explain/recorder.h"

#include "explain/passSearch.h"

#include <algorithm>
#include <ostream>
#include <string>

namespace {

std::uint8_t squareOf(FieldIndex field) {
    return static_cast<std::uint8_t>(EDGE * rowOf(field) + fileOf(field));
}

std::uint8_t promotionOf(const Move& move) {
    constexpr ByType<std::uint8_t> CODES = {0, 0, 3, 1, 2, 4, 0}; // see MoveRecord::kind
    return CODES[move.promotionPieceType];
}

MoveRecord recordOf(const Move& move, std::uint32_t parent) {
    const bool isCastle = move.isCastle();
    return {.parent = parent,
            .from = squareOf(isCastle ? move.getCastlingFields().kingFrom : move.from),
            .to = squareOf(isCastle ? move.getCastlingFields().kingTo : move.to),
            .kind = static_cast<std::uint8_t>(
                promotionOf(move) | (move.pieceCaptured != NO_PIECE ? MoveRecord::CAPTURE : 0)),
            .ending = 0,
            .alfa = 0,
            .beta = 0,
            .score = 0};
}

// A record as it is in a file.
std::string bytesOf(const MoveRecord& record) {
    std::string bytes;
    const auto append = [&bytes](auto number) {
        for (std::size_t shift = 0; shift < 8 * sizeof number; shift += 8) {
            bytes += static_cast<char>(static_cast<std::uint32_t>(number) >> shift);
        }
    };
    append(record.parent);
    append(record.from);
    append(record.to);
    append(record.kind);
    append(record.ending);
    append(record.alfa);
    append(record.beta);
    append(record.score);
    return bytes;
}

} // namespace

Recorder::Recorder(std::size_t _capacity) : capacity(_capacity) {
    records.reserve(std::min<std::size_t>(capacity, 1 << 16));
}

void Recorder::doMove(const Move& move) {
    if (ply == 0 && isOver) {
        begin();
    }
    if (ply++ >= keptPlies) {
        return;
    }
    if (records.size() == capacity) {
        makeRoom();
        if (ply > keptPlies) {
            return;
        }
    }
    const auto index = static_cast<std::uint32_t>(records.size());
    records.push_back(recordOf(move, path.empty() ? MoveRecord::NO_PARENT : path.back()));
    path.push_back(index);
}

void Recorder::explainTreeGenMove(int alfa, int beta, const Variant& localVariant,
                                  const Move& /*move*/, MoveEnding ending) {
    finish(alfa, beta, localVariant, static_cast<std::uint8_t>(ending));
}

void Recorder::explainQuiscenceMove(int alfa, int beta, const Variant& localVariant,
                                    const Move& /*move*/, MoveEnding ending) {
    finish(alfa, beta, localVariant,
           static_cast<std::uint8_t>(static_cast<std::uint8_t>(ending) | MoveRecord::QUISCENCE));
}

void Recorder::explainEndTreePass(IdaNS::GeneratingResult result) {
    isOver = true;
    keptDepth = depth;
    depth += result == IdaNS::OK ? 1 : 0; // a failed pass is repeated
}

// Begins a pass.
void Recorder::begin() {
    records.clear();
    path.clear();
    keptPlies = ALL_PLIES;
    keptDepth = depth;
    isOver = false;
}

// Completes the record of the last move and takes it back.
void Recorder::finish(int alfa, int beta, const Variant& localVariant, std::uint8_t ending) {
    if (ply-- > keptPlies) {
        return;
    }
    MoveRecord& record = records[path.back()];
    path.pop_back();
    record.ending = ending;
    record.alfa = alfa;
    record.beta = beta;
    record.score = localVariant.evaluation;
}

// Drops the deepest plies until there is room for another record.
void Recorder::makeRoom() {
    keptPlies = std::min(keptPlies, keptDepth + 1);
    while (records.size() >= capacity && keptPlies > 1) {
        --keptPlies;
        dropPliesFrom(keptPlies + 1);
    }
}

// Drops the records of all moves that are `first` or more plies from the root, where the moves at
// the root are at 1.
void Recorder::dropPliesFrom(int first) {
    std::vector<int> plies(records.size());
    std::vector<std::uint32_t> places(records.size());
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::uint32_t parent = records[i].parent;
        const bool isAtRoot = parent == MoveRecord::NO_PARENT;
        plies[i] = isAtRoot ? 1 : plies[parent] + 1;
        if (plies[i] < first) {
            places[i] = count;
            records[count] = records[i];
            records[count].parent = isAtRoot ? parent : places[parent];
            ++count;
        }
    }
    records.resize(count);
    path.resize(std::min(path.size(), static_cast<std::size_t>(first - 1)));
    for (std::uint32_t& index : path) {
        index = places[index];
    }
}

void writeRecords(std::ostream& stream, const Recorder& recorder, const PassReport& pass) {
    const MoveRecord header = {.parent = static_cast<std::uint32_t>(recorder.getRecords().size()),
                               .from = static_cast<std::uint8_t>(pass.depth),
                               .to = static_cast<std::uint8_t>(recorder.getTreePlies()),
                               .kind = recorder.hasQuiscence() ? std::uint8_t{1} : std::uint8_t{0},
                               .ending = static_cast<std::uint8_t>(pass.result),
                               .alfa = pass.window.firstAlpha,
                               .beta = pass.window.firstBeta,
                               .score = pass.line.evaluation};
    std::string bytes = bytesOf(header);
    for (const MoveRecord& record : recorder.getRecords()) {
        bytes += bytesOf(record);
    }
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}
