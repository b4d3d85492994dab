// How a new version of a list or table file gets into the place of the old one.
#include "tsRtm/frame/files/Encodings.hpp"
#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/files/Waiting.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/tables/storage/TableFile.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using platform::Access, platform::Disposition, platform::Sharing;
using platform::failed;
using platform::SystemError;

// A new version of somebody else may come between as often as this.
constexpr int32 kTries = 100;

platform::FileSystem& disk() { return rtmMain::system().files; }

Text freeNameBeside(const Text& name) {
    Text free;
    do free = FilesTopic::MakePath({FilesTopic::PathName(name), FilesTopic::TempName()});
    while (disk().status(free).ok());
    return free;
}

bool missing(SystemError error) {
    return error == SystemError::fileNotFound || error == SystemError::pathNotFound;
}

Text source(TextView TypeName) { return Text(TypeName) + u".SchreibDaten"; }

[[noreturn]] void raiseNotDeleted(const Text& name, TextView TypeName, int32 number) {
    raise(number, source(TypeName),
          u"Die Datei \"" + name + u"\" kann nicht gelöscht werden: " + failureText(number));
}

[[noreturn]] void raiseNotRenamed(const Text& from, const Text& to, TextView TypeName, int32 number,
                                  const Text& why) {
    raise(number, source(TypeName),
          u"Die Datei \"" + from + u"\" kann nicht in \"" + to + u"\" umbenannt werden" + why);
}

// A new version that is not wanted after all.
class Withdrawn {
 public:
    explicit Withdrawn(const Text& name) : name_(name) {}
    ~Withdrawn() {
        if (!kept_) static_cast<void>(disk().remove(name_));
    }
    Withdrawn(const Withdrawn&) = delete;
    Withdrawn& operator=(const Withdrawn&) = delete;
    void keep() noexcept { kept_ = true; }

 private:
    Text name_;
    bool kept_ = false;
};

}  // namespace

Text TableFile::makeBeside(TextView text, int32 fileEncoding) {
    // Before there is a file of another name that PutContentAPI would speak of.
    if (!text.empty() && !encodings::supported(fileEncoding))
        encodings::raiseUnsupported(fileEncoding, u"clsRtm.PutContentAPI", name_);
    Text beside = freeNameBeside(name_);
    Withdrawn guard(beside);
    // Open to the same users as the old version, before there is anything in it to read.
    if (disk().open(beside, {Access::readWrite, Sharing::none, Disposition::createEmpty}))
        static_cast<void>(disk().copyAccess(name_, beside));
    Date ignored;
    files_.PutContentAPI(beside, text, fileEncoding, false, ignored);
    // The new version has reached the medium before the old one goes.
    auto error = SystemError::none;
    if (auto opened = disk().open(beside, {Access::readWrite}); opened)
        error = (*opened)->flush();
    else
        error = opened.error();
    if (failed(error))
        raise(failureNumber(error), u"clsRtm.PutContentAPI", failureText(failureNumber(error)));
    guard.keep();
    return beside;
}

std::optional<Text> TableFile::takeAside(TextView TypeName) {
    if (!exists()) return std::nullopt;
    const Text aside = freeNameBeside(name_);
    const auto error = patiently([&] { return disk().rename(name_, aside, false); });
    if (missing(error)) return std::nullopt;
    if (failed(error)) raiseNotDeleted(name_, TypeName, failureNumber(error));
    return aside;
}

// The old version is out of its place before it is overwritten, so that no reader meets an overwritten file.
std::vector<Text> TableFile::putInPlaceOfSensible(const Text& beside, TextView TypeName) {
    for (int32 tries = 0;; ++tries) {
        auto error = patiently([&] { return disk().exchange(beside, name_); });
        if (!failed(error)) return {beside};
        if (error == SystemError::notSupported) return putInEmptiedPlace(beside, TypeName);
        if (!missing(error)) raiseNotDeleted(name_, TypeName, failureNumber(error));
        error = patiently([&] { return disk().rename(beside, name_, false); });
        if (!failed(error)) return {};
        if (error != SystemError::alreadyExists || tries == kTries)
            raiseNotRenamed(beside, name_, TypeName, failureNumber(error),
                            u": " + failureText(failureNumber(error)));
    }
}

