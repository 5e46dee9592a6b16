// Running a tool, as its command line would.
#pragma once

#include "support/uciProcess.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

struct ToolRun {
    int status;
    std::string output;
    std::string errors;
};

// For what a program does not do at once.
inline constexpr UciProcess::Timeout PATIENCE{240000};

// Runs a program to its end.
inline ToolRun run(const std::string& path, const std::vector<std::string>& arguments) {
    UciProcess process(path, arguments);
    ToolRun run{-1, "", ""};
    while (const auto line = process.readLine(PATIENCE)) {
        run.output += *line + '\n';
    }
    const auto end = process.waitForEnd(PATIENCE);
    run.status = end && end->exited ? end->status : -1;
    run.errors = process.readErrors();
    return run;
}

// Runs a tool's body inside the test. `body` is its main function; the words come without the
// tool's own name.
inline ToolRun runBody(int (*body)(int, const char* const*),
                       const std::vector<std::string>& words) {
    std::vector<const char*> argv = {"tool"};
    for (const std::string& word : words) {
        argv.push_back(word.c_str());
    }
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = body(static_cast<int>(argv.size()), argv.data());
    return {status, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

// A text file of the running test that lives as long as the object.
class TextFile {
public:
    explicit TextFile(const std::string& text)
        : path(testing::TempDir() + "toolTest." +
               testing::UnitTest::GetInstance()->current_test_info()->name()) {
        std::ofstream(path) << text;
    }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    ~TextFile() { std::remove(path.c_str()); }

    const std::string path;
};

// A folder of the running test, empty at first, that lives as long as the object.
struct TestFolder {
    TestFolder() {
        std::filesystem::remove_all(path);
        std::filesystem::create_directory(path);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() { std::filesystem::remove_all(path); }

    const std::string path = testing::TempDir() + "toolTestFolder." + std::to_string(getpid());
};

// Status 2, nothing on standard output, and one sentence on standard error that contains `what`.
inline void expectRefusal(const ToolRun& run, const std::string& what) {
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.errors.find(what), std::string::npos) << run.errors;
    EXPECT_EQ(run.errors.find('\n'), run.errors.size() - 1) << run.errors;
}
