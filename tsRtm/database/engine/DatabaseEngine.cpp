#include "tsRtm/database/engine/DatabaseEngine.hpp"

namespace tsRtm {

std::unique_ptr<RecordBuffer> DatabaseEngine::takeBuffer() {
    if (!spareBuffer) return std::make_unique<RecordBuffer>(d.layout);
    spareBuffer->clear();
    return std::move(spareBuffer);
}

}  // namespace tsRtm
