#include "platform/ProgramIdentity.h"

#include <gtest/gtest.h>

using namespace carvelot;

TEST(ProgramIdentity, TheIdentifierThatWasSetIsTheProcesss) {
    platform::SetProgramIdentifier("Tamrisk.Carvelot.Test");
    const std::string found = platform::ProgramIdentifier();
#ifdef _WIN32
    if (found.empty()) {
        GTEST_SKIP() << "Wine takes an identifier and does not give it back";
    }
    EXPECT_EQ(found, "Tamrisk.Carvelot.Test");
#else
    EXPECT_EQ(found, "");
#endif
}
