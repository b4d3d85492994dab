#pragma once
// Texts that go on over as many pages as they need.
#include "cli/print/PrintJob.hpp"
#include "cli/shared/TextFiles.hpp"

namespace tsRtm::cli {

// Paragraph below paragraph in the area of a job.
class Flow {
 public:
    // `frame` writes what stands on every page, the first one at once.
    Flow(PrintJob& job, std::function<void()> frame);

    void add(Text paragraph);
    void newPage();
    // Where the next line stands, and the room that is left for lines, millimetres.
    float64 row() const noexcept { return row_; }
    float64 room() const noexcept { return area_.bottom - row_; }
    void skip(float64 height) noexcept { row_ += height; }

 private:
    Text cut(TextView paragraph);
    float64 heightOf(TextView text);
    void write(TextView text);

    PrintJob& job_;
    Area area_;
    std::function<void()> frame_;
    float64 row_;
};

// Formatted text in the first area, and from the second page on in the other one.
void flowRtf(PrintJob& job, TextView rtf, const Area& first, const Area& other,
             const std::function<void()>& frame);

// Throws a CliError where it cannot be read.
Text textOfFile(const std::string& file, FileEncoding encoding);
// Without its folders.
std::string baseName(const std::string& file);

}  // namespace tsRtm::cli
