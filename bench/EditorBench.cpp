// What the editor's costly moments take in the real main window, beside what the rich-edit control
// alone takes for its part. With an argument only the part of that name is measured.
#include "EditorBenches.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include "BenchProgram.h"

void melvorin::testing::unexpected(const std::string& what) {
    bench::giveUp(what.c_str());
}

int main(int count, char** arguments) {
    using namespace melvorin::bench;
    constexpr std::pair<std::string_view, void (*)()> parts[] = {
        {"full", stageBench}, {"dictionary", dictionaryBench}, {"keys", keyBench},
        {"edit", editBench},  {"scale", scaleBench},           {"preview", previewBench},
    };
    for (const auto& [name, measure] : parts) {
        if (count < 2 || arguments[1] == name)
            measure();
    }
    return EXIT_SUCCESS;
}
