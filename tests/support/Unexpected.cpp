#include <gtest/gtest.h>

#include "StandIns.h"

namespace melvorin::testing {

void unexpected(const std::string& what) {
    ADD_FAILURE() << "unexpected " << what;
}

}  // namespace melvorin::testing
