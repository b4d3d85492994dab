// tsrtm msg: the texts of the library by their numbers.
#include <iostream>
#include <optional>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kLastMessage = 511, kLastCaption = 133;
constexpr int32 kFlags = 0x3E00;  // those above the number, with the one that has no meaning
constexpr std::size_t kMostInserts = 9;

struct Language {
    const char* word;
    int32 id;  // of its home country
};
constexpr Language kLanguages[] = {{"de", 1031}, {"en", 1033}, {"es", 3082},
                                   {"fr", 1036}, {"it", 1040}, {"nl", 1043}};

struct MessagesOptions {
    std::optional<int32> number;
    std::vector<std::string> inserts;
    std::string language;
    bool captions = false;
    bool json = false;
};

void speak(const std::string& word) {
    for (const auto& language : kLanguages)
        if (word == language.word) rtmMain::state().langId = language.id;
}

Text textOf(MessagesTopic& messages, int32 number, const MessagesOptions& options) {
    if (options.captions) return messages.StandardText(number);
    Text text = messages.RtmMsg(number);
    for (std::size_t i = 0; i < options.inserts.size(); ++i)
        messages.InsertMsg(text, static_cast<int32>(i + 1), fromUtf8(options.inserts[i]));
    return text;
}

Json jsonOf(int32 number, const Text& text) { return {{"number", number}, {"text", toUtf8(text)}}; }

void list(MessagesTopic& messages, const MessagesOptions& options) {
    std::vector<std::pair<int32, Text>> rows;
    const int32 last = options.captions ? kLastCaption : kLastMessage;
    for (int32 number = 0; number <= last; ++number)
        if (Text text = textOf(messages, number, options); !text.empty())
            rows.emplace_back(number, std::move(text));
    if (options.json) {
        JsonList out("messages");
        for (const auto& [number, text] : rows) out.add(jsonText(jsonOf(number, text)));
        return;
    }
    Table table({{"Nr", 3, true}, {"Text", 4}});
    for (const auto& [number, text] : rows) table.row({std::to_string(number), printable(text)});
}

void one(MessagesTopic& messages, int32 number, const MessagesOptions& options) {
    const int32 known = options.captions ? kLastCaption : kLastMessage | kFlags;
    const Text text = number < 0 || number > known ? Text() : textOf(messages, number, options);
    if (text.empty())
        throw CliError(std::string("no ") + (options.captions ? "caption " : "message ") +
                       std::to_string(number) + " in this language; all of them: tsrtm msg" +
                       (options.captions ? " --captions" : ""));
    std::cout << (options.json ? jsonText(jsonOf(number, text)) : printable(text)) << '\n';
}

void run(const MessagesOptions& options) {
    MessagesTopic messages;
    speak(options.language);
    if (options.number)
        one(messages, *options.number, options);
    else
        list(messages, options);
}

}  // namespace

void addMessages(Command app) {
    auto options = std::make_shared<MessagesOptions>();
    const auto command = app.add("msg", "The library's texts by number: one, or all of them");
    command.option(
        "N", options->number,
        "Number 0 to 511, plus flags: 1024 a blank in front, 2048 a blank behind, 4096 dots behind, 8192 "
        "keys and marks not expanded");
    command.option("TEXT", options->inserts, "Texts for the places %1, %2 ...")
        .expected(0, static_cast<int>(kMostInserts));
    std::vector<std::string> words;
    for (const auto& language : kLanguages) words.emplace_back(language.word);
    command.option("--language", options->language, "de, en, es, fr, it or nl; the machine's own without it")
        .oneOf(words, InHelp::hidden)
        .typeName("NAME");
    command.flag("--captions", options->captions, "The captions of buttons instead");
    addJson(command, options->json);
    command.footer("Messages are in German; of the English ones there are the names of days and months.");
    command.onRun([options] { run(*options); });
}

}  // namespace tsRtm::cli
