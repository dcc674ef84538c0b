// The main window's commands on the key of the song and the notation of its chords.
#include <exception>
#include <utility>

#include "app/Form1.h"
#include "base/ProgramSettings.h"
#include "chords/FrmCifra.h"
#include "chords/FrmToKey.h"
#include "dictionary/BookGrips.h"
#include "dictionary/BookLookup.h"

namespace melvorin {

// A key change under way: its commands are off, and come back however it ends.
class Form1::Job {
  public:
    explicit Job(Form1& form) : form_(form), busy_(form) { form_.documents_.beginKeyWork(); }
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;
    ~Job() { form_.documents_.endKeyWork(); }

  private:
    Form1& form_;
    const Busy busy_;
};

// One step of Undo, with what `also` does besides; what it throws is told.
bool Form1::changeKey(HWND owner, int steps, const std::function<void()>& also) {
    const bool hasText = !rtftext_.isEmpty();
    bool changed = false;
    {
        const Job job(*this);
        FrmCifra cifra(services_);
        changed = cifra.changeKey(owner, steps, T6_, [&](const std::function<void()>& lineDone) {
            keyWork_.move(steps, spelling_, followsKey_, lineDone);
        });
    }
    if (!hasText || !changed)
        return false;
    // The chords have moved, whatever becomes of the rest.
    std::exception_ptr failure;
    try {
        const EditorWork work(rtftext_);
        keyWork_.keyChanged(steps);
        also();
    } catch (...) {
        failure = std::current_exception();
    }
    documents_.changed();
    keyWork_.tell();
    if (failure)
        std::rethrow_exception(failure);
    return true;
}

// The view stays, and shows what has become of the song.
bool Form1::changeKeyOnStage(HWND view, int steps) {
    return !isBusy() && isEnabled(Command::mnuUp) && changeKey(view, steps);
}

void Form1::toAnotherKey() {
    std::optional<ToKeyChoice> choice;
    {
        const Job job(*this);
        BookGrips grips;
        const bool hasBook(grips.open(sqliteDatabasePath(services_.program.folder())));
        const ToKeyOffer offer{keyWork_.writing(), keyWork_.way(spelling_, followsKey_),
                               hasBook ? &grips : nullptr};
        choice = FrmToKey(services_).ask(handle(), offer);
    }
    if (!choice)
        return;
    const auto writeCapo = [&] {
        if (choice->capo)
            keyWork_.writeCapo(*choice->capo, choice->sounds, editorFontFace(services_));
    };
    if (choice->steps != 0)
        changeKey(handle(), choice->steps, writeCapo);
}

void Form1::showOtherLines(OtherLines choice) {
    keyWork_.setOthers(choice);
    menuBar_.check(Command::mnuOthersAsk, choice == OtherLines::Ask);
    menuBar_.check(Command::mnuOthersMove, choice == OtherLines::Move);
    menuBar_.check(Command::mnuOthersLeave, choice == OtherLines::Leave);
}

void Form1::setOtherLines(OtherLines choice) {
    showOtherLines(choice);
    if (!storeOtherLines(services_, choice))
        reportFailure(services_.messages, kNotStored);
    keyWork_.tell();
}

void Form1::createNotation() {
    bool created = false;
    {
        const Job job(*this);
        FrmCifra cifra(services_);
        const BookLookup book(dictionary_.dictionary().records());
        created = cifra.createNotation(handle(), rtftext_, book.isEmpty() ? nullptr : &book);
    }
    if (created)
        documents_.changed();
}

void Form1::useSpelling(Spelling spelling, bool followsKey) {
    spelling_ = spelling;
    const SpellingCaptions captions = captionsOf(spelling, followsKey);
    menuBar_.setCaption(Command::mnuSus, captions.sharps);
    menuBar_.setCaption(Command::mnuBem, captions.flats);
    menuBar_.setCaption(Command::mnuByKey, captions.followKey);
    if (followsKey != std::exchange(followsKey_, followsKey) &&
        !storeFollowsKey(services_, followsKey))
        reportFailure(services_.messages, kNotStored);
}

void Form1::followTheKey() {
    useSpelling(spelling_, true);
}

// The keys in two columns, major and minor; the first entry leaves it to the program.
void Form1::chooseKey(POINT place) {
    if (!mayBegin())
        return;
    constexpr int tonics = 12;
    const UniqueMenu menu(::CreatePopupMenu());
    const SongMemory& memory = documents_.songMemory();
    ::AppendMenuW(menu.get(), MF_STRING | (memory.key ? 0U : UINT{MF_CHECKED}), 2 * tonics + 1,
                  L"As It Is Found");
    for (int i = 0; i < 2 * tonics; ++i) {
        const Key key{i % tonics, i >= tonics};
        const UINT column = i == tonics ? MF_MENUBARBREAK : 0;
        const UINT mark = memory.key == key ? MF_CHECKED : 0;
        ::AppendMenuW(menu.get(), MF_STRING | column | mark, static_cast<UINT_PTR>(i) + 1,
                      wide(keyName(key, memory.side)));
    }
    const int chosen = ::TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_BOTTOMALIGN | TPM_RETURNCMD,
                                        place.x, place.y, 0, handle(), nullptr);
    if (chosen > 2 * tonics)
        keyWork_.tellKey(std::nullopt);
    else if (chosen > 0)
        keyWork_.tellKey(Key{(chosen - 1) % tonics, chosen > tonics});
}

void Form1::respell() {
    const CursorScope hourglass(IDC_WAIT);
    keyWork_.respell();
}

void Form1::showSpellingMenu() {
    const UniqueMenu menu(::CreatePopupMenu());
    for (const Command item : {Command::mnuSus, Command::mnuBem, Command::mnuByKey})
        ::AppendMenuW(menu.get(), MF_STRING, idOf(item), wide(menuBar_.caption(item)));
    const RECT button = toolbar_.buttonOnScreen(Command::mnuDwn);
    toolbar_.showTips(false);
    ::TrackPopupMenu(menu.get(), TPM_LEFTALIGN | TPM_TOPALIGN, button.left, button.bottom, 0,
                     handle(), nullptr);
    toolbar_.showTips(true);
}

}  // namespace melvorin
