#pragma once
// What tests ask other programs about the files that were made.
#include <array>
#include <cstdio>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <utility>

namespace tsRtm::test {

// What a command prints, and how it ends.
inline std::pair<int, std::string> run(const std::string& command) {
    std::string text;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    std::array<char, 4096> room;
    for (std::size_t got; (got = fread(room.data(), 1, room.size(), pipe)) > 0;)
        text.append(room.data(), got);
    return {pclose(pipe), text};
}
inline bool has(const std::string& program) { return run("command -v " + program).first == 0; }

struct WordPlace {
    double left, top, right;
};

// Where each word of the first page is, in points from the left and the top edge.
inline std::map<std::string, WordPlace> wordsOf(const std::string& file) {
    std::map<std::string, WordPlace> found;
    std::istringstream lines(run("pdftotext -bbox -f 1 -l 1 '" + file + "' -").second);
    const std::regex word(R"rx(xMin="([0-9.]+)" yMin="([0-9.]+)" xMax="([0-9.]+)".*>([^<]+)</word>)rx");
    std::smatch match;
    for (std::string line; std::getline(lines, line);)
        if (std::regex_search(line, match, word))
            found[match[4]] = {std::stod(match[1]), std::stod(match[2]), std::stod(match[3])};
    return found;
}

}  // namespace tsRtm::test
