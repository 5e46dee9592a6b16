#include "search/variant.h"

#include "notation/moveText.h"

#include <algorithm>
#include <iostream>
#include <sstream>

bool Variant::extend(const Variant& child, const VariantMove& move) {
    const int dropped = child.varLength == MAX_VARIANT_MOVES ? 1 : 0;
    std::copy(child.variantMoves.begin() + dropped, child.variantMoves.begin() + child.varLength,
              variantMoves.begin());
    varLength = child.varLength - dropped + 1;
    get(0) = move;
    return dropped == 0;
}

void printVariantMove(std::ostream& stream, const VariantMove& move) {
    stream << (move.isQuiscence ? "(" : "");
    printMove(stream, move.move);
    stream << (move.isHash ? "(h)" : "") << (move.isOpening ? "(o)" : "")
           << (move.isQuiscence ? ")" : "");
}

void printVariantMove(const VariantMove& move) {
    printVariantMove(std::cout, move);
}

void printVariant(std::ostream& stream, const VariantMove* moves, int varLength) {
    for (int i = varLength - 1; i >= 0; --i) {
        printVariantMove(stream, moves[i]);
        stream << ' ';
    }
}

void printVariant(const VariantMove* moves, int varLength) {
    printVariant(std::cout, moves, varLength);
}

void printVariant(std::ostream& stream, const Variant& variant) {
    printVariant(stream, variant.variantMoves.begin(), variant.varLength);
    stream << "Evaluation : " << variant.evaluation << '\n';
}

void printVariant(const Variant& variant) {
    printVariant(std::cout, variant);
}

std::string variantToString(const Variant& variant) {
    std::ostringstream stream;
    printVariant(stream, variant);
    return stream.str();
}
