// Text files of any content and encoding through the content reader and the item reader.
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/tsRtm.hpp"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    using namespace tsRtm;
    test::MemoryFiles disk;
    disk.put(u"/d/text", {reinterpret_cast<const char*>(data), size});
    test::TestGround ground;
    const test::StartedLibrary library(ground, disk);
    clsRtm rtm;
    try {
        const auto reader = rtm.OpenStreamReader(u"/d/text");
        while (reader && !reader->EndOfStream()) static_cast<void>(reader->ReadItem());
        static_cast<void>(rtm.ConvertRTFToText(rtm.Content(u"/d/text")));
    } catch (const Failure&) {
    }
    return 0;
}
