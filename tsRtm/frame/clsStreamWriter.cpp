#include "tsRtm/frame/clsStreamWriter.hpp"

#include <algorithm>
#include <limits>

#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/files/Encodings.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

bool clsStreamWriter::Init(FilesTopic& Rtm, TextView Datei, Encodings Encoding, bool Appending) {
    if (files_) return false;
    lineSeparator_ = u"\r\n";
    if (Datei.empty()) return false;
    try {
        if (Appending && FilesTopic::Exist(Datei)) {
            handle_ = Rtm.OpenBinaryAPI(Datei, false, false);
            if (handle_ == 0) return false;
            position_ = Rtm.LofAPI(handle_);
            if (position_ > 0) Encoding = static_cast<Encodings>(Rtm.DetectEncoding(handle_));
        }
    } catch (const Failure&) {
        if (handle_ != 0) Rtm.CloseAPI(handle_);
        handle_ = 0;
        return false;
    }
    files_ = &Rtm;
    name_ = Datei;
    encoding_ = Encoding;
    appending_ = Appending;
    return true;
}

int32 clsStreamWriter::FileLength() const {
    if (handle_ == 0) return 0;
    return static_cast<int32>(std::min<int64>(files_->LofAPI(handle_), std::numeric_limits<int32>::max()));
}

void clsStreamWriter::open() {
    if (handle_ == 0) {
        handle_ = files_->OpenBinaryAPI(name_, false, false);
        if (handle_ == 0)
            raise(75, u"clsStreamWriter.WriteString",
                  u"Die Datei \"" + name_ + u"\" kann nicht geöffnet werden.");
        position_ = appending_ ? files_->LofAPI(handle_) : 0;
        if (!appending_) files_->SetEndAPI(handle_, 0);
    }
}

void clsStreamWriter::put(BytesView bytes) {
    try {
        files_->PutBytesAPI(handle_, position_, std::as_bytes(std::span(bytes)),
                            static_cast<int32>(bytes.size()));
    } catch (const Failure&) {
        // No half text stays behind; that this may fail as well changes nothing for the caller.
        static_cast<void>(files_->handleFile(handle_).resize(static_cast<uint64>(position_)));
        throw;
    }
    position_ += std::ssize(bytes);
}

void clsStreamWriter::WriteString(TextView Value) {
    if (!files_) return;
    // The DOS code page can be read but not written here.
    if (encoding_ == CP850 || !encodings::supported(encoding_))
        encodings::raiseUnsupported(encoding_, u"clsStreamWriter.WriteString", name_);
    open();
    // Mark and text in one write, so that a failure leaves neither.
    const BytesView mark = position_ == 0 ? encodings::markBytes(encoding_) : BytesView();
    put(Bytes(mark) + encodings::encode(Value, encoding_));
}

void clsStreamWriter::WriteLine(TextView Value) { WriteString(Text(Value) + lineSeparator_); }

void clsStreamWriter::Dispose() noexcept {
    if (handle_ == 0) return;
    try {
        files_->CloseAPI(handle_);
    } catch (...) {
        // Nothing is open any more, which is what was asked for.
    }
    handle_ = 0;
    appending_ = true;
}

}  // namespace tsRtm
