#pragma once
// Whole days as an iCalendar file (RFC 5545), written to standard output.
#include <string>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::cli {

// Begins with the file's head; ends it with the object.
class IcsFile {
 public:
    // `today` as JJJJMMTT: when the file was made.
    IcsFile(const std::string& name, const std::string& today);
    ~IcsFile();
    IcsFile(const IcsFile&) = delete;
    IcsFile& operator=(const IcsFile&) = delete;

    // A day JJJJMMTT that does not make anybody busy; `id` tells it from all other days of all files.
    void day(const std::string& date, const std::string& id, const std::string& title,
             const std::string& category, const std::string& remark);

 private:
    // A line, folded where it is too long.
    static void line(const std::string& text);

    std::string stamp_;
};

}  // namespace tsRtm::cli
