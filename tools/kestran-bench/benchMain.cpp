// kestran-bench: searches a fixed set of positions and prints the signature of the search.

#include "kestran-bench/bench.h"
#include "support/commandLine.h"

int main(int argc, char** argv) {
    return runTool("kestran-bench", BENCH_HELP, argc, argv, runBench);
}
