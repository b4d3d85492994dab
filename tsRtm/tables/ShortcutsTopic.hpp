#pragma once
// Expands what a user typed into an input field: short keys and "#" forms for date and time.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The topic of clsRtm for input shortcuts. The table, its path and TableStopped are the process's: all
// objects share them. The table lies in "Tabelle.iom", a DatenTab file of two text columns, key and
// replacement; in a replacement "^" and a character of code 64 to 95 is a control character ("^M" a carriage
// return), "~" and three digits the character of that code (1 to 255, code page 1252).
class ShortcutsTopic {
 public:
    // Whether Eingabe was replaced.
    //
    // A key has 1 to 4 characters and counts with its case. Behind that, or in a replacement: "#Z" the time
    // ("#Z5" the same, "#Z0" without separator, "#Z8" with seconds); "#D" today ("#D8" the same, "#D0" digits
    // in Date_Form order, "#D6" with two-digit year, "#DZ" with time, "#DT" in words, "#DW" with the
    // weekday), a "+n" or "-n" in it so many days from today; "#U" empties the input. The single character of
    // code 0 reads the table anew. Nothing is replaced while the table has no row. Param has no effect.
    // Raises what reading the table raises.
    bool Table(Text& Eingabe, int32 Param = 0);

    // The folder of the table file: the one that was set, else UserDir where the file is there, else
    // RuntimeDataDir.
    Text TablePath() const;
    void TablePath(TextView Value);
    // While true, Table leaves every input alone.
    bool TableStopped() const;
    void TableStopped(bool Value);
    // Reads the table.
    void TableInit();
};

}  // namespace tsRtm
