// Stretches of the rich-text control's text with their formats, so that they can be put elsewhere.
#include <algorithm>
#include <utility>

#include "platform/RichEdit.h"
#include "platform/Window.h"
#include "rtf/RtfMap.h"

namespace melvorin {
namespace {

constexpr char16_t kPicture = 0xFFFC;
// What makes the look of a character.
constexpr DWORD kLook = CFM_FACE | CFM_SIZE | CFM_COLOR | CFM_BOLD | CFM_ITALIC | CFM_UNDERLINE |
                        CFM_STRIKEOUT | CFM_BACKCOLOR | CFM_CHARSET;

CHARFORMAT2W formatOfSelection(HWND control) {
    CHARFORMAT2W format{};
    format.cbSize = sizeof format;
    ::SendMessageW(control, EM_GETCHARFORMAT, SCF_SELECTION, lparamOf(&format));
    return format;
}

}  // namespace

// Formats are those of the selection: that goes elsewhere for a moment, and the page stays.
class RichEdit::Look {
  public:
    explicit Look(RichEdit& editor)
        : editor_(editor), selected_(editor.selection()), page_(editor.scrollPosition()) {}
    Look(const Look&) = delete;
    Look& operator=(const Look&) = delete;
    ~Look() {
        editor_.select(selected_);
        editor_.scrollTo(page_);
    }

  private:
    RichEdit& editor_;
    Selection selected_;
    ScrollPosition page_;
};

RichEdit::Quiet::Quiet(RichEdit& editor)
    : editor_(editor), events_(editor.send(EM_SETEVENTMASK, 0, 0)) {
    if (editor_.quiet_++ > 0 || editor_.atWork())
        return;
    // The message takes what is still to be drawn for drawn.
    pending_.reset(::CreateRectRgn(0, 0, 0, 0));
    ::GetUpdateRgn(editor_.handle_, pending_.get(), FALSE);
    editor_.send(WM_SETREDRAW, FALSE);
}

RichEdit::Quiet::~Quiet() {
    // Who works draws it.
    if (--editor_.quiet_ == 0 && !editor_.atWork()) {
        editor_.drawAgain(changed_);
        ::InvalidateRgn(editor_.handle_, pending_.get(), TRUE);
    }
    editor_.send(EM_SETEVENTMASK, 0, static_cast<LPARAM>(events_));
}

SelectionStyle RichEdit::styleOf(Selection range) {
    const Look look(*this);
    select(range);
    return selectionStyle();
}

std::vector<RichEdit::Piece> RichEdit::piecesOf(Selection range) {
    const Look look(*this);
    std::vector<Piece> pieces;
    // The stretches still to be looked at, the next one last.
    std::vector<Selection> left{range};
    while (!left.empty()) {
        const Selection here = left.back();
        left.pop_back();
        if (here.end <= here.begin)
            continue;
        select(here);
        Piece piece{textBetween(here), formatOfSelection(handle_), {}};
        const bool isOne = here.end - here.begin == 1;
        const bool hasPicture = piece.text.find(kPicture) != Text::npos;
        if (!isOne && (hasPicture || (piece.format.dwMask & kLook) != kLook)) {
            const std::int32_t middle = here.begin + (here.end - here.begin) / 2;
            left.push_back({middle, here.end});
            left.push_back({here.begin, middle});
            continue;
        }
        if (hasPicture)
            piece.picture = selectionRtf();
        pieces.push_back(std::move(piece));
    }
    return pieces;
}

void RichEdit::put(const std::vector<Piece>& pieces) {
    replaceSelection({});
    for (const Piece& piece : pieces) {
        const std::int32_t begin = selection().begin;
        if (!piece.picture.empty()) {
            replaceSelectionRtf(piece.picture);
            continue;
        }
        replaceSelection(piece.text);
        const std::int32_t end = selection().end;
        select({begin, end});
        CHARFORMAT2W format = piece.format;
        format.dwMask &= kLook;
        applyToSelection(format);
        select({end, end});
    }
}

// By one message, where the Rich Text of the range tells where in it each character is.
std::optional<std::vector<RichEdit::FaceRun>> RichEdit::writtenFaceRuns(Selection range) {
    const Look look(*this);
    select(range);
    const Text text = textBetween(range);
    const auto map = RtfMap::matching(selectionRtf(), text);
    if (!map)
        return std::nullopt;
    std::vector<FaceRun> runs;
    for (std::int32_t i = 0; i < range.end - range.begin; ++i) {
        const TextView face = map->fontNameAt(static_cast<std::size_t>(i));
        if (runs.empty() || runs.back().face != face)
            runs.push_back({{range.begin + i, range.begin + i}, Text(face)});
        ++runs.back().range.end;
    }
    return runs;
}

std::optional<std::vector<RichEdit::FaceRun>> RichEdit::faceRuns(
    Selection range, std::size_t most, const std::function<bool(TextView face)>& until) {
    // Writing takes its time too.
    constexpr std::int32_t fewCharacters = 4000;
    if (range.end - range.begin <= fewCharacters) {
        if (auto runs = writtenFaceRuns(range))
            return runs->size() > most ? std::nullopt : std::move(runs);
    }
    const Look look(*this);
    std::vector<FaceRun> runs;
    std::vector<Selection> left{range};
    while (!left.empty() && runs.size() <= most) {
        const Selection here = left.back();
        left.pop_back();
        if (here.end <= here.begin)
            continue;
        select(here);
        const CHARFORMAT2W format = formatOfSelection(handle_);
        if (!(format.dwMask & CFM_FACE) && here.end - here.begin > 1) {
            const std::int32_t middle = here.begin + (here.end - here.begin) / 2;
            left.push_back({middle, here.end});
            left.push_back({here.begin, middle});
            continue;
        }
        Text face(textOf(format.szFaceName));
        if (!runs.empty() && runs.back().face == face)
            runs.back().range.end = here.end;
        else
            runs.push_back({here, std::move(face)});
        if (until && until(runs.back().face))
            break;
    }
    if (runs.size() > most)
        return std::nullopt;
    return runs;
}

bool RichEdit::mayHaveFace(const std::function<bool(TextView face)>& is) {
    constexpr std::size_t mostFaces = 40;
    const Quiet quiet(*this);
    const auto runs = faceRuns({0, length()}, mostFaces, is);
    return !runs || std::any_of(runs->begin(), runs->end(),
                                [&](const FaceRun& run) { return is(run.face); });
}

}  // namespace melvorin
