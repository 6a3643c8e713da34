#pragma once

#include "EssenceWalker.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TamrelMxf {

/// A place in a container where an edit unit begins.
struct SUnitPlace {
    std::int64_t unit = 0;
    std::int64_t position = 0;
    std::int64_t streamOffset = 0;
};

/// Counts the content packages of a container (SMPTE ST 379-1): each begins with its system item or, without one, with
/// an element that does not come behind those of the package before it. So an element that is missing shifts no other.
/// Coded sound may have an element for each of its frames, several of them in a package beside a picture.
/// A copy goes its own way from the same place.
class CPackageReader {
public:
    using EStep = CEssenceWalker::EStep;

    /// \param tracks  of one container, not empty
    CPackageReader(const SEssenceContext& context, std::span<const SEssenceTrack> tracks);

    /// Looks for the next KLV; stays where it is once there.
    EStep Next();
    const SEssenceKlv& Klv() const { return walker_.Klv(); }
    /// True when Klv() belongs to another package than the one at hand.
    bool BeginsPackage() const { return begins_; }
    /// Takes Klv() as the beginning of the next package.
    void BeginPackage();
    EStep Load(std::span<const std::uint8_t>& value, bool& isDamaged) { return walker_.Load(value, isDamaged); }
    /// Takes Klv() as part of the package at hand and goes behind it.
    void Accept();

    /// The number of the package at hand; -1 before the first one.
    std::int64_t Unit() const { return unit_; }
    /// How many elements with the key of Klv() the package at hand has in front of it.
    std::ptrdiff_t SeenOfKey() const;
    /// True when a package has room for several elements of coded sound with the same key.
    bool HasSoundInParts() const { return soundsOfKey_ > 1; }
    void Silence() { walker_.Silence(); }
    std::int64_t Position() const { return walker_.Position(); }
    /// Goes to where a package begins.
    void GoTo(const SUnitPlace& place);

private:
    bool IsNewPackage() const;
    bool IsStrange() const;
    std::size_t Rank(std::uint32_t number) const;

    const SEssenceContext* context_;
    std::uint32_t indexSid_;
    std::ptrdiff_t picturesOfKey_ = 1; // in a package, at most: two where they are fields
    std::ptrdiff_t soundsOfKey_ = 1;   // the same: more where each is a frame of coded sound
    CEssenceWalker walker_;
    std::int64_t unit_ = -1;
    std::int64_t next_ = 0;    // the number of the package that Klv() begins
    std::int64_t judged_ = -1; // place of the KLV that next_ and begins_ are of
    bool begins_ = false;
    bool isOpen_ = false;             // a package has begun
    bool hasElements_ = false;        // and has more than system items
    std::vector<std::uint32_t> seen_; // bytes 13 to 16 of its keys

    std::uint32_t strange_ = 0;        // of an element that was met once, behind the first package
    bool hasSystemItems_ = false;      // of any package
    std::vector<std::uint32_t> order_; // in which the keys of all packages came first
};

} // namespace TamrelMxf
