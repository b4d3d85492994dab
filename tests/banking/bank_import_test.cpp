// From the bank code file to the register, on the real disk.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/TempFolder.hpp"
#include "tsRtm/banking/BankImport.hpp"
#include "tsRtm/clsRtm.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {
namespace {

class BankImport : public ::testing::Test {
 protected:
    void write(const std::string& content) {
        std::ofstream(folder_.path() / "blz.txt", std::ios::binary) << content;
    }
    BankImportResult import(bool single) {
        bankRegister::create(rtm_, name());
        const auto db = rtm_.OpenTSDB(name(), false, single);
        auto file = rtmMain::system().files.open(folder_.name(u"blz.txt"), {});
        BankFileReader reader(**file);
        BankImportListener listener;
        listener.rejected = [&](int64 line, BankRowFault fault) { rejected_.emplace_back(line, fault); };
        return importBanks(reader, *db, listener);
    }
    Text name() const { return folder_.name(u"Banken"); }
    // A good row of 168 characters.
    static std::string row(const std::string& code, char mark, const std::string& place) {
        std::string out = code + mark + "Bank";
        out.resize(67, ' ');
        out += "10115" + place;
        out.resize(134, ' ');
        return out + "90001ABCDDE12XXX09000123U000000000";
    }

    test::TempFolder folder_;
    clsRtm rtm_;
    std::vector<std::pair<int64, BankRowFault>> rejected_;
};

TEST_F(BankImport, LoadsOwnBanksAndTellsEveryLineThatIsNone) {
    write(row("20000000", '1', "K\xF6ln") + "\r\n" + row("20000000", '2', "Bonn") + "\r\n\r\n" + "kurz\r\n" +
          std::string(100000, 'x') + "\n" + row("10000000", '1', "Ulm"));
    const auto result = import(true);
    EXPECT_TRUE(result.complete);
    EXPECT_EQ(result.loaded, 2);
    EXPECT_EQ(result.otherRows, 1);
    EXPECT_EQ(rejected_, (std::vector<std::pair<int64, BankRowFault>>{{4, BankRowFault::length},
                                                                      {5, BankRowFault::length}}));

    const auto db = rtm_.OpenTSDB(name(), true);
    EXPECT_TRUE(db->Check(false, {}));
    EXPECT_EQ(db->GetField(1, fBANKEN_ORT), u"Köln");
    EXPECT_EQ(db->GetField(1, fBANKEN_PZMETHODE), u"09");
    db->SetIndex(bankRegister::kByCode);
    EXPECT_EQ(db->Index(1), 2);
    db->SetIndex(bankRegister::kByPlaceAndName);
    EXPECT_EQ(db->Index(1), 1);
    db->SetIndex(bankRegister::kByBic);
    db->Gehezu(u"ABCDDE12");
    EXPECT_EQ(db->Fields(fBANKEN_BIC), u"ABCDDE12XXX");
}

TEST_F(BankImport, TakesNothingIntoAnotherDatabase) {
    write(row("20000000", '1', "Bonn"));
    TSIOArray other = bankRegister::fields();
    other.pop_back();
    ASSERT_TRUE(rtm_.DBCreateExt(DBAnsi, name(), {}, other, 1000, u"  1  0  0"));
    const auto result = import(false);
    EXPECT_FALSE(result.complete);
    EXPECT_EQ(result.databaseError, 53);
}

}  // namespace
}  // namespace tsRtm
