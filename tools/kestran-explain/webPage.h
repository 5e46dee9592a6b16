// kestran.html, the page with the engine inside, as a report about a line.
#pragma once

#include "explain/lineAnswer.h"

#include <string>
#include <string_view>

// kestran.html; empty if there was none when the program was built.
extern const std::string_view WEB_PAGE;

// The JSON text of the search and its answer that the page shows; see EmbeddedSearch in
// web/page/protocol.ts. `hashMebibytes` is the size of the hash table.
std::string embeddedSearch(const WatchedLine& line, const Answer& answer, int depth,
                           int hashMebibytes);

// The page with an embedded search, which must not contain "<".
std::string withSearch(std::string_view page, const std::string& search);
