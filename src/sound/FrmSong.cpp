#include "sound/FrmSong.h"

#include <algorithm>

#include "base/Paths.h"
#include "platform/Win32Files.h"
#include "sound/PlayerPictures.h"

namespace melvorin {
namespace {

constexpr int kPictureSide = 14;  // pixels at 96 dpi

void fillList(HWND list, const std::vector<Text>& rows) {
    ::SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (const Text& row : rows)
        ::SendMessageW(list, LB_ADDSTRING, 0, lparamOf(wide(row)));
    ::SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(list, nullptr, TRUE);
}

// Lets the windows catch up. Keys and clicks wait: a Stop between opening and playing would
// come too early to stop anything.
void processPendingMessages() {
    dispatchWaiting(PM_QS_PAINT | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE,
                    [](const MSG&) { return true; });
}

}  // namespace

// ---- The window -------------------------------------------------------------------------------

bool FrmSong::open(HWND owner, SoundFolder folder) {
    if (!isOpen()) {
        if (!createWindow(owner))
            return false;
        showFolder(joinPath(services_.program.folder(),
                            folder == SoundFolder::Strings ? u"Strings" : u"Song"));
    }
    bringForward();
    return true;
}

bool FrmSong::createWindow(HWND owner) {
    if (!createForm(L"MelvorinFrmSong", L"Melvorin Guitar Tuner", owner))
        return false;
    const auto named = [this](const wchar_t* caption, int id, int width) {
        return columnOf({label(caption), list(id).least(width, 176).grows(1, 1)}).close();
    };
    const Cell lists = rowOf({named(L"F&olders:", Dir, 210), named(L"&Files:", Files, 250)});
    const Cell path = label(L"", SS_NOPREFIX | SS_PATHELLIPSIS, Path);
    const Cell start = button(Play_, Play, u"Play");
    const Cell end = button(Stopcmd_, Stopcmd, u"Stop");
    const Cell leave = button(Command1_, Command1, u"Exit");
    for (TarnelButton* const made : {&Play_, &Stopcmd_, &Command1_})
        made->setEnterClicks(false);
    Play_.setPicture(playPicture(scaled(kPictureSide)));
    Stopcmd_.setPicture(stopPicture(scaled(kPictureSide)));
    Stopcmd_.setEnabled(false);
    layOut(columnOf({lists, path, rowOf({start, end, blank().grows(1, 0), leave})}), owner);
    ::SetFocus(item(Files));
    return true;
}

// ---- Messages ---------------------------------------------------------------------------------

LRESULT FrmSong::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_DESTROY:
            // Here, because the window also goes with the main one.
            player_.close();
            return 0;
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

// Enter plays wherever the focus is, so a folder is opened by the space bar; on a file it plays
// too.
bool FrmSong::onKeyDown(WPARAM key) {
    if (key == VK_RETURN) {
        play();
        return true;
    }
    if (key == VK_SPACE && ::GetFocus() == item(Dir)) {
        openChosenFolder();
        return true;
    }
    if (key == VK_SPACE && ::GetFocus() == item(Files)) {
        play();
        return true;
    }
    return false;
}

void FrmSong::onCommand(int control, int code) {
    switch (control) {
        case Dir:
            if (code == LBN_DBLCLK)
                openChosenFolder();
            break;
        case Files:
            if (code == LBN_SELCHANGE)
                chooseFile();
            else if (code == LBN_DBLCLK)
                play();
            break;
        case Play:
            play();
            break;
        case Stopcmd:
            stop();
            break;
        default:
            Form::onCommand(control, code);
            break;
    }
}

// ---- Folder and file --------------------------------------------------------------------------

std::optional<std::size_t> FrmSong::chosen(int list) const {
    const LRESULT row = ::SendMessageW(item(list), LB_GETCURSEL, 0, 0);
    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
}

void FrmSong::showFolder(const Text& folder) {
    FolderContent content = contentOf(folder);
    folder_ = folder;
    folders_ = folderRows(folder, std::move(content.folders));
    std::vector<Text> captions;
    for (const FolderRow& row : folders_.rows)
        captions.push_back(row.caption);
    fillList(item(Dir), captions);
    ::SendMessageW(item(Dir), LB_SETCURSEL, folders_.current, 0);
    // The folder and what is in it are in sight, not the way to it.
    ::SendMessageW(item(Dir), LB_SETTOPINDEX, folders_.current > 0 ? folders_.current - 1 : 0, 0);

    names_ = std::move(content.files);
    names_.erase(std::remove_if(names_.begin(), names_.end(),
                                [](const Text& name) { return !isSoundFile(name); }),
                 names_.end());
    sortNames(names_);
    fillList(item(Files), names_);
    extension_.clear();
    Path2_ = folder;
    showPath(folder);
}

void FrmSong::openChosenFolder() {
    const auto row = chosen(Dir);
    if (row && *row < folders_.rows.size())
        showFolder(Text(folders_.rows[*row].path));
}

void FrmSong::chooseFile() {
    const auto row = chosen(Files);
    if (!row || *row >= names_.size())
        return;
    Path2_ = joinPath(folder_, names_[*row]);
    extension_ = soundExtension(names_[*row]);
    showPath(Path2_);
}

void FrmSong::chooseFirstFile() {
    if (chosen(Files) || names_.empty())
        return;
    ::SendMessageW(item(Files), LB_SETCURSEL, 0, 0);
    chooseFile();
}

void FrmSong::showPath(const Text& path) {
    Path_ = path;
    ::SetWindowTextW(item(Path), wide(path));
}

// ---- Play and stop ----------------------------------------------------------------------------

void FrmSong::play() {
    chooseFirstFile();
    // The focus goes first: a control that is disabled while it has it would keep the keys.
    Stopcmd_.setEnabled(true);
    if (::IsWindowVisible(handle())) {
        ::SetFocus(Stopcmd_.handle());
        ::EnableWindow(item(Files), FALSE);
    }
    Play_.setEnabled(false);
    if (isPlayable(extension_))
        player_.play(Path_, processPendingMessages);
    else
        services_.messages.show(u"Invalid file type", u"Error", MessageIcon::Critical,
                                MessageButtons::Ok);
}

void FrmSong::stop() {
    player_.stop();
    Play_.setEnabled(true);
    ::EnableWindow(item(Files), TRUE);
    ::SetFocus(item(Files));
    Stopcmd_.setEnabled(false);
}

}  // namespace melvorin
