// The checks of the fuzzers on a few hundred inputs of each kind.
#include <gtest/gtest.h>

#include <random>

#include "Checks.h"

namespace melvorin {
namespace {

TEST(Fuzz, SeedsAndWhatIsNearThem) {
    std::mt19937 random(21);
    for (const fuzz::Subject& subject : fuzz::subjects()) {
        const std::string seed = subject.seed;
        subject.check(seed);
        subject.check("");
        for (int round = 0; round < 400; ++round) {
            std::string input = seed;
            for (std::size_t changes = 1 + random() % 4; changes > 0 && !input.empty(); --changes) {
                const std::size_t at = random() % input.size();
                const std::string part = seed.substr(random() % seed.size(), 1 + random() % 6);
                switch (random() % 4) {
                    case 0:
                        input[at] = static_cast<char>(random());
                        break;
                    case 1:
                        input.erase(at, 1 + random() % 3);
                        break;
                    default:
                        input.insert(at, part);
                }
            }
            subject.check(input);
        }
    }
}

}  // namespace
}  // namespace melvorin
