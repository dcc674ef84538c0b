// The tab-expansion window: seen only while a very long text is converted.
#pragma once

#include <exception>
#include <optional>

#include "base/TabExpansion.h"
#include "base/Text.h"
#include "platform/Form.h"

namespace melvorin {

class FrmTxt : public Form {
  public:
    using Form::Form;

    // `text` with its tabs as blanks; its first line starts at `startColumn`. Shows a progress bar
    // over `owner` from kLongText characters on. Nothing when the user closes the window.
    std::optional<Text> convert(HWND owner, Text text, std::size_t startColumn);

    static constexpr std::size_t kLongText = std::size_t{1} << 20;

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool createWindow(HWND owner);
    void onTimer1();

    HWND ProgressBar1_ = nullptr;
    Text txtPad_;
    Text expanded_;
    std::size_t done_ = 0;  // characters of txtPad_ that are in expanded_
    TabExpander expander_;
    std::exception_ptr failure_;
};

}  // namespace melvorin
