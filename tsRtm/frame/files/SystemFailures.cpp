#include "tsRtm/frame/files/SystemFailures.hpp"

#include "tsRtm/frame/messages/TextTables.hpp"

namespace tsRtm {

int32 failureNumber(platform::SystemError error) noexcept {
    using enum platform::SystemError;
    switch (error) {
        case none:
            return 0;
        case fileNotFound:
            return 53;
        case pathNotFound:
            return 76;
        case tooManyOpenFiles:
            return 67;
        case sharingViolation:
        case lockViolation:
            return 70;
        case accessDenied:
        case writeProtected:
        case directoryNotEmpty:
            return 75;
        case notReady:
            return 71;
        case diskFull:
        case fileTooLarge:
            return 61;
        case invalidName:
        case nameTooLong:
        case invalidParameter:
            return 64;
        case invalidHandle:
            return 52;
        case fileExists:
        case alreadyExists:
            return 58;
        default:
            return 57;
    }
}

Text failureText(int32 number) { return Text(runtimeErrorText(number)); }

}  // namespace tsRtm
