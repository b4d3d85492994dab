#pragma once
// What a structure file tells, as plain data: filled by the reader, written by the writer, answered from by
// clsControl.
#include <algorithm>
#include <array>
#include <vector>

#include "tsRtm/fields/TSIO.hpp"
#include "tsRtm/fields/clsMemo.hpp"

namespace tsRtm {

enum eControlTyp : int32 {
    ControlTyp_DB = 0,     // Control.tsd
    ControlTyp_Kette = 1,  // KetteCtl.nnn
    ControlTyp_Maske = 2,  // <name>.MASKE
};

// Primaer, Sekundaer, Tertiaer: field numbers, 0 for none.
using IndexEntry = std::array<int32, 3>;

// Limits that keep a damaged or hostile file from asking for more than a record can be.
constexpr int32 kMaxFelder = 9999;
constexpr int32 kMaxLaenge = 32767;
// Characters of a memo's or blob's pointer in the record.
constexpr int32 kPointerLaenge = 5;

// The last three digits of 1000 + number: how the files of a field are numbered ("KetteCtl.003").
inline Text threeDigits(int32 number) {
    const auto digits = toText(int64{1000} + number);
    return digits.substr(digits.size() - std::min<std::size_t>(digits.size(), 3));
}

// The number of a chain field's files: the field's own, in a mask that of the database field it shows.
inline int32 ketteNummer(eControlTyp typ, int32 feldNummer, const TSIO& feld) noexcept {
    return typ == ControlTyp_Maske ? feld.DBFeld() : feldNummer;
}
inline Text ketteCtlName(int32 nummer) { return u"KetteCtl." + threeDigits(nummer); }

struct ControlContent {
    bool nichtAnsi = false;  // texts in the DOS code page
    bool unicode = false;    // version 2
    bool unicodeFelder = false;
    TSIOArray felder;
    std::vector<IndexEntry> indizes;
    std::vector<clsMemo> memos;  // with the stated block lengths
    std::vector<int32> ketten;   // field numbers
    std::vector<int32> blobs;    // field numbers
    int32 seiten = 0;
    int32 satzLaenge = 0;
    int32 maxRecords = 0;
    int32 autowertFeld = 0;
    int32 propFeld = 0;
};

}  // namespace tsRtm
