#pragma once

#include "../klv/Klv.h"
#include "EssenceParser.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

namespace TamrelMxf {

/// A KLV of essence, or a system item.
struct SEssenceKlv {
    SUl key;
    bool isSystem = false;
    std::int64_t position = 0;     ///< of its key
    std::int64_t value = 0;        ///< where its value begins
    std::int64_t length = 0;       ///< of the value; -1 when the file does not say
    std::int64_t streamOffset = 0; ///< of its key in the container

    std::int64_t End() const;
};

/// Goes from KLV to KLV through the partitions of one container. Everything else on the way is stepped over: other
/// containers by way of the random index pack, header metadata, fill. Index tables are handed on where no random index
/// pack leads to them. What is damaged is left behind at the next key, and reported once.
/// A copy goes its own way from the same place.
class CEssenceWalker {
public:
    enum class EStep : std::uint8_t {
        found,
        end,
        needsData,
        failed, ///< the file cannot be read any more
    };

    /// \param context  borrowed, outlives the walker
    CEssenceWalker(const SEssenceContext& context, std::uint32_t bodySid);

    /// Looks for the next KLV of the container from the place at hand on; stays where it is once there.
    EStep Next();
    /// What Next found.
    const SEssenceKlv& Klv() const { return klv_; }

    /// The whole value of Klv(). One that reaches beyond the file, or into other KLVs, is cut at the next key.
    /// \param isDamaged  set when bytes of the value are missing
    /// \return found, needsData or failed
    EStep Load(std::span<const std::uint8_t>& value, bool& isDamaged);
    /// Goes behind Klv().
    void Skip();

    /// Goes to a key whose place in the container is known.
    void GoTo(std::int64_t position, std::int64_t streamOffset);
    void GoToStart();

    /// Damage is left behind without a word: for a second look at what is reported elsewhere.
    void Silence() { damages_ = std::max(damages_, 1); }

    std::int64_t Position() const { return position_; }
    /// True once after damage was stepped over, or what may be a damaged key.
    bool TakeDamage() { return std::exchange(isBehindDamage_, false); }
    /// What lies in the partition at hand: false while it belongs to another container.
    bool IsInContainer() const { return partitionSid_ == bodySid_; }

private:
    EStep Short(std::size_t viewed);
    EStep FindKey(std::int64_t& from, std::int64_t limit);
    EStep Resync();
    bool IsPlausible(std::span<const std::uint8_t> bytes, std::int64_t position) const;
    bool IsBeyondEnd(std::int64_t end) const;
    EStep EnterPartition(const SKlvHeader& header);
    void StepOver(const SKlvHeader& header);
    EStep TakeIndex(const SKlvHeader& header);
    void BeginEssence();
    void Report(std::int64_t position);

    const SEssenceContext* context_;
    std::uint32_t bodySid_;
    std::int64_t position_ = 0;
    std::int64_t searchFrom_ = 0; // where to look for a key when there is none at position_
    std::uint32_t partitionSid_ = 0;
    std::int64_t bodyOffset_ = 0;  // of the partition at hand
    std::int64_t essenceFrom_ = 0; // of the partition at hand: where its metadata and index tables end at the least
    std::int64_t base_ = -1;       // position less place in the container; -1 before the first KLV of the partition
    SEssenceKlv klv_;
    bool isBehindDamage_ = false;
    bool isEnd_ = false;
    int damages_ = 0;
};

/// What a step that found nothing means for a push; kDelivered for one that did.
int ToResult(CEssenceWalker::EStep step);

} // namespace TamrelMxf
