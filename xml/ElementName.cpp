#include "xml/ElementName.h"

#include "xml/XMLText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace zanfcp {
namespace {

/// Every element of the interchange format, version 5, in the order of the document type definition.
constexpr auto kNames = std::to_array<std::string_view>({"xmeml",
                                                         "project",
                                                         "bin",
                                                         "children",
                                                         "sequence",
                                                         "media",
                                                         "track",
                                                         "locked",
                                                         "outputchannelindex",
                                                         "link",
                                                         "linkclipref",
                                                         "clipindex",
                                                         "groupindex",
                                                         "uuid",
                                                         "updatebehavior",
                                                         "itemhistory",
                                                         "clip",
                                                         "clipitem",
                                                         "file",
                                                         "pathurl",
                                                         "mediaSource",
                                                         "anamorphic",
                                                         "alphatype",
                                                         "alphareverse",
                                                         "compositemode",
                                                         "masterclipid",
                                                         "subclipmasterid",
                                                         "ismasterclip",
                                                         "logginginfo",
                                                         "description",
                                                         "scene",
                                                         "shottake",
                                                         "lognote",
                                                         "good",
                                                         "scenenote",
                                                         "shotnote",
                                                         "takenote",
                                                         "labels",
                                                         "label",
                                                         "label2",
                                                         "comments",
                                                         "mastercomment1",
                                                         "mastercomment2",
                                                         "mastercomment3",
                                                         "mastercomment4",
                                                         "clipcommenta",
                                                         "clipcommentb",
                                                         "sourcetrack",
                                                         "start",
                                                         "end",
                                                         "subclipinfo",
                                                         "startoffset",
                                                         "endoffset",
                                                         "stillframe",
                                                         "stillframeoffset",
                                                         "syncoffset",
                                                         "multiclip",
                                                         "angle",
                                                         "activevideoangle",
                                                         "activeaudioangle",
                                                         "collapsed",
                                                         "synctype",
                                                         "mediadelay",
                                                         "defaultangle",
                                                         "subframeoffset",
                                                         "mixedratesoffset",
                                                         "gamma",
                                                         "video",
                                                         "layerindex",
                                                         "audio",
                                                         "channelcount",
                                                         "trackcount",
                                                         "channeldescription",
                                                         "layout",
                                                         "audiochannel",
                                                         "channellabel",
                                                         "sourcechannel",
                                                         "outputs",
                                                         "group",
                                                         "index",
                                                         "numchannels",
                                                         "downmix",
                                                         "channel",
                                                         "format",
                                                         "samplecharacteristics",
                                                         "width",
                                                         "height",
                                                         "pixelaspectratio",
                                                         "fielddominance",
                                                         "colordepth",
                                                         "codec",
                                                         "depth",
                                                         "samplerate",
                                                         "name",
                                                         "duration",
                                                         "enabled",
                                                         "marker",
                                                         "color",
                                                         "comment",
                                                         "in",
                                                         "out",
                                                         "mediatype",
                                                         "trackindex",
                                                         "rate",
                                                         "timebase",
                                                         "ntsc",
                                                         "timecode",
                                                         "string",
                                                         "frame",
                                                         "displayformat",
                                                         "field",
                                                         "reel",
                                                         "source",
                                                         "generatoritem",
                                                         "primarytimecode",
                                                         "transitionitem",
                                                         "alignment",
                                                         "filter",
                                                         "effect",
                                                         "effectid",
                                                         "effectcategory",
                                                         "effecttype",
                                                         "effectclass",
                                                         "wipecode",
                                                         "wipeaccuracy",
                                                         "startratio",
                                                         "endratio",
                                                         "reverse",
                                                         "privatestate",
                                                         "parameter",
                                                         "parameterid",
                                                         "parameterspecifier",
                                                         "valuemin",
                                                         "valuemax",
                                                         "valuelist",
                                                         "valueentry",
                                                         "value",
                                                         "keyframe",
                                                         "when",
                                                         "inscale",
                                                         "inbez",
                                                         "outscale",
                                                         "outbez",
                                                         "red",
                                                         "green",
                                                         "blue",
                                                         "alpha",
                                                         "horiz",
                                                         "vert",
                                                         "interpolation",
                                                         "speedvirtualkf",
                                                         "speedkfin",
                                                         "speedkfout",
                                                         "speedkfstart",
                                                         "speedkfend",
                                                         "origvalue",
                                                         "anchoroffset",
                                                         "hadbezierin",
                                                         "hadbezierout",
                                                         "appspecificdata",
                                                         "appname",
                                                         "appmanufacturer",
                                                         "appversion",
                                                         "data",
                                                         "fcpimageprocessing",
                                                         "useyuv",
                                                         "usesuperwhite",
                                                         "rendermode",
                                                         "qtcodec",
                                                         "codecname",
                                                         "codectypename",
                                                         "codectypecode",
                                                         "codecvendorcode",
                                                         "spatialquality",
                                                         "temporalquality",
                                                         "keyframerate",
                                                         "datarate",
                                                         "qteffectid",
                                                         "UUID",
                                                         "filmdata",
                                                         "filmslate",
                                                         "take",
                                                         "slate",
                                                         "cameraroll",
                                                         "labroll",
                                                         "dailyroll",
                                                         "keycode",
                                                         "prefix",
                                                         "feetframes",
                                                         "perfoffset",
                                                         "reversed",
                                                         "inknumber",
                                                         "filmstandard",
                                                         "telecinespeed",
                                                         "metadata",
                                                         "storage",
                                                         "key",
                                                         "size",
                                                         "type",
                                                         "importoptions",
                                                         "createnewproject",
                                                         "targetprojectname",
                                                         "defsequencepresetname",
                                                         "filterreconnectmediafiles",
                                                         "filterincludemarkers",
                                                         "filterincludeeffects",
                                                         "filterincludesequencesettings",
                                                         "displaynonfatalerrors",
                                                         "createfcpprojectatxmlfilepath",
                                                         "deletethisxmlfileatimport"});

std::uint64_t load(const char* from, std::size_t count)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, from, count);
    return bits;
}

