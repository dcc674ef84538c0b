// The check and the map of Rich Text against the rich-edit control itself.
#include "platform/Win.h"

#include <gtest/gtest.h>
#include <richedit.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "../core/RtfSamples.h"
#include "rtf/RtfCheck.h"
#include "rtf/RtfMap.h"
#include "rtf/RtfRows.h"

namespace melvorin {
namespace {

using namespace std::string_literals;

// A bare control in a window of its own, never shown.
class Control {
  public:
    Control() {
        ::LoadLibraryW(L"Msftedit.dll");
        parent_ = ::CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 800, 600, nullptr,
                                    nullptr, nullptr, nullptr);
        edit_ = ::CreateWindowExW(0, L"RICHEDIT50W", L"", WS_CHILD | ES_MULTILINE, 0, 0, 700, 500,
                                  parent_, nullptr, nullptr, nullptr);
        send(EM_SETUNDOLIMIT, 0, 0);
        send(EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
        // What a source does not say comes from the control, whose own default is bold.
        CHARFORMAT2W format{};
        format.cbSize = sizeof format;
        format.dwMask = CFM_BOLD | CFM_COLOR;
        format.dwEffects = CFE_AUTOCOLOR;
        send(EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&format));
    }
    ~Control() { ::DestroyWindow(parent_); }
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    bool exists() const { return edit_ != nullptr; }

