#include "bench/harness.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

std::size_t g_live = 0;
std::size_t g_peak = 0;

// Each block carries its size in front, at the alignment that operator new promises.
constexpr std::size_t kHeader = 16;

void* take(std::size_t size) {
    char* block = static_cast<char*>(std::malloc(size + kHeader));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    *reinterpret_cast<std::size_t*>(block) = size;
    g_live += size;
    g_peak = std::max(g_peak, g_live);
    return block + kHeader;
}

void give_back(void* pointer) noexcept {
    if (pointer == nullptr) {
        return;
    }
    char* block = static_cast<char*>(pointer) - kHeader;
    g_live -= *reinterpret_cast<std::size_t*>(block);
    std::free(block);
}

} // namespace

void* operator new(std::size_t size) {
    return take(size);
}
void* operator new[](std::size_t size) {
    return take(size);
}
void operator delete(void* pointer) noexcept {
    give_back(pointer);
}
void operator delete[](void* pointer) noexcept {
    give_back(pointer);
}
void operator delete(void* pointer, std::size_t) noexcept {
    give_back(pointer);
}
void operator delete[](void* pointer, std::size_t) noexcept {
    give_back(pointer);
}

namespace tarvo_bench {

namespace {

double seconds(const std::function<void()>& run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

Ratio compare(int rounds, const std::function<void()>& subject, const std::function<void()>& floor) {
    Ratio best = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    for (int round = 0; round < rounds; ++round) {
        best.floor_seconds = std::min(best.floor_seconds, seconds(floor));
        best.subject_seconds = std::min(best.subject_seconds, seconds(subject));
    }
    return best;
}

PairedRatio compare_pairs(int most_pairs, double precision, const std::function<void()>& subject,
                          const std::function<void()>& floor) {
    constexpr int kFewestPairs = 25;
    constexpr double kRanks = 0.98; // of 95 %: half the normal quantile times the square root of the count
    std::vector<double> ratios;
    PairedRatio result = {0.0, 0.0, 0.0, 0};
    while (result.pairs < most_pairs) {
        const bool floor_first = ratios.size() % 2 == 0;
        const double before = seconds(floor_first ? floor : subject);
        const double after = seconds(floor_first ? subject : floor);
        const double ratio = floor_first ? after / before : before / after;
        ratios.insert(std::upper_bound(ratios.begin(), ratios.end(), ratio), ratio);
        result.pairs = static_cast<int>(ratios.size());
        if (result.pairs < kFewestPairs) {
            continue;
        }
        const std::size_t middle = ratios.size() / 2;
        const std::size_t ranks = static_cast<std::size_t>(kRanks * std::sqrt(result.pairs)) + 1;
        result.median = ratios[middle];
        result.low = ratios[middle - ranks];
        result.high = ratios[middle + ranks];
        if (result.high - result.median <= precision * result.median &&
            result.median - result.low <= precision * result.median) {
            break;
        }
    }
    return result;
}

double best_seconds(int rounds, const std::function<void()>& subject) {
    double best = std::numeric_limits<double>::max();
    for (int round = 0; round < rounds; ++round) {
        best = std::min(best, seconds(subject));
    }
    return best;
}

void reset_peak() {
    g_peak = g_live;
}
std::size_t peak_bytes() {
    return g_peak;
}
std::size_t live_bytes() {
    return g_live;
}

void report(const std::string& name, double value, double limit) {
    std::printf("%-72s %8.3f  (at most %.2f)%s\n", name.c_str(), value, limit,
                value <= limit ? "" : "  MISSED");
    std::fflush(stdout);
}

void report(const std::string& name, const PairedRatio& ratio, double limit) {
    const char* verdict = ratio.high <= limit ? "" : ratio.low > limit ? "  MISSED" : "  UNDECIDED";
    std::printf("%-72s %8.3f  (at most %.2f)%s\n", name.c_str(), ratio.median, limit, verdict);
    std::printf("  95 %% between %.3f and %.3f, %d pairs\n", ratio.low, ratio.high, ratio.pairs);
    std::fflush(stdout);
}

GrownHeap::GrownHeap() {
    constexpr std::size_t kBlocks = 8000000;
    constexpr std::size_t kKeptOneIn = 500;
    constexpr std::size_t kSmallest = 48;
    constexpr std::size_t kStep = 16;
    constexpr std::size_t kSizes = 7;
    std::vector<std::unique_ptr<char[]>> blocks;
    blocks.reserve(kBlocks);
    for (std::size_t i = 0; i < kBlocks; ++i) {
        blocks.emplace_back(new char[kSmallest + i % kSizes * kStep]);
    }
    for (std::size_t i = 0; i < kBlocks; i += kKeptOneIn) {
        kept_.push_back(std::move(blocks[i]));
    }
}

} // namespace tarvo_bench
