// The fuzzer of one subject: MELVORIN_SUBJECT is its name.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "Checks.h"
#include "StandIns.h"

namespace {

const melvorin::fuzz::Subject& subject() {
    using melvorin::fuzz::subjects;
    return *std::find_if(subjects().begin(), subjects().end(), [](const auto& candidate) {
        return std::string(MELVORIN_SUBJECT) == candidate.name;
    });
}

}  // namespace

void melvorin::testing::unexpected(const std::string& what) {
    std::fprintf(stderr, "unexpected %s\n", what.c_str());
    std::abort();
}

// Puts an input that gets far into MELVORIN_SEED_FILE, to begin with.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    if (const char* const path = std::getenv("MELVORIN_SEED_FILE"))
        std::ofstream(path) << subject().seed;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    subject().check({reinterpret_cast<const char*>(data), size});
    return 0;
}
