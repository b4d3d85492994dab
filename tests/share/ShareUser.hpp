#pragma once
// One user of a shared database, in a process of his own.
#include <functional>
#include <random>
#include <vector>

#include "tests/share/Board.hpp"

namespace tsRtm::test {

// The library on the real files, with somebody in front of it who answers No.
class ShareUser {
 public:
    ShareUser(Board& board, const std::string& folder, int32 user, bool readOnly);
    ~ShareUser();
    ShareUser(const ShareUser&) = delete;
    ShareUser& operator=(const ShareUser&) = delete;

    explicit operator bool() const noexcept { return db_ != nullptr; }
    clsTSDB& db() { return *db_; }
    // Works until the board says stop, or until something is refused where `endsAtRefusal` says so: adds,
    // changes, marks and searches in turn, every answer held against the board.
    void work(bool endsAtRefusal);
    // One search of a row that may be anybody's; false where it was refused.
    bool look();
    // When nobody works any more: rows whose owner died at them are what the database has. Then takes out
    // what is marked as deleted.
    bool settleAndPack();
    // One new row; false where it was refused, and nobody can tell what is stored.
    bool add();
    // No row is left to be added.
    bool full() const { return numbers_.size() == kRows; }
    // Holds the whole database against the board, when nobody works any more; complaints go to the log. Rows
    // whose owner died at them may be old or new.
    bool holdsAll();

 private:
    void hearBoxes();
    bool change(int32 row);
    bool mark(int32 row);
    bool note(int32 row);
    bool lookAtFixed();
    bool lookAtNote(int32 owner, int32 row, uint32 version);
    // Whether the record that the cursor stands on has memo and rows of that version.
    bool hasNote(int32 owner, int32 row, uint32 version);
    bool standsOn(const Address& row);
    // Own rows that are there already, from an earlier day.
    void adopt();
    bool holdsNotes();
    void wrong(const std::string& what);
    bool shows(const Address& row, bool deleted);
    int32 random(int32 count) { return static_cast<int32>(random_() % static_cast<uint32>(count)); }
    // Whether the operation went through; counts what did not.
    bool done(bool success, std::atomic<int64>& count);

    Board& board_;
    const int32 user_;
    const bool readOnly_;
    std::mt19937 random_;
    std::size_t heard_ = 0;
    TestGround ground_;
    platform::Platform real_;
    std::unique_ptr<clsRtm> rtm_;
    std::shared_ptr<clsTSDB> db_;
    std::vector<int32> numbers_;  // of own rows; 0 where one was packed away
};

}  // namespace tsRtm::test
