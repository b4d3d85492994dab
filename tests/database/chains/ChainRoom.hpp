#pragma once
// A chain field of any length on files in memory, below the face of the database.
#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Raised.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/database/chains/RowMemos.hpp"
#include "tsRtm/database/chains/RowSupply.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"

namespace tsRtm::test {

class ChainRoom : public testing::Test {
 protected:
    // The control of a chain with these field lines, of a record whose one field is the chain.
    std::shared_ptr<clsControl> chain(int32 length, const std::string& fields, bool unicode = false) {
        const std::string head = unicode ? "TS2," : "TS1,";
        disk.put(u"/d/X.DBD/Control.tsd",
                 head + "1\r\n0,1,1," + std::to_string(length) + ",38,\"K\"\r\n1,9,0\r\n0\r\n");
        const auto count = std::to_string(std::count(fields.begin(), fields.end(), '\n'));
        disk.put(u"/d/X.DBD/KetteCtl.001", head + count + "\r\n" + fields + "1,9,0\r\n0\r\n");
        control = std::make_shared<clsControl>(files);
        bool dos = false;
        if (!control->Oeffne(u"/d/X.DBD/Control.tsd", dos)) return nullptr;
        return control->Kette(1);
    }
    ChainFormat format(int32 length, bool unicode = false) {
        const auto rows = chain(length, "0,1,1,8,1,\"A\"\r\n", unicode);
        const RecordLayout record(*control, unicode, false);
        return {record.field(1), RecordLayout(*rows, unicode, false)};
    }

    MemoryFiles disk;
    StartedLibrary library{disk};
    MessagesTopic messages;
    FilesTopic files{messages};
    std::shared_ptr<clsControl> control;
};

// The field of a chain as pairs of texts: in 8-bit files each character is a byte.
inline Bytes wide(BytesView text) {
    Bytes out;
    for (const char c : text) (out += c) += '\0';
    return out;
}

}  // namespace tsRtm::test
