// kestran-explain: why did the search not follow this line?
#pragma once

// The main function of kestran-explain.
int explainMain(int argc, const char* const* argv);
