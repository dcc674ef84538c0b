#include "paper/PdfWriter.h"

#include <hpdf.h>
#include <hpdf_doc.h>
#include <hpdf_fontdef.h>
#include <hpdf_streams.h>

#include <algorithm>
#include <map>
#include <memory>

namespace melvorin {
namespace {

constexpr const char* kEncoding = "UTF-8";
// The library takes no larger font.
constexpr double kMostSize = HPDF_MAX_FONTSIZE;
// Of an underline, in em.
constexpr double kLineBelow = 0.12;
constexpr double kLineWidth = 0.06;

struct FreeDocument {
    void operator()(HPDF_Doc document) const { HPDF_Free(document); }
};
using OwnedDocument = std::unique_ptr<std::remove_pointer_t<HPDF_Doc>, FreeDocument>;

HPDF_REAL real(double number) {
    return static_cast<HPDF_REAL>(number);
}

class Writer {
  public:
    Writer(const PaperDocument& document, const FontShelf& fonts)
        : document_(document), fonts_(fonts), pdf_(HPDF_New(nullptr, nullptr)) {}

    Result<std::string> run();

  private:
    HPDF_Font font(FontNumber number);
    HPDF_Font embed(FontNumber number);
    void addPage(const PaperPage& page);
    void addTexts(HPDF_Page page, const PaperPage& content);
    void showText(HPDF_Page page, const PlacedRun& run);
    void addUnderlines(HPDF_Page page, const PaperPage& content);
    void addLinks();
    void addBookmarks();
    void setInfo(HPDF_InfoType type, TextView text);
    // A document counts from its bottom.
    HPDF_REAL up(double y) const { return real(document_.paper.height - y); }
    std::string bytes();

