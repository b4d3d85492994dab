#pragma once
// What every measuring program shares: options, clock, output lines, memory and folder sizes.
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tsRtm::bench {

// --engine E --workload W --dir D --csv F --n N, and what single workloads take besides.
struct Options {
    std::string engine, workload, dir, csv;
    std::string journal = "delete";  // SQLite: the journal mode of shared writing
    long n = 0;                      // rows of the table
    long procs = 2, per = 2000;      // multiuser: processes, updates of each
    long hot = 0;                    // multiuser: only the first rows are written, 0 for all
    long mmapMb = 0;                 // SQLite: MiB of the file that are mapped
    double budget = 10;              // seconds, for workloads that may be cut short
};

// Ends the program with status 2 on an unknown option.
Options readOptions(int argc, char** argv);
// "multiuser4" or "durable4", with "_per20000" and "_hot10" where these differ from the usual.
std::string multiuserName(const Options& options);

class Stopwatch {
 public:
    double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

 private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// How long single steps took.
class Latencies {
 public:
    template <class Step>
    void time(Step step) {
        const Stopwatch watch;
        step();
        seconds_.push_back(watch.seconds());
    }
    // In microseconds: the time that this share of the steps kept within.
    double within(double share);

 private:
    std::vector<double> seconds_;
};

// One figure: "engine workload n value unit".
void emit(const std::string& engine, std::string_view workload, long n, double value, const char* unit);
// A remark line, "# kind engine text". "check" lines of two engines must say the same.
void remark(const char* kind, const std::string& engine, const std::string& text);
// Ends the program, also a child of a gate, with status 1 and a message on standard error.
[[noreturn]] void die(const std::string& what);

// The most memory this process has held, in MiB, mapped file pages included.
double peakMemoryMiB();
// What the process holds by itself now, without the pages of files that it maps.
double privateMemoryMiB();
// All files of a folder, with those of its folders.
double folderMiB(const std::string& folder);
// Leaves an empty folder, made where it was missing.
void emptyFolder(const std::string& folder);

}  // namespace tsRtm::bench
