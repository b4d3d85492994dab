#pragma once
#include "tsRtm/printing/output/Job.hpp"

namespace tsRtm {

// Tells the fax program whose number the document that now ends is for, before it ends. Waits as that program
// needs it.
void announceFax(Job& job, TextView document);

// Waits until an automatic fax has been taken, 5 seconds at most; Job::faxError is 1 then.
void awaitFax(Job& job, TextView document);

}  // namespace tsRtm
