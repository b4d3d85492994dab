#pragma once
namespace tsRtm::cli {

class Command;

void addPrintTexts(Command print);   // text, rtf
void addPrintTables(Command print);  // csv, db

}  // namespace tsRtm::cli
