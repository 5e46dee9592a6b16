#include "board/attackSets.h"

#ifdef KESTRAN_SLIDER_TABLES

SliderTable::SliderTable(Attacks attacks) {
    for (const FieldIndex field : BOARD_FIELDS) {
        const FieldSet unhindered = attacks(field, NO_FIELDS);
        FieldSet& relevant = relevantFields[field];
        forEachField(unhindered, [&](FieldIndex obstacle) {
            relevant |= attacks(field, setOf(obstacle)) != unhindered ? setOf(obstacle) : NO_FIELDS;
        });
        firstAnswers[field] = static_cast<std::uint32_t>(answers.size());
        for (std::uint64_t i = 0; i < std::uint64_t{1} << countOf(relevant); ++i) {
            answers.push_back(attacks(field, _pdep_u64(i, relevant)));
        }
    }
}

const SliderTable rookTable(rookAttacksByLine);
const SliderTable bishopTable(bishopAttacksByLine);

#endif
