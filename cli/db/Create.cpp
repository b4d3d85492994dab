// tsrtm db create: from --field and --index, or from a structure file.
#include <iostream>
#include <set>

#include "cli/Commands.hpp"
#include "cli/db/FieldTypes.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/ErrorText.hpp"
#include "cli/shared/FieldMap.hpp"
#include "cli/shared/Session.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kMaxIndexField = 999;  // three characters an index component
constexpr int32 kMaxDecimals = 7;
constexpr std::size_t kNameForbidden = 4;
constexpr char16_t kNameForbiddenSigns[kNameForbidden] = {u'@', u'"', u',', u'='};

struct CreateOptions {
    std::string name;
    std::vector<std::string> fields;
    std::vector<std::string> indexes;
    std::optional<std::string> structure;
    std::optional<int32> max;
    std::optional<eDBTyp> form;
};

// What DBCreateExt takes.
struct Structure {
    TSIOArray fields;
    std::vector<IndexEntry> indexes;
    std::vector<std::shared_ptr<clsControl>> chains;
    int32 max = 0;
    eDBTyp form = DBAnsi;
};

std::vector<std::string> split(const std::string& text, char mark) {
    std::vector<std::string> parts(1);
    for (const char c : text)
        if (c == mark)
            parts.emplace_back();
        else
            parts.back() += c;
    return parts;
}

int32 wholeNumber(const std::string& text, int32 least, int32 most, const std::string& what) {
    const Text digits = fromUtf8(text);
    const float64 value = IstZiffern(digits) && digits.size() < 10 ? Val(digits) : -1;
    if (value < least || value > most)
        throw CliError(what + " '" + text + "' is no number from " + std::to_string(least) + " to " +
                       std::to_string(most));
    return roundToInt32(value);
}

Text fieldName(const std::string& text, const std::string& word) {
    Text name(trim(fromUtf8(text)));
    if (name.empty()) throw CliError("--field '" + word + "': the name is missing");
    for (const char16_t c : name)
        if (c < u' ' || std::find(kNameForbiddenSigns, kNameForbiddenSigns + kNameForbidden, c) !=
                            kNameForbiddenSigns + kNameForbidden)
            throw CliError("--field '" + word + "': a name has no control characters and none of @ \" , =");
    if (IstZiffern(name))
        throw CliError("--field '" + word + "': a name of digits would be taken for a field's number");
    return name;
}

std::shared_ptr<TSIO> newField(const std::string& word, int32 row) {
    const auto parts = split(word, ':');
    if (parts.size() < 2 || parts.size() > 4)
        throw CliError("--field '" + word + "' is not of the form NAME:TYPE:LENGTH[:DECIMALS]");
    const Text name = fieldName(parts[0], word);
    const auto type = fieldType(parts[1]);
    if (!type)
        throw CliError("--field '" + word + "': no type '" + parts[1] + "'; see: tsrtm db create --help");
    const bool given = parts.size() > 2 && !parts[2].empty();
    if (!given && type->length == 0) throw CliError("--field '" + word + "': the length is missing");
    auto field = std::make_shared<TSIO>();
    field->Zeile(row);
    field->Spalte(1);
    field->Typ(type->typ);
    field->Laenge(given ? wholeNumber(parts[2], 1, kMaxLaenge, "--field '" + word + "': length")
                        : type->length);
    if (parts.size() > 3)
        field->NachKomma(wholeNumber(parts[3], 0, kMaxDecimals, "--field '" + word + "': decimals"));
    field->Caption(u"&" + name);
    field->Name(name);
    return field;
}

void fieldsFromWords(const CreateOptions& options, Structure& into) {
    std::set<Text> names;
    for (const auto& word : options.fields) {
        into.fields.push_back(newField(word, static_cast<int32>(into.fields.size()) + 1));
        if (!names.insert(into.fields.back()->Name()).second)
            throw CliError("--field '" + word + "': there is a field of this name already");
    }
}

int32 fieldNumber(const TSIOArray& fields, const std::string& word) {
    const Text text(trim(fromUtf8(word)));
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (equalIgnoringCase(fields[i]->Name(), text)) return static_cast<int32>(i) + 1;
    if (IstZiffern(text) && text.size() < 5)
        if (const int32 number = roundToInt32(Val(text));
            number >= 1 && number <= static_cast<int32>(fields.size()))
            return number;
    return 0;
}

IndexEntry indexOf(const std::string& word, const TSIOArray& fields) {
    const auto parts = split(word, ',');
    IndexEntry entry{};
    if (parts.size() > entry.size()) throw CliError("--index '" + word + "' names more than three fields");
    for (std::size_t i = 0; i < parts.size(); ++i) {
        entry[i] = fieldNumber(fields, parts[i]);
        if (entry[i] == 0) throw CliError("--index '" + word + "': no field '" + parts[i] + "'");
        if (entry[i] > kMaxIndexField)
            throw CliError("--index '" + word + "': only the first 999 fields can be indexed");
        const TSIO& field = *fields[static_cast<std::size_t>(entry[i] - 1)];
        if (field.IsMemo() || field.IsBlob())
            throw CliError("--index '" + word + "': memos and blobs have no order");
    }
    return entry;
}

void addIndex(const IndexEntry& entry, const std::string& word, std::vector<IndexEntry>& into) {
    for (const auto& other : into)
        if (other[0] == entry[0])
            throw CliError("--index '" + word + "': another index begins with this field");
    into.push_back(entry);
}