/// Mixes the length, the beginning and the end.
std::size_t hash(std::string_view text)
{
    const char* const from = text.data();
    const std::size_t size = text.size();
    std::uint64_t head = 0, tail = 0;
    if (size >= 8) {
        head = load(from, 8);
        tail = load(from + size - 8, 8);
    } else if (size >= 4) {
        head = load(from, 4);
        tail = load(from + size - 4, 4);
    } else if (size > 0) {
        head = static_cast<unsigned char>(from[0]);
        tail = load(from + size - 1, 1) << 8 | static_cast<unsigned char>(from[size / 2]);
    }
    const std::uint64_t mixed = (head + size) * 0x9E3779B97F4A7C15u ^ tail * 0xC2B2AE3D27D4EB4Fu;
    return static_cast<std::size_t>((mixed ^ mixed >> 29) * 0x9E3779B97F4A7C15u >> 55);
}

ElementName::Entry makeEntry(std::string_view text, bool shared)
{
    ElementName::Entry entry{.text = std::string(text), .isName = isXmlName(text), .shared = shared};
    if (text.size() <= entry.padded.size()) std::copy(text.begin(), text.end(), entry.padded.begin());
    return entry;
}

/// The shared names, found by hash with linear probing.
class Vocabulary {
public:
    Vocabulary()
    {
        entries_.reserve(kNames.size() + 1);
        entries_.push_back(makeEntry({}, true));
        for (const std::string_view name : kNames) {
            std::size_t slot = hash(name);
            while (slots_[slot] != 0)
                slot = (slot + 1) % slots_.size();
            slots_[slot] = static_cast<std::uint8_t>(entries_.size());
            entries_.push_back(makeEntry(name, true));
        }
    }

    const ElementName::Entry* find(std::string_view text) const
    {
        if (text.empty()) return &entries_.front();
        for (std::size_t slot = hash(text); slots_[slot] != 0; slot = (slot + 1) % slots_.size())
            if (entries_[slots_[slot]].text == text) return &entries_[slots_[slot]];
        return nullptr;
    }

private:
    static_assert(kNames.size() < 0xFF, "slots are bytes, and 0 is a free one");

    std::vector<ElementName::Entry> entries_;
    std::array<std::uint8_t, 512> slots_{}; ///< hash() gives 9 bits
};

} // namespace

const ElementName::Entry* ElementName::find(std::string_view text)
{
    static const Vocabulary* const vocabulary = new Vocabulary; // kept to the very end: elements may be static
    const Entry* const known = vocabulary->find(text);
    return known != nullptr ? known : new Entry(makeEntry(text, false));
}

} // namespace zanfcp
