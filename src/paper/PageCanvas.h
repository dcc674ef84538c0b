// The part of the preview that shows the pages, with its scroll bars.
#pragma once

#include <functional>
#include <map>

#include "paper/PaperDocument.h"
#include "paper/PreviewLayout.h"
#include "paper/SystemFonts.h"
#include "platform/Handles.h"
#include "platform/Window.h"

namespace melvorin {

class PageCanvas : public Window {
  public:
    // `changed` is called when other pages come into sight, or another size.
    explicit PageCanvas(std::function<void()> changed) : changed_(std::move(changed)) {}

    bool open(HWND parent, int id);
    // Other pages; the one in sight stays. Both outlive the canvas or the next call.
    void show(const PaperDocument& document, const SystemFonts& fonts);
    void setView(PreviewView view);
    const PreviewView& view() const { return view_; }
    void zoom(bool larger);
    // The first that is in sight, from 0.
    std::size_t page() const;
    void goTo(std::size_t page);
    // A key that moves through the pages; false for any other.
    bool onKey(WPARAM key);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onPaint();
    void onScrollBar(int bar, WORD action);
    void onWheel(WPARAM wParam);
    void paintPage(HDC dc, std::size_t number, const Area& place);
    // The place in the middle of what is in sight: a page, and how far down it.
    struct Spot {
        std::size_t page = 0;
        double down = 0;  // of the page's height
    };
    Spot spot() const;
    void goTo(const Spot& spot);
    void layOut();
    void scrollTo(int left, int top);
    void setBar(int bar, int whole, int seen, int at) const;
    ScreenSize room() const;
    int step() const;
    std::size_t pageCount() const { return document_ == nullptr ? 0 : document_->pages.size(); }

    std::function<void()> changed_;
    const PaperDocument* document_ = nullptr;
    const SystemFonts* fonts_ = nullptr;
    PreviewView view_;
    PreviewLayout layout_;
    int left_ = 0;  // of what is in sight, in pixels of the whole
    int top_ = 0;
    int wheel_ = 0;                                 // what is left of a notch
    std::map<std::size_t, UniqueBitmap> pictures_;  // of pages in sight or near
};

}  // namespace melvorin
