#pragma once
// One opened database and what commands ask of it.
#include <memory>
#include <string>

#include "tsRtm/clsRtm.hpp"

namespace tsRtm::cli {

enum class Use {
    read,    // others may write
    change,  // under locks, others may do so too
    alone,   // nobody else may have it open
};

// Opens a database or throws a CliError that says what is wrong and what to do.
class Session {
 public:
    Session(const std::string& name, Use use);

    clsRtm& rtm() noexcept { return rtm_; }
    clsTSDB& db() noexcept { return *db_; }
    // The structure as its file tells it.
    const clsControl& control() const noexcept { return control_; }
    const std::string& name() const noexcept { return name_; }

    // Records as of now.
    int32 count() { return db_->AnzahlDSaetze(); }
    // A record number of the command line: throws where there is no such record.
    void needRecord(int32 number);
    // Throws what the database recorded, with `what` in front.
    void check(const std::string& what);
    [[noreturn]] void fail(const std::string& what, int32 number);

 private:
    void open(const Text& control, Use use);
    [[noreturn]] void refuseControl() const;
    void refuseEmptyView();

    clsRtm rtm_;
    clsControl control_;
    std::shared_ptr<clsTSDB> db_;
    std::string name_;
    Text folder_;
};

// The directory of a database by its name on the command line: with ".DBD".
Text databaseFolder(const std::string& name);
// A library call on behalf of a command: what it raises becomes a CliError.
std::string failureText(const Failure& failure);

}  // namespace tsRtm::cli
