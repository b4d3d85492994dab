// The four small pictures of the grades.
#include "tsRtm/validation/clsValidator.hpp"

namespace tsRtm {
namespace {

#define TSRTM_PICTURE(shape)                                                                            \
    "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 16 16\" width=\"16\" height=\"16\">" shape \
    "</svg>"
#define TSRTM_MARK(path) "<path d=\"" path "\" fill=\"none\" stroke=\"#fff\" stroke-width=\"2\"/>"

struct PictureRow {
    int32 resource;
    BytesView svg;
};
constexpr PictureRow kPictures[] = {
    {16002,
     TSRTM_PICTURE("<circle cx=\"8\" cy=\"8\" r=\"7\" fill=\"#c62828\"/>" TSRTM_MARK("M5 5l6 6M11 5l-6 6"))},
    {16003, TSRTM_PICTURE("<circle cx=\"8\" cy=\"8\" r=\"7\" fill=\"#1565c0\"/>" TSRTM_MARK(
                "M6 6a2 2 0 1 1 2 2v2M8 11v2"))},
    {16004, TSRTM_PICTURE("<path d=\"M8 1l7 14H1z\" fill=\"#f9a825\"/>" TSRTM_MARK("M8 6v4M8 11v2"))},
    {16005, TSRTM_PICTURE("<circle cx=\"8\" cy=\"8\" r=\"7\" fill=\"#1565c0\"/>" TSRTM_MARK("M8 3v2M8 7v6"))},
};

}  // namespace

BytesView StatusPictureSvg(int32 Resource) noexcept {
    for (const auto& row : kPictures)
        if (row.resource == Resource) return row.svg;
    return {};
}

}  // namespace tsRtm
