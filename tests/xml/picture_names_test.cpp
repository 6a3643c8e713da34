#include "xml/PELFieldDominance.h"
#include "xml/PELPixelAspectRatio.h"

#include <gtest/gtest.h>

namespace zanfcp {
namespace {

TEST(PixelAspectRatio, HasANameBothWays)
{
    const struct {
        std::uint32_t number;
        const char* name;
    } cases[] = {{1, "square"},       {2, "NTSC-601"},       {3, "PAL-601"},
                 {4, "HD-(960x720)"}, {5, "HD-(1280x1080)"}, {6, "HD-(1440x1080)"}};
    for (const auto& c : cases) {
        const auto ratio = static_cast<PELPixelAspectRatio>(c.number);
        EXPECT_EQ(NSStringFromPELPixelAspectRatio(ratio), c.name);
        EXPECT_EQ(PELPixelAspectRatioFromString(c.name), ratio) << c.name;
    }
}

TEST(PixelAspectRatio, IsNotSetForAnythingElse)
{
    for (const std::uint32_t number : {0U, 7U, 0xFFFFFFFFU})
        EXPECT_EQ(NSStringFromPELPixelAspectRatio(static_cast<PELPixelAspectRatio>(number)), "<not set>");
    for (const char* name : {"", "<not set>", "Square", "square ", "HD-(1440x1080"})
        EXPECT_EQ(PELPixelAspectRatioFromString(name), PELPixelAspectRatio::notSet) << name;
}

TEST(FieldDominance, HasANameBothWays)
{
    const struct {
        std::uint32_t number;
        const char* name;
    } cases[] = {{1, "none"}, {2, "upper"}, {3, "lower"}};
    for (const auto& c : cases) {
        const auto dominance = static_cast<PELFieldDominance>(c.number);
        EXPECT_EQ(PEL_StringFromPELFieldDominance(dominance), c.name);
        EXPECT_EQ(NSStringFromPELFieldDominance(dominance), c.name);
        EXPECT_EQ(PELFieldDominanceFromString(c.name), dominance) << c.name;
    }
}

TEST(FieldDominance, IsUndecidedForAnythingElse)
{
    for (const std::uint32_t number : {0U, 4U, 0xFFFFFFFFU}) {
        const auto dominance = static_cast<PELFieldDominance>(number);
        EXPECT_EQ(PEL_StringFromPELFieldDominance(dominance), std::nullopt);
        EXPECT_EQ(NSStringFromPELFieldDominance(dominance), "<unknown>");
    }
    for (const char* name : {"", "<unknown>", "Upper", "lower "})
        EXPECT_EQ(PELFieldDominanceFromString(name), PELFieldDominance::undecided) << name;
}

} // namespace
} // namespace zanfcp
