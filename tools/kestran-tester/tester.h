// The engine for current chess programs: UciEngine with a ModernPolicy.
#pragma once

// The main function of kestran-tester.
int testerMain(int argc, const char* const* argv);
