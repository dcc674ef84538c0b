// The choices of a page as controls: what the page setup and the preview have in common.
#pragma once

#include "paper/PageChoices.h"
#include "platform/Form.h"

namespace melvorin {

class PageForm : public Form {
  public:
    // The controls of the choices have numbers from here on.
    enum ChoiceId {
        kPaper = 201,
        kLandscape,
        kMargin,
        kColumns,
        kFit,
        kLeast,
        kMost,
        kColors,
        kHeader,
        kDiagrams,
        kChoicesEnd
    };

    using Form::Form;

  protected:
    // Makes the controls, in one column, and shows `choices` in them.
    Cell choiceControls(const PageChoices& choices);
    // As they stand. A smallest size above the largest becomes the largest, in
    // the controls too.
    PageChoices choices();
    // What a command says that somebody has chosen.
    static bool isChoice(int id, int event);

  private:
    Cell numbers(int id, std::initializer_list<int> offered, int marked);
    void enableLimits();
    bool isChecked(int id) const;
    int numberIn(int id) const;
    void mark(int id, int number);
};

}  // namespace melvorin
