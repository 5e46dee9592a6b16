// The engine for current chess programs: UciEngine with a ModernPolicy.
#pragma once

// The main function of kestran-modern.
int modernMain(int argc, const char* const* argv);
