#pragma once
#include <memory>

#include "tsRtm/platform/Paper.hpp"
#include "tsRtm/printing/output/Job.hpp"

namespace tsRtm {

class MessagesTopic;

// Brings the pages of a job to a printer or into a file. Knows its parts by reference. Failures are told to
// the user and break the job off; 429 is raised where there is nobody to make the file.
class JobOutput {
 public:
    JobOutput(Job& job, Pages& pages, const platform::Paper* paper, MessagesTopic& messages);
    ~JobOutput();

    // 0: all pages; above 0: that one; below 0: a proof print of the page of the absolute number, alone. In a
    // document that stays open unless the job is closing, or it is a proof print.
    void print(int32 which);
    // Also to the printer and as a file for the files, as the job asks.
    void printFurtherCopies();
    // Ends the printer's document, with the fax that it may be, or the file; nothing where none is under way.
    void endDocument();
    // Gives up what is under way.
    void kill();
    // Pages are played at this moment, and the caller is an event between two of them.
    bool playing() const noexcept { return playing_; }

    // The job's printer; nullptr without one.
    std::shared_ptr<platform::Printer> printer() const;
    platform::Printers* printers() const noexcept { return paper_ ? paper_->printers : nullptr; }
    bool toFile() const noexcept { return job_.device == kPdfDevice; }

 private:
    struct Range {
        int32 first, last;
        int32 count() const noexcept { return last - first + 1; }
    };

    void toPrinter(int32 which, Range range);
    void toPdf(int32 which, Range range);
    int32 setCopies(platform::Printer& printer, int32 which);
    bool setDuplex(platform::Printer& printer, int32 which, Range range);
    void setPaper(platform::Printer& printer);
    bool playOn(const std::shared_ptr<platform::Printer>& printer, const Page& page);
    void endPaper();
    void abandon();
    void finish(platform::PdfDocument& file);
    void tell(TextView text);
    Text document() const;

    Job& job_;
    Pages& pages_;
    const platform::Paper* paper_;
    MessagesTopic& messages_;
    // What is under way.
    std::shared_ptr<platform::Printer> started_;
    Text startedOn_;  // its name
    std::unique_ptr<platform::PdfDocument> pdf_;
    bool playing_ = false;
};

}  // namespace tsRtm
