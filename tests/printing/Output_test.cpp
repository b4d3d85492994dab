// The way of composed pages: printer, file, preview, copies, and what stops it.
#include <algorithm>

#include "tests/printing/PaperDouble.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/printing/Druck.hpp"

namespace tsRtm::test {
namespace {

using Lines = std::vector<std::string>;

class Output : public ::testing::Test {
 protected:
    // A job of one copy.
    void begin(bool preview = false) { job->Init(72, 1, 1, u"A4", preview); }
    void page(TextView text) {
        job->mm(10, 10, text);
        job->Ausgabe();
    }
    // Pages that are ended as applications do it.
    void compose(int32 pages) {
        for (int32 n = 1; n <= pages; ++n) page(toText(n));
        job->Ende();
    }
    // The text stands on the last page.
    void endWith(TextView text) {
        job->mm(10, 10, text);
        job->Ende();
    }
    // The pages that were played, by their text; "-" an empty side.
    std::string played() const {
        std::string text;
        for (const auto& page : paper.pages) text += page.lines.empty() ? '-' : page.lines.back().back();
        return text;
    }
    int64 count(const std::string& what) const {
        return std::count(paper.log.begin(), paper.log.end(), what);
    }
    void anew() {
        job.reset();
        paper.log.clear();
        paper.pages.clear();
        job = std::make_unique<Druck>(messages);
    }

