// Runs the tests of a program that reads a great many files.
#include <gtest/gtest.h>
#include <thread>

// On a thread of its own: for the main thread, asking where the stack ends reads a table of the
// system, in every call that reads a nested directory.
int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    int status = 1;
    std::thread([&status] { status = RUN_ALL_TESTS(); }).join();
    return status;
}
