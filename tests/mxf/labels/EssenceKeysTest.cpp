#include "mxf/labels/EssenceKeys.h"

#include "tests/support/MxfSets.h"

#include <gtest/gtest.h>

#include <string>

namespace TamrelMxf::test {
namespace {

TEST(EssenceKeys, TheRowThatTellsMostIsFound)
{
    struct Case {
        const char* key;
        const char* name; ///< null: none
        EEssenceKeyKind kind = EEssenceKeyKind::element;
    };
    const Case cases[] = {
        {"060E2B34.01020101.0D010301.15010500", "Frame-wrapped MPEG Picture Element"},
        {"060E2B34.0102010D.0D010301.15040501",
         "Frame-wrapped MPEG Picture Element"}, // another version, count and number
        {"060E2B34.01020101.0D010301.16080407", "AES3 Clip-wrapped Sound Element"},
        {"060E2B34.01020101.0D010301.05010100", "Type D-10 Element"},
        {"060E2B34.01020101.0D010301.15017700", "Generic Container picture item element"}, // a type nobody knows
        {"060E2B34.02050101.0D010301.04010100", "Content package system metadata pack", EEssenceKeyKind::system},
        {"060E2B34.02430101.0D010301.04010201", "Package metadata set", EEssenceKeyKind::system},
        {"060E2B34.0101010C.0D010509.01000000", "Generic stream data element", EEssenceKeyKind::genericStream},
        {"060E2B34.01010102.03010210.01000000", "KLV fill", EEssenceKeyKind::fill},
        {"060E2B34.02530101.0D010101.01012F00", nullptr}, // a set
        {"060E2B34.01020101.0D010302.15010500", nullptr},
        {"00000000.00000000.00000000.00000000", nullptr},
    };
    for (const Case& c : cases) {
        const SEssenceKey* found = FindEssenceKey(Label(c.key));
        EXPECT_EQ(found == nullptr ? "" : std::string(found->name), c.name == nullptr ? "" : c.name) << c.key;
        if (found != nullptr) {
            EXPECT_EQ(found->kind, c.kind) << c.key;
        }
    }
    EXPECT_EQ(TrackNumberOf(Label("060E2B34.01020101.0D010301.15010502")), 0x15010502U);
}

} // namespace
} // namespace TamrelMxf::test
