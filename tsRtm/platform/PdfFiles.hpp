#pragma once
// Pages that go to a file.
#include <memory>

#include "tsRtm/platform/Drawing.hpp"
#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::platform {

struct PdfSettings {
    Text title, application, author, subject, keywords;
    bool archive = false;  // PDF/A-1b
    Text ownerPassword;    // protects the file, printing allowed; empty: none
};

// A file in the making. Without finish() nothing is left of it.
class PdfDocument {
 public:
    virtual ~PdfDocument() = default;
    // The next page; sizes in twips. The device is good until the next call.
    virtual PageDevice& page(int32 width, int32 height) = 0;
    // The file appears whole or not at all. One of that name stays: alreadyExists, and another name may
    // be tried.
    virtual SystemError finish(TextView name) = 0;
};

class PdfFiles {
 public:
    virtual ~PdfFiles() = default;
    virtual std::unique_ptr<PdfDocument> begin(const PdfSettings& settings) = 0;
};

}  // namespace tsRtm::platform