    // False when the control reports an error.
    bool load(std::string_view rtf) {
        EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&rtf), 0, read};
        send(EM_STREAMIN, SF_RTF, reinterpret_cast<LPARAM>(&stream));
        return stream.dwError == 0;
    }

    std::string rtf() {
        std::string bytes;
        EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&bytes), 0, write};
        send(EM_STREAMOUT, SF_RTF, reinterpret_cast<LPARAM>(&stream));
        return bytes;
    }

    Text text() {
        GETTEXTLENGTHEX query{GTL_DEFAULT | GTL_NUMCHARS, 1200};
        const LRESULT length = send(EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&query), 0);
        Text chars(static_cast<std::size_t>(length) + 1, u'\0');
        GETTEXTEX request{};
        request.cb = static_cast<DWORD>(chars.size() * 2);
        request.codepage = 1200;
        const LRESULT copied = send(EM_GETTEXTEX, reinterpret_cast<WPARAM>(&request),
                                    reinterpret_cast<LPARAM>(chars.data()));
        chars.resize(static_cast<std::size_t>(copied));
        return chars;
    }

    CHARFORMAT2W formatAt(std::size_t position) {
        CHARRANGE range{static_cast<LONG>(position), static_cast<LONG>(position) + 1};
        send(EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
        CHARFORMAT2W format{};
        format.cbSize = sizeof format;
        send(EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
        return format;
    }

  private:
    LRESULT send(UINT message, WPARAM wparam, LPARAM lparam) {
        return ::SendMessageW(edit_, message, wparam, lparam);
    }

    static DWORD CALLBACK read(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* done) {
        auto& rest = *reinterpret_cast<std::string_view*>(cookie);
        const std::size_t count = std::min(static_cast<std::size_t>(size), rest.size());
        std::memcpy(buffer, rest.data(), count);
        rest.remove_prefix(count);
        *done = static_cast<LONG>(count);
        return 0;
    }

    static DWORD CALLBACK write(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* done) {
        reinterpret_cast<std::string*>(cookie)->append(reinterpret_cast<const char*>(buffer),
                                                       static_cast<std::size_t>(size));
        *done = size;
        return 0;
    }

    HWND parent_ = nullptr;
    HWND edit_ = nullptr;
};

samples::Format seen(const CHARFORMAT2W& format) {
    samples::Format result{99, 99, (format.dwEffects & CFE_BOLD) != 0};
    for (std::size_t i = 0; i < samples::kFaces.size(); ++i) {
        const TextView face = samples::kFaces[i];
        if (std::equal(face.begin(), face.end(), format.szFaceName) &&
            format.szFaceName[face.size()] == 0)
            result.face = i;
    }
    if ((format.dwEffects & CFE_AUTOCOLOR) != 0)
        result.colour = 0;
    for (std::size_t i = 0; i < samples::kColours.size() && result.colour == 99; ++i) {
        const Rgb colour = samples::kColours[i];
        if (format.crTextColor == RGB(colour.red, colour.green, colour.blue))
            result.colour = i + 1;
    }
    return result;
}

void expectShows(Control& control, const samples::Sample& sample) {
    ASSERT_EQ(control.text(), sample.text());
    std::size_t position = 0;
    for (const samples::Line& line : sample.lines) {
        for (const samples::Cell& cell : line.cells) {
            const samples::Format format = seen(control.formatAt(position));
            ASSERT_EQ(format, cell.format)
                << position << ": " << format.face << format.colour << format.bold << " for "
                << cell.format.face << cell.format.colour << cell.format.bold;
            ++position;
        }
        ++position;
    }
}

// The formatting of a document as the control has it.
void readFormats(Control& control, samples::Sample& sample) {
    std::size_t position = 0;
    for (samples::Line& line : sample.lines) {
        for (samples::Cell& cell : line.cells)
            cell.format = seen(control.formatAt(position++));
        line.end = seen(control.formatAt(position++));
    }
}

// What controls differ in: a soft line break may be a blank, a soft hyphen nothing.
Text comparable(Text text) {
    std::replace(text.begin(), text.end(), u'\v', u' ');
    std::erase(text, u'\u00AD');
    return text;
}

TEST(RtfControl, ShowsWhatTheMapRewrote) {
    Control control;
    ASSERT_TRUE(control.exists());
    samples::Random random(31);
    for (int i = 0; i < 150 && ::testing::Test::HasFailure(); ++i) {
        samples::Sample sample = samples::randomSample(random);
        SCOPED_TRACE(sample.rtf);
        ASSERT_TRUE(control.load(sample.rtf));
        expectShows(control, sample);
        // Every other time the source to rewrite is the control's own, which loses the formatting
        // of tabs.
        const std::string source = i % 2 == 0 ? sample.rtf : control.rtf();
        SCOPED_TRACE(source);
        if (i % 2 != 0) {
            ASSERT_TRUE(control.load(source));
            readFormats(control, sample);
        }
        const auto map = RtfMap::parse(source);
        ASSERT_TRUE(map);
        ASSERT_EQ(map->text(), control.text());
        const std::size_t colour = 1 + samples::below(random, samples::kColours.size());
        const auto rewrites = samples::randomRewrites(random, sample, colour);
        ASSERT_TRUE(control.load(map->rewrite(rewrites, samples::kColours[colour - 1])));
        expectShows(control, sample);
    }
}

TEST(RtfControl, ReadsAllOfWhatTheCheckPasses) {
    Control control;
    ASSERT_TRUE(control.exists());
    const std::string name(kMaxRtfNameLength - 1, 'N');
    std::string cells = "\\trowd";
    for (std::size_t i = 1; i <= kMaxRtfCells; ++i)
        cells += "\\cellx" + std::to_string(i * 100);
    cells += "\\intbl ";
    for (std::size_t i = 1; i <= kMaxRtfCells; ++i)
        cells += "x\\cell ";
    std::string groups;
    for (std::size_t i = 1; i < kMaxRtfDepth; ++i)
        groups += "{\\b\\cf1\\trowd ";
    for (const std::string& body :
         {groups + "x" + std::string(kMaxRtfDepth - 1, '}'), cells + "\\row\\pard ",
          "\\" + std::string(kMaxRtfWordLength - 2, 'q') + " ",
          "{\\fonttbl{\\f0 " + name + ";} {\\f1 X; }}{\\stylesheet {\\s1 " + name + ";} }",
          "{\\pict\\pngblip\\bin5 }\\{\0}}"s, "\\u233{\\b x}{\\b\\u233}"s,
          "{{\\object\\objemb{\\*\\objdata\\bin3 }}}}{\\result R}}}"s,
          "{\\info{\\author \\'e9}}{\\*\\x\\y}"s}) {
        const RtfVerdict verdict = checkRtf("\xEF\xBB\xBF {\\rtf1" + body + "END}\r\n\0"s);
        ASSERT_EQ(verdict.kind, RtfVerdict::Kind::Ok) << body;
        EXPECT_TRUE(control.load(verdict.document)) << body;
        EXPECT_TRUE(control.text().ends_with(u"END")) << body;
    }
}

TEST(RtfControl, SurvivesDamageThatTheCheckPasses) {
    Control control;
    ASSERT_TRUE(control.exists());
    samples::Random random(32);
    int compared = 0;
    for (int loaded = 0; loaded < 500;) {
        const std::string damaged = samples::damaged(random, samples::randomSample(random).rtf);
        const RtfVerdict verdict = checkRtf(damaged);
        if (verdict.kind != RtfVerdict::Kind::Ok)
            continue;
        ++loaded;
        EXPECT_TRUE(control.load(verdict.document)) << verdict.document;
        const auto map = RtfMap::parse(verdict.document);
        if (!map)
            continue;
        ++compared;
        EXPECT_EQ(comparable(Text(map->text())), comparable(control.text())) << verdict.document;
    }
    EXPECT_GT(compared, 100);
}

}  // namespace
}  // namespace melvorin
