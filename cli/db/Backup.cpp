// tsrtm db backup, verify: a copy of one moment, and whether it still is what it was.
#include <iostream>
#include <map>

#include "cli/Commands.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/Progress.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "cli/shared/TextFiles.hpp"
#include "tsRtm/database/DatabaseCare.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/services/bytes/ByteForms.hpp"
#include "tsRtm/services/bytes/Hasher.hpp"

namespace tsRtm::cli {
namespace {

// Written last: without it a copy was not finished.
constexpr TextView kManifest = u"backup.json";
constexpr std::size_t kCopied = std::size_t{1} << 20;

struct BackupOptions {
    std::string name;
    std::string copy;
    bool json = false;
};

// A file as the manifest has it.
struct Entry {
    std::string name;
    int64 bytes;
    std::string sha256;
};

Text inside(const Text& folder, TextView name) {
    return FilesTopic::MakePath({Variant(folder), Variant(Text(name))});
}

std::string digits(Hasher& hasher) { return byteForms::hexDigits(hasher.value(), byteForms::Case::lower); }

// The files of a copy as they come, with their check sums. What is not finished is taken away again.
class Copy {
 public:
    explicit Copy(Text folder) : folder_(std::move(folder)) {
        auto& files = rtmMain::system().files;
        const auto entries = files.list(folder_);
        if (entries && !entries->empty()) throw CliError("'" + toUtf8(folder_) + "' is there already");
        if (failed(files.makeFolder(folder_)))
            throw CliError("cannot make the folder '" + toUtf8(folder_) + "'");
    }
    ~Copy() {
        if (finished_) return;
        file_.reset();
        for (const auto& name : names_)
            static_cast<void>(rtmMain::system().files.remove(inside(folder_, name)));
    }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;

    void begin(TextView name) {
        end();
        names_.emplace_back(name);
        bytes_ = 0;
        file_.emplace(toUtf8(inside(folder_, name)));
    }
    void piece(BytesView bytes) {
        file_->write(bytes);
        hasher_.add(bytes);
        bytes_ += bytes.size();
    }
    void finish(const std::string& database) {
        end();
        names_.emplace_back(kManifest);
        OutputFile manifest(toUtf8(inside(folder_, kManifest)));
        manifest.write(jsonText({{"database", database}, {"files", list_}}) + "\n");
        manifest.finish();
        if (failed(rtmMain::system().files.flushFolder(folder_)))
            throw CliError("cannot bring '" + toUtf8(folder_) + "' to the device");
        finished_ = true;
    }
    std::size_t files() const noexcept { return list_.size(); }

 private:
    void end() {
        if (!file_) return;
        file_->finish();
        file_.reset();
        const auto opened = rtmMain::system().files.open(inside(folder_, names_.back()),
                                                         {.access = platform::Access::readWrite});
        if (!opened || failed((*opened)->flush()))
            throw CliError("cannot bring '" + toUtf8(names_.back()) + "' to the device");
        list_.push_back({{"name", toUtf8(names_.back())}, {"bytes", bytes_}, {"sha256", digits(hasher_)}});
    }

