// Lets the user edit the parsing string in their own editor, through the actor's dialog.

#pragma once

#include <filesystem>
#include <string>

#include "standin/stand_in_host.h"
#include "tools/output/palette.h"

namespace NSift {

// One edit, from the temporary file for the editor to the accepted text. Ends with Discard or
// Abandon.
class PatternEditor {
  public:
    PatternEditor() = default;
    PatternEditor(const PatternEditor&) = delete;
    PatternEditor& operator=(const PatternEditor&) = delete;

    // Double clicks on the instance and runs the editor until the text compiles or the user gives
    // up, among others by an empty text. Returns true if the instance has the new text. Questions
    // and errors go to standard error. Throws std::runtime_error if the editor can't be run or a
    // file can't be written or read.
    bool Run(NStandIn::StandInHost& host, NStandIn::Instance& instance, const Palette& palette);

    // The text of the editor, after Run.
    const std::string& Text() const { return mText; }

    // Deletes the temporary file: the text is safe elsewhere.
    void Discard();

    // Ends a failed edit. If the user wrote a text, keeps the temporary file and returns its path;
    // otherwise returns an empty path.
    std::filesystem::path Abandon();

  private:
    bool EditUntilGood(NStandIn::Dialog& dialog, const Palette& palette);
    void RunEditor() const;
    void ReadBack();
    bool AskToEditAgain() const;

    std::string mOriginal;
    std::string mText;
    std::filesystem::path mFile;  // empty if there is none
};

}  // namespace NSift
