#pragma once
// The window that shows a job's pages before they reach paper.
#include <memory>

#include "tsRtm/platform/Drawing.hpp"
#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::platform {

struct PreviewedPage {
    int32 width = 0, height = 0;  // twips
    bool closed = false;          // only such can be shown
};

struct PreviewedFacts {
    Text jobName, device;
    bool duplex = false;
    int32 copies = 1;
    int32 buttonsOff = 0;  // 1 print all, 2 clipboard, 4 print the page
};

// A page that can be drawn anywhere.
class PageSource {
 public:
    virtual ~PageSource() = default;
    virtual PreviewedPage page() const = 0;
    // In so many pixels; places count from the device's corner.
    virtual void draw(PageDevice& device, int32 width, int32 height) const = 0;
};

// The job as its window sees it. Pages are counted from 1.
class PreviewedJob {
 public:
    virtual ~PreviewedJob() = default;
    virtual PreviewedFacts facts() const = 0;
    virtual int32 pages() const = 0;
    // nullptr behind the last one. Good until the job's next call.
    virtual std::unique_ptr<PageSource> source(int32 page) const = 0;
    // A proof print of one page.
    virtual void printPage(int32 page) = 0;
    virtual void copyPage(int32 page) = 0;
    // The window closes: all is to be printed, or the job is cancelled. The job lets go of the window.
    virtual void leave(bool print) = 0;
};

struct PreviewWish {
    int32 view = 1;         // 1 whole page, 2 width of the window, 3 enlarged
    int32 windowState = 0;  // 0 normal, 2 maximised
    bool modal = false;
    int32 owner = 0;  // the window before it
};

// Calls nothing of its job any more once it has called leave(), and closes.
class Preview {
 public:
    virtual ~Preview() = default;
    // Modal: returns when the window is closed.
    virtual void show(const PreviewWish& wish) = 0;
    // Another page is there, or the job's facts have changed.
    virtual void update() = 0;
};

class Previews {
 public:
    virtual ~Previews() = default;
    // The job outlives the window.
    virtual std::unique_ptr<Preview> open(PreviewedJob& job) = 0;
    // Puts a page on the clipboard.
    virtual SystemError copy(const PageSource& page) = 0;
};

}  // namespace tsRtm::platform
