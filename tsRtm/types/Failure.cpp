#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

Failure::Failure(int32 Number, TextView Source, TextView Description)
    : number_(Number),
      source_(Source),
      description_(Description),
      what_(toUtf8(Source) + ": " + toUtf8(Description) + " (" + std::to_string(Number) + ")") {}

void raise(int32 Number, TextView Source, TextView Description) {
    throw Failure(Number, Source, Description);
}

}  // namespace tsRtm
