#pragma once

#include "cli/MxfFile.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace zanfcp::cli {

using Json = nlohmann::ordered_json;

/// Raised when a key of mxfFacts changes its name, its type or its meaning; new keys do not count.
inline constexpr int kMxfFactsSchema = 1;

/// All that the header of a file says, as one object. What the file leaves out is null; lists are there even when they
/// are empty. Offsets and sizes are bytes, positions and durations edit units of the track that has them, rates and
/// aspects {"num", "den"}, labels {"label", "name"} (null for an unknown name), identifiers and dates texts.
///   schemaVersion, path, size, runIn
///   operationalPattern  name ("OP1a"), label, description, streamable, externalEssence, severalTracks
///   status              of the header partition: "closed complete"
///   complete, footer, randomIndexPack   whether the file is complete, and what was found at its end
///   version, lastModified, instanceUid  of the preface; descriptiveSchemes as labels
///   muxing              "interleaved", "single stream", "partitioned", "external", "unknown"
///   duration            editUnits, editRate, seconds, label (in the timecode of the clip), from
///   start               label, frames, base, dropFrame, editRate, from; null without timecode
///   sourceStart         frames of the file package's timecode
///   marks               in, out, timebaseTrackId
///   partitions          way, whole, entries: offset, kind, status, headerBytes, indexBytes, bodySid, indexSid,
///                       bodyOffset, kagSize, version, metadata (true for the one that these facts come from)
///   identifications     company, product, version, productVersion, toolkitVersion, platform, date, productUid
///   streams             see streamFacts; packages see packageFacts
///   essenceContainers   package, bodySid, indexSid
///   markers             identifier, package, in, out, timebaseTrackId
///   frameworks          class, instanceUid, trackId, material, start, duration, comment, properties (name, value)
///   brokenReferences    how many references name a set that is not there or cannot stand there
Json mxfFacts(const MxfFile& file);

/// The streams of the flat interface, by its index: index, kind, codec (name, code, coding and container as labels),
/// wrapping, package (index in "packages"), trackId, trackNumber (eight hexadecimal digits), materialTrackId, bodySid,
/// indexSid, editRate, startOffset, duration, bitRate (bit/s), extraDataBytes, descriptor (class), channelLabels (kind,
/// symbol, name, channel, language, title), locators (kind, text); and of these the one that applies, the others null:
///   picture  width, height (of a frame, without padding), stored (width, height), displayed (x, y, width, height),
///            aspectRatio, interlaced, firstField (1 or 2), frameLayout, depth, subsampling ("4:2:2"), pixelLayout, gop
///            (most, mostBPictures, closed, identical), profile, level, colour (transfer, primaries, equations)
///   sound    sampleRate, bits, channels, blockAlign, locked, aes3, channelAssignment
///   data     kind, encoding, namespace, languages
Json streamFacts(const MxfFile& file);

/// The packages: index, kind ("material", "source", "other"), class, umid, name, created, modified, usage, markIn,
/// markOut, comments and attributes (name, value), descriptor (class, parts, physical, locators), tracks: id, number,
/// name, kind ("timeline", "event", "static"), holds, editRate, origin, duration, markIn, markOut, packageMarkIn,
/// packageMarkOut, components: kind, class, duration, comments, and by their kind
///   clip         sourcePackage (index; null when it is not in the file), sourceUmid (null at the end of the chain),
///                sourceTrackId, startPosition
///   timecode     label, start (frames), base, dropFrame
///   descriptive  framework (class), position, comment, trackIds; so has event, without framework
///   others       alternatives (how many)
Json packageFacts(const MxfFile& file);

// Parts of these objects.

Json labelFacts(const std::optional<TamrelMxf::SUl>& label);
Json rateFacts(const TamrelMxf::SRational& rate); ///< null unless it is positive
Json dateFacts(const std::optional<TamrelMxf::STimestamp>& date);
Json locatorFacts(const TamrelMxf::SDescriptor& descriptor);
/// The value, null when there is none; texts are null when they are empty.
template <typename T> Json maybe(const std::optional<T>& value)
{
    return value ? Json(*value) : Json(nullptr);
}
inline Json maybe(const std::string& text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}
/// The index of a package in the file; null when it is not there.
Json packageIndex(const TamrelMxf::SHeaderModel& model, const TamrelMxf::CMxfPackage* package);

} // namespace zanfcp::cli