    MemoryFiles disk;
    StartedLibrary library{disk};
    PaperDouble paper;
    MessagesTopic messages;
    std::unique_ptr<Druck> job = std::make_unique<Druck>(messages);
};

// What the printer knows of copies and sides; what it is told to repeat; the sides of jobs of one to four
// pages.
TEST_F(Output, BringsPagesToThePrinter) {
    constexpr int32 copiesKnown = 1, duplexKnown = 2, all = 3;
    using Feature = platform::PrinterFeature;
    const struct {
        bool collate, duplex;
        int32 copies, knows, told;
        const char* played[4];
    } cases[] = {
        {true, false, 0, all, 1, {"1", "12", "123", "1234"}},
        {true, false, 1, all, 1, {"1", "12", "123", "1234"}},
        {true, false, 2, all, 1, {"11", "1212", "123123", "12341234"}},
        {true, false, 3, 0, 0, {"111", "121212", "123123123", "123412341234"}},
        // The printer repeats each page, or it is played again.
        {false, false, 2, all, 2, {"1", "12", "123", "1234"}},
        {false, false, 2, duplexKnown, 0, {"11", "1122", "112233", "11223344"}},
        {false, false, 3, 0, 0, {"111", "111222", "111222333", "111222333444"}},
        // The next copy begins on the front of a sheet.
        {true, true, 1, all, 1, {"1", "12", "123", "1234"}},
        {true, true, 2, all, 1, {"11", "1212", "123-123", "12341234"}},
        {true, true, 3, duplexKnown, 0, {"111", "121212", "123-123-123", "123412341234"}},
        {true, true, 2, copiesKnown, 1, {"11", "1212", "123123", "12341234"}},
        // A page played twice stands on both sides of a sheet.
        {false, true, 2, duplexKnown, 0, {"11", "1122", "112233", "11223344"}},
        {false, true, 2, all, 2, {"1", "12", "123", "1234"}},
        {false, true, 2, 0, 0, {"11", "1122", "112233", "11223344"}},
    };
    paper.onModal = [&] { paper.previewed->leave(true); };
    for (const auto& c : cases)
        for (const bool preview : {false, true})
            for (int32 pages = 1; pages <= 4; ++pages) {
                SCOPED_TRACE(std::to_string(&c - cases) + (preview ? " preview " : " ") +
                             std::to_string(pages));
                anew();
                auto& values = paper.laser->values;
                values.erase(Feature::copies);
                values.erase(Feature::duplex);
                if (c.knows & copiesKnown) values[Feature::copies] = 1;
                if (c.knows & duplexKnown) values[Feature::duplex] = 1;
                job->Modal(true);
                job->Collate(c.collate);
                job->Init(72, c.copies + (c.duplex ? tsDuplexVertikal : 0), 1, u"A4", preview);
                compose(pages);
                EXPECT_EQ(played(), c.played[pages - 1]);
                EXPECT_EQ(count("end"), 1);
                EXPECT_EQ(std::pair(job->PageCount(), job->Copies()), std::pair(int16(pages), c.copies));
                if (c.knows & copiesKnown) {
                    EXPECT_EQ(values[Feature::copies], c.told);
                }
                // One page has no other side.
                if (c.knows & duplexKnown) {
                    EXPECT_EQ(values[Feature::duplex] != 1, c.duplex && pages > 1);
                }
            }
    anew();
    begin();
    job->Ende();  // one empty page is a page
    EXPECT_EQ(paper.pages.size(), 1u);
    EXPECT_EQ(paper.pages[0].mappings.front(),
              (platform::PageMapping{11906, 16838, 4961, 7016, -100, -50, 1}));
}

TEST_F(Output, SetsThePrinterAsFarAsItGoes) {
    using enum platform::PrinterFeature;
    auto& laser = *paper.laser;
    auto& ui = library.ground.ui;
    const auto printCard = [&] {
        job->Init(36, 1, 2, u"Karte");
        compose(1);
    };
    printCard();
    EXPECT_TOLD("1|2|3", count("form Karte"), laser.values[paperSize],
                laser.values[paperBin]);  // the new form
    laser.known.pop_back();
    laser.refuses = platform::SystemError::fileExists;
    anew();
    printCard();
    EXPECT_EQ(count("form Karte 215 x 152 mm"), 1);
    laser.known.pop_back();
    laser.refuses = platform::SystemError::accessDenied;
    ui.defaultAnswer = 1;
    printCard();
    EXPECT_TOLD("1|Sie haben nicht die nötigen Rechte|Mitte|Schacht ID 9", ui.boxes.size(),
                ui.boxes.back().headline.substr(0, 34), job->PaperBinName(), job->PaperBinName(9));
    job->Device(u"Kein Drucker");
    EXPECT_EQ(job->Device(), u"Laser");
    laser.refused = 3;
    laser.values[paperBin] = 1;
    job->Init(72, 1, 2, u"A4");
    compose(1);
    EXPECT_EQ(job->PaperBin(), 7);
}

TEST_F(Output, MakesOneFileOfAJob) {
    disk.putFolder(u"/brief");
    for (const char16_t* name : {u"/brief/MAHNUNG.pdf", u"/brief/Mahnung[2].pdf"}) disk.put(name, "x");
    job->Device(u"pdf");
    job->JobName(u"Mahnung");
    job->DocPath(u"/brief");
    job->Init(72, 3, 1, u"A4");
    job->Protected(true);
    compose(2);
    // Copies are for printers; the file has each page once.
    EXPECT_EQ(paper.log,
              (Lines{"file", "sheet 11906x16838", "sheet 11906x16838", "as /brief/Mahnung[3].pdf"}));
    EXPECT_TOLD("Mahnung[3].pdf|8|0", job->DocFile(), paper.pdfSettings.ownerPassword.size(),
                paper.pages[0].mappings[0].originX);

    anew();
    job->Device(u"PDF");
    job->PDFA(true);
    job->JobName(u"a/b.PDF");
    job->DocPath(u"/brief/neu/tief");
    job->Init(72, 512 + 1, 1, u"A4");
    job->Protected(true);
    compose(1);
    EXPECT_EQ(paper.log.back(), "as /brief/neu/tief/ab.PDF");
    EXPECT_TRUE(paper.pdfSettings.ownerPassword.empty());  // PDF/A cannot be protected

    anew();
    paper.namesTaken = 2;
    job->Device(u"PDF");
    job->DocPath(u"/brief");
    begin();
    compose(1);
    EXPECT_TOLD("no|3", job->Abbruch(), count(paper.log.back()));
}

TEST_F(Output, MakesFurtherCopies) {
    begin();
    disk.putFolder(u"/brief");
    job->DocPath(u"/brief");
    job->CopyType(CopyToPrinterAndPDF);
    job->CopyDevice(u"Alt");
    job->CopyCount(2);
    compose(2);
    EXPECT_TOLD("12121212|1|2|Laser|1|1", played(), count("file"), count("end"), job->Device(), job->Copies(),
                job->PaperBin());
}

TEST_F(Output, ShowsThePreviewAsItGrows) {
    int32 printed = 0, cancelled = 0;
    const auto a = job->Printed.connect([&] { ++printed; });
    const auto b = job->Cancel.connect([&] { ++cancelled; });
    begin(true);
    page(u"1");
    ASSERT_TRUE(paper.previewed);
    const auto closed = [&](int32 n) { return paper.previewed->source(n)->page().closed; };
    EXPECT_TOLD("2|yes|no", paper.previewed->pages(), closed(1), closed(2));
    paper.previewed->printPage(1);  // a proof, beside the page that is being written on
    job->mm(10, 10, u"2");
    library.ground.ui.defaultAnswer = 1;
    begin();
    EXPECT_EQ(library.ground.ui.boxes.back().headline, u"Der letzte Druckjob ist noch nicht beendet.");
    job->Ende();
    job->PreviewButtonsOFF(tsClipboard);
    EXPECT_TOLD("show 1,update,update|1", paper.windowLog, played());
    paper.previewed->copyPage(2);
    EXPECT_EQ(paper.windowLog.back(), "copy of 5");
    paper.previewed->leave(true);
    EXPECT_TOLD("112|1|0", played(), printed, cancelled);

    begin(true);
    compose(1);
    begin();  // the old one counts as cancelled, and its window goes
    EXPECT_TOLD("1|no|no", cancelled, paper.windowVisible, job->Abbruch());

    // Modal: shown once, at the end, and printed once.
    job->Modal(true);
    begin(true);
    paper.windowLog.clear();
    paper.pages.clear();
    paper.onModal = [&] { paper.previewed->leave(true); };
    compose(2);
    EXPECT_TOLD("show 1|12", paper.windowLog, played());
    begin(true);
    paper.onModal = [&] { paper.previewed->leave(false); };
    compose(1);
    EXPECT_TOLD("yes|12", job->Abbruch(), played());
}

TEST_F(Output, StopsWhereItIsBrokenOff) {
    job->Init(72, 3, 1, u"A4");
    job->Collate(false);
    paper.laser->values.erase(platform::PrinterFeature::copies);
    job->mm(10, 10, u"1");
    int32 sides = 0;
    library.ground.ui.onEvents = [&] {
        if (++sides == 2) job->KillDoc();
    };
    job->Ausgabe();
    library.ground.ui.onEvents = nullptr;
    EXPECT_TOLD("yes|11|kill", job->Abbruch(), played(), paper.log.back());
    endWith(u"2");
    EXPECT_EQ(played(), "11");
    library.ground.ui.defaultAnswer = 1;
    disk.put(u"/datei", "x");
    const struct {
        const char* told;
        std::function<void()> happens;  // behind the first page
        const char* played;
        const char* last;
    } troubles[] = {
        {"antwortet nicht", [&] { paper.laser->gone = true; }, "1", "kill"},
        {"nimmt das Dokument nicht an",
         [&] { paper.laser->queueRefuses = platform::SystemError::accessDenied; }, "123", "end"},
        {"kann nicht angelegt werden",
         [&] {
             job->Device(u"PDF");
             job->DocPath(u"/datei/neu");
         },
         "123", "sheet 11906x16838"},
        {"kann nicht geschrieben werden",
         [&] {
             disk.putFolder(u"/brief");
             job->Device(u"PDF");
             job->DocPath(u"/brief");
             paper.pdfFails = platform::SystemError::diskFull;
         },
         "123", "as /brief/Tessarol Runtime.pdf"},
    };
    for (const auto& trouble : troubles) {
        SCOPED_TRACE(trouble.told);
        anew();
        library.ground.ui.boxes.clear();
        paper.laser->gone = false;
        paper.laser->queueRefuses = platform::SystemError::none;
        begin();
        page(u"1");
        trouble.happens();
        page(u"2");
        endWith(u"3");
        EXPECT_TRUE(job->Abbruch());
        EXPECT_EQ(played(), trouble.played);
        EXPECT_EQ(paper.log.back(), trouble.last);
        ASSERT_EQ(library.ground.ui.boxes.size(), 1u);  // told once
        EXPECT_EQ(library.ground.ui.boxes[0].title, u"Druck");
        const auto said = toUtf8(library.ground.ui.boxes[0].headline);
        EXPECT_HOLDS(said, trouble.told);
    }
}

// What a user or the application does between two pages.
TEST_F(Output, TakesWhatComesBetweenTwoPages) {
    // The preview is closed while a page is printed from it: nothing of that waits for the next document.
    auto& ui = library.ground.ui;
    begin(true);
    endWith(u"1");
    ui.onEvents = [&] { paper.previewed->leave(false); };
    paper.previewed->printPage(1);
    ui.onEvents = nullptr;
    EXPECT_EQ(paper.log.back(), "kill");

    // The same job once more before it is through.
    anew();
    ui.defaultAnswer = 1;
    job->Init(72, 512, 1, u"A4");
    for (const TextView text : {u"1", u"2"}) page(text);
    ui.onEvents = [&] {
        if (ui.boxes.empty()) begin();
    };
    endWith(u"3");
    EXPECT_TOLD("123|1", played(), ui.boxes.size());

    // A handler that raises: the next job can begin.
    anew();
    begin();
    ui.onEvents = [] { raise(5, u"Test", u""); };
    EXPECT_THROW(endWith(u"1"), Failure);
    ui.onEvents = nullptr;
    begin();
    EXPECT_EQ(ui.boxes.size(), 1u) << "nothing more is told";

    // On from another printer: what the first one has is a document of its own.
    anew();
    begin();
    page(u"1");
    job->Device(u"Alt");
    endWith(u"2");
    EXPECT_EQ(count("end"), 2);
}

// A text without a place to break: in a time that grows with its length alone.
TEST_F(Output, TakesTextsOfAnyLength) {
    const Text letters(1000000, u'a');
    Text signs;
    while (signs.size() < letters.size()) signs += u"a.b-";
    begin(true);
    int32 row = 0;
    EXPECT_TOLD("4|2000000", job->SetzText(letters, row, 0, 10, 10, 4, true),
                job->SetzText(signs, row, 0, 10, 10, 4, true));
    Text cut = letters;
    job->MMExt(10, 10, cut, 12, 0, 0, 100.0);
    EXPECT_EQ(cut.size(), 7u);
}

TEST_F(Output, AnnouncesAFax) {
    begin();
    job->JobName(u"Brief");
    job->FaxTyp(FritzFaxAutomatisch);
    job->FaxNummer(u"030 1");
    compose(1);
    EXPECT_EQ(job->FaxError(), 1);  // nobody took it within five seconds
    EXPECT_GE(library.ground.clock.elapsed(), std::chrono::seconds(5));
}

TEST_F(Output, ComposesWithoutADesktop) {
    rtmMain::plugged().paper = nullptr;
    job = std::make_unique<Druck>(messages);
    begin();
    // The measure of Arial: 667 of 1000 units for an "A", 278 for an "i".
    EXPECT_TOLD("PDF|160|53", job->Device(), job->TextWidth(u"A"), job->TextWidth(u"i"));
    int32 cancelled = 0;
    const auto c = job->Cancel.connect([&] { ++cancelled; });
    begin(true);
    endWith(u"x");
    EXPECT_TOLD("1|yes", cancelled, job->Abbruch());
}

}  // namespace
}  // namespace tsRtm::test