// A structure file, or the database directory or folder that holds one.
void readStructure(clsRtm& rtm, const std::string& file, Structure& into) {
    Text name = fromUtf8(file);
    for (const Text& folder : {name, databaseFolder(file)})
        if (const Text inside = FilesTopic::MakePath({Variant(folder), Variant(u"Control.tsd")});
            FilesTopic::Exist(inside))
            name = inside;
    if (!FilesTopic::Exist(name)) throw CliError("no structure file '" + file + "'");
    const auto whole = std::make_shared<clsControl>(rtm);
    clsControl& control = *whole;
    bool dos = true;  // where its head is a plain count
    if (!control.Oeffne(name, dos) || control.Felder() == 0)
        throw CliError("'" + file + "' is no structure file: it tells of no fields, or is damaged");
    for (const auto& field : control.GetTSIOArray()) into.fields.push_back(field->Clone());
    // The file tells the length of a memo's blocks where the record has a pointer.
    for (const auto& memo : control.memos())
        into.fields[static_cast<std::size_t>(memo.Feld() - 1)]->Laenge(memo.Breit());
    for (const auto& entry : control.indexes())
        if (entry[0] >= 1 && entry[0] <= kMaxIndexField) into.indexes.push_back(entry);
    for (const int32 field : control.chains())
        if (auto chain = control.Kette(field)) into.chains.push_back(std::move(chain));
    into.max = control.MaxRecords();
    into.form = control.IstUnicode() ? DBUnicode : DBAnsi;
}

Text indexText(const std::vector<IndexEntry>& indexes) {
    Text out;
    for (const auto& entry : indexes)
        for (const int32 field : entry) {
            const Text digits = toText(field);
            out += Text(3 - std::min<std::size_t>(digits.size(), 3), u' ') + digits;
        }
    return out;
}

void checkNames(const Structure& structure) {
    if (structure.form == DBUnicode) return;
    for (const auto& field : structure.fields)
        for (const char16_t c : field->Titel())
            if (unicodeToAnsi(c) < 0)
                throw CliError("'" + toUtf8(field->Name()) +
                               "' has characters that only --form unicode can hold");
}

Structure structureOf(clsRtm& rtm, const CreateOptions& options) {
    Structure structure;
    if (options.structure)
        readStructure(rtm, *options.structure, structure);
    else
        fieldsFromWords(options, structure);
    if (static_cast<int32>(structure.fields.size()) > kMaxFelder)
        throw CliError("more than " + std::to_string(kMaxFelder) + " fields");
    for (const auto& word : options.indexes)
        addIndex(indexOf(word, structure.fields), word, structure.indexes);
    if (options.max) structure.max = *options.max;
    if (options.form) structure.form = *options.form;
    if (structure.max < 1) throw CliError("--max: how many records the database is to hold at most");
    checkNames(structure);
    return structure;
}

// What the rows of its chains are.
void writeChains(const Structure& structure, const Text& folder) {
    for (const auto& chain : structure.chains) {
        OutputFile file(
            toUtf8(FilesTopic::MakePath({Variant(folder), Variant(ketteCtlName(chain->Anker()))})));
        file.write(chain->TextAs(structure.form == DBUnicode));
        file.finish();
    }
}

// The first opening makes the other files, so that those who only read find them.
void openOnce(const std::string& name) {
    Session session(name, Use::alone);
    session.db().Sort();
    session.check("cannot make the files of '" + name + "'");
}

void create(const CreateOptions& options) {
    const Text folder = databaseFolder(options.name);
    if (FilesTopic::Exist(FilesTopic::MakePath({Variant(folder), Variant(u"Control.tsd")})))
        throw CliError("there is a database '" + options.name + "' already");
    {
        clsRtm rtm;
        const Structure structure = structureOf(rtm, options);
        if (!rtm.DBCreateExt(structure.form, folder, {}, structure.fields, structure.max,
                             indexText(structure.indexes)))
            throw CliError("cannot make " + toUtf8(folder) + ": " + databaseErrorText(rtmMain::state().F));
        writeChains(structure, folder);
    }
    openOnce(options.name);
    std::cout << "made " << toUtf8(folder) << '\n';
}

}  // namespace

void addCreate(Command db) {
    auto options = std::make_shared<CreateOptions>();
    const auto command = db.add("create", "Make an empty database");
    addDatabase(command, options->name);
    const auto fields = command.option("--field", options->fields, "A field; several in their order")
                            .typeName("NAME:TYPE:LENGTH[:DECIMALS]");
    command.option("--index", options->indexes, "An index on up to three fields, by name or number")
        .typeName("F1[,F2[,F3]]");
    command
        .option("--structure", options->structure,
                "Take fields, indexes and size from a structure file or a database")
        .typeName("FILE")
        .excludes(fields);
    command.option("--max", options->max, "The most records it may hold; from 32768 on its indexes are trees")
        .range(1, 2147483646)
        .typeName("N");
    const std::map<std::string, eDBTyp> forms{{"ansi", DBAnsi}, {"ascii", DBAscii}, {"unicode", DBUnicode}};
    command
        .choice("--form", options->form, "Characters of the records: ansi (the default), ascii or unicode",
                forms, Letters::anyCase)
        .typeName("FORM");
    command.footer("Types, in English or German, with the length that is taken where none is given:\n" +
                   fieldTypeHelp() +
                   "\nAn index orders numbers as text: 12 stands before 7.\n"
                   "Example:\n  tsrtm db create Kunden --field NAME:text:30 --field ORT:text:30 --field "
                   "UMSATZ:number:10:2 "
                   "\\\n                         --index NAME --index ORT,NAME --max 100000");
    command.onRun([options] {
        if (options->fields.empty() && !options->structure) failMissing("--field or --structure");
        if (!options->structure && !options->max) failMissing("--max");
        create(*options);
    });
}

}  // namespace tsRtm::cli
