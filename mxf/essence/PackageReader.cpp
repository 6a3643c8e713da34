#include "mxf/essence/PackageReader.h"

#include "mxf/essence/EssenceKeys.h"

#include <algorithm>
#include <cmath>

namespace TamrelMxf {
namespace {

/// More elements than that are not told apart: a package ends there.
constexpr std::size_t kMostElements = 1024;
/// Bytes of a key and a length.
constexpr std::int64_t kShortestPackage = 17;
/// Byte 15 of the key: frame-wrapped sound in the mapping of MPEG (SMPTE ST 381).
constexpr std::uint8_t kFramesOfMpegSound = 0x05;

/// How many frames of coded sound, an element each, begin during a picture at most.
std::ptrdiff_t FramesInPicture(const SStreamFormat& sound, const SRational& pictureRate)
{
    constexpr double kShortestFrame = 1024, kUsualRate = 48'000, kMost = 16;
    if (!HasOwnFrames(sound) || !pictureRate.IsPositive()) return 1;
    const double sampleRate = sound.sampleRate > 0 ? sound.sampleRate : kUsualRate;
    const double frames = std::ceil(sampleRate / kShortestFrame / pictureRate.ToDouble());
    return static_cast<std::ptrdiff_t>(std::clamp(frames, 1.0, kMost));
}

} // namespace

CPackageReader::CPackageReader(const SEssenceContext& context, std::span<const SEssenceTrack> tracks)
    : context_{&context}, indexSid_{tracks.front().format.indexSid}, walker_{context, tracks.front().format.bodySid}
{
    for (const SEssenceTrack& track : tracks)
        picturesOfKey_ = std::max<std::ptrdiff_t>(picturesOfKey_, ElementsInEditUnit(track.format));
    const auto picture = std::ranges::find(tracks, EStreamType::picture, [](const auto& t) { return t.format.type; });
    if (picture == tracks.end()) return;
    for (const SEssenceTrack& track : tracks)
        soundsOfKey_ = std::max(soundsOfKey_, FramesInPicture(track.format, picture->format.editRate));
}

CPackageReader::EStep CPackageReader::Next()
{
    const EStep step = walker_.Next();
    if (step != EStep::found || judged_ == Klv().position) return step;
    judged_ = Klv().position;
    begins_ = IsNewPackage();
    next_ = unit_ + 1;
    // Behind damage the index tables know how many packages were lost. So they do of an element that no package had
    // before, and behind it: its key may be damaged.
    const bool isDoubtful = IsStrange() || (!seen_.empty() && seen_.back() == strange_);
    if ((!walker_.TakeDamage() && !isDoubtful) || context_->index == nullptr) return step;
    const auto known = context_->index->UnitAtOffset(indexSid_, Klv().streamOffset);
    const bool isPossible = known && *known >= unit_ && *known <= Klv().streamOffset / kShortestPackage;
    if (!isPossible) return step;
    begins_ = *known > unit_;
    next_ = *known;
    return step;
}

bool CPackageReader::IsNewPackage() const
{
    if (!isOpen_ || seen_.size() >= kMostElements) return true;
    if (Klv().isSystem && hasElements_) return true;
    const std::uint32_t number = EssenceKeys::NumberOf(Klv().key);
    const EssenceKeys::EItem item = EssenceKeys::ItemOf(Klv().key.bytes[12]);
    const bool isPicture = item == EssenceKeys::EItem::picture;
    const bool isSound = item == EssenceKeys::EItem::sound && Klv().key.bytes[14] == kFramesOfMpegSound;
    if (SeenOfKey() >= (isPicture ? picturesOfKey_ : isSound ? soundsOfKey_ : 1)) return true;
    // Without system items nothing but the order of the elements tells that one of them begins a package.
    if (hasSystemItems_ || seen_.empty()) return false;
    const auto last = static_cast<std::uint8_t>(seen_.back() >> 24);
    const bool takesTurns = isSound && SeenOfKey() > 0 && EssenceKeys::ItemOf(last) == EssenceKeys::EItem::sound;
    return !takesTurns && Rank(number) < Rank(seen_.back());
}

/// True for an element that no package had before, but for the first one; its place in the order says nothing.
bool CPackageReader::IsStrange() const
{
    return unit_ > 0 && Rank(EssenceKeys::NumberOf(Klv().key)) == order_.size();
}

std::ptrdiff_t CPackageReader::SeenOfKey() const
{
    return std::ranges::count(seen_, EssenceKeys::NumberOf(Klv().key));
}

std::size_t CPackageReader::Rank(std::uint32_t number) const
{
    return static_cast<std::size_t>(std::ranges::find(order_, number) - order_.begin());
}

void CPackageReader::BeginPackage()
{
    unit_ = next_;
    isOpen_ = true;
    begins_ = false;
    hasElements_ = false;
    seen_.clear();
}

void CPackageReader::Accept()
{
    const std::uint32_t number = EssenceKeys::NumberOf(Klv().key);
    seen_.push_back(number);
    if (IsStrange())
        strange_ = number;
    else if (strange_ == number)
        strange_ = 0; // its second time
    if (Rank(number) == order_.size() && order_.size() < kMostElements) order_.push_back(number);
    hasSystemItems_ = hasSystemItems_ || Klv().isSystem;
    hasElements_ = hasElements_ || !Klv().isSystem;
    walker_.Skip();
    judged_ = -1;
}

void CPackageReader::GoTo(const SUnitPlace& place)
{
    walker_.GoTo(place.position, place.streamOffset);
    unit_ = place.unit - 1;
    isOpen_ = false;
    judged_ = -1;
}

} // namespace TamrelMxf