    Text folder_;
    std::vector<Text> names_;
    std::optional<OutputFile> file_;
    Hasher hasher_{CALG_SHA256};
    uint64 bytes_ = 0;
    Json list_ = Json::array();
    bool finished_ = false;
};

void backup(const BackupOptions& options) {
    Session session(options.name, Use::change);
    Copy copy(databaseFolder(options.copy));
    bool done = false;
    {
        Progress progress("Copying", "bytes");
        DatabaseCare::Copying to;
        bool skips = false;
        to.begin = [&](TextView name, uint64) {
            if (name != kManifest) copy.begin(name);
            skips = name == kManifest;
        };
        to.piece = [&](BytesView bytes) {
            if (!skips) copy.piece(bytes);
        };
        to.progress = [&](uint64 bytes, uint64 of) { progress.update(bytes, of); };
        done = DatabaseCare(session.db()).copy(to);
    }
    session.check("cannot copy '" + options.name + "'");
    if (!done) throw CliError("cannot copy '" + options.name + "'");
    copy.finish(toUtf8(session.db().DBName()));
    std::cout << "copied " << copy.files() << " files of " << session.count() << " records to "
              << toUtf8(databaseFolder(options.copy)) << '\n';
}

std::vector<Entry> manifestOf(const Text& folder) {
    const Text name = inside(folder, kManifest);
    if (!FilesTopic::Exist(name))
        throw CliError("no backup.json in '" + toUtf8(folder) +
                       "': it is no backup, or one that was not finished");
    InputFile file(toUtf8(name));
    std::string text(file.size(), '\0');
    text.resize(file.read(0, text));
    try {
        std::vector<Entry> files;
        const Json manifest = Json::parse(text);
        for (const auto& entry : manifest.at("files").elements())
            files.push_back({entry.at("name").text(), entry.at("bytes").whole(), entry.at("sha256").text()});
        return files;
    } catch (const JsonError&) {
        throw CliError("'" + toUtf8(name) + "' is damaged");
    }
}

// What is not as the manifest says.
std::vector<std::string> differences(const Text& folder, const std::vector<Entry>& files) {
    std::vector<std::string> out;
    uint64 all = 0, done = 0;
    for (const Entry& entry : files) all += static_cast<uint64>(entry.bytes);
    Progress progress("Verifying", "bytes");
    std::string piece(kCopied, '\0');
    for (const auto& [name, bytes, sha256] : files) {
        const Text path = inside(folder, fromUtf8(name));
        if (!FilesTopic::Exist(path)) {
            out.push_back(name + ": is missing");
            continue;
        }
        InputFile file(toUtf8(path));
        Hasher hasher(CALG_SHA256);
        uint64 at = 0;
        for (std::size_t got = 1; got > 0; at += got, progress.update(done += got, all)) {
            got = file.read(at, piece);
            hasher.add({piece.data(), got});
        }
        if (at != static_cast<uint64>(bytes))
            out.push_back(name + ": has " + std::to_string(at) + " bytes, not " + std::to_string(bytes));
        else if (digits(hasher) != sha256)
            out.push_back(name + ": its content has changed");
    }
    return out;
}

void verify(const BackupOptions& options) {
    const auto files = manifestOf(databaseFolder(options.name));
    auto found = differences(databaseFolder(options.name), files);
    bool sound = false;
    {
        Session session(options.name, Use::read);
        Progress progress("Checking", "records");
        sound = session.db().Check(false, {});
        session.check("cannot check '" + options.name + "'");
        for (const auto& line : session.db().Befunde()) found.push_back(printable(line));
    }
    const bool good = sound && found.empty();
    if (options.json) {
        std::cout << jsonText({{"sound", good}, {"files", files.size()}, {"findings", found}}) << '\n';
    } else {
        for (const auto& line : found) std::cout << line << '\n';
        if (good) std::cout << "sound: " << files.size() << " files as they were copied\n";
    }
    if (!good) throw CliError("'" + options.name + "' is not as it was copied, or has faults");
}

}  // namespace

void addBackup(Command db) {
    auto options = std::make_shared<BackupOptions>();
    const auto copied = db.add("backup", "Copy a database as it is at one moment, while others work");
    addDatabase(copied, options->name);
    copied.option("DEST", options->copy, "The copy: a directory that is not there yet, with or without .DBD")
        .required();
    copied.footer(
        "Whoever writes waits until the copy is made; who reads goes on. The copy is a database like\n"
        "any other. It bears a list of its files with check sums, backup.json, which verify reads.");
    copied.onRun([options] { backup(*options); });

    options = std::make_shared<BackupOptions>();
    const auto verified =
        db.add("verify", "Whether a copy that backup made is as it was, and a sound database");
    verified.option("COPY", options->name, "The copy").required();
    addJson(verified, options->json);
    verified.onRun([options] { verify(*options); });
}

}  // namespace tsRtm::cli
