#pragma once
// What a job holds behind its face.
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/printing/output/JobOutput.hpp"
#include "tsRtm/printing/text/PlainMeasure.hpp"
#include "tsRtm/printing/text/TextWriter.hpp"

namespace tsRtm {

// The formatted text that was placed last, maybe to count its pages.
struct FormattedSource {
    Text rtf;
    bool blackened = false;
    std::shared_ptr<const platform::FormattedText> text;  // what was read of it
};

struct DruckState {
    DruckState(MessagesTopic& theMessages, const platform::Paper* thePaper)
        : messages(theMessages),
          paper(thePaper),
          writer(pages, thePaper ? thePaper->measure : static_cast<platform::TextMeasure&>(plain)),
          output(job, pages, thePaper, theMessages) {}

    MessagesTopic& messages;
    const platform::Paper* paper;  // nullptr: no desktop
    PlainMeasure plain;
    Job job;
    Pages pages;
    TextWriter writer;
    JobOutput output;

    bool initialized = false;
    bool used = false;  // the page has received something
    int32 backgroundMode = 1;
    int32 rtfBackColour = 0xFFFFFF;
    FormattedSource formatted;

    bool preview = false;  // the job goes to the preview
    bool previewShown = false;
    bool modal = false;
    int32 previewView = 1, previewState = 0, previewButtonsOff = 0;
    bool windowOpen = false;
    std::unique_ptr<platform::PreviewedJob> previewed;
    std::unique_ptr<platform::Preview> window;
};

}  // namespace tsRtm
