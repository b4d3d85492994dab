#pragma once
// Which field of a database a word of the command line or of a header line means, and how fields are called
// in output.
#include <string>
#include <unordered_map>
#include <vector>

#include "tsRtm/control/clsControl.hpp"

namespace tsRtm::cli {

// A field is meant by its name, its caption or its number, in this order, without regard to case.
class FieldMap {
 public:
    // The control outlives the map.
    explicit FieldMap(const clsControl& control);

    // 0 where no field is meant.
    int32 find(const std::string& word) const;
    // Throws a CliError that names the fields there are.
    int32 need(const std::string& word) const;
    // "NAME" of the field; its number as text where it has none or an earlier field has the same.
    const std::string& label(int32 field) const { return labels_[static_cast<std::size_t>(field)]; }
    int32 count() const noexcept { return static_cast<int32>(labels_.size()) - 1; }
    // The index whose primary field is meant; "0" is the physical order. Throws where there is none.
    int32 index(const std::string& word) const;
    // Fields by their words; all for none.
    std::vector<int32> select(const std::vector<std::string>& words) const;

 private:
    const clsControl& control_;
    std::vector<std::string> labels_;
    std::unordered_map<Text, int32> words_;  // names before captions, in upper case
};

// The caption without the mark of its access key and the blanks at its end.
Text plainCaption(const TSIO& field);

}  // namespace tsRtm::cli
