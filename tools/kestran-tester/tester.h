// The engine for testing engines: the search of Kestran with a ModernPolicy.
#pragma once

// The main function of kestran-tester.
int testerMain(int argc, const char* const* argv);
