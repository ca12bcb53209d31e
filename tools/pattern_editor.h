// The user edits the parsing string in an editor of their own, through the actor's dialog.

#pragma once

#include <filesystem>
#include <string>

#include "standin/stand_in_host.h"
#include "tools/output/palette.h"

namespace NSift {

// One edit, from the temporary file that the editor is given to the accepted text.
class PatternEditor {
  public:
    PatternEditor() = default;
    PatternEditor(const PatternEditor&) = delete;
    PatternEditor& operator=(const PatternEditor&) = delete;

    // Double clicks on the instance and runs the editor until the text compiles or the user gives
    // up. Gives whether there is a text that the instance now has. Questions and errors go to
    // standard error. Throws std::runtime_error if the editor can't be run.
    bool Run(NStandIn::StandInHost& host, NStandIn::Instance& instance, const Palette& palette);

    const std::string& Text() const { return mText; }

    // The text isn't needed any more: until then it also lies in a temporary file.
    void Discard();

    // The edit came to nothing: tells where the user's text lies, if there is any that would be
    // lost otherwise.
    void GiveUp();

  private:
    bool EditUntilGood(NStandIn::Dialog& dialog, const Palette& palette);
    void RunEditor() const;
    void ReadBack();
    bool AskToEditAgain() const;

    std::string mOriginal;
    std::string mText;
    std::filesystem::path mFile;  // empty: there is none
};

}  // namespace NSift
