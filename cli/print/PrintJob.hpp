#pragma once
// A job of the commands of paper: where it goes and how it looks, as their options say.
#include <functional>
#include <optional>
#include <string>

#include "cli/print/Paper.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/printing/Druck.hpp"

namespace tsRtm::cli {

class Command;

struct PrintOptions {
    std::string target;  // OUT.pdf, OUT.png, or a printer
    bool archive = false, isProtected = false, landscape = false, duplex = false, preview = false;
    int32 copies = 1, size = 10;
    std::optional<int32> bin;
    std::string font = "Arial";
};

// All of them. Fonts are left out where the document brings its own.
void addPrintOptions(Command command, PrintOptions& options, bool fonts);

// The space that is written on, millimetres from the upper left corner of the paper.
struct Area {
    float64 left, top, right, bottom;
    float64 width() const noexcept { return right - left; }
    float64 height() const noexcept { return bottom - top; }
};

class PrintJob {
 public:
    // Throws a CliError for a target that is none.
    explicit PrintJob(const PrintOptions& options);
    ~PrintJob();
    PrintJob(const PrintJob&) = delete;
    PrintJob& operator=(const PrintJob&) = delete;

    // Composes: once to learn how many pages there are, and once more with that number known, which is 0
    // before. Then the pages go where they are to go. `name` is that of the job.
    void compose(const std::string& name, const std::function<void(int32 pages)>& write);
    // Once, where no page tells how many there are.
    void compose(const std::string& name, const std::function<void()>& write);

    Druck& druck() noexcept { return druck_; }
    Area area() const noexcept;
    // One line of text of the job's font, millimetres.
    float64 lineHeight() const noexcept { return size_ * 25.4 / 72 * 1.2; }
    int32 size() const noexcept { return size_; }
    // The number of the page that is written on.
    int32 page() const noexcept { return druck_.PageCount(); }
    // Ends the page and starts the next one.
    void nextPage() { druck_.Ausgabe(); }
    // "Seite 2/9" at the right of the foot, and a text at the left.
    void foot(int32 pages, TextView left);

 private:
    void start(const std::string& name, bool forGood);
    void giveUp();
    void deliver();
    void savePictures();

    const PrintOptions& options_;
    int32 size_;
    std::unique_ptr<Paper> paper_;
    MessagesTopic messages_;
    Druck druck_;
    Text folder_, file_;
    bool pdf_, png_;
};

}  // namespace tsRtm::cli
