// What code prints to standard output.
#pragma once

#include <gtest/gtest.h>
#include <string>

template <typename Write> std::string printed(Write write) {
    testing::internal::CaptureStdout();
    write();
    return testing::internal::GetCapturedStdout();
}
