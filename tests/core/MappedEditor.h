// An editor whose Rich Text is that of its text, as long as it is changed by loading.
#pragma once

#include <string>

#include "ScriptedEditor.h"
#include "rtf/RtfMap.h"

namespace melvorin {

class MappedEditor : public ScriptedEditor {
  public:
    // In Courier New, with a font of diagrams as the second one.
    explicit MappedEditor(const std::string& body) { loadRtf(document(body)); }

    static std::string document(const std::string& body) {
        return "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fcharset0 Courier New;}"
               "{\\f1\\fcharset0 Melvorin 09;}}\\pard\\f0 " +
               body + "}";
    }
    std::string rtf() const override { return source_; }
    bool loadRtf(std::string_view rtf) override {
        ++loads;
        source_ = rtf;
        chars = RtfMap::parse(rtf)->text();
        return true;
    }

    int loads = 0;

  private:
    std::string source_;
};

}  // namespace melvorin
