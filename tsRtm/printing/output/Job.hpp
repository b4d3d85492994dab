#pragma once
// What a print job is told, and how far it is.
#include "tsRtm/printing/pages/Pages.hpp"

namespace tsRtm {

inline constexpr TextView kPdfDevice = u"PDF";
inline constexpr TextView kProductName = u"Tessarol Runtime";

enum class Fax : int32 { none = 0, byHand = 1, automatic = 2 };
enum class FurtherCopies : int32 { none = 0, printer = 1, pdf = 2, both = 3 };

struct Job {
    Text device;  // a printer, or kPdfDevice
    Text name;
    Text formName;
    PageTraits paper;  // of the page that comes next
    bool collate = true;
    int32 quality = 0;               // 0: as the printer is set
    int32 offsetX = 0, offsetY = 0;  // twips

    Text docPath, docFile;
    bool archive = false, isProtected = false;
    Text application, author, subject, keywords;

    Fax fax = Fax::none;
    Text faxNumber, faxTime;
    int32 faxError = 0;

    FurtherCopies furtherCopies = FurtherCopies::none;
    Text copyDevice;
    int32 copyBin = 0, copyCount = 0;

    bool brokenOff = false;
    bool closing = false;  // the document ends with what is printed now
};

}  // namespace tsRtm
