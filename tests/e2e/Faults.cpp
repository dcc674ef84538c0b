// What the real program leaves when it is killed, and what happens at the end of its counters.
//
//   melvorin-faults kills PROGRAM SONG COUNT SEED
//       A script types, changes the key, inserts, undoes and saves; at a random moment the program
//       is terminated, so many times. After each: the file is one that was saved, whole, and the
//       next start brings back the last change, with the step before it.
//   melvorin-faults snapshots PROGRAM
//       More changes in one run than its history can count.
//
// Exit code 1 and a line on stderr for what is not as it should be.
#include <atomic>
#include <cstdio>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "RunningProgram.h"
#include "app/CommandMap.h"
#include "app/RunJournal.h"
#include "base/Paths.h"
#include "dictionary/PanelLayout.h"
#include "platform/Handles.h"
#include "platform/Win32Files.h"
#include "rtf/RtfMap.h"

namespace {

using namespace melvorin;

using UniqueProcess = Unique<HANDLE, ::CloseHandle>;

struct Failed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void require(bool condition, const std::string& what) {
    if (!condition)
        throw Failed(what);
}

UniqueProcess startProgram(const Text& program, const Text& argument) {
    Text line = u"\"" + program + u"\" \"" + argument + u"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    require(::CreateProcessW(nullptr, wideBuffer(line), nullptr, nullptr, FALSE, 0, nullptr,
                             nullptr, &startup, &process) != 0,
            "the program does not start");
    ::CloseHandle(process.hThread);
    return UniqueProcess(process.hProcess);
}

// Sent, so that it is done when this returns; nothing when the program was killed meanwhile.
std::optional<DWORD_PTR> send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR result = 0;
    if (!::SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kLimitMs, &result))
        return std::nullopt;
    return result;
}

Text withPlainLineEnds(Text text) {
    std::erase(text, u'\n');
    return text;
}

std::optional<Text> textOf(HWND control) {
    const auto length = send(control, WM_GETTEXTLENGTH, 0, 0);
    if (!length)
        return std::nullopt;
    Text text(*length + 1, u'\0');
    const auto got = send(control, WM_GETTEXT, text.size(), lparamOf(text.data()));
    if (!got)
        return std::nullopt;
    text.resize(*got);
    return withPlainLineEnds(std::move(text));
}

HWND messageBox() {
    return ::FindWindowW(L"#32770", L" Melvorin");
}

Text textOfBox(HWND box) {
    HWND part = nullptr;
    while ((part = ::FindWindowExW(box, part, L"Static", nullptr)) != nullptr) {
        if (const auto text = textOf(part); text && !text->empty())
            return *text;
    }
    return {};
}

std::vector<Text> temporaryFiles(TextView pattern) {
    Text folder(MAX_PATH, u'\0');
    folder.resize(::GetTempPathW(MAX_PATH, wideBuffer(folder)));
    std::vector<Text> names;
    WIN32_FIND_DATAW found{};
    UniqueSearch search(folder + Text(pattern), found);
    if (search) {
        do
            names.push_back(folder + Text(melvorin::textOf(found.cFileName)));
        while (search.next());
    }
    return names;
}

// ---- Kills ------------------------------------------------------------------------------------

enum class Step { Character, Line, KeyUp, Bold, Upper, Insert, Clear, Undo, Redo, Save };

constexpr const char* kNames[] = {"character", "new line", "key change", "bold", "upper case",
                                  "diagram",   "clearing", "undo",       "redo", "save"};

class Kills {
  public:
    Kills(Text program, Text song, unsigned seed)
        : program_(std::move(program)), song_(std::move(song)), random_(seed) {
        const std::string rtf =
            "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0 Lucida Console;}}\\f0\\fs20 "
            "Am  F  C  G\\par la la la la}";
        require(static_cast<bool>(Win32Files().write(song_, rtf)), "the song cannot be written");
        saved_ = textOfFile();
        last_ = saved_;
    }

    void run(int count) {
        process_ = startProgram(program_, song_);
        require(waitFor([] { return mainWindow() != nullptr && editor() != nullptr; }),
                "no window");
        for (int i = 0; i < count; ++i) {
            try {
                workUntilKilled();
                judgeFile();
                startAgain();
            } catch (const Failed& failure) {
                throw Failed("kill " + std::to_string(i + 1) + " (" + pendingName() +
                             "): " + failure.what());
            }
        }
        ::TerminateProcess(process_.get(), 1);
        ::WaitForSingleObject(process_.get(), INFINITE);
        Win32Files files;
        for (Remains& remains : remainsOf(files))
            discard(files, std::move(remains));
        std::printf(
            "%d kills, %d with unsaved changes brought back, %d where the last step was "
            "cut off or unanswered\nkilled while:",
            count, asked_, unanswered_);
        for (const auto& [name, times] : moments_)
            std::printf(" %s %d", name.c_str(), times);
        std::printf(
            "\nsteps done: %d, saves: %d, diagrams: %d, half-written files beside the "
            "song: %d\n",
            steps_, saves_, diagrams_, leftovers_);
    }

