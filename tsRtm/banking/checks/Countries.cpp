#include "tsRtm/banking/checks/Countries.hpp"

#include <array>

namespace tsRtm::countries {
namespace {

// A code with the mark behind it: "!" where the IBAN has digits only behind the code, "." and "?" otherwise.
struct Row {
    char16_t code[4];
    int32 length;
};

// Lengths and marks as they are, also where a country's own format differs.
constexpr Row kChecked[] = {
    {u"BE!", 16}, {u"BG.", 22}, {u"DK!", 18}, {u"DE!", 22}, {u"EE!", 20}, {u"FI!", 18}, {u"FR.", 27},
    {u"MC!", 27}, {u"GR!", 27}, {u"GB.", 22}, {u"IE.", 22}, {u"IS!", 26}, {u"IT.", 27}, {u"HR!", 21},
    {u"LV.", 21}, {u"LI.", 21}, {u"LT!", 20}, {u"LU!", 20}, {u"MT.", 31}, {u"NL.", 18}, {u"NO!", 15},
    {u"AT!", 20}, {u"PL!", 28}, {u"PT!", 25}, {u"RO.", 24}, {u"SE!", 24}, {u"SK!", 24}, {u"SI!", 19},
    {u"ES!", 24}, {u"CZ!", 24}, {u"HU!", 28}, {u"CY!", 28}, {u"CH!", 21}, {u"SM?", 27},
};

constexpr Row kPayment[] = {
    {u"DE.", 22}, {u"BE.", 16}, {u"BG.", 22}, {u"DK.", 18}, {u"GL.", 18}, {u"FO.", 18}, {u"EE.", 20},
    {u"FI.", 18}, {u"FR.", 27}, {u"MC.", 27}, {u"GF.", 27}, {u"GP.", 27}, {u"MQ.", 27}, {u"PF.", 27},
    {u"RE.", 27}, {u"GR.", 27}, {u"GB.", 22}, {u"IE.", 22}, {u"IS.", 26}, {u"IT.", 27}, {u"LV.", 21},
    {u"LI.", 21}, {u"LT.", 20}, {u"LU.", 20}, {u"MT.", 31}, {u"NL.", 18}, {u"NO.", 15}, {u"AT.", 20},
    {u"PL.", 28}, {u"PT.", 25}, {u"RO.", 24}, {u"SE.", 24}, {u"SK.", 24}, {u"SI.", 19}, {u"ES.", 24},
    {u"CZ.", 24}, {u"HU.", 28}, {u"CY.", 28}, {u"GI.", 23}, {u"CH.", 21}, {u"AD.", 24}, {u"HR.", 21},
    {u"BA.", 20}, {u"MK.", 19}, {u"ME.", 22}, {u"RS.", 22}, {u"TR.", 26},
};

constexpr TextView kEU =
    u"BE.DK.EE.FI.FR.GF.GI.GR.GP.IE.IT.LV.LT.LU.MT.MQ.NL."
    u"AT.PL.PT.RE.SE.SK.SI.ES.CZ.HU.GB.CY.DE.BG.IS.LI.NO."
    u"RO";

constexpr std::size_t kWidth = 3;

// The table as the two texts in which codes are searched and lengths are read at the same place.
template <std::size_t N>
struct Texts {
    std::array<char16_t, N * kWidth> codes{};
    std::array<char16_t, N * kWidth> lengths{};

    constexpr explicit Texts(const Row (&rows)[N]) {
        for (std::size_t i = 0; i < N; ++i) {
            for (std::size_t j = 0; j < kWidth; ++j) codes[i * kWidth + j] = rows[i].code[j];
            lengths[i * kWidth] = static_cast<char16_t>(u'0' + rows[i].length / 10);
            lengths[i * kWidth + 1] = static_cast<char16_t>(u'0' + rows[i].length % 10);
            lengths[i * kWidth + 2] = u'.';
        }
    }
    std::size_t find(TextView code) const noexcept { return TextView(codes.data(), codes.size()).find(code); }
    int32 lengthAt(std::size_t place) const noexcept {
        return static_cast<int32>(Val(TextView(lengths.data(), lengths.size()).substr(place, 2)));
    }
};

constexpr Texts kCheckedTexts(kChecked);
constexpr Texts kPaymentTexts(kPayment);

}  // namespace

std::optional<Format> checked(TextView code) noexcept {
    const std::size_t place = kCheckedTexts.find(code);
    if (place == TextView::npos) return std::nullopt;
    const bool onRow = place % kWidth == 0;
    const std::size_t mark = place + 2;
    return Format{onRow ? kChecked[place / kWidth].length : kCheckedTexts.lengthAt(place),
                  mark < kCheckedTexts.codes.size() && kCheckedTexts.codes[mark] == u'!'};
}

bool inEU(TextView code) noexcept { return kEU.find(code) != TextView::npos; }

std::optional<int32> paymentLength(TextView code) noexcept {
    const std::size_t place = kPaymentTexts.find(code);
    if (place == TextView::npos) return std::nullopt;
    return kPaymentTexts.lengthAt(place);
}

}  // namespace tsRtm::countries
