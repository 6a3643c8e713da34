#pragma once

#include "EssenceParser.h"
#include "PackageReader.h"
#include "TrackMatch.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace TamrelMxf {

/// Frame wrapping: content packages one after the other, each with one element of every stream, in any order and with
/// any of them missing (SMPTE ST 379-1). A container with a single stream is the simplest case of it. Of field-wrapped
/// pictures that are counted in frames a package has two elements, which are delivered as one sample. So are the
/// elements that a package has of coded sound, one or several.
class CMxfInterleavedParser : public CEssenceParser {
public:
    /// \param canGoBack  the input still has what lies behind: false leaves everything that needs it out
    CMxfInterleavedParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks, bool canGoBack = true);

    int Push() override;
    int Seek(mxf_dmuxer_seek& seek) override;
    int GetSampleInfo(std::int64_t editUnit, mxf_sample_info& info) override;

protected:
    /// What lies in front of it was dealt with.
    std::int64_t Place() const { return reader_.Position(); }
    /// The edit unit at hand; -1 in front of the first one.
    std::int64_t Unit() const { return reader_.Unit(); }
    const SWalkedUnit* Walk(SLane& lane, std::int64_t unit) override;

private:
    using EStep = CEssenceWalker::EStep;

    /// The first of two elements that are one sample, or several of sound.
    struct SHeld {
        std::int64_t position = -1; // -1: none is held
        bool isDamaged = false;
        std::vector<std::uint8_t> bytes;

        void Drop()
        {
            position = -1;
            isDamaged = false;
            bytes.clear(); // its room is of use for the next one
        }
    };

    SLane* LaneOf(const SEssenceKlv& klv);
    std::size_t IndexOf(const SLane& lane) const { return static_cast<std::size_t>(&lane - Lanes().data()); }
    SHeld& HeldOf(const SLane& lane) { return held_[IndexOf(lane)]; }
    SPiece PieceOfPackage(const SLane& lane);
    bool Hand(SLane& lane, SPiece piece);
    bool HandHeld(bool& delivered);
    bool IsServed() const;
    bool IsLast(const SLane& lane, const SPiece& piece);

    std::optional<SUnitPlace> Locate(std::int64_t unit);
    std::optional<SUnitPlace> LocateByIndex(std::int64_t unit) const;
    std::span<const std::uint8_t> Head(const SEssenceKlv& klv) const;
    void Prime(std::int64_t unit);

    CPackageReader reader_;
    CTrackMatch match_;
    std::size_t served_ = 0;              // lanes that took their sample of the package at hand
    std::optional<std::int64_t> covered_; // edit units in the index tables
    std::vector<std::uint8_t> unpacked_;  // samples of an element that holds more than them, or both fields
    std::vector<SHeld> held_;             // of each lane

    // where no index table leads
    bool canGoBack_;
    CPackageReader scout_;                                    // walks from the beginning
    std::vector<std::unique_ptr<CPictureOrder>> scoutOrders_; // of each lane
};

/// The same for essence that is pushed. It never goes back.
class CMxfInterleavedStreamParser final : public CMxfInterleavedParser {
public:
    CMxfInterleavedStreamParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks)
        : CMxfInterleavedParser{context, std::move(tracks), false}
    {}

    /// Delivers all that has come.
    /// \return kEnded at the footer partition or random index pack, kNeedsData otherwise; kRefused and -1 as the base
    int Push() override;
    /// \return -3
    int Seek(mxf_dmuxer_seek& seek) override;
};

} // namespace TamrelMxf