  private:
    std::string pendingName() const {
        return pending_ ? kNames[static_cast<std::size_t>(*pending_)] : "between two steps";
    }
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }

    Text textOfFile() {
        const Result<std::string> bytes = Win32Files().read(song_);
        require(static_cast<bool>(bytes), "the file cannot be read: " + toUtf8(bytes.cause));
        const auto map = RtfMap::parse(*bytes.value);
        require(map.has_value(), "the file is not whole");
        return Text(map->text());
    }

    Step nextStep() {
        if (last_.size() > 600)
            return Step::Clear;
        constexpr std::pair<int, Step> shares[] = {
            {50, Step::Character}, {55, Step::Line},  {58, Step::KeyUp},
            {65, Step::Bold},      {68, Step::Upper}, {75, Step::Insert},
            {84, Step::Undo},      {90, Step::Redo},  {100, Step::Save}};
        const int share = upTo(99);
        for (const auto& [end, step] : shares) {
            if (share < end)
                return step;
        }
        return Step::Character;
    }

    // False when the program was killed before it answered.
    bool give(Command command) {
        return send(mainWindow(), WM_COMMAND, idOf(command), 0).has_value();
    }
    bool perform(Step step) {
        switch (step) {
            case Step::Character:
                return send(editor(), WM_CHAR, u"ACDEFGalm #7 "[upTo(12)], 1).has_value();
            case Step::Line:
                return send(editor(), WM_KEYDOWN, VK_RETURN, 1).has_value();
            case Step::KeyUp:
                return give(Command::mnuUp);
            case Step::Bold:
                return give(Command::mnuBold);
            case Step::Upper:
                return give(Command::mnuUpper);
            case Step::Insert:
                return insertDiagram();
            case Step::Clear:
                return give(Command::mnuSelectAll) && give(Command::mnuEditDelete);
            case Step::Undo:
                return give(Command::mnuEditUndo);
            case Step::Redo:
                return give(Command::mnuEditRedo);
            case Step::Save:
                return give(Command::mnuFileSave3);
        }
        return false;
    }
    bool insertDiagram() {
        // As the panel numbers its parts.
        constexpr int id = 100 + static_cast<int>(PanelPart::GB1);
        const HWND panel = ::FindWindowExW(mainWindow(), nullptr, L"MelvorinDictionary", nullptr);
        if (panel == nullptr || !send(panel, WM_COMMAND, id, 0))
            return false;
        ++diagrams_;
        return true;
    }

    void workUntilKilled() {
        const int delay = 1 + upTo(500);
        std::thread killer([&] {
            ::Sleep(static_cast<DWORD>(delay));
            ::TerminateProcess(process_.get(), 9);
        });
        while (true) {
            pending_ = nextStep();
            if (!perform(*pending_))
                break;
            auto text = textOf(editor());
            if (!text)
                break;
            ++steps_;
            last_ = *std::move(text);
            if (*pending_ == Step::Save) {
                ++saves_;
                saved_ = last_;
            }
            pending_.reset();
        }
        killer.join();
        require(::WaitForSingleObject(process_.get(), kLimitMs) == WAIT_OBJECT_0,
                "the program does not end");
        ++moments_[pendingName()];
    }

    void judgeFile() {
        const Text found = textOfFile();
        const bool isNew = pending_ == Step::Save && found == last_;
        require(isNew || found == saved_, "the file holds neither the old nor the new text");
        saved_ = found;
        for (const Text& name : contentOf(folderPart(song_)).files) {
            if (name.starts_with(u"mlv") && name.ends_with(u".tmp")) {
                ++leftovers_;
                Win32Files().remove(joinPath(folderPart(song_), name));
            }
        }
    }

    void startAgain() {
        const std::vector<Text> journals = temporaryFiles(u"bbj*.tmp");
        require(journals.size() == 1, "there are " + std::to_string(journals.size()) + " journals");
        const auto isGone = [&] { return !Win32Files().exists(journals[0]); };
        process_ = startProgram(program_, song_);
        require(waitFor([&] { return isGone() || messageBox() != nullptr; }), "no start");
        const bool asked = !isGone();
        if (asked) {
            ++asked_;
            require(textOfBox(messageBox()).starts_with(u"Melvorin was not closed"),
                    "another question: " + toUtf8(textOfBox(messageBox())));
            require(waitFor([&] {
                        ::PostMessageW(messageBox(), WM_COMMAND, IDYES, 0);
                        return isGone();
                    }),
                    "the question does not end");
        }
        const auto found = textOf(editor());
        DWORD exitCode = 0;
        ::GetExitCodeProcess(process_.get(), &exitCode);
        require(found.has_value(),
                std::string(asked ? "after the question" : "without a question") +
                    " the program is gone, with " + std::to_string(exitCode));
        if (!pending_) {
            require(*found == last_, "the last change is lost: \"" + toUtf8(*found) +
                                         "\" instead of \"" + toUtf8(last_) + "\"");
            return;
        }
        ++unanswered_;
        if (*found != last_) {
            // The step was done; the text before it is one step away.
            require(asked, "what was not saved is lost");
            const bool isUndo = *pending_ == Step::Undo;
            give(isUndo ? Command::mnuEditRedo : Command::mnuEditUndo);
            const auto before = textOf(editor());
            require(before == last_, "the step before is lost");
            give(isUndo ? Command::mnuEditUndo : Command::mnuEditRedo);
            require(textOf(editor()) == *found, "the step cannot be taken again");
        }
        last_ = *found;
    }

    Text program_;
    Text song_;
    std::mt19937 random_;
    UniqueProcess process_;
    Text saved_;                   // in the file, as far as known
    Text last_;                    // in the editor after the last step that was answered
    std::optional<Step> pending_;  // begun and not answered
    std::map<std::string, int> moments_;
    int steps_ = 0;
    int saves_ = 0;
    int diagrams_ = 0;
    int asked_ = 0;
    int unanswered_ = 0;
    int leftovers_ = 0;
};

