#include "desktop/printers/Queue.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm::desktop {
namespace {

using platform::SystemError;

using namespace std::chrono_literals;

constexpr int kPatience = 5000;  // milliseconds
constexpr auto kBusyPatience = 30000ms, kBusyLook = 250ms;

std::unique_ptr<http_t, CloseConnection> connect(cups_dest_t* dest) {
    char resource[1024];
    // What has an address alone is the printer itself, and no queue is to be made for it.
    const bool queue = cupsGetOption("printer-uri-supported", dest->num_options, dest->options) != nullptr;
    std::unique_ptr<http_t, CloseConnection> http(
        cupsConnectDest(dest, queue ? CUPS_DEST_FLAGS_NONE : CUPS_DEST_FLAGS_DEVICE, kPatience, nullptr,
                        resource, sizeof resource, nullptr, nullptr));
    // A printer that stops in the middle of a document.
    if (!http || httpGetFd(http.get()) < 0) return nullptr;
    httpSetTimeout(
        http.get(), kPatience / 1000.0, [](http_t*, void*) { return 0; }, nullptr);
    return http;
}

struct OptionList {
    OptionList() = default;
    ~OptionList() { cupsFreeOptions(count, options); }
    OptionList(const OptionList&) = delete;
    OptionList& operator=(const OptionList&) = delete;
    void add(const char* name, const char* value) { count = cupsAddOption(name, value, count, &options); }
    void remove(const char* name) { count = cupsRemoveOption(name, count, &options); }

    int count = 0;
    cups_option_t* options = nullptr;
};

SystemError errorOf(ipp_status_t status) {
    switch (status) {
        case IPP_STATUS_ERROR_FORBIDDEN:
        case IPP_STATUS_ERROR_NOT_AUTHENTICATED:
        case IPP_STATUS_ERROR_NOT_AUTHORIZED:
        case IPP_STATUS_ERROR_NOT_ACCEPTING_JOBS:
        case IPP_STATUS_ERROR_CUPS_ACCOUNT_LIMIT_REACHED:
            return SystemError::accessDenied;
        case IPP_STATUS_ERROR_DOCUMENT_FORMAT_NOT_SUPPORTED:
            return SystemError::notSupported;
        case IPP_STATUS_ERROR_BUSY:
        case IPP_STATUS_ERROR_NOT_FOUND:
        case IPP_STATUS_ERROR_GONE:
        case IPP_STATUS_ERROR_SERVICE_UNAVAILABLE:
            return SystemError::notReady;
        default:
            return SystemError::deviceError;
    }
}

std::string textOf(ipp_attribute_t* attribute, int index) {
    switch (ippGetValueTag(attribute)) {
        case IPP_TAG_INTEGER:
        case IPP_TAG_ENUM:
            return std::to_string(ippGetInteger(attribute, index));
        case IPP_TAG_KEYWORD:
        case IPP_TAG_NAME:
        case IPP_TAG_NAMELANG:
            return ippGetString(attribute, index, nullptr);
        default:
            return {};
    }
}

// One number, or from here to there.
std::pair<int32, int32> rangeOf(ipp_t* collection, const char* name) {
    auto* attribute = ippFindAttribute(collection, name, IPP_TAG_ZERO);
    if (ippGetValueTag(attribute) == IPP_TAG_RANGE) {
        int most = 0;
        const int least = ippGetRange(attribute, 0, &most);
        return {least, most};
    }
    const int value = ippGetValueTag(attribute) == IPP_TAG_INTEGER ? ippGetInteger(attribute, 0) : 0;
    return {value, value};
}

PaperRange paperOf(ipp_t* collection) {
    const auto [leastWidth, mostWidth] = rangeOf(collection, "x-dimension");
    const auto [leastHeight, mostHeight] = rangeOf(collection, "y-dimension");
    return {leastWidth, mostWidth, leastHeight, mostHeight};
}

// A collection of the printer's standard way with its paper.
ipp_attribute_t* partOf(ipp_attribute_t* collection, const char* name, ipp_tag_t tag) {
    if (ippGetValueTag(collection) != IPP_TAG_BEGIN_COLLECTION) return nullptr;
    return ippFindAttribute(ippGetCollection(collection, 0), name, tag);
}

}  // namespace

bool PaperRange::holds(int32 width, int32 height) const noexcept {
    constexpr int32 tolerance = 100;  // papers of one name differ by as much between makers
    return width >= leastWidth - tolerance && width <= mostWidth + tolerance &&
           height >= leastHeight - tolerance && height <= mostHeight + tolerance;
}

Queue::Queue(cups_dest_t* dest, std::unique_ptr<http_t, CloseConnection> http)
    : dest_(dest), http_(std::move(http)), info_(cupsCopyDestInfo(http_.get(), dest)) {}

Queue::~Queue() = default;

