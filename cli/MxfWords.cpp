#include "cli/MxfWords.h"

namespace zanfcp::cli {

using namespace TamrelMxf;

const CMxfUlDict& labelDictionary()
{
    static const CMxfUlDict dict = [] {
        CMxfUlDict made;
        made.Init();
        return made;
    }();
    return dict;
}

std::string_view labelName(const SUl& label)
{
    if (!label.IsSmpte()) return {};
    if (const SUlEntry* entry = labelDictionary().Find(label)) return entry->name;
    const SCoding* coding = FindCoding(label);
    return coding == nullptr ? std::string_view{} : coding->name;
}

std::string_view word(EPartitionKind kind)
{
    switch (kind) {
    case EPartitionKind::header: return "header";
    case EPartitionKind::body: return "body";
    case EPartitionKind::footer: return "footer";
    }
    return {};
}

std::string_view word(EPartitionStatus status)
{
    switch (status) {
    case EPartitionStatus::openIncomplete: return "open incomplete";
    case EPartitionStatus::closedIncomplete: return "closed incomplete";
    case EPartitionStatus::openComplete: return "open complete";
    case EPartitionStatus::closedComplete: return "closed complete";
    case EPartitionStatus::genericStream: return "generic stream";
    }
    return {};
}

std::string_view word(EDataKind kind)
{
    switch (kind) {
    case EDataKind::unknown: return "unknown";
    case EDataKind::timecode: return "timecode";
    case EDataKind::descriptive: return "descriptive";
    case EDataKind::picture: return "picture";
    case EDataKind::sound: return "sound";
    case EDataKind::data: return "data";
    case EDataKind::auxiliary: return "auxiliary";
    case EDataKind::parsedText: return "parsed text";
    }
    return {};
}

std::string_view word(EWrapping wrapping)
{
    switch (wrapping) {
    case EWrapping::unknown: return "unknown";
    case EWrapping::frame: return "frame";
    case EWrapping::clip: return "clip";
    case EWrapping::custom: return "custom";
    case EWrapping::field: return "field";
    case EWrapping::line: return "line";
    }
    return {};
}

std::string_view word(EMuxingMode mode)
{
    switch (mode) {
    case EMuxingMode::unknown: return "unknown";
    case EMuxingMode::interleaved: return "interleaved";
    case EMuxingMode::singleStream: return "single stream";
    case EMuxingMode::partitioned: return "partitioned";
    case EMuxingMode::external: return "external";
    }
    return {};
}

std::string_view word(SDuration::ESource source)
{
    switch (source) {
    case SDuration::ESource::none: return "unknown";
    case SDuration::ESource::picture: return "picture track";
    case SDuration::ESource::sound: return "sound track";
    case SDuration::ESource::footer: return "footer";
    case SDuration::ESource::index: return "index tables";
    case SDuration::ESource::essence: return "size of the essence";
    }
    return {};
}

std::string_view word(SStartTimecode::ESource source)
{
    switch (source) {
    case SStartTimecode::ESource::none: return "none";
    case SStartTimecode::ESource::material: return "material package";
    case SStartTimecode::ESource::file: return "file package";
    case SStartTimecode::ESource::physical: return "tape or other source package";
    }
    return {};
}

std::string_view word(CMxfClip::EKind kind)
{
    switch (kind) {
    case CMxfClip::EKind::missing: return "missing";
    case CMxfClip::EKind::sourceClip: return "clip";
    case CMxfClip::EKind::timecode: return "timecode";
    case CMxfClip::EKind::filler: return "filler";
    case CMxfClip::EKind::descriptive: return "descriptive";
    case CMxfClip::EKind::event: return "event";
    case CMxfClip::EKind::choice: return "choice";
    case CMxfClip::EKind::transition: return "transition";
    case CMxfClip::EKind::other: return "other";
    }
    return {};
}

std::string_view word(CMxfTrack::EKind kind)
{
    switch (kind) {
    case CMxfTrack::EKind::missing: return "missing";
    case CMxfTrack::EKind::timeline: return "timeline";
    case CMxfTrack::EKind::event: return "event";
    case CMxfTrack::EKind::fixed: return "static";
    }
    return {};
}

std::string_view word(CMxfPackage::EKind kind)
{
    switch (kind) {
    case CMxfPackage::EKind::material: return "material";
    case CMxfPackage::EKind::source: return "source";
    case CMxfPackage::EKind::other: return "other";
    }
    return {};
}

} // namespace zanfcp::cli
