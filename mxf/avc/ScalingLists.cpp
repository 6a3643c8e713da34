#include "mxf/avc/ScalingLists.h"

namespace TamrelMxf {
namespace {

// Tables 7-3 and 7-4, in zig-zag order.
constexpr SScalingLists::TList4x4 kIntra4x4{6, 13, 13, 20, 20, 20, 28, 28, 28, 28, 32, 32, 32, 37, 37, 42};
constexpr SScalingLists::TList4x4 kInter4x4{10, 14, 14, 20, 20, 20, 24, 24, 24, 24, 27, 27, 27, 30, 30, 34};
constexpr SScalingLists::TList8x8 kIntra8x8{6,  10, 10, 13, 11, 13, 16, 16, 16, 16, 18, 18, 18, 18, 18, 23,
                                            23, 23, 23, 23, 23, 25, 25, 25, 25, 25, 25, 25, 27, 27, 27, 27,
                                            27, 27, 27, 27, 29, 29, 29, 29, 29, 29, 29, 31, 31, 31, 31, 31,
                                            31, 33, 33, 33, 33, 33, 36, 36, 36, 36, 38, 38, 38, 40, 40, 42};
constexpr SScalingLists::TList8x8 kInter8x8{9,  13, 13, 15, 13, 15, 17, 17, 17, 17, 19, 19, 19, 19, 19, 21,
                                            21, 21, 21, 21, 21, 22, 22, 22, 22, 22, 22, 22, 24, 24, 24, 24,
                                            24, 24, 24, 24, 25, 25, 25, 25, 25, 25, 25, 27, 27, 27, 27, 27,
                                            27, 28, 28, 28, 28, 28, 30, 30, 30, 30, 32, 32, 32, 33, 33, 35};

enum class EListSource : std::uint8_t { transmitted, standard, failed };

/// scaling_list() of 7.3.2.1.1.1.
template <typename TList> EListSource ReadList(CBitsReader& bits, TList& list)
{
    int last = 8;
    int next = 8;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (next != 0) {
            const std::int32_t delta = bits.Se();
            if (!bits.IsOk() || delta < -128 || delta > 127) return EListSource::failed;
            next = (last + delta + 256) % 256;
            if (i == 0 && next == 0) return EListSource::standard;
        }
        if (next != 0) last = next;
        list[i] = static_cast<std::uint8_t>(last);
    }
    return EListSource::transmitted;
}

/// Reads the lists of one size. \param step  distance to the list before of the same kind; \param firsts  how many
/// lists have none
template <typename TLists> bool ReadLists(CBitsReader& bits, unsigned count, TLists& lists, const TLists& standard,
                                          const TLists& fallBack, bool (*isFirst)(std::size_t), std::size_t step)
{
    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (i < count && bits.Flag()) {
            const EListSource source = ReadList(bits, lists[i]);
            if (source == EListSource::failed) return false;
            if (source == EListSource::standard) lists[i] = standard[i];
        } else {
            lists[i] = isFirst(i) ? fallBack[i] : lists[i - step];
        }
    }
    return bits.IsOk();
}

} // namespace

SScalingLists SScalingLists::Flat()
{
    SScalingLists flat{};
    for (TList4x4& list : flat.lists4x4)
        list.fill(16);
    for (TList8x8& list : flat.lists8x8)
        list.fill(16);
    return flat;
}

SScalingLists SScalingLists::Default()
{
    return {{kIntra4x4, kIntra4x4, kIntra4x4, kInter4x4, kInter4x4, kInter4x4},
            {kIntra8x8, kInter8x8, kIntra8x8, kInter8x8, kIntra8x8, kInter8x8}};
}

bool SScalingLists::Read(CBitsReader& bits, unsigned count, const SScalingLists& fallBack)
{
    const SScalingLists standard = Default();
    return ReadLists(
               bits, count, lists4x4, standard.lists4x4, fallBack.lists4x4, [](std::size_t i) { return i % 3 == 0; },
               1) &&
           ReadLists(
               bits, count > 6 ? count - 6 : 0, lists8x8, standard.lists8x8, fallBack.lists8x8,
               [](std::size_t i) { return i < 2; }, 2);
}

} // namespace TamrelMxf
