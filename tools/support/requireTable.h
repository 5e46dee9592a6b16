// The size of a hash table for users of a tool, and the check that a search got its table.
#pragma once

#include "search/hashTable.h"
#include "support/text.h"

#include <string>

// The --hash of a table of `entries`: entriesOf() rounds a number of MiB down.
inline int hashOption(int entries) {
    return mebibytesOf(entries - 1) + 1;
}

// Throws UsageError if a table has other than the wanted number of entries: out of memory.
inline void requireTable(int entries, int wanted) {
    if (entries != wanted) {
        throw UsageError("there is no memory for a hash table of " +
                         std::to_string(hashOption(wanted)) + " MiB; --hash sets a smaller one");
    }
}
