// The check that a search of a tool got its hash table.
#pragma once

#include "search/hashTable.h"
#include "support/text.h"

#include <string>

// Throws UsageError if a table has other than the wanted number of entries: out of memory.
inline void requireTable(int entries, int wanted) {
    if (entries != wanted) {
        throw UsageError("there is no memory for a hash table of " +
                         std::to_string(mebibytesOf(wanted)) + " MiB; --hash sets a smaller one");
    }
}
