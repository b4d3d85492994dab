// Of the tool proper: the program beside it has the desktop. So no other command loads one.
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "cli/print/Paper.hpp"
#include "cli/shared/CliError.hpp"

namespace tsRtm::cli {

std::unique_ptr<Paper> attachPaper(bool) {
    std::error_code none;
    const auto program =
        std::filesystem::read_symlink("/proc/self/exe", none).replace_filename("tsrtm-paper").string();
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    std::vector<std::string> words;
    for (std::string word; std::getline(file, word, '\0');) words.push_back(word);
    std::vector<char*> list;
    list.reserve(words.size() + 1);
    for (auto& word : words) list.push_back(word.data());
    list.push_back(nullptr);
    ::execv(program.c_str(), list.data());
    throw CliError("this build of the tool has no paper: there is no " + program);
}

}  // namespace tsRtm::cli
