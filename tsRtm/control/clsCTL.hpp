#pragma once
// Opens a structure file by the name of a database or of a file.
#include <memory>

#include "tsRtm/fields/TSIO.hpp"

namespace tsRtm {

class clsControl;
class FilesTopic;

class clsCTL {
 public:
    explicit clsCTL(FilesTopic& Files) noexcept : files_(Files) {}

    // "Control.tsd" in Datei ".DBD" where there is one, else Datei ".CTL"; nothing where it cannot be opened.
    std::shared_ptr<clsControl> OpenControl(TextView Datei);
    // The fields of OpenControl, and whether their texts were in the DOS code page; their count, 0 for none.
    int32 ReadCtl(TextView Datei, TSIOArray& Feld, bool& NichtAnsi);

 private:
    FilesTopic& files_;
};

}  // namespace tsRtm
