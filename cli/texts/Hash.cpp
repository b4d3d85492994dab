// tsrtm hash: hash values of files and texts.
#include <array>
#include <iostream>
#include <map>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/services/bytes/ByteForms.hpp"
#include "tsRtm/services/bytes/Hasher.hpp"

namespace tsRtm::cli {
namespace {

constexpr const char* kStandardInput = "-";
constexpr std::size_t kHashed = 65536;

enum class Form { hex, upper, base64, shortBase64 };

const std::map<std::string, HashType> kAlgorithms{
    {"md2", CALG_MD2},       {"md4", CALG_MD4},       {"md5", CALG_MD5},      {"sha1", CALG_SHA},
    {"sha256", CALG_SHA256}, {"sha384", CALG_SHA384}, {"sha512", CALG_SHA512}};
const std::map<std::string, Form> kForms{
    {"hex", Form::hex}, {"HEX", Form::upper}, {"base64", Form::base64}, {"short", Form::shortBase64}};

struct HashOptions {
    std::vector<std::string> files;
    std::string text;
    bool hasText = false;
    FileEncoding encoding = FileEncoding::utf8;
    std::string algorithm = "sha256";
    std::string form = "hex";
    bool json = false;
};

std::string written(BytesView hash, Form form) {
    using byteForms::Case;
    if (form == Form::hex || form == Form::upper)
        return byteForms::hexDigits(hash, form == Form::hex ? Case::lower : Case::upper);
    std::string text = byteForms::encode(hash, CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF);
    if (form == Form::shortBase64) text.erase(text.find_last_not_of('=') + 1);
    return text;
}

void addInput(Hasher& hasher) {
    std::array<char, kHashed> block;
    while (std::cin.read(block.data(), block.size()) || std::cin.gcount() > 0)
        hasher.add({block.data(), static_cast<std::size_t>(std::cin.gcount())});
    if (std::cin.bad()) throw CliError("cannot read standard input");
}

void addFile(Hasher& hasher, const std::string& name) {
    if (name == kStandardInput) return addInput(hasher);
    InputFile file(name);
    std::array<char, kHashed> block;
    for (uint64 at = 0;;) {
        const std::size_t count = file.read(at, block);
        if (count == 0) return;
        hasher.add({block.data(), count});
        at += count;
    }
}

void addText(Hasher& hasher, const HashOptions& options) {
    const auto bytes = encodeText(fromUtf8(options.text), options.encoding);
    if (!bytes)
        throw CliError("the text has a character that " + std::string(encodingName(options.encoding)) +
                       " lacks");
    hasher.add(*bytes);
}

void hash(const HashOptions& options) {
    Hasher hasher(kAlgorithms.at(options.algorithm));
    const Form form = kForms.at(options.form);
    if (options.hasText) {
        addText(hasher, options);
        const std::string value = written(hasher.value(), form);
        if (options.json)
            std::cout << jsonText({{"algorithm", options.algorithm}, {"hash", value}}) << '\n';
        else
            std::cout << value << '\n';
        return;
    }
    Json list = Json::array();
    for (const auto& name : options.files) {
        addFile(hasher, name);
        const std::string value = written(hasher.value(), form);
        if (options.json)
            list.push_back({{"file", name}, {"hash", value}});
        else
            std::cout << value << "  " << printable(fromUtf8(name)) << '\n';
    }
    if (options.json)
        std::cout << jsonText({{"algorithm", options.algorithm}, {"files", std::move(list)}}) << '\n';
}

template <class Map>
std::vector<std::string> keysOf(const Map& map) {
    std::vector<std::string> keys;
    keys.reserve(map.size());
    for (const auto& [key, value] : map) keys.push_back(key);
    return keys;
}

}  // namespace

void addHash(Command app) {
    auto options = std::make_shared<HashOptions>();
    const auto command = app.add("hash", "Hash values of files or of a text");
    const auto files = command.option("FILE", options->files, "Files; - is standard input");
    const auto text = command.option("--text", options->text, "A text instead of files").excludes(files);
    command
        .option("--algorithm", options->algorithm,
                "md2, md4, md5, sha1, sha256 (the default), sha384 or sha512; the first four are broken: "
                "for old data only")
        .oneOf(keysOf(kAlgorithms), InHelp::hidden)
        .typeName("NAME");
    command
        .option("--form", options->form,
                "hex (the default), HEX in capitals, base64, or short: base64 without = at its end")
        .oneOf(keysOf(kForms), InHelp::hidden)
        .typeName("NAME");
    addEncoding(command, options->encoding, false);
    command["--encoding"].needs(text).description(
        "Of the text: utf8 (the default), latin1, 1252 or 850; the library itself hashes a text as 1252");
    addJson(command, options->json);
    command.footer(
        "A line a file: the hash, two blanks, the name, as sha256sum and its like write it.\n"
        "Examples:\n"
        "  tsrtm hash backup.zip\n"
        "  tsrtm hash --algorithm md5 --form HEX *.dat\n"
        "  tsrtm hash --text Müller --encoding 1252");
    command.onRun([options, text] {
        options->hasText = text.count() > 0;
        if (!options->hasText && options->files.empty()) failMissing("FILE or --text");
        hash(*options);
    });
}

}  // namespace tsRtm::cli
