#pragma once
// The public, read-mostly face of the library's state.
#include "tsRtm/frame/Bundeslaender.hpp"
#include "tsRtm/frame/clsHostApp.hpp"
#include "tsRtm/platform/Drawing.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

// Elevation of the user's process.
enum TOKEN_ELEVATION_TYPE : int32 {
    TokenElevationTypeDefault = 1,
    TokenElevationTypeFull = 2,
    TokenElevationTypeLimited = 3,
};

// Anyone may create one; all show the same values. Nothing here fails.
class clsCommon {
 public:
    clsCommon();  // starts the library where it is not started

    // The application: the key of its own options, its main window, its help.
    Text App_ProgID() const;
    void App_ProgID(Text value);
    int32 App_hWnd() const;
    void App_hWnd(int32 value);
    Text App_HelpURL() const;
    void App_HelpURL(Text value);
    // Name, path and version of the running program.
    std::shared_ptr<clsHostApp> RTMApp() const;
    // The control that shows status text, an iStatusControl.
    std::shared_ptr<Object> MessageLine() const;
    void MessageLine(std::shared_ptr<Object> value);

    // Ends long record loops.
    bool Break() const;
    void Break(bool value);
    // The user's Abort during a wait. Reading clears it; writing has effect only while StoppedEnabled is
    // true.
    bool Stopped();
    void Stopped(bool value);
    bool StoppedEnabled() const;
    void StoppedEnabled(bool value);  // clears Stopped, too

    // The system: 2 is the NT family; version is major times 100 plus minor.
    int32 OSTyp() const;
    int32 OSVersion() const;
    int32 Version() const { return OSVersion(); }
    Text OSName() const;
    bool IsWin64() const;  // of the system, not of this process
    bool IsUserAdmin() const;
    TOKEN_ELEVATION_TYPE ElevationType() const;
    int32 Prozessor() const;
    bool KoProzessor() const;  // a floating-point unit is there

    // Folders. Writing replaces the value unchecked.
    Text RuntimeDir() const;
    void RuntimeDir(Text value);
    Text RuntimeDataDir() const;
    void RuntimeDataDir(Text value);
    Text UserDir() const;
    void UserDir(Text value);
    Text TempDir() const;  // as the system gave it at the first read
    bool OldTS() const;    // an installation of the old kind is used

    // "3.01.0526": major, minor with two digits, revision with four.
    Text RTMVersion() const;

    // Constants of stored texts.
    Text TSTrenn() const { return u"|"; }    // parts menus and lists
    Text TSAlt() const { return u"&"; }      // marks an access key
    Text TSComment() const { return u"@"; }  // parts a caption from its help text
    Text FF() const { return u"\u00FF"; }    // the character of code 255
    Text LastChar() const;                   // the character that sorts last

    // Time "hh:mm" and date with four-digit year, now, in the locale's form.
    Text TI_() const;
    Text DA8() const;

    // The locale.
    int32 Date_Form() const;  // 0 MMTTJJJJ, 1 TTMMJJJJ, 2 JJJJMMTT
    Text Sep_Date() const;
    Text Sep_Time() const;
    Text Sep_Dec() const;
    Text Sep_1000() const;
    int32 Time_Form() const;
    int32 Curr_Form() const;
    int32 Curr_Digits() const;
    Text CurrName() const;
    int32 Language() const;  // 7 German, 9 English
    int32 Country() const;
    Text CountryName() const;
    int32 CodePage() const;
    // For the holiday calendar; 0 none. A value outside 0..16 is ignored.
    Bundeslaender Bundesland() const;
    void Bundesland(Bundeslaender value);

    // The screen, in pixels, and millimetres in other units.
    int32 DisplayZeilen() const;
    int32 DisplaySpalten() const;
    float64 FaktorZoll() const { return 25.4; }                 // millimetres per inch
    float64 FaktorMM() const { return platform::kTwipsPerMM; }  // twips per millimetre
    float64 FaktorMM12() const { return 47.24409448818898; }    // dots of 1/1200 inch per millimetre

    int32 NetWait() const;  // seconds
    int32 Expert() const;   // -1 or 0

    // The pending failure and the last recorded one, run-time error numbers; 0 none.
    int32 FE_() const;
    void FE_(int32 value);
    int32 F() const;
    void F(int32 value);

    // The debug log.
    bool Debugging() const;
    void Debugging(bool value);
};

}  // namespace tsRtm
