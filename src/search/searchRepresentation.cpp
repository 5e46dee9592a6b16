#include "search/searchRepresentation.h"

#include <algorithm>

bool Variant::extend(const Variant& child, const VariantMove& move) {
    const int dropped = child.varLength == MAX_VARIANT_MOVES ? 1 : 0;
    std::copy(child.variantMoves.begin() + dropped, child.variantMoves.begin() + child.varLength,
              variantMoves.begin());
    varLength = child.varLength - dropped + 1;
    get(0) = move;
    return dropped == 0;
}

void Variant::clear(int score) {
    varLength = 0;
    evaluation = score;
}
