#pragma once
// One chain of one record, as others are told of it.
#include <memory>

#include "tsRtm/database/clsTSDB.hpp"

namespace tsRtm {

// A handle: it reads nothing, and holds the database open.
class clsKette {
 public:
    clsKette(std::shared_ptr<clsTSDB> DB, int32 Anker, int32 Satz)
        : db_(std::move(DB)), control_(db_->Control()->Kette(Anker)), anker_(Anker), satz_(Satz) {}

    std::shared_ptr<clsTSDB> DB() const { return db_; }
    // The field of the record that the chain belongs to.
    int32 Anker() const noexcept { return anker_; }
    // The structure of its rows; nothing where the field is no chain.
    std::shared_ptr<clsControl> Control() const { return control_; }
    int32 Cols() const noexcept { return control_ ? control_->Felder() : 0; }
    int32 Satz() const noexcept { return satz_; }

 private:
    std::shared_ptr<clsTSDB> db_;
    std::shared_ptr<clsControl> control_;
    int32 anker_;
    int32 satz_;
};

}  // namespace tsRtm
