// Measures by ratio: what is measured and a named floor run alternately in one process, and the best times of
// both are compared. These machines are noisy; a single time says nothing.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarvo_bench {

struct Ratio {
    double subject_seconds;
    double floor_seconds;
    double ratio() const { return subject_seconds / floor_seconds; }
};

// The best of `rounds` runs of each, alternately.
Ratio compare(int rounds, const std::function<void()>& subject, const std::function<void()>& floor);

// For runs that are too short for `compare`: the ratios of pairs of runs that lie close together in time and
// take turns in going first. A burst of noise spoils few pairs and a drift none, and the median forgets the
// spoilt ones.
struct PairedRatio {
    double median;
    double low; // the 95 % confidence interval of the median
    double high;
    int pairs;
};

// Goes on until the interval is within `precision` of the median on both sides, or `most_pairs` are there.
PairedRatio compare_pairs(int most_pairs, double precision, const std::function<void()>& subject,
                          const std::function<void()>& floor);

// The best of `rounds` runs.
double best_seconds(int rounds, const std::function<void()>& subject);

// Bytes that operator new has handed out and not got back, at its highest since the last reset.
void reset_peak();
std::size_t peak_bytes();
std::size_t live_bytes();

// Makes the process's heap as large as a host's and keeps it so: many small blocks are allocated, and a few
// of them, spread all over, stay until the end.
class GrownHeap {
public:
    GrownHeap();

private:
    std::vector<std::unique_ptr<char[]>> kept_;
};

// One line of the report: "name  value  (at most limit)" and whether it holds.
void report(const std::string& name, double value, double limit);

// The same with the interval. A limit inside the interval is undecided.
void report(const std::string& name, const PairedRatio& ratio, double limit);

} // namespace tarvo_bench
