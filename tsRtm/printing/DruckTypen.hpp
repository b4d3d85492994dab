#pragma once
// The constants of a print job.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

// Type of BV90 and SetzText: the pitch, and flags.
enum BVDruckKonstanten : int32 {
    bvCPI20 = 0,
    bvCPI10 = 1,
    bvCPI12 = 2,
    bvCPI17 = 3,
    bvBreit = 4,
    bvFett = 8,
    bvUnterstrichen = 16,
    bvRechtsbuendig = 32,
    bvKursiv = 64,
    bvZentriert = 128,
};

// Attributes of a text, and bits of Anzahl in Init; tsQuer has the value of tsZentriert.
enum TSDruckKonstanten : int32 {
    tsLinksBuendig = 0,
    tsFett = 1,
    tsUnterstrichen = 2,
    tsKursiv = 4,
    tsRechtbuendig = 128,
    tsZentriert = 256,
    tsQuer = 256,
    tsduplex = 512,
    tsDuplexVertikal = 512,
    tsDuplexHorizontal = 1024,
};

enum PrintOrientation : int32 { poPortrait = 1, poLandscape = 2 };

enum GDIBrushStyles : int32 { bsNone = -1, bsSolid = 0, bsHollow = 1, bsHatched = 2 };

enum eCopyTypes : int32 { NoCopy = 0, CopyToPrinter = 1, CopyToPDF = 2, CopyToPrinterAndPDF = 3 };

// The kinds of a third maker have no effect.
enum eFaxTypen : int32 {
    KeinFax = 0,
    FritzFaxManuell = 1,
    FritzFaxAutomatisch = 2,
    GFIFaxManuell = 3,
    GFIFaxAutomatisch = 4,
};

// What the preview does not offer.
enum tsButtons : int32 { tsAllesdrucken = 1, tsClipboard = 2, tsSeitedrucken = 4 };

}  // namespace tsRtm
