#include "tests/frame/files/FilesFixture.hpp"
#include "tsRtm/frame/files/Wildcards.hpp"

namespace tsRtm::test {
namespace {

using Paths = FilesTest;

TEST(Wildcards, FollowTheFolderRule) {
    for (const auto& [name, pattern] : table<2>(
             u"a.txt=*.TXT a.txt= a.txt=?.txt aXbXc=*x*c readme=*.* readme=*. ä=Ä =* data.tsd=Data*.tsd"))
        EXPECT_TRUE(wildcards::matchesEntry(name, pattern)) << toUtf8(name + u" " + pattern);
    for (const auto& [name, pattern] :
         table<2>(u"ab.txt=?.txt a.txt.bak=*.txt a.b=*. readme=read*.? aaaaaaaaaaaaab=*a*a*a*a*a*c"))
        EXPECT_FALSE(wildcards::matchesEntry(name, pattern)) << toUtf8(name + u" " + pattern);
}

TEST(PathParts, OfEveryKindOfName) {
    const std::tuple<TextView, TextView, TextView, TextView, TextView, TextView> rows[] = {
        {u"C:\\a\\b.txt", u"C:", u"C:\\a", u"b.txt", u"b", u"txt"},
        {u"C:\\b", u"C:", u"C:\\", u"b", u"b", u""},
        {u"C:\\", u"C:", u"", u"", u"", u""},
        {u"\\\\srv\\share\\a.b.c", u"\\\\srv\\share", u"\\\\srv\\share\\", u"a.b.c", u"a.b", u"c"},
        {u"/home/x/y.tar.gz", u"/", u"/home/x", u"y.tar.gz", u"y.tar", u"gz"},
        {u"/a", u"/", u"/", u"a", u"a", u""},
        {u"/a/b/", u"/", u"/a", u"b", u"b", u""},
        {u"b.txt", u"", u"", u"b.txt", u"b", u"txt"},
        {u"", u"", u"", u"", u"", u""}};
    for (const auto& [path, drive, folder, file, base, ext] : rows) {
        using Names = FilesTopic;
        EXPECT_EQ(std::tuple(Names::DriveName(path), Names::PathName(path), Names::FileName(path),
                             Names::BaseName(path), Names::ExtName(path)),
                  std::tuple(drive, folder, file, base, ext))
            << toUtf8(path);
    }
}

TEST_F(Paths, AreJoinedByThePlatformsDelimiter) {
    const Text longName(300, u'x');
    EXPECT_EQ(FilesTopic::MakePath({}) + FilesTopic::MakePath({u"a", 7}), u"a/7");
    EXPECT_EQ(FilesTopic::MakePath({u"a", longName, u"b"}).size(), 304u);
    rtmMain::state().os.major = 5;
    EXPECT_EQ(FilesTopic::MakePath({u"a", longName, u"b"}), u"a/b")
        << "without long paths the part is left out";
    EXPECT_TOLD("ab||260", FilesTopic::PathCleanup(u" a:b "), FilesTopic::PathCleanup(u"\\/:*?\"<>|"),
                FilesTopic::PathCleanup(longName).size());
    EXPECT_TRUE(wildcards::matches(FilesTopic::TempName(), u"rad?????.tmp"));
    EXPECT_NE(FilesTopic::TempName() + FilesTopic::TempName(),
              FilesTopic::TempName() + FilesTopic::TempName());
}

TEST_F(Paths, ExistTellsFilesFromFolders) {
    const Text name = write("a.txt", "x");
    memory.putFolder(path("sub.txt"));
    const std::tuple<Text, bool, bool> rows[] = {
        {name, true, false},   {path("?.t*"), true, false}, {path("s*.txt"), false, true},
        {root, false, true},   {u"", false, false},         {path("none/*"), false, false},
        {u"?:\\", false, true}};
    for (const auto& [entry, isFile, isFolder] : rows) {
        EXPECT_EQ(FilesTopic::Exist(entry), isFile) << toUtf8(entry);
        EXPECT_EQ(FilesTopic::ExistFolder(entry), isFolder) << toUtf8(entry);
    }
}

TEST_F(Paths, GetAllFilesListsAddsAndErases) {
    for (const char* name : {"b.TXT", "a.txt", "c", ".hidden", "d.txt.bak"}) write(name, "x");
    memory.putFolder(path("e.txt"));
    memory.setHidden(path(".hidden"), true);
    std::vector<Text> list{u"stale"};
    EXPECT_EQ(FilesTopic::GetAllFiles(root, u"*.txt", list), 2);
    EXPECT_EQ(list, (std::vector<Text>{u"a.txt", u"b.TXT"}));
    EXPECT_EQ(FilesTopic::GetAllFiles(root, u"c", list, true, 1), 3);
    EXPECT_EQ(list.back(), path("c"));
    EXPECT_EQ(FilesTopic::GetAllFiles(root, u"*.txt", list, false, -1, false, true), 3);
    EXPECT_EQ(list.back(), path("e.txt")) << "folders come by full path";
    EXPECT_EQ(FilesTopic::GetAllFiles(root, u"", list), 5);
    EXPECT_EQ(FilesTopic::GetAllFiles(root, u"", list, false, -1, true), 4) << "without the hidden one";
    EXPECT_EQ(FilesTopic::GetAllFiles(path("none"), u"", list, false, 1), 2);
    EXPECT_EQ(list.size(), 4u) << "an unreadable folder leaves a list that is added to";
    EXPECT_EQ(FilesTopic::GetAllFiles(path("none"), u"", list), 0);
    EXPECT_TRUE(list.empty());
}

TEST_F(Paths, ReplaceKeepsABackupAndNeverLosesTheOld) {
    const Text old = write("a.dat", "old"), fresh = write("new", "fresh");
    disk.renameError = SystemError::sharingViolation;
    EXPECT_FALSE(files.TSReplaceFile(old, fresh, true));
    disk.renameError.reset();
    memory.setFreeSpace(1);
    EXPECT_FALSE(files.TSReplaceFile(old, fresh, true));
    memory.setFreeSpace({});
    EXPECT_TOLD("oldfresh|2|yes|freshold|2|no|yes|fresh", read("a.dat") + read("new"), entries(),
                files.TSReplaceFile(old, fresh, true), read("a.dat") + read("a.sik"), entries(),
                files.TSReplaceFile(old, path("none"), false), files.TSReplaceFile(path("b.dat"), old, true),
                read("b.dat"));
}

// Keeps a second name of the file, to see what became of its bytes.
TEST_F(DiskTest, SecureKillOverwritesAllBytesBeforeItDeletes) {
    for (const std::size_t size : {0u, 1u, 65536u, 200001u}) {
        const auto kept = folder.path() / ("kept" + std::to_string(size));
        std::ofstream(folder.path() / "a", std::ios::binary) << Bytes(size, 'x');
        std::filesystem::create_hard_link(folder.path() / "a", kept);
        EXPECT_TRUE(files.SecureKill(folder.name(u"a")));
        EXPECT_FALSE(FilesTopic::Exist(folder.name(u"a")));
        EXPECT_EQ(contentOf(kept), Bytes(size, '\0'));
    }
}

TEST_F(Paths, SecureKillWorksOnPatternsAndOnFilesInUse) {
    write("a1", "x");
    write("a2", "y");
    write("b", "z");
    EXPECT_TOLD("yes|no|no|1", files.SecureKill(path("a*")), files.SecureKill(path("a*")),
                files.SecureKill(path("none")), entries());
    auto reader = other(path("b"), Sharing::all);
    EXPECT_FALSE(files.SecureKill(path("b"))) << "others hold it open: overwritten, but it stays";
    std::byte seen{};
    ASSERT_EQ(*reader->readAt(0, std::span(&seen, 1)), 1u);
    EXPECT_EQ(seen, std::byte(0x55));

    const Text locked = write("c", "z");
    const auto holder = other(locked, Sharing::none);
    EXPECT_TRUE(
        raised([&] { files.SecureKill(locked); }).starts_with("70|clsRtm|SecureKillThis(/w/c): 70 - "));
    EXPECT_EQ(read("c"), "z");
    disk.removeError = SystemError::sharingViolation;
    EXPECT_FALSE(files.SecureKill(write("d", "z")));
}

}  // namespace
}  // namespace tsRtm::test
