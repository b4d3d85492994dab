#pragma once
// Postal codes and places of Germany, looked up in the databases "Orte" and "Strassen" below RuntimeDataDir.
#include <memory>
#include <vector>

#include "tsRtm/database/DatabasesTopic.hpp"
#include "tsRtm/frame/Bundeslaender.hpp"
#include "tsRtm/places/PlaceRegister.hpp"

namespace tsRtm {

class clsTSRecordSet;

// What a user typed, "52062" or "aachen", is settled here; where the data allow several answers he is asked,
// and without an answer nothing is found. Databases that are missing are no failure. Each look-up opens the
// databases anew and closes them at its end, so that they can be exchanged meanwhile.
class clsPlzOrt {
 public:
    clsPlzOrt();
    ~clsPlzOrt();
    clsPlzOrt(const clsPlzOrt&) = delete;
    clsPlzOrt& operator=(const clsPlzOrt&) = delete;

    // For who asks many: "Orte" stays open between the look-ups, and nobody can exchange it.
    void Offenhalten(bool value);

    // PLZ is a code of five digits, behind which a wished place may stand, or else the beginning of a name.
    // With NurPLZ nobody is asked: only a code is looked up, and of places that share it the first one
    // counts. Whether an answer was found; Postleitzahl is the code as typed, or that of the place chosen,
    // and empty where only a list of streets could tell it. After False it is as it was, and the others are
    // empty.
    bool PLZOrt(TextView PLZ, TextView Strasse, Text& Postleitzahl, Text& Ort, Text& GemeindeKZ,
                bool NurPLZ = false);
    bool PLZOrt(TextView PLZ, TextView Strasse, Text& Postleitzahl, Text& Ort);
    // The places of a municipality, or of all whose keys begin so; nothing without a database. The set holds
    // "Orte" open.
    std::shared_ptr<clsTSRecordSet> OrtsSatzAusGeschl(TextView Geschl);
    // The place of a code; empty where several share it.
    Text OrtsName(TextView PLZ);
    // The state of a place by its municipality; of a code that several places share without asking where they
    // all lie in one.
    Text Bundesland(TextView PLZ);
    // The name of the state of a municipality key; empty for an empty one.
    static Text StateOf(TextView GemeindeKZ);
    // Raises 9 for another number.
    static Text BundeslandName(int32 LandNr);

 private:
    struct Place {
        Text key, name, municipality, delivery, box;
    };
    struct Found {
        Place place;
        Text code;
        bool shared = false;
    };
    class Opened;

    void close();
    bool find(TextView typed, TextView street, bool codesOnly, Found& found);
    bool byCode(TextView typed, bool codesOnly, Found& found);
    bool byName(TextView typed, TextView street, Found& found);
    // The first place that a code leads to, and whether others share it.
    bool placeOf(TextView code, Found& found);
    bool read(int32 number, Place& place);
    std::vector<Place> placesWith(int32 field, TextView value);
    std::vector<Place> sharing(TextView code, const Place& first);
    bool choosePlace(const std::vector<Place>& places, TextView wished, Place& place);
    bool chooseCode(const std::vector<Place>& places, TextView street, Found& found);
    std::shared_ptr<clsTSDB> streetsOf(const Place& place);
    bool chooseStreet(clsTSDB& streets, TextView street, Found& found);

    std::unique_ptr<MessagesTopic> messages_;
    std::unique_ptr<FilesTopic> files_;
    DatabasesTopic databases_;
    std::shared_ptr<clsTSDB> places_;
    std::unique_ptr<platform::File> codes_;  // Index.tsd; open only while "Orte" is
    bool staysOpen_ = false;
};

}  // namespace tsRtm
