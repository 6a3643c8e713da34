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

/// One stream of the flat interface by its index: index, kind, codec (name, code, coding, container as labels),
/// wrapping, package (index in "packages"), trackId, trackNumber (eight hexadecimal digits), materialTrackId, bodySid,
/// indexSid, editRate, startOffset, duration, bitRate, extraDataBytes, locators, labels of sound channels; and one of
///   picture  width, height (of a frame), stored (width, height), displayed (x, y, width, height), aspectRatio,
///            interlaced, firstField, frameLayout, depth, subsampling, pixelLayout, gop, profile, level, colour
///   sound    sampleRate, bits, channels, blockAlign, locked, channelAssignment
///   data     kind, and what timed text says of itself
Json streamFacts(const MxfFile& file);

/// The packages: index, kind, umid, name, created, modified, usage, marks, comments, attributes, descriptor (class,
/// physical facts, locators), tracks: id, number, name, kind, holds, editRate, origin, duration, marks, components.
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
