// Linked to every test program of the mutated build: with TARVO_MUTANT_REACH, writes for each test the
// mutants that it came to, one line each, into the file that TARVO_MUTANT_TESTS names.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>

unsigned char* mutants_reached(int& count);

namespace {

class ReachListener : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo&) override {
        int count = 0;
        unsigned char* const seen = mutants_reached(count);
        if (seen != nullptr) {
            std::memset(seen, 0, static_cast<std::size_t>(count));
        }
    }

    void OnTestEnd(const ::testing::TestInfo& test) override {
        int count = 0;
        const unsigned char* const seen = mutants_reached(count);
        const char* const name = std::getenv("TARVO_MUTANT_TESTS");
        if (seen == nullptr || name == nullptr) {
            return;
        }
        std::ofstream file(name, std::ios::app);
        file << test.test_suite_name() << "." << test.name() << " " << test.result()->Passed() << " "
             << test.result()->elapsed_time();
        for (int number = 0; number < count; ++number) {
            if (seen[number] != 0) {
                file << " " << number;
            }
        }
        file << "\n";
    }
};

const bool g_installed = [] {
    ::testing::UnitTest::GetInstance()->listeners().Append(new ReachListener);
    return true;
}();

} // namespace
