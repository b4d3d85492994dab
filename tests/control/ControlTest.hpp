#pragma once
// The ground of all tests of this room, and a structure file that most of them start from.
#include <optional>
#include <stdexcept>

#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/control/clsControl.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"

namespace tsRtm::test {

// A library on files in memory, with one database directory for structure files.
class FieldsTest : public ::testing::Test {
 protected:
    static constexpr TextView kDir = u"/daten/Kunden.DBD";

    FieldsTest() {
        files.putFolder(kDir);
        library.ground.ui.defaultAnswer = 1;
        library.ground.ui.controls = 580;  // plain boxes show the text as it is
    }

    static Text inDir(TextView name) { return Text(kDir) + u"/" + Text(name); }
    void write(TextView name, BytesView bytes) { files.put(inDir(name), bytes); }
    // Nothing where the file is missing.
    std::optional<Bytes> read(TextView name) const {
        return files.exists(inDir(name)) ? std::optional(files.dump(inDir(name))) : std::nullopt;
    }

    // A control of the file, opened; nothing where that is refused.
    std::shared_ptr<clsControl> opened(TextView name, bool nichtAnsi = true) {
        auto control = std::make_shared<clsControl>(topic);
        return control->Oeffne(inDir(name), nichtAnsi) ? control : nullptr;
    }
    std::shared_ptr<clsControl> openedText(BytesView bytes, TextView name = u"Control.tsd") {
        write(name, bytes);
        return opened(name);
    }

    // The same where nothing may refuse it.
    std::shared_ptr<clsControl> structure(BytesView bytes) {
        auto control = openedText(bytes);
        if (!control) throw std::runtime_error("refused");
        return control;
    }

    std::vector<Text> shown() const {
        std::vector<Text> texts;
        for (const auto& box : library.ground.ui.boxes)
            texts.push_back(box.title + u"|" + box.headline + box.body);
        return texts;
    }

    MemoryFiles files;
    FailingFiles failing{files};
    StartedLibrary library{failing};
    MessagesTopic messages;
    FilesTopic topic{messages};
};

// The structure of a small database: a name, an amount and a memo, with an index on the name.
inline constexpr BytesView kExample =
    "TS1,3\r\n"
    "0,1,1,8,1,\"&Name@Name des Kunden@7NAME\"\r\n"
    "2,2,1,10,5,\"&Betrag\"\r\n"
    "0,3,1,5,22,\"&Notiz\"\r\n"
    "24,1000,1\r\n"
    "1,0,0\r\n"
    "0\r\n";

}  // namespace tsRtm::test
