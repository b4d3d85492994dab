#pragma once
// A print queue as libcups sees it: what it can do, and how a document gets there.
#include <cups/cups.h>

#include <QByteArray>
#include <memory>
#include <string>
#include <vector>

#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::desktop {

struct CloseConnection {
    void operator()(http_t* http) const { httpClose(http); }
};

struct Option {
    std::string name, value;
};

// Size of a paper in hundredths of a millimetre; where the least is less than the most, anything between.
struct PaperRange {
    int32 leastWidth, mostWidth, leastHeight, mostHeight;
    bool holds(int32 width, int32 height) const noexcept;
    bool fixed() const noexcept { return leastWidth == mostWidth && leastHeight == mostHeight; }
};

class Queue {
 public:
    // The queue of this name, or the printer at this address, ipp://host:port/path; nullptr where there is
    // none or it does not answer.
    static std::unique_ptr<Queue> open(const std::string& name);
    ~Queue();
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    bool supports(const char* option, const char* value = nullptr) const;
    // Keywords, or numbers as text.
    std::vector<std::string> values(const char* option) const;
    // As the queue is set; empty where it does not say.
    std::string standard(const char* option) const;
    std::vector<PaperRange> papers() const;
    PaperRange standardPaper() const;
    std::string standardBin() const;
    // The printer's own word for a value, or the value.
    std::string caption(const char* option, const std::string& value) const;

    bool answers();
    // The document with the options, over those that the user has set for the queue.
    platform::SystemError print(const std::string& title, const std::vector<Option>& options,
                                const QByteArray& pdf);

 private:
    struct Destination {
        void operator()(cups_dest_t* dest) const { cupsFreeDests(1, dest); }
    };
    struct Details {
        void operator()(cups_dinfo_t* info) const { cupsFreeDestInfo(info); }
    };

    Queue(cups_dest_t* dest, std::unique_ptr<http_t, CloseConnection> http);
    ipp_attribute_t* supported(const char* option) const;

    std::unique_ptr<cups_dest_t, Destination> dest_;
    std::unique_ptr<http_t, CloseConnection> http_;
    std::unique_ptr<cups_dinfo_t, Details> info_;
};

}  // namespace tsRtm::desktop
