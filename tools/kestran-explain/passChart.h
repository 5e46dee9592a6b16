// A chart of what the passes of a search came to, for the page.
#pragma once

#include "explain/watchedLine.h"
#include "kestran-explain/htmlWriter.h"

// Draws the score of each pass as a line and its nodes as columns. The same is in words
// next to the chart.
void drawPasses(HtmlWriter& html, const WatchedLine& line);
