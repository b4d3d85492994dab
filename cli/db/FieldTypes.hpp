#pragma once
// Field types by word, as --field takes them and info shows them.
#include <optional>
#include <string>

#include "tsRtm/fields/TSIO.hpp"

namespace tsRtm::cli {

struct FieldType {
    const char* english;
    const char* german;
    int32 typ;     // word of eTyp
    int32 length;  // when none is given; 0: one must be
    const char* meaning;
};

// By either word without regard to case, or by a plain number of eTyp and eErweiterung.
std::optional<FieldType> fieldType(const std::string& word);
// The English word of a type, its number where the table has none.
std::string typeWord(int32 typ);
// All types, one a line, for help texts.
std::string fieldTypeHelp();

}  // namespace tsRtm::cli