    const PaperDocument& document_;
    const FontShelf& fonts_;
    OwnedDocument pdf_;
    std::map<FontNumber, HPDF_Font> embedded_;
    std::vector<HPDF_Page> pages_;
};

HPDF_Font Writer::font(FontNumber number) {
    const auto [entry, isNew] = embedded_.try_emplace(number, nullptr);
    if (isNew)
        entry->second = embed(number);
    return entry->second;
}

// From memory, as the library opens files by names in the machine's code page.
HPDF_Font Writer::embed(FontNumber number) {
    const std::string& bytes = fonts_.trueType(number).bytes();
    constexpr HPDF_UINT buffer = 1 << 16;
    HPDF_Stream stream = HPDF_MemStream_New(pdf_->mmgr, buffer);
    if (stream == nullptr)
        return nullptr;
    HPDF_Stream_Write(stream, reinterpret_cast<const HPDF_BYTE*>(bytes.data()),
                      static_cast<HPDF_UINT>(bytes.size()));
    HPDF_FontDef definition = HPDF_TTFontDef_Load(pdf_->mmgr, stream, HPDF_TRUE);
    if (definition == nullptr)
        return nullptr;
    const HPDF_FontDef twin = HPDF_Doc_FindFontDef(pdf_.get(), definition->base_font);
    if (twin != nullptr || HPDF_List_Add(pdf_->fontdef_list, definition) != HPDF_OK) {
        HPDF_FontDef_Free(definition);
        definition = twin;
    } else {
        // Six letters in front of the name say that this is a part of the font.
        std::string tag = "AAAAAA";
        for (std::size_t i = 6, rest = embedded_.size(); i-- > 0; rest /= 26)
            tag[i] = static_cast<char>('A' + rest % 26);
        HPDF_TTFontDef_SetTagName(definition, tag.data());
    }
    return definition == nullptr ? nullptr
                                 : HPDF_GetFont(pdf_.get(), definition->base_font, kEncoding);
}

// A style that the face does not have is drawn as the system draws it on the screen: bolder by an
// outline, slanted by the angle of most slanted faces.
void Writer::showText(HPDF_Page page, const PlacedRun& run) {
    constexpr double bolder = 0.035;  // em
    constexpr double slant = 0.21;
    const FontShelf::Drawn drawn = fonts_.drawn(run.font);
    const std::string text = toUtf8(run.text);
    if (drawn.bolder) {
        constexpr double most = 255;
        HPDF_Page_SetTextRenderingMode(page, HPDF_FILL_THEN_STROKE);
        HPDF_Page_SetLineWidth(page, real(run.size * bolder));
        HPDF_Page_SetRGBStroke(page, real(run.colour.red / most), real(run.colour.green / most),
                               real(run.colour.blue / most));
    }
    if (drawn.slanted) {
        HPDF_Page_SetTextMatrix(page, 1, 0, real(slant), 1, real(run.x), up(run.y));
        HPDF_Page_ShowText(page, text.c_str());
        HPDF_Page_SetTextMatrix(page, 1, 0, 0, 1, 0, 0);
    } else {
        HPDF_Page_TextOut(page, real(run.x), up(run.y), text.c_str());
    }
    if (drawn.bolder)
        HPDF_Page_SetTextRenderingMode(page, HPDF_FILL);
}

void Writer::addTexts(HPDF_Page page, const PaperPage& content) {
    HPDF_Page_BeginText(page);
    FontNumber number = 0;
    double size = 0;
    Rgb colour;
    for (const PlacedRun& run : content.runs) {
        HPDF_Font used = font(run.font);
        if (used == nullptr)
            return;
        if (run.font != number || run.size != size)
            HPDF_Page_SetFontAndSize(page, used, real(std::min(run.size, kMostSize)));
        if (run.colour != colour) {
            constexpr double most = 255;
            HPDF_Page_SetRGBFill(page, real(run.colour.red / most), real(run.colour.green / most),
                                 real(run.colour.blue / most));
        }
        number = run.font;
        size = run.size;
        colour = run.colour;
        showText(page, run);
    }
    HPDF_Page_EndText(page);
}

void Writer::addUnderlines(HPDF_Page page, const PaperPage& content) {
    for (const PlacedRun& run : content.runs) {
        if (!run.underline)
            continue;
        constexpr double most = 255;
        HPDF_Page_SetRGBStroke(page, real(run.colour.red / most), real(run.colour.green / most),
                               real(run.colour.blue / most));
        HPDF_Page_SetLineWidth(page, real(run.size * kLineWidth));
        const HPDF_REAL y = up(run.y + run.size * kLineBelow);
        HPDF_Page_MoveTo(page, real(run.x), y);
        HPDF_Page_LineTo(page, real(run.x + run.width), y);
        HPDF_Page_Stroke(page);
    }
}

void Writer::addPage(const PaperPage& content) {
    HPDF_Page page = HPDF_AddPage(pdf_.get());
    if (page == nullptr)  // behind an error
        return;
    pages_.push_back(page);
    HPDF_Page_SetWidth(page, real(document_.paper.width));
    HPDF_Page_SetHeight(page, real(document_.paper.height));
    addTexts(page, content);
    addUnderlines(page, content);
}

void Writer::addLinks() {
    for (const PaperLink& link : document_.links) {
        const HPDF_Rect area{real(link.x), up(link.y + link.height), real(link.x + link.width),
                             up(link.y)};
        HPDF_Annotation made = nullptr;
        if (!link.address.empty()) {
            made =
                HPDF_Page_CreateURILinkAnnot(pages_[link.page], area, toUtf8(link.address).c_str());
        } else {
            HPDF_Destination target = HPDF_Page_CreateDestination(pages_[link.target]);
            HPDF_Destination_SetFit(target);
            made = HPDF_Page_CreateLinkAnnot(pages_[link.page], area, target);
        }
        HPDF_LinkAnnot_SetBorderStyle(made, 0, 0, 0);
    }
}

void Writer::addBookmarks() {
    std::vector<HPDF_Outline> outer;
    HPDF_Encoder encoder = HPDF_GetEncoder(pdf_.get(), kEncoding);
    for (const PaperBookmark& bookmark : document_.bookmarks) {
        outer.resize(std::min<std::size_t>(outer.size(), bookmark.level));
        HPDF_Outline made = HPDF_CreateOutline(pdf_.get(), outer.empty() ? nullptr : outer.back(),
                                               toUtf8(bookmark.name).c_str(), encoder);
        HPDF_Outline_SetOpened(made, HPDF_FALSE);
        HPDF_Destination target = HPDF_Page_CreateDestination(pages_[bookmark.page]);
        HPDF_Destination_SetFitH(target, up(bookmark.y));
        HPDF_Outline_SetDestination(made, target);
        outer.push_back(made);
    }
}

void Writer::setInfo(HPDF_InfoType type, TextView text) {
    if (!text.empty())
        HPDF_SetInfoAttr(pdf_.get(), type, toUtf8(text).c_str());
}

std::string Writer::bytes() {
    std::string result(HPDF_GetStreamSize(pdf_.get()), '\0');
    auto length = static_cast<HPDF_UINT32>(result.size());
    HPDF_ResetStream(pdf_.get());
    HPDF_ReadFromStream(pdf_.get(), reinterpret_cast<HPDF_BYTE*>(result.data()), &length);
    result.resize(length);
    return result;
}

Result<std::string> Writer::run() {
    if (!pdf_)
        return Failure{u"There is not enough memory for this."};
    HPDF_SetCompressionMode(pdf_.get(), HPDF_COMP_ALL);
    HPDF_UseUTFEncodings(pdf_.get());
    HPDF_SetCurrentEncoder(pdf_.get(), kEncoding);
    setInfo(HPDF_INFO_TITLE, document_.title);
    setInfo(HPDF_INFO_AUTHOR, document_.author);
    setInfo(HPDF_INFO_CREATOR, u"Melvorin");
    for (const PaperPage& page : document_.pages)
        addPage(page);
    // An error sticks, and then nothing more is done.
    if (HPDF_GetError(pdf_.get()) == HPDF_OK) {
        addLinks();
        addBookmarks();
        HPDF_SaveToStream(pdf_.get());
    }
    const HPDF_STATUS error = HPDF_GetError(pdf_.get());
    if (error == HPDF_FAILD_TO_ALLOC_MEM)
        return Failure{u"There is not enough memory for this."};
    if (error != HPDF_OK)
        return Failure{u"The pages cannot be written as PDF (error " +
                       decimal(static_cast<std::int64_t>(error)) + u")."};
    return Result<std::string>::success(bytes());
}

}  // namespace

Result<std::string> writePdf(const PaperDocument& document, const FontShelf& fonts) {
    return Writer(document, fonts).run();
}

}  // namespace melvorin
