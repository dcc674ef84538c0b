#include "app/ShippedPages.h"

#include "base/Paths.h"

namespace melvorin {

void showPage(const Services& services, TextView help, TextView page) {
    const Text folder = services.program.folder();
    const Text helpPath = help.empty() ? Text() : joinPath(folder, help);
    const bool hasHelp = !help.empty() && services.program.contains(helpPath);
    if (hasHelp && services.shell.showHelp(helpPath, page))
        return;
    const Text path = joinPath(joinPath(folder, kPageFolder), page);
    const Result<Done> opened = services.shell.open(path);
    if (opened)
        return;
    Text trouble = u"Melvorin cannot open \"" + path + u"\".\r\n\r\n" + opened.cause;
    if (!help.empty() && !hasHelp)
        trouble += u"\r\n\r\n\"" + helpPath + u"\" is missing too.";
    reportFailure(services.messages, trouble);
}

}  // namespace melvorin
