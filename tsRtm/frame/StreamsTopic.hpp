#pragma once
// Opens readers and writers of text files.
#include <memory>

#include "tsRtm/frame/clsStreamReader.hpp"
#include "tsRtm/frame/clsStreamWriter.hpp"

namespace tsRtm {

// The topic of clsRtm for text streams. The files outlive it and the writers it gives away.
class StreamsTopic {
 public:
    explicit StreamsTopic(FilesTopic& files) : files_(files) {}

    // A reader with the separator ",". On a file that cannot be read it stands at its end.
    std::shared_ptr<clsStreamReader> OpenStreamReader(TextView FileName);
    // A writer; one that could not be initialised writes nothing.
    std::shared_ptr<clsStreamWriter> OpenStreamWriter(TextView FileName, Encodings Encoding = ANSI1252,
                                                      bool Appending = false);

 private:
    FilesTopic& files_;
};

}  // namespace tsRtm
