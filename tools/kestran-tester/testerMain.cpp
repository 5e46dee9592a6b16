// kestran-tester: the engine behind the front end that today's test programs expect.

#include "kestran-tester/tester.h"
#include "support/commandLine.h"

int main(int argc, char** argv) {
    return runTool("kestran-tester", TESTER_HELP, argc, argv, runTester);
}
