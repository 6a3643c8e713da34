#include "cli/StreamExtractor.h"

#include "cli/MxfStreams.h"
#include "mxf/model/StreamFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace zanfcp::cli {
namespace {

using TamrelMxf::EEssenceKind;

constexpr std::size_t kMaxPendingBytes = std::size_t{256} << 20;

/// From `a` to a later `b`, as far as that can be said: damaged files play at any time.
std::int64_t distance(std::int64_t a, std::int64_t b)
{
    std::int64_t result = 0;
    return __builtin_sub_overflow(b, a, &result) ? std::numeric_limits<std::int64_t>::max() : result;
}

Error noWav(const std::string& why)
{
    return Error{.fault = Fault::unsupported, .what = why};
}

} // namespace

bool isBigEndianSound(const mxf_stream_format& format)
{
    constexpr auto kAiff = std::to_array<std::uint8_t>({0x04, 0x02, 0x02, 0x01, 0x7E}); // the label from byte 9 on
    return std::equal(kAiff.begin(), kAiff.end(), format.coding + 8);
}

Result<WavFormat> wavFormatOf(const mxf_stream_format& format)
{
    const auto kind = static_cast<EEssenceKind>(format.essence_kind);
    const bool isALaw = kind == EEssenceKind::aLaw;
    // Coded sound in the place of samples (SMPTE ST 337) travels in WAV files as well.
    if (!isALaw && kind != EEssenceKind::pcm && kind != EEssenceKind::codedInAes3) {
        const std::string name = codecName(format);
        return noWav((name.empty() ? std::string("holds no sound") : "is " + name) +
                     ": only PCM and A-law go into a WAV file; name the output otherwise, or add --format raw");
    }
    constexpr double kMostHz = 10'000'000;
    constexpr std::uint32_t kMostBytes = 8, kMostBlock = 65'535;
    const std::uint32_t channels = isALaw ? std::max(format.channels, 1U) : format.channels;
    const std::uint32_t block = isALaw ? channels : format.block_align;
    const std::uint32_t bytes = channels == 0 ? 0 : block / channels;
    const std::uint32_t bits = isALaw || format.bits_per_sample == 0 ? bytes * 8 : format.bits_per_sample;
    const bool isPlausible = channels != 0 && bytes != 0 && bytes <= kMostBytes && block == bytes * channels &&
                             block <= kMostBlock && bits <= bytes * 8 && format.sample_rate >= 1 &&
                             format.sample_rate <= kMostHz;
    if (!isPlausible)
        return noWav("does not say how its samples are laid out (" + std::to_string(channels) + " channels, " +
                     std::to_string(block) +
                     " bytes for one sample of all), so that it cannot be a WAV file; add "
                     "--format raw");
    return WavFormat{.coding = isALaw ? WavFormat::Coding::aLaw : WavFormat::Coding::pcm,
                     .channels = static_cast<std::uint16_t>(channels),
                     .sampleRate = static_cast<std::uint32_t>(std::lround(format.sample_rate)),
                     .bits = static_cast<std::uint16_t>(bits),
                     .bytesPerSample = static_cast<std::uint16_t>(bytes)};
}

StreamExtractor::StreamExtractor(EssenceOutput output, const ExtractionPlan& plan, ExtractedRange range)
    : output_{std::move(output)}, plan_{plan}, range_{range}
{
    if (plan_.wav) status_ = output_.write(wavHeader(*plan_.wav, std::nullopt));
}

int StreamExtractor::TakeSample(const mxf_sample& sample)
{
    if (isDone()) return 0;
    if (sample.dts >= range_.to) { // so is everything that follows
        isDone_ = true;
        return 0;
    }
    noteDamage(sample);
    std::span<const std::uint8_t> bytes{sample.data, sample.size};
    if (sample.pts >= range_.to) {
        if (range_.isExact) return 0;
        if (pending_.size() >= kMaxPendingBytes) writePending(); // too much of it to hold back
        pending_.insert(pending_.end(), bytes.begin(), bytes.end());
        pendingUnits_ += sample.duration;
        return 0;
    }
    // Several edit units of sound are cut to the range, where they are of one size.
    const bool isDivisible = sample.duration > 1 && sample.size % sample.duration == 0;
    const std::int64_t size = isDivisible ? sample.size / sample.duration : 0;
    std::int64_t first = 0, last = sample.duration;
    if (isDivisible) {
        first = range_.from > sample.pts ? std::min(distance(sample.pts, range_.from), sample.duration) : 0;
        last = std::min(distance(sample.pts, range_.to), sample.duration);
        bytes = bytes.subspan(static_cast<std::size_t>(first * size), static_cast<std::size_t>((last - first) * size));
    } else if (range_.isExact && sample.pts < range_.from) {
        return 0;
    }
    if (last > first) write(sample.pts + first, bytes, last - first);
    return 0;
}

void StreamExtractor::noteDamage(const mxf_sample& sample)
{
    const bool isDamaged = (sample.flags & mxf_sample_damaged) != 0;
    const std::int64_t lost = expected_ && sample.edit_unit > *expected_ ? sample.edit_unit - *expected_ : 0;
    expected_ = sample.edit_unit + sample.duration;
    if (!isDamaged && lost == 0) return;
    if (damage_.firstPosition < 0) {
        damage_.firstPosition = sample.position;
        damage_.firstUnit = sample.pts;
    }
    damage_.damaged += isDamaged ? 1 : 0;
    damage_.lost += lost;
}

void StreamExtractor::write(std::int64_t firstUnit, std::span<const std::uint8_t> bytes, std::int64_t editUnits)
{
    writePending();
    append(bytes);
    written_ += editUnits;
    if (firstUnit < range_.from) leading_ += editUnits;
}

void StreamExtractor::writePending()
{
    append(pending_);
    written_ += pendingUnits_;
    pending_.clear();
    pendingUnits_ = 0;
}

void StreamExtractor::append(std::span<const std::uint8_t> bytes)
{
    if (!status_) return;
    if (plan_.wav) { // a sample that was cut off must not shift the channels behind it
        const std::size_t block = std::size_t{plan_.wav->channels} * plan_.wav->bytesPerSample;
        bytes = bytes.first(bytes.size() / block * block);
    }
    if (plan_.wav && plan_.swapsBytes) {
        swapped_.assign(bytes.begin(), bytes.end());
        for (auto at = swapped_.begin(); at != swapped_.end(); at += plan_.wav->bytesPerSample)
            std::reverse(at, at + plan_.wav->bytesPerSample);
        bytes = swapped_;
    }
    status_ = output_.write(bytes);
    bytes_ += bytes.size();
}

Status StreamExtractor::finish()
{
    if (!status_) return status_;
    if (plan_.wav) {
        if (wavPadding(bytes_) != 0) status_ = output_.write(std::string_view{"\0", 1});
        if (status_ && output_.canOverwrite()) status_ = output_.overwriteStart(wavHeader(*plan_.wav, bytes_));
    }
    if (status_) status_ = output_.finish();
    return status_;
}

} // namespace zanfcp::cli
