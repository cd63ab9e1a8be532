// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/LateLibrary.h"

#include <gmock/gmock.h>
#include <math.h>

using namespace velmora;
using testing::HasSubstr;

// What is looked for in the libraries below; the last is nowhere to be found.
double velmora_has_no_such_function(double value);

namespace {
struct Mathematics : LateLibrary {
    explicit Mathematics(const char* file) : LateLibrary(file) {}
    VELMORA_LATE_CALL(j0);
};

struct TooMuch : LateLibrary {
    TooMuch() : LateLibrary("libm.so.6") {}
    VELMORA_LATE_CALL(j0);
    VELMORA_LATE_CALL(velmora_has_no_such_function);
};
} // namespace

TEST(LateLibraryTest, ATableOfFunctionsIsCalledLikeTheLibraryItself) {
    const Mathematics mathematics("libm.so.6");
    ASSERT_TRUE(mathematics.complete()) << mathematics.problem();
    EXPECT_EQ(mathematics.problem(), "");
    EXPECT_DOUBLE_EQ(mathematics.j0(0), 1);
}

TEST(LateLibraryTest, ALibraryThatIsMissingIsNamed) {
    const Mathematics mathematics("libvelmora-nowhere.so.9");
    EXPECT_FALSE(mathematics.complete());
    EXPECT_THAT(mathematics.problem(), HasSubstr("libvelmora-nowhere.so.9"));
    EXPECT_EQ(mathematics.j0, nullptr);
}

TEST(LateLibraryTest, AFunctionThatIsMissingIsNamed) {
    const TooMuch mathematics;
    EXPECT_FALSE(mathematics.complete());
    EXPECT_THAT(mathematics.problem(), HasSubstr("velmora_has_no_such_function"));
    EXPECT_NE(mathematics.j0, nullptr);
}
