#include "cli/shared/ErrorText.hpp"

#include <algorithm>
#include <array>

namespace tsRtm::cli {
namespace {

using platform::SystemError;

template <class Number>
struct ErrorLine {
    Number number;
    const char* text;
};

constexpr std::array kDatabaseErrors{
    ErrorLine<int32>{0, "its files could not be written; see whether you may write there"},
    ErrorLine<int32>{5, "the database is open for reading only"},
    ErrorLine<int32>{6, "an index does not fit the records; rebuild it with: tsrtm db sort DB"},
    ErrorLine<int32>{7, "the database is full: it holds as many records as it was made for (--max)"},
    ErrorLine<int32>{9, "no such field, or a damaged index; look with: tsrtm db check DB"},
    ErrorLine<int32>{28, "an index is damaged; rebuild it with: tsrtm db sort DB"},
    ErrorLine<int32>{52, "there is no database (no Control.tsd)"},
    ErrorLine<int32>{53, "no such index"},
    ErrorLine<int32>{55, "the database is open already"},
    ErrorLine<int32>{57, "the device failed"},
    ErrorLine<int32>{61, "no room for another record, or the disk is full"},
    ErrorLine<int32>{62, "there is no further record"},
    ErrorLine<int32>{63, "no such record number"},
    ErrorLine<int32>{70, "cannot be opened or locked: another user holds it, or you may not write there"},
    ErrorLine<int32>{75, "no permission"},
    ErrorLine<int32>{76, "the folder is missing"},
};

constexpr std::array kSystemErrors{
    ErrorLine<SystemError>{SystemError::fileNotFound, "no such file"},
    ErrorLine<SystemError>{SystemError::pathNotFound, "no such folder"},
    ErrorLine<SystemError>{SystemError::accessDenied, "no permission, or a folder"},
    ErrorLine<SystemError>{SystemError::sharingViolation, "somebody else has it open"},
    ErrorLine<SystemError>{SystemError::lockViolation, "somebody else holds it locked"},
    ErrorLine<SystemError>{SystemError::writeProtected, "the medium is write protected"},
    ErrorLine<SystemError>{SystemError::diskFull, "the disk is full"},
    ErrorLine<SystemError>{SystemError::invalidName, "not a file name"},
    ErrorLine<SystemError>{SystemError::nameTooLong, "the name is too long"},
    ErrorLine<SystemError>{SystemError::deviceError, "the device failed"},
};

template <class Table, class Number>
std::string lookUp(const Table& table, Number number, int32 shown) {
    const auto line =
        std::find_if(table.begin(), table.end(), [&](const auto& l) { return l.number == number; });
    return line != table.end() ? line->text : "error " + std::to_string(shown);
}

}  // namespace

std::string databaseErrorText(int32 number) { return lookUp(kDatabaseErrors, number, number); }

std::string systemErrorText(SystemError error) {
    return lookUp(kSystemErrors, error, static_cast<int32>(error));
}

}  // namespace tsRtm::cli
