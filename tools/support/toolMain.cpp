// The program of a tool whose library has TOOL_MAIN, such as benchMain.

int TOOL_MAIN(int argc, const char* const* argv);

int main(int argc, char** argv) {
    return TOOL_MAIN(argc, argv);
}
