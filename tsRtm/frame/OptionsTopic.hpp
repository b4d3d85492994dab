#pragma once
// The topic of clsRtm for settings: the registry, typed options, INI files.
#include <memory>

#include "tsRtm/types/HKeys.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class clsTSOptions;

// A setting has a hive, a key and a name, and is a text also where it means a number or a flag. Nothing here
// fails: what cannot be read is empty, 0 or false, and what cannot be written stays as it was. Each read goes
// to the store, where several processes write at once.
class OptionsTopic {
 public:
    OptionsTopic();  // starts the library where it is not started
    ~OptionsTopic();
    OptionsTopic(const OptionsTopic&) = delete;
    OptionsTopic& operator=(const OptionsTopic&) = delete;

    // The text of a setting below the root "Software\Tessarol"; an empty Subkey is the root itself. A flag
    // that an older release stored as a word becomes "-1" or "0", here and in the store.
    Text RegLesen(HKeys Zweig, TextView Subkey, TextView Variable) const;
    // The same by whole path.
    Text RegLesenEx(HKeys Zweig, TextView Subkey, TextView Variable) const;
    // Makes the key where it is missing. "WAHR" and "TRUE" are stored as "-1", "FALSCH" and "FALSE" as "0".
    void RegSchreiben(HKeys Zweig, TextView Subkey, TextView Variable, TextView Inhalt) const;
    void RegSchreibenEX(HKeys Zweig, TextView Subkey, TextView Variable, TextView Inhalt) const;
    // Deletes a value; without Variable the key with all that lies below it. Zweig is never changed.
    void RegLoeschen(HKeys Zweig, TextView Subkey, TextView Variable = {}) const;
    void RegLoeschenEx(HKeys Zweig, TextView Subkey, TextView Variable = {}) const;

    // A setting of the user below the root as a flag: whether the number in its first 2 characters is not 0.
    bool BoolOption(TextView REGKEY, TextView OptName) const;
    void BoolOption(TextView REGKEY, TextView OptName, bool Value) const;
    // The same as a number: of the whole text, rounded; 0 where it is none or too large.
    int32 LongOption(TextView REGKEY, TextView OptName) const;
    void LongOption(TextView REGKEY, TextView OptName, int32 Value) const;

    // Whether the user may read and write the settings of this application for the whole machine.
    bool HKLMRights() const;
    // Rights at a key by its whole path, or where it would be made. DesiredAccess: 1 or 0x120089 read, 2, 4,
    // 64 or 0x120116 write.
    bool CheckRegistryAccess(HKeys RegHive, TextView REGKEY, int32 DesiredAccess) const;

    // The value of a key in a section of an INI file; empty for whatever is missing.
    Text INIGetValue(TextView Path, TextView Sect, TextView Key) const;

    // The options of the user interface; one object for the life of this one.
    std::shared_ptr<clsTSOptions> TSOptions() const;

 private:
    std::shared_ptr<clsTSOptions> options_;
};

}  // namespace tsRtm
