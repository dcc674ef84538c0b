// The document of an editor at one moment: its text, its Rich Text and the map between the two,
// read when they are first asked for.
#pragma once

#include <optional>
#include <string>

#include "base/Editor.h"
#include "rtf/RtfMap.h"

namespace melvorin {

class MappedDocument {
  public:
    // The editor outlives the object, and does not change while that is in use.
    explicit MappedDocument(Editor& editor) : editor_(editor), text_(editor.text().chars) {}

    const Text& text() const { return text_; }
    const std::string& rtf();
    // Null where the text does not follow from the Rich Text.
    const RtfMap* map();
    // False, without asking for faces, where no face is that of a diagram.
    bool mayHaveDiagrams();
    // Asks the editor where there is no map, which takes its time.
    bool isDiagramAt(std::size_t position);

  private:
    Editor& editor_;
    Text text_;
    std::optional<std::string> rtf_;
    std::optional<RtfMap> map_;
};

}  // namespace melvorin
