#pragma once
// The options of the user interface, kept for each user and application in the settings store.
#include "tsRtm/types/HKeys.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

struct OptionRule;

// When reference data are updated over the network.
enum eUpdateStrategy : int32 {
    upNotdefined = 0,
    upManual = 1,
    upOncePerDay = 2,
    upAlways = 3,
    upWhenConnected = 2,  // the same number as once per day: stored options rely on it
};

// Form of the preview window.
enum ePreviewSize : int32 { viewNormal = 0, viewMaximiert = 1 };

// What the preview shows of a page.
enum ePreviewZoom : int32 { zoomGanzeSeite = 0, zoomFensterbreite = 1, zoomVergroessert = 2 };

// Each access goes to the store, so what another process writes is seen at the next read. Nothing here fails:
// an option that cannot be read has its default, one that cannot be written stays. Written is what is given;
// limits hold when it is read. The key is that of App_ProgID at the time of the access.
class clsTSOptions {
 public:
    // Decides here where Started, Ended and Version lie.
    clsTSOptions();

    bool SignSilent() const;
    void SignSilent(bool value);
    // The number stored, also where it is none of eUpdateStrategy.
    eUpdateStrategy UpdateStrategy() const;
    void UpdateStrategy(eUpdateStrategy value);
    Text UpdateLastLook() const;
    void UpdateLastLook(TextView value);
    // The last value read stays in the global state, for the printing of addresses.
    bool AdresseMitAnrede() const;
    void AdresseMitAnrede(bool value);
    // Not stored: true but on very old systems.
    bool ShowAnimation() const;
    void ShowAnimation(bool value);
    bool ShowEndeDialog() const;  // not stored: true
    void ShowEndeDialog(bool value);
    // Font of editors and its size; of all applications where this one has none of its own.
    Text Schriftart() const;
    void Schriftart(TextView value);
    Text SchriftGroesse() const;
    void SchriftGroesse(TextView value);
    bool ExpertenModus() const;
    void ExpertenModus(bool value);
    // The user's wishes for the preview, by number; the application hands them to its print job.
    ePreviewSize PreviewWindowSize() const;
    void PreviewWindowSize(ePreviewSize value);
    ePreviewZoom PreviewZoom() const;
    void PreviewZoom(ePreviewZoom value);

    // Bars of the main window. The flags but StayOpen are true where they are not stored.
    bool Toolbar() const;
    void Toolbar(bool value);
    bool StatusBar() const;
    void StatusBar(bool value);
    bool ExpressBar() const;
    void ExpressBar(bool value);
    int32 ExpressBarWidth()
        const;  // twips: 1000..9999 as stored, else wide enough for the tool bar's pictures
    void ExpressBarWidth(int32 value);
    int32 ExpressBarHeight() const;  // 1..3, else 1
    void ExpressBarHeight(int32 value);
    bool ExpressBarAuto() const;
    void ExpressBarAuto(bool value);
    bool ExpressBarStayOpen() const;
    void ExpressBarStayOpen(bool value);
    bool ExpressBarAnimate() const;
    void ExpressBarAnimate(bool value);
    int32 ToolbarSize() const;  // pixels, 16..128 in steps of 8; not stored: larger on a finer screen
    void ToolbarSize(int32 value);

    int32 MDIChildWState() const;  // of child windows: 0 normal, 2 maximised
    void MDIChildWState(int32 value);
    bool F11F12() const;
    void F11F12(bool value);
    Text WallPaper() const;
    void WallPaper(TextView value);
    int32 TileWallPaper() const;
    void TileWallPaper(int32 value);
    Text FreeItems() const;
    void FreeItems(TextView value);

    // Of the machine, or of the user in a remote session.
    Text Started() const;
    void Started(TextView value);
    Text Ended() const;
    void Ended(TextView value);
    Text Version() const;
    void Version(TextView value);

    bool FastAddString() const;
    void FastAddString(bool value);

    // --- Any option, by its row of the table: for lists of all.

    // Where it is written and looked for first: hive, and key below the root.
    HKeys hive(const OptionRule& rule) const noexcept;
    static Text subkey(const OptionRule& rule);
    // As stored, in the root too where the rule says so; empty where it is not.
    Text stored(const OptionRule& rule) const;
    // What holds, as text: flags "-1" and "0".
    Text effective(const OptionRule& rule) const;

 private:
    bool flag(const OptionRule& rule) const;
    int32 number(const OptionRule& rule) const;
    void write(const OptionRule& rule, TextView value) const;
    void writeFlag(const OptionRule& rule, bool value) const;
    void writeNumber(const OptionRule& rule, int32 value) const;

    HKeys machineHive_;
};

}  // namespace tsRtm
