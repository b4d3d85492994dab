#pragma once
// The text of a structure file, walked by lines and by comma-separated items.
#include <utility>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Lines end in CR LF, LF or CR; the last one needs no end. Reading behind the end raises 62, as the stream
// reader does.
class ControlText {
 public:
    explicit ControlText(Text content) : content_(std::move(content)) {}

    bool atEnd() const noexcept { return position_ >= content_.size(); }
    // The rest of the present line, without its end; the views live as long as the object.
    TextView readLine();
    // Up to the next comma or the end of the line; outer double quotes taken off, doubled ones inside made
    // one.
    Text readItem();
    // The rest of the line whose item was read last; empty where that item ended the line.
    TextView readRest();
    // Goes over lines that are blank or begin with "'".
    void skipComments();

 private:
    struct Line {
        std::size_t end;
        std::size_t next;
    };
    Line present() const;

    Text content_;
    std::size_t position_ = 0;
    bool lineEnded_ = true;
};

}  // namespace tsRtm
