#include "mxf/avc/AvcConfiguration.h"

#include "mxf/Status.h"
#include "mxf/avc/NalUnit.h"

#include <algorithm>
#include <array>

namespace TamrelMxf {
namespace {

using CUnits = std::vector<std::span<const std::uint8_t>>;

constexpr std::uint8_t kRecordVersion = 1;
constexpr unsigned kSampleLengthSize = 4;

/// Takes `count` units behind lengths of two bytes off the front of `bytes`.
int TakeSets(std::span<const std::uint8_t>& bytes, unsigned count, CAvcParameterSets& sets)
{
    for (; count > 0; --count) {
        if (bytes.size() < 2) return kCutShort;
        const auto length = static_cast<std::size_t>((bytes[0] << 8) | bytes[1]);
        bytes = bytes.subspan(2);
        if (length > bytes.size()) return kCutShort;
        if (const int status = sets.Add(bytes.first(length)); status != kSuccess) return status;
        bytes = bytes.subspan(length);
    }
    return kSuccess;
}

int ReadRecord(std::span<const std::uint8_t> bytes, CAvcParameterSets& sets, unsigned& lengthSize)
{
    if (bytes.size() < 7) return kCutShort;
    const unsigned size = (bytes[4] & 3U) + 1;
    if (size == 3) return kFailed;
    lengthSize = size;
    const unsigned sequences = bytes[5] & 0x1F;
    std::span<const std::uint8_t> rest = bytes.subspan(6);
    if (const int status = TakeSets(rest, sequences, sets); status != kSuccess) return status;
    if (rest.empty()) return kCutShort;
    const unsigned pictures = rest[0];
    rest = rest.subspan(1);
    if (const int status = TakeSets(rest, pictures, sets); status != kSuccess) return status;
    return sequences + pictures == 0 ? kNoSuchItem : kSuccess;
}

void AppendBehindLengths(std::vector<std::uint8_t>& record, const CUnits& units, std::size_t count)
{
    for (const std::span<const std::uint8_t> unit : std::span{units}.first(count)) {
        record.push_back(static_cast<std::uint8_t>(unit.size() >> 8));
        record.push_back(static_cast<std::uint8_t>(unit.size()));
        record.insert(record.end(), unit.begin(), unit.end());
    }
}

} // namespace

int ReadAvcExtraData(std::span<const std::uint8_t> bytes, CAvcParameterSets& sets, unsigned& lengthSize)
{
    if (bytes.empty()) return kCutShort;
    if (bytes[0] == kRecordVersion) return ReadRecord(bytes, sets, lengthSize);
    if (bytes[0] != 0) return kFailed;
    bool hasSet = false;
    CNalReader units = CNalReader::AnnexB(bytes);
    while (units.Next()) {
        if (units.Type() != ENalType::sequenceParameterSet && units.Type() != ENalType::pictureParameterSet) continue;
        if (const int status = sets.Add(units.Whole()); status != kSuccess) return status;
        hasSet = true;
    }
    if (hasSet) lengthSize = 0;
    return hasSet ? kSuccess : kNoSuchItem;
}

std::vector<std::uint8_t> ToAnnexB(const CAvcParameterSets& sets)
{
    constexpr std::array<std::uint8_t, 4> kStartCode{0, 0, 0, 1};
    std::vector<std::uint8_t> bytes;
    for (const CUnits& units : {sets.SpsUnits(), sets.PpsUnits()})
        for (const std::span<const std::uint8_t> unit : units) {
            bytes.insert(bytes.end(), kStartCode.begin(), kStartCode.end());
            bytes.insert(bytes.end(), unit.begin(), unit.end());
        }
    return bytes;
}

std::vector<std::uint8_t> ToAvcConfiguration(const CAvcParameterSets& sets)
{
    const SAvcSps* first = sets.FirstSps();
    if (first == nullptr) return {};
    const CUnits sequences = sets.SpsUnits();
    const CUnits pictures = sets.PpsUnits();
    const std::size_t sequenceCount = std::min<std::size_t>(sequences.size(), 31);
    const std::size_t pictureCount = std::min<std::size_t>(pictures.size(), 255);
    std::vector<std::uint8_t> record{kRecordVersion,
                                     first->profileIdc,
                                     first->constraintFlags,
                                     first->levelIdc,
                                     0xFC | (kSampleLengthSize - 1),
                                     static_cast<std::uint8_t>(0xE0 | sequenceCount)};
    AppendBehindLengths(record, sequences, sequenceCount);
    record.push_back(static_cast<std::uint8_t>(pictureCount));
    AppendBehindLengths(record, pictures, pictureCount);
    // The four bytes behind it tell what only the high profiles can have; ISO/IEC 14496-15 names these profiles.
    const std::uint8_t profile = first->profileIdc;
    if (profile == kAvcProfileHigh || profile == kAvcProfileHigh10 || profile == kAvcProfileHigh422 ||
        profile == kAvcProfileHigh444 || profile == kAvcProfileCavlc444Intra) {
        record.push_back(static_cast<std::uint8_t>(0xFC | static_cast<unsigned>(first->chroma)));
        record.push_back(static_cast<std::uint8_t>(0xF8 | (first->lumaDepth - 8U)));
        record.push_back(static_cast<std::uint8_t>(0xF8 | (first->chromaDepth - 8U)));
        record.push_back(0); // sequence parameter set extensions
    }
    return record;
}

} // namespace TamrelMxf
