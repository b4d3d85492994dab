#include "bench/support/Measure.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>

namespace tsRtm::bench {
namespace {

namespace fs = std::filesystem;

constexpr double kMiB = 1024.0 * 1024.0;

}  // namespace

Options readOptions(int argc, char** argv) {
    Options o;
    const auto text = [](std::string& into) { return [&into](const char* v) { into = v; }; };
    const auto number = [](long& into) { return [&into](const char* v) { into = std::atol(v); }; };
    const std::map<std::string_view, std::function<void(const char*)>> known = {
        {"--engine", text(o.engine)},
        {"--workload", text(o.workload)},
        {"--dir", text(o.dir)},
        {"--csv", text(o.csv)},
        {"--journal", text(o.journal)},
        {"--n", number(o.n)},
        {"--procs", number(o.procs)},
        {"--per", number(o.per)},
        {"--hot", number(o.hot)},
        {"--mmap-mb", number(o.mmapMb)},
        {"--budget", [&](const char* v) { o.budget = std::atof(v); }},
    };
    for (int i = 1; i < argc; i += 2) {
        const auto option = known.find(argv[i]);
        if (option == known.end() || i + 1 >= argc) {
            std::fprintf(stderr, "unknown option or no value: %s\n", argv[i]);
            std::exit(2);
        }
        option->second(argv[i + 1]);
    }
    return o;
}

double Latencies::within(double share) {
    if (seconds_.empty()) die("nothing was measured");
    const auto last = seconds_.size() - 1;
    const auto at = seconds_.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(last));
    std::nth_element(seconds_.begin(), at, seconds_.end());
    return *at * 1e6;
}

std::string multiuserName(const Options& options) {
    std::string out = options.workload + std::to_string(options.procs);
    if (options.per != Options{}.per) out += "_per" + std::to_string(options.per);
    if (options.hot != 0) out += "_hot" + std::to_string(options.hot);
    return out;
}

void emit(const std::string& engine, std::string_view workload, long n, double value, const char* unit) {
    std::printf("%s %.*s %ld %.6g %s\n", engine.c_str(), static_cast<int>(workload.size()), workload.data(),
                n, value, unit);
    std::fflush(stdout);
}

void remark(const char* kind, const std::string& engine, const std::string& text) {
    std::printf("# %s %s %s\n", kind, engine.c_str(), text.c_str());
    std::fflush(stdout);
}

void die(const std::string& what) {
    std::fprintf(stderr, "failed: %s\n", what.c_str());
    std::fflush(stderr);
    ::_exit(1);
}

double peakMemoryMiB() {
    // Not by getrusage, whose peak begins with that of the program that started this one.
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::atof(line.c_str() + std::strlen("VmHWM:")) / 1024.0;
    die("the system does not tell the peak memory");
}

double privateMemoryMiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("RssAnon:")) return std::atof(line.c_str() + std::strlen("RssAnon:")) / 1024.0;
    die("the system does not tell the private memory");
}

double folderMiB(const std::string& folder) {
    double bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) bytes += static_cast<double>(entry.file_size());
    return bytes / kMiB;
}

void emptyFolder(const std::string& folder) {
    fs::create_directories(folder);
    for (const auto& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
}

}  // namespace tsRtm::bench