// ---- More changes than can be counted ---------------------------------------------------------

void fillHistory(const Text& program) {
    const UniqueProcess process = startProgram(program, u"");
    require(waitFor([] { return editor() != nullptr; }), "no window");
    send(editor(), WM_CHAR, u'C', 1);
    std::atomic<bool> done = false;
    std::vector<Text> told;
    // A box holds up the change that brought it.
    std::thread reader([&] {
        while (!done) {
            if (const HWND box = messageBox(); box != nullptr) {
                if (Text text = textOfBox(box); !text.empty()) {
                    told.push_back(std::move(text));
                    ::PostMessageW(box, WM_COMMAND, IDOK, 0);
                    waitFor([&] { return !::IsWindow(box); });
                }
            }
            ::Sleep(10);
        }
    });
    constexpr int kChanges = 32'767 + 20;
    for (int i = 0; i < kChanges; ++i)
        ::SendMessageW(mainWindow(), WM_COMMAND,
                       idOf(i % 2 == 0 ? Command::alignCenter : Command::alignRight), 0);
    send(editor(), WM_CHAR, u'D', 1);
    const std::size_t files = temporaryFiles(u"bb*.tmp").size();
    done = true;
    reader.join();
    require(textOf(editor()) == Text(u"CD"), "the text has changed");
    require(told.size() == 1, std::to_string(told.size()) + " messages");
    require(told[0].starts_with(u"So many changes were made"), toUtf8(told[0]));
    std::printf("%d changes: told once, the text is there; %zu temporary files\n", kChanges, files);
    // It still asks, and leaves nothing behind.
    ::PostMessageW(mainWindow(), WM_CLOSE, 0, 0);
    require(waitFor([] { return messageBox() != nullptr; }), "it does not ask for the changes");
    ::PostMessageW(messageBox(), WM_COMMAND, IDNO, 0);
    require(::WaitForSingleObject(process.get(), 10 * kLimitMs) == WAIT_OBJECT_0, "no end");
    require(temporaryFiles(u"bb*.tmp").empty(), "files were left");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    try {
        const auto argument = [&](int i) { return Text(melvorin::textOf(arguments[i])); };
        if (count == 6 && argument(1) == u"kills") {
            Kills kills(argument(2), argument(3),
                        static_cast<unsigned>(std::stoul(toUtf8(argument(5)))));
            kills.run(std::stoi(toUtf8(argument(4))));
        } else if (count == 3 && argument(1) == u"snapshots") {
            fillHistory(argument(2));
        } else {
            throw Failed("kills PROGRAM SONG COUNT SEED, or snapshots PROGRAM");
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "faults: %s\n", failure.what());
        return 1;
    }
    return 0;
}
