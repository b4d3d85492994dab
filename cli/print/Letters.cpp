// tsrtm letters: a letter for every record of a range.
#include <set>

#include "cli/Commands.hpp"
#include "cli/print/Flow.hpp"
#include "cli/print/LetterTemplate.hpp"
#include "cli/print/RangeOptions.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/addresses/Adresse.hpp"

namespace tsRtm::cli {
namespace {

struct LettersOptions {
    std::string name, file, sender;
    FileEncoding encoding = FileEncoding::automatic;
    std::vector<std::string> address;
    bool frame = false;
    RangeOptions range;
    PrintOptions print;
};

// Where a letter with a window for its address has it, millimetres: the address field, and the text below.
constexpr float64 kWindowTop = 47, kWindowLeft = 20;
constexpr float64 kTextTop = 100, kTextLeft = 25, kTextRight = 190, kTextBottom = 272, kNextTop = 27;

// Parts of an address, each from a field of this name or of one that the user names.
struct AddressPart {
    const char* name;
    void (Adresse::*set)(TextView);
};
constexpr AddressPart kParts[] = {
    {"ANREDE", &Adresse::AdrAnrede}, {"TITEL", &Adresse::Titel},     {"VORNAME", &Adresse::Vorname},
    {"NAME1", &Adresse::Name1},      {"NAME2", &Adresse::Name2},     {"ZUSATZ", &Adresse::Zusatz},
    {"ZUSATZ2", &Adresse::Zusatz2},  {"STRASSE", &Adresse::Strasse}, {"PLZORT", &Adresse::PLZOrt},
    {"LAND", &Adresse::Land},
};

// Which fields make the address.
class AddressFields {
 public:
    AddressFields(const FieldMap& map, const std::vector<std::string>& words) {
        for (const auto& part : kParts) fields_.push_back(map.find(part.name));
        postalCode_ = map.find("PLZ");
        place_ = map.find("ORT");
        int32& name = fields_[3];
        if (name == 0) name = map.find("NAME");
        for (const auto& word : words) take(map, word);
        if (name == 0) throw CliError("no field is the name of the address; say --address NAME1=FIELD");
    }

    Adresse of(const RecordReader& record) const {
        const auto text = [&](int32 field) { return field == 0 ? Text() : Text(trim(record.field(field))); };
        Adresse address;
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            const Text value(text(fields_[i]));
            if (!value.empty()) (address.*kParts[i].set)(value);
        }
        if (address.PLZOrt().empty()) address.PLZOrt(trim(text(postalCode_) + u" " + text(place_)));
        return address;
    }

 private:
    void take(const FieldMap& map, const std::string& word) {
        const auto equals = word.find('=');
        const auto name = toUtf8(upper(fromUtf8(word.substr(0, equals))));
        for (std::size_t i = 0; i < fields_.size() && equals != std::string::npos; ++i)
            if (name == kParts[i].name) {
                fields_[i] = map.need(word.substr(equals + 1));
                return;
            }
        std::string all;
        for (const auto& part : kParts) all += std::string(all.empty() ? "" : ", ") + part.name;
        throw CliError("'" + word + "' is not of the form PART=FIELD; parts are " + all);
    }

    std::vector<int32> fields_;
    int32 postalCode_ = 0, place_ = 0;
};

bool isName(TextView text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char16_t c) {
        return c == u'_' || (c >= u'0' && c <= u'9') || upper(c) != lower(c);
    });
}

void run(const LettersOptions& options) {
    Session session(options.name, Use::read);
    const FieldMap map(session.control());
    const AddressFields fields(map, options.address);
    // A word in braces that is no field is a slip, which would stand in every letter.
    const LetterTemplate letter(textOfFile(options.file, options.encoding), [&](TextView name) {
        if (isName(name)) map.need(toUtf8(name));
        return isName(name);
    });
    RecordReader record(session);
    Adresse sender;
    sender.Name1(fromUtf8(options.sender));
    PrintJob job(options.print);
    bool any = false;
    job.compose(baseName(options.file), [&] {
        eachOf(session, map, options.range, record, [&] {
            if (std::exchange(any, true)) job.nextPage();
            const Text text = letter.filled(
                [&](TextView name) { return Text(trim(record.field(map.need(toUtf8(name))))); });
            fields.of(record).Drucken(&job.druck(), kWindowTop, kWindowLeft, 12, {}, {},
                                      options.sender.empty() ? nullptr : &sender,
                                      options.frame ? eGanzerRahmen : eKeineEcken);
            const Area first{kTextLeft, kTextTop, kTextRight, kTextBottom};
            const Area next{kTextLeft, kNextTop, kTextRight, kTextBottom};
            flowRtf(job, text, first, next, [&] { job.druck().FaltMarken(); });
        });
        if (!any) throw CliError("there is no record in this range");
    });
}

}  // namespace

void addLetters(Command app) {
    auto options = std::make_shared<LettersOptions>();
    const auto command = app.add("letters", "Write a letter to every record of a range");
    addDatabase(command, options->name);
    command.option("--template", options->file, "The letter: RTF, with fields of the record as {NAME}")
        .required()
        .typeName("FILE.rtf");
    command.option("--sender", options->sender, "One line over the address").typeName("TEXT");
    command
        .option("--address", options->address,
                "Which fields make the address: NAME1=FIRMA,STRASSE=...; those of these names without it")
        .delimiter(',')
        .typeName("PART=FIELD");
    command.flag("--frame", options->frame, "Draw the envelope's window");
    addRange(command, options->range);
    addPrintOptions(command, options->print, false);
    command.footer("The address stands in the window of an envelope, with marks where the sheet is folded.");
    command.onRun([options] { run(*options); });
}

}  // namespace tsRtm::cli