// Where two files cannot exchange their names the place is empty for a moment.
std::vector<Text> TableFile::putInEmptiedPlace(const Text& beside, TextView TypeName) {
    std::vector<Text> old;
    for (int32 tries = 0;; ++tries) {
        const auto aside = takeAside(TypeName);
        const auto error = patiently([&] { return disk().rename(beside, name_, false); });
        const bool overtaken = error == SystemError::alreadyExists;
        if (aside && failed(error) && !overtaken && !failed(disk().rename(*aside, name_, false)))
            raiseNotRenamed(beside, name_, TypeName, failureNumber(error),
                            u": " + failureText(failureNumber(error)));
        if (aside) old.push_back(*aside);
        if (!failed(error)) return old;
        if (!overtaken || tries == kTries)
            raiseNotRenamed(beside, name_, TypeName, failureNumber(error),
                            u": " + failureText(failureNumber(error)));
    }
}

std::vector<Text> TableFile::putInPlace(const Text& beside, TextView TypeName) {
    Withdrawn guard(beside);
    std::vector<Text> old;
    if (sensible) {
        old = putInPlaceOfSensible(beside, TypeName);
    } else if (const auto error = patiently([&] { return disk().rename(beside, name_, true); });
               failed(error)) {
        raiseNotRenamed(beside, name_, TypeName, failureNumber(error), u".");
    }
    guard.keep();
    return old;
}

void TableFile::overwrite(const std::vector<Text>& old, TextView TypeName) {
    for (const Text& name : old) {
        int32 number = 70;
        try {
            // Somebody may have it open still, just to find that it is not in its place any more.
            const auto error = patiently([&] {
                const bool gone = files_.SecureKill(name) || missing(disk().status(name).error());
                return gone ? SystemError::none : SystemError::sharingViolation;
            });
            if (!failed(error)) continue;
        } catch (const Failure& failure) {
            number = failure.Number();
        }
        raiseNotDeleted(name, TypeName, number);
    }
}

void TableFile::replace(TextView text, TextView TypeName) {
    if (encoding == 0) encoding = UTF8;
    const int32 fileEncoding = readableEncoding(encoding, text);
    const auto old = putInPlace(makeBeside(text, fileEncoding), TypeName);
    rememberWritten(text, fileEncoding);
    overwrite(old, TypeName);
}

int32 TableFile::encodingInPlace() {
    if (encoding == 0) encoding = UTF8;
    if (encoding != ANSI1252 || sensible || !exists()) return encoding;
    const int32 handle = files_.OpenBinaryAPI(name_, true, true);
    if (handle == 0) return encoding;
    const int32 detected = files_.DetectEncoding(handle);
    files_.CloseAPI(handle);
    return detected;
}

void TableFile::rewrite(TextView text) {
    const int32 fileEncoding = readableEncoding(encodingInPlace(), text);
    Text beside;
    try {
        beside = makeBeside(text, fileEncoding);
    } catch (const Failure& failure) {
        if (failure.Number() != 75 || !exists()) throw;
        Date ignored;
        files_.PutContentAPI(name_, text, fileEncoding, false, ignored);
        return rememberWritten(text, fileEncoding);
    }
    std::vector<Text> old;
    try {
        old = putInPlace(beside, u"");
    } catch (const Failure&) {
        raise(75, u"clsRtm.PutContentAPI", u"Die Datei \"" + name_ + u"\" kann nicht geöffnet werden.");
    }
    rememberWritten(text, fileEncoding);
    try {
        overwrite(old, u"");
    } catch (const Failure&) {
        // The list is stored; what is left of the old one does no harm to it.
    }
}

void TableFile::remove(TextView TypeName) {
    if (sensible) {
        if (const auto aside = takeAside(TypeName)) overwrite({*aside}, TypeName);
    } else if (const auto error = patiently([&] { return disk().remove(name_); });
               failed(error) && !missing(error)) {
        raiseNotDeleted(name_, TypeName, failureNumber(error));
    }
    forget();
}

}  // namespace tsRtm
