#pragma once
// What tests of paper share: a job and its folder, what other programs say of the files that were made, and
// ink on pictures.
#include <QImage>
#include <array>
#include <cstdio>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <utility>

#include "desktop/Desktop.hpp"
#include "tests/support/TempFolder.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/printing/Druck.hpp"

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

// Where the pixels lie that are meant; none of them is an empty rectangle.
template <class Meant>
QRect pixelsOf(const QImage& image, const QRect& within, Meant meant) {
    QRect found;
    for (int y = within.top(); y <= within.bottom(); ++y)
        for (int x = within.left(); x <= within.right(); ++x)
            if (meant(image.pixel(x, y))) found |= QRect(x, y, 1, 1);
    return found;
}
inline bool dark(QRgb pixel) { return qGray(pixel) < 128; }

// Begins a document on A4 in the folder.
inline void begin(Druck& job, const Text& folder, TextView name) {
    job.Device(u"PDF");
    job.DocPath(folder);
    job.JobName(name);
    job.Init(72, 1, 1, u"A4");
}

// Writes one letter into the folder; whether that went through.
inline bool writeLetter(Druck& job, const Text& folder) {
    begin(job, folder, u"Brief");
    job.mm(30, 25, u"Brief", 14, 0);
    job.Ende();
    return !job.Abbruch();
}
// Whether a document has its first and its last bytes.
inline bool whole(const std::string& pdf) {
    return pdf.starts_with("%PDF") && pdf.find("%%EOF") != std::string::npos;
}

// A job on all that a desktop has.
class PaperTest : public ::testing::Test {
 protected:
    std::string file() const { return toUtf8(folder.name(job.DocFile())); }
    // What is read out of the file.
    std::string text(const std::string& options = "") const {
        return run("pdftotext " + options + " '" + file() + "' -").second;
    }

    TempFolder folder;
    MessagesTopic messages;
    desktop::Desktop paper;
    Druck job{messages};
};

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
