#include "media/quicktime/VideoDescription.h"

#include "media/quicktime/Box.h"
#include "media/quicktime/InternationalText.h"

namespace zanfcp::quicktime {
namespace {

constexpr std::uint64_t kFixedBytes = 78; ///< after size and format, up to the extensions

/// 'clap': width and height as fractions of pixels, then the offsets.
void readCleanAperture(Window& window, Extent body, VideoDescription& video)
{
    Result<ByteReader> bytes = window.read(body.first(16));
    if (!bytes) return;
    const auto width = bytes->read<std::uint32_t>();
    const auto widthDivisor = bytes->read<std::uint32_t>();
    const auto height = bytes->read<std::uint32_t>();
    const auto heightDivisor = bytes->read<std::uint32_t>();
    if (!bytes->ok() || widthDivisor == 0 || heightDivisor == 0) return;
    video.apertureWidth = width / widthDivisor;
    video.apertureHeight = height / heightDivisor;
}

/// 32 bytes: a length, up to 31 characters, padding.
std::optional<std::string> readFormatName(ByteReader field)
{
    const std::size_t length = field.read<std::uint8_t>();
    std::string name = decodeInternationalText(field.take(std::min(length, field.remaining())));
    return name.empty() ? std::nullopt : std::optional{std::move(name)};
}

} // namespace

Result<VideoDescription> parseVideoDescription(Window& window, const Box& entry)
{
    Result<ByteReader> bytes = window.read(entry.body.first(kFixedBytes));
    if (!bytes) return Error{bytes.error()};
    VideoDescription video;
    video.format = entry.type;
    bytes->skip(6 + 2 + 2 + 2); // reserved, data reference, version, revision
    const FourCC vendor{bytes->read<std::uint32_t>()};
    if (vendor != FourCC{}) video.vendor = vendor;
    video.temporalQuality = bytes->read<std::int32_t>();
    video.spatialQuality = bytes->read<std::int32_t>();
    video.width = bytes->read<std::uint16_t>();
    video.height = bytes->read<std::uint16_t>();
    bytes->skip(4 + 4 + 4 + 2); // resolutions, data size, frames a sample
    video.formatName = readFormatName(bytes->sub(32));
    bytes->skip(2 + 2); // depth, colour table
    if (!bytes->ok()) return Error{Fault::truncated, "video sample description is cut short", entry.offset};

    video.apertureWidth = static_cast<std::uint32_t>(video.width);
    video.apertureHeight = static_cast<std::uint32_t>(video.height);
    constexpr FourCC kWanted[] = {FourCC{"clap"}};
    const Status extensions =
        forEachBox(window, entry.body.after(kFixedBytes), kWanted, [&](const Box& box) -> Result<Walk> {
            readCleanAperture(window, box.body, video);
            return Walk::stop;
        });
    // Broken extensions cost the clean aperture alone; that the file cannot be read will show again.
    (void)extensions.has_value();
    return video;
}

} // namespace zanfcp::quicktime
