#include "kestran-play/lineInput.h"

#include <iostream>

#ifdef KESTRAN_LIBEDIT
#include "support/terminal.h"

#include <cstdio>
#include <cstdlib>
#include <editline/readline.h>
#include <memory>
#include <unistd.h>

namespace {

std::optional<std::string> readEditedLine(const std::string& prompt) {
    std::cout << std::flush;
    const std::unique_ptr<char, decltype(&std::free)> typed(readline(prompt.c_str()), std::free);
    if (!typed) {
        return std::nullopt;
    }
    if (*typed != '\0') {
        add_history(typed.get());
    }
    return typed.get();
}

} // namespace

#endif

std::optional<std::string> readTypedLine(const std::string& prompt) {
#ifdef KESTRAN_LIBEDIT
    static const bool isEdited = [] {
        rl_catch_signals = 0; // the game is written by the handlers of GameKeeper
        rl_inhibit_completion = 1;
        return isatty(STDIN_FILENO) == 1 && isStandardOutputTerminal();
    }();
    if (isEdited) {
        return readEditedLine(prompt);
    }
#endif
    std::string line;
    std::cout << prompt << std::flush;
    return std::getline(std::cin, line) ? std::optional(line) : std::nullopt;
}

void restoreTerminal() {
#ifdef KESTRAN_LIBEDIT
    rl_deprep_terminal();
#endif
}
