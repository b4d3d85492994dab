#pragma once
// Reads a structure file into its content.
#include <functional>

#include "tsRtm/fields/ControlContent.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class FilesTopic;

// What surrounds the file that is read.
struct ControlSurroundings {
    FilesTopic& files;
    eControlTyp typ;
    const Text& dir;
    const Text& file;  // with its extension, without the directory
    // A field's number by its name: of the file's own fields, and of the database that a mask belongs to.
    std::function<int32(TextView)> eigenesFeld;
    std::function<int32(TextView)> dbFeld;
};

// Fills `content`, whose nichtAnsi says how an older file is taken. False for a version of 3 or above. Raises
// 62 where the text ends too early and 380 where it goes beyond the limits; `content` then stays as far as
// reading got. `encoding` is the code page that the text was decoded by.
bool readControl(TextView text, int32 encoding, const ControlSurroundings& around, ControlContent& content);

}  // namespace tsRtm
