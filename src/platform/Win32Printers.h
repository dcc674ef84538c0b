// Printers as Windows offers them.
#pragma once

#include "base/Services.h"
#include "platform/Handles.h"
#include "platform/Win32Services.h"

namespace melvorin {

using UniqueGlobal = Unique<HGLOBAL, ::GlobalFree>;

class Win32Printers : public Printers {
  public:
    // `owner` outlives the object.
    explicit Win32Printers(const BoxOwner& owner) : owner_(owner) {}
    bool usesLetter() override;
    // The printer of last time and how it was set up are offered again.
    Result<std::optional<PrintChoice>> choose(const PrintRequest& request) override;

  private:
    bool takeDefault();
    void setPaper(const PrintRequest& request);

    const BoxOwner& owner_;
    UniqueGlobal settings_;  // a DEVMODEW
    UniqueGlobal names_;     // a DEVNAMES
};

}  // namespace melvorin
