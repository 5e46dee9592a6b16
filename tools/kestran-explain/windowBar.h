// The window of a node as a bar, for the page.
#pragma once

#include "explain/treeGeneratorDebug.h"
#include "kestran-explain/htmlWriter.h"

// Draws alfa, beta and the score of a move on one scale. A score that is only a
// bound is an arrow head that points to where the true one lies; lmf's moves have none.
void drawWindow(HtmlWriter& html, const NodeMoveInfo& info);
