#pragma once

#include "../model/StreamFormat.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace TamrelMxf {

/// What the coded bytes of one picture say about its place.
struct SPicturePlace {
    /// The position at which it is shown, on the scale of stored edit units; nothing while the start of the group that
    /// it counts from was not seen.
    std::optional<std::int64_t> displayed;
    bool isKey = true; ///< decoding can start here
};

/// What is taken for the place of a picture whose headers cannot be read.
inline constexpr SPicturePlace kUnreadable{.displayed = std::nullopt, .isKey = false};

/// The order in which pictures are shown, read from their own headers, for files whose index tables do not tell.
/// Pictures come in stored order, each once.
class CPictureOrder {
public:
    virtual ~CPictureOrder();
    CPictureOrder(const CPictureOrder&) = delete;
    CPictureOrder& operator=(const CPictureOrder&) = delete;

    /// \param picture  the coded bytes of an edit unit
    /// \param stored   its number, above that of the last call unless Restart came in between; those that were left
    ///   out are lost
    /// \return nothing when no header of a picture is found
    virtual std::optional<SPicturePlace> Describe(std::span<const std::uint8_t> picture, std::int64_t stored) = 0;
    /// How far stored order runs ahead of display order at most, in pictures; asked after the first Describe.
    virtual std::int64_t Delay() const = 0;
    /// What comes next does not follow what was described.
    /// \param displayed  where the next picture is shown, when that is known from elsewhere
    virtual void Restart(std::optional<std::int64_t> displayed) = 0;

protected:
    CPictureOrder() = default;

    /// Pictures that are lost or could not be read in front of this one; 0 right behind Forget.
    std::int64_t CountLost(std::int64_t stored) const { return next_ < 0 ? 0 : stored - next_; }
    /// Tells that this one was read.
    void Count(std::int64_t stored)
    {
        next_ = stored + 1;
        isFirst_ = false;
    }
    void Forget()
    {
        next_ = -1;
        isFirst_ = false;
    }
    /// True until a picture of a stream that is read from its beginning was counted.
    bool IsFirst() const { return isFirst_; }
    /// Where the first picture of all is shown, when it stands inside a group: in front of or at its stored position,
    /// so that none behind the group takes the same place.
    std::int64_t FirstInGroup(std::int64_t stored, bool isB) const { return stored - (isB ? Delay() : 0); }
    /// Whether a decoder could show the picture there: false when counting has begun anew unseen.
    /// \param slack  pictures that may have been missing where counting began
    bool IsPlausible(std::int64_t displayed, std::int64_t stored, std::int64_t slack = 0) const;

private:
    std::int64_t next_ = 0; // the stored unit that follows without a gap
    bool isFirst_ = true;
};

/// True for pictures that may depend on others, and be shown in another order than they are stored in.
bool IsReordered(const SStreamFormat& format);
/// The reader for the coding of a stream; null where every picture stands alone, and for codings that are not read.
std::unique_ptr<CPictureOrder> MakePictureOrder(const SStreamFormat& format);

} // namespace TamrelMxf
