#include "tsRtm/frame/StreamsTopic.hpp"

namespace tsRtm {

std::shared_ptr<clsStreamReader> StreamsTopic::OpenStreamReader(TextView FileName) {
    auto reader = std::make_shared<clsStreamReader>();
    reader->Init(files_, FileName);
    return reader;
}

std::shared_ptr<clsStreamWriter> StreamsTopic::OpenStreamWriter(TextView FileName, Encodings Encoding,
                                                                bool Appending) {
    auto writer = std::make_shared<clsStreamWriter>();
    writer->Init(files_, FileName, Encoding, Appending);
    return writer;
}

}  // namespace tsRtm
