#pragma once
// Printers, as far as a job asks them.
#include <memory>
#include <vector>

#include "tsRtm/platform/Drawing.hpp"
#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::platform {

// What a printer is set to. 0 in a printer that does not know it.
enum class PrinterFeature {
    copies,
    paperBin,
    duplex,  // 1 off, 2 over the short edge, 3 over the long one, as the sheet lies
    quality,
    paperSize,  // number of a form
    width,      // of the paper in twips, standing
    height,
    orientation,  // 1 portrait, 2 landscape
};

struct PaperBin {
    int32 number = 0;
    Text name;
};

// A size of paper with a name; the place in the list, from 1, is its number.
struct PaperForm {
    Text name;
    int32 width = 0, height = 0;  // thousandths of a millimetre
};

// The forms of a printer.
class PaperForms {
 public:
    virtual ~PaperForms() = default;
    virtual std::vector<PaperForm> all() = 0;
    // The whole sheet can be printed on. alreadyExists: the name is taken; accessDenied: no right to.
    virtual SystemError add(const PaperForm& form) = 0;
};

// A printer, with at most one document under way.
class Printer {
 public:
    virtual ~Printer() = default;
    virtual int32 value(PrinterFeature feature) = 0;
    // Whether it has the value then.
    virtual bool set(PrinterFeature feature, int32 value) = 0;
    // Starts a side, and before the first one the document, which has this name in the queue. The device is
    // good until the next call of the printer; nullptr: the printer is gone.
    virtual PageDevice* page(TextView document) = 0;
    // Ends the document, which has reached the printer whole then, or gives it up; nothing where none is
    // under way.
    [[nodiscard]] virtual SystemError endDocument() = 0;
    virtual void killDocument() = 0;
    virtual std::vector<PaperBin> bins() = 0;
    virtual PaperForms& forms() = 0;
};

class Printers {
 public:
    virtual ~Printers() = default;
    // The first is the user's own.
    virtual std::vector<Text> names() = 0;
    // The printer of exactly this name, which stays the same object while its document is under way; nothing
    // where there is none. A name that is not listed may be one, too: the address of a printer.
    virtual std::shared_ptr<Printer> printer(TextView name) = 0;
};

}  // namespace tsRtm::platform