std::unique_ptr<Queue> Queue::open(const std::string& name) {
    std::unique_ptr<cups_dest_t, Destination> dest;
    if (name.starts_with("ipp://") || name.starts_with("ipps://")) {
        dest.reset(cupsGetDestWithURI(nullptr, name.c_str()));
    } else if (!name.empty()) {
        const auto slash = name.find('/');
        const std::string instance = slash == std::string::npos ? "" : name.substr(slash + 1);
        dest.reset(cupsGetNamedDest(CUPS_HTTP_DEFAULT, name.substr(0, slash).c_str(),
                                    instance.empty() ? nullptr : instance.c_str()));
    }
    auto http = dest ? connect(dest.get()) : nullptr;
    if (!http) return nullptr;
    std::unique_ptr<Queue> queue(new Queue(dest.release(), std::move(http)));
    return queue->info_ ? std::move(queue) : nullptr;
}

ipp_attribute_t* Queue::supported(const char* option) const {
    return cupsFindDestSupported(http_.get(), dest_.get(), info_.get(), option);
}

bool Queue::supports(const char* option, const char* value) const {
    return cupsCheckDestSupported(http_.get(), dest_.get(), info_.get(), option, value) != 0;
}

std::vector<std::string> Queue::values(const char* option) const {
    auto* attribute = supported(option);
    std::vector<std::string> all;
    all.reserve(static_cast<std::size_t>(ippGetCount(attribute)));
    for (int i = 0; i < ippGetCount(attribute); ++i) all.push_back(textOf(attribute, i));
    return all;
}

std::string Queue::standard(const char* option) const {
    if (const char* chosen = cupsGetOption(option, dest_->num_options, dest_->options)) return chosen;
    auto* attribute = cupsFindDestDefault(http_.get(), dest_.get(), info_.get(), option);
    return ippGetCount(attribute) > 0 ? textOf(attribute, 0) : std::string();
}

std::vector<PaperRange> Queue::papers() const {
    auto* attribute = supported("media-size");
    std::vector<PaperRange> all;
    for (int i = 0; i < ippGetCount(attribute) && ippGetValueTag(attribute) == IPP_TAG_BEGIN_COLLECTION; ++i)
        all.push_back(paperOf(ippGetCollection(attribute, i)));
    return all;
}

PaperRange Queue::standardPaper() const {
    auto* standard = cupsFindDestDefault(http_.get(), dest_.get(), info_.get(), "media-col");
    if (auto* size = partOf(standard, "media-size", IPP_TAG_BEGIN_COLLECTION))
        return paperOf(ippGetCollection(size, 0));
    cups_size_t size{};
    cupsGetDestMediaDefault(http_.get(), dest_.get(), info_.get(), CUPS_MEDIA_FLAGS_DEFAULT, &size);
    return {size.width, size.width, size.length, size.length};
}

std::string Queue::standardBin() const {
    if (auto chosen = standard("media-source"); !chosen.empty()) return chosen;
    auto* standard = cupsFindDestDefault(http_.get(), dest_.get(), info_.get(), "media-col");
    auto* bin = partOf(standard, "media-source", IPP_TAG_ZERO);
    return bin ? textOf(bin, 0) : std::string();
}

std::string Queue::caption(const char* option, const std::string& value) const {
    const char* text = cupsLocalizeDestValue(http_.get(), dest_.get(), info_.get(), option, value.c_str());
    return text ? text : value;
}

bool Queue::answers() {
    auto http = connect(dest_.get());
    if (!http) return false;
    http_ = std::move(http);
    return true;
}

SystemError Queue::print(const std::string& title, const std::vector<Option>& options,
                         const QByteArray& pdf) {
    OptionList list;
    for (int i = 0; i < dest_->num_options; ++i) list.add(dest_->options[i].name, dest_->options[i].value);
    for (const auto& option : options) {
        // One collection tells all of the paper.
        if (option.name == "media-col") list.remove("media");
        list.add(option.name.c_str(), option.value.c_str());
    }
    const auto failed = [&](SystemError error) {
        rtmMain::DebugLog(u"Drucker " + fromUtf8(dest_->name) + u": " + fromUtf8(cupsLastErrorString()));
        return error;
    };
    if (!answers()) return failed(SystemError::notReady);
    auto* http = http_.get();
    auto* dest = dest_.get();
    auto* info = info_.get();
    int job = 0;
    auto status = IPP_STATUS_ERROR_BUSY;
    // Some printers take a document only when the one before is on paper.
    for (auto waited = 0ms; waited < kBusyPatience && status == IPP_STATUS_ERROR_BUSY; waited += kBusyLook) {
        if (waited > 0ms) rtmMain::system().clock.sleep(kBusyLook);
        status = cupsCreateDestJob(http, dest, info, &job, title.c_str(), list.count, list.options);
    }
    if (status >= IPP_STATUS_ERROR_BAD_REQUEST) return failed(errorOf(status));
    auto sent = cupsStartDestDocument(http, dest, info, job, title.c_str(), CUPS_FORMAT_PDF, list.count,
                                      list.options, 1);
    if (sent == HTTP_STATUS_CONTINUE)
        sent = cupsWriteRequestData(http, pdf.constData(), static_cast<std::size_t>(pdf.size()));
    const auto finished = cupsFinishDestDocument(http, dest, info);
    if (sent == HTTP_STATUS_CONTINUE && finished < IPP_STATUS_ERROR_BAD_REQUEST) return SystemError::none;
    const auto error = failed(sent == HTTP_STATUS_CONTINUE ? errorOf(finished) : SystemError::notReady);
    cupsCancelDestJob(http, dest, job);
    return error;
}

}  // namespace tsRtm::desktop
