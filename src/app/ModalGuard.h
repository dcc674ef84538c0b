// Knows whether a message box or dialog of the system is open. Commands that arrive meanwhile
// (posted by other programs, or by Windows at its end) must not run inside the one that is waiting.
#pragma once

#include "base/Services.h"

namespace melvorin {

class ModalGuard {
  public:
    // What is given outlives the guard.
    ModalGuard(MessageBoxes& messages, FileDialogs& dialogs, ColorDialogs& colors)
        : messages_(*this, messages), dialogs_(*this, dialogs), colors_(*this, colors) {}
    ModalGuard(const ModalGuard&) = delete;
    ModalGuard& operator=(const ModalGuard&) = delete;

    bool isOpen() const { return depth_ > 0; }
    // The same services, watched.
    MessageBoxes& messages() { return messages_; }
    FileDialogs& dialogs() { return dialogs_; }
    ColorDialogs& colors() { return colors_; }

  private:
    class Scope {
      public:
        explicit Scope(ModalGuard& guard) : guard_(guard) { ++guard_.depth_; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { --guard_.depth_; }

      private:
        ModalGuard& guard_;
    };

    class Messages : public MessageBoxes {
      public:
        Messages(ModalGuard& guard, MessageBoxes& inner) : guard_(guard), inner_(inner) {}
        Answer show(TextView text, TextView title, MessageIcon icon,
                    MessageButtons buttons) override {
            const Scope scope(guard_);
            return inner_.show(text, title, icon, buttons);
        }

      private:
        ModalGuard& guard_;
        MessageBoxes& inner_;
    };

    class Dialogs : public FileDialogs {
      public:
        Dialogs(ModalGuard& guard, FileDialogs& inner) : guard_(guard), inner_(inner) {}
        std::optional<FileChoice> open(const FileDialogRequest& request) override {
            const Scope scope(guard_);
            return inner_.open(request);
        }
        std::optional<FileChoice> save(const FileDialogRequest& request) override {
            const Scope scope(guard_);
            return inner_.save(request);
        }

      private:
        ModalGuard& guard_;
        FileDialogs& inner_;
    };

    class Colors : public ColorDialogs {
      public:
        Colors(ModalGuard& guard, ColorDialogs& inner) : guard_(guard), inner_(inner) {}
        std::optional<Rgb> choose(Rgb marked) override {
            const Scope scope(guard_);
            return inner_.choose(marked);
        }

      private:
        ModalGuard& guard_;
        ColorDialogs& inner_;
    };

    Messages messages_;
    Dialogs dialogs_;
    Colors colors_;
    int depth_ = 0;
};

}  // namespace melvorin
