#include <cstddef>
#include <cstdint>

#include "Checks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace melvorin;
    fuzz::checkImport(fromUtf8({reinterpret_cast<const char*>(data), size}));
    return 0;
}
