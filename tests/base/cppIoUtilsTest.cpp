// Helpers for text and paths.
#include "base/cppIoUtils.h"
#include "testing/printed.h"

#include <gtest/gtest.h>

namespace {

TEST(TextHelpers, IndentSplitAndTurnSlashes) {
    EXPECT_EQ(indentString(2, ""), "  ");
    EXPECT_EQ(indentString(2, "a\n\nb\n"), "  a\n  \n  b\n  ");
    EXPECT_EQ(splitString(" a\tb\n  c "), (std::vector<std::string>{"a", "b", "c"}));
    Env env;
    env.system = EnvSystem::LINUX;
    EXPECT_EQ(env.slashSafeString("a\\b/c"), "a/b/c");
    env.system = EnvSystem::WINDOWS;
    EXPECT_EQ(env.slashSafeString("a\\b/c"), "a\\b\\c");
    std::string path = "/a\\b/";
    EXPECT_EQ(env.slashSafeCString(path.data()), path.data());
    EXPECT_EQ(path, "\\a\\b\\");
    EXPECT_EQ(printed([&] { env.print(); }), "Environment :\nSystem :1\n");
    Env::getInstance().system = EnvSystem::WINDOWS;
    EXPECT_EQ(Env::getInstance().slashSafeString("/"), "\\");
    Env::getInstance().system = Env().system;
}

} // namespace
