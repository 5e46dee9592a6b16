#include "search/transpositionTable.h"

#include "base/loggingService.h"
#include "notation/polyglotEntry.h"
#include "search/searchParameters.h"

namespace {

HashTableEntryState stateOf(int evaluation, int alfa, int beta) {
    if (evaluation >= beta) {
        return FAILHIGH;
    }
    return evaluation > alfa ? NOFAIL : FAILLOW;
}

// Whether the stored value is an upper limit of the move's value.
bool isUpperLimit(HashTableEntryState state) {
    return state == NOFAIL || state == FAILLOW;
}

} // namespace

void TranspositionTable::addTableEntry(const Position& position, const Move* firstVariantMove,
                                       int maxVariantDepth, int evaluation, int alfa, int beta) {
    if (hashTable.isEmpty()) {
        return;
    }
    GenericEntry& entry = hashTable.getEntry(position.incremental.hash);
    entry.state = stateOf(evaluation, alfa, beta);
    entry.maxVariantDepth = static_cast<std::int8_t>(maxVariantDepth);
    entry.evaluation = evaluation;
    entry.checkHashProduction = hashTable.getCheckValue(position.incremental.hash);
    if (firstVariantMove != nullptr) {
        entry.moveRepresentation = PolyglotEntry::getIntRepresentation(*firstVariantMove);
    }
}

bool TranspositionTable::useTableEntry(const Position& position, int maxVariantDepth,
                                       int& evaluation) {
    if (hashTable.isEmpty()) {
        return false;
    }
    bool clash = false;
    const GenericEntry& entry = hashTable.getEntry(position.incremental.hash, clash);
    if (clash || entry.state != NOFAIL || entry.maxVariantDepth < maxVariantDepth) {
        return false;
    }
    evaluation = entry.evaluation;
    return true;
}

bool TranspositionTable::lmf(const Position& position, int alfa, int originalAlfa,
                             int maxVariantDepth) {
    if (hashTable.isEmpty()) {
        return false;
    }
    bool clash = false;
    const GenericEntry& entry = hashTable.getEntry(position.incremental.hash, clash);
    return !clash && isUpperLimit(entry.state) && alfa != originalAlfa &&
           entry.maxVariantDepth + 1 >= maxVariantDepth && entry.evaluation + LMF_MARGIN < alfa;
}

std::int16_t TranspositionTable::getBestMoveHint(const Position& position) {
    if (hashTable.isEmpty()) {
        return 0;
    }
    const GenericEntry& entry = hashTable.getEntry(position.incremental.hash);
    return isUpperLimit(entry.state) ? entry.moveRepresentation : std::int16_t{0};
}

std::int16_t TranspositionTable::getAnyMove(const Position& position) {
    return hashTable.getEntry(position.incremental.hash).moveRepresentation;
}

int TranspositionTable::resize(int size) {
    if (hashTable.getSize() != size) {
        logger.info("resizing hash table");
        hashTable.resize(size);
    }
    return hashTable.getSize();
}
