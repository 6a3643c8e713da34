#include "cli/MxfInfoText.h"

#include "cli/Text.h"
#include "platform/Format.h"

#include <algorithm>
#include <vector>

namespace zanfcp::cli {
namespace {

constexpr std::size_t kNameColumns = 16;
constexpr std::size_t kMostPartitions = 24;
constexpr std::size_t kPartitionsAtTheEnd = 4;
constexpr std::size_t kMostComponents = 8;

/// A number, text or truth value as it is shown; empty for null.
std::string text(const Json& value)
{
    if (value.is_null()) return {};
    if (value.is_string()) return value.get<std::string>();
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    if (value.is_number_float()) return format("%.6g", value.get<double>());
    return value.dump();
}

std::string orDash(const Json& value)
{
    return value.is_null() ? "-" : text(value);
}

/// "25", "29.97", "23.976"; "?" for null.
std::string rateText(const Json& rate)
{
    if (rate.is_null()) return "?";
    const auto num = rate["num"].get<std::int64_t>();
    const auto den = rate["den"].get<std::int64_t>();
    if (num % den == 0) return std::to_string(num / den);
    std::string number = format("%.3f", static_cast<double>(num) / static_cast<double>(den));
    number.erase(number.find_last_not_of('0') + 1);
    return number;
}

std::string labelText(const Json& label)
{
    if (label.is_null()) return {};
    return label["name"].is_null() ? text(label["label"]) : text(label["name"]);
}

/// What is not empty, separated by commas.
std::string listed(const std::vector<std::string>& parts, const char* separator = ", ")
{
    std::string out;
    for (const std::string& part : parts)
        if (!part.empty()) out += (out.empty() ? "" : separator) + part;
    return out;
}

/// `before`, the value, `after`; empty for null.
std::string around(const char* before, const Json& value, const char* after = "")
{
    return value.is_null() ? std::string() : before + text(value) + after;
}

std::string plural(std::uint64_t count, const std::string& noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

class Page {
public:
    void heading(const std::string& title) { out_ += "\n" + printable(title) + "\n"; }
    /// A name and what there is to say; nothing for an empty text.
    void line(const std::string& name, const std::string& value, std::size_t indent = 2)
    {
        if (value.empty()) return;
        const std::size_t pad = displayWidth(name) < kNameColumns ? kNameColumns - displayWidth(name) : 1;
        out_ += std::string(indent, ' ') + printable(name) + std::string(pad, ' ') + printable(value) + "\n";
    }
    void note(const std::string& value) { out_ += "  " + printable(value) + "\n"; }
    void table(const Table& table)
    {
        std::string lines = table.text();
        for (std::size_t at = 0; at < lines.size(); at = lines.find('\n', at) + 1)
            lines.insert(at, "  ");
        out_ += lines;
    }
    void add(const std::string& lines) { out_ += lines; }
    std::string take() { return std::move(out_); }

private:
    std::string out_;
};

std::string endText(const Json& facts)
{
    const bool footer = facts["footer"].get<bool>();
    const bool rip = facts["randomIndexPack"].get<bool>();
    if (footer && rip) return "footer and random index pack found";
    if (footer) return "footer found, no random index pack";
    if (rip) return "random index pack found, no footer";
    return "neither footer nor random index pack: still being written, or cut short";
}

std::string durationText(const Json& duration)
{
    if (duration["editUnits"].is_null()) return "unknown";
    return listed({text(duration["label"]),
                   plural(duration["editUnits"].get<std::uint64_t>(), "edit unit") + " at " +
                       rateText(duration["editRate"]) + "/s",
                   duration["seconds"].is_null() ? "" : format("%.3f s", duration["seconds"].get<double>()),
                   "from the " + text(duration["from"])});
}

std::string startText(const Json& start)
{
    if (start.is_null()) return "no timecode";
    return listed({start["label"].is_null() ? text(start["frames"]) + " frames" : text(start["label"]),
                   "base " + text(start["base"]) + (start["dropFrame"].get<bool>() ? " drop-frame" : ""),
                   "from the " + text(start["from"])});
}

std::string patternText(const Json& pattern)
{
    const auto flag = [&pattern](const char* key, const char* yes, const char* no) {
        return pattern[key].is_null() ? "" : pattern[key].get<bool>() ? yes : no;
    };
    return listed({text(pattern["name"]), flag("severalTracks", "several essence tracks", "one essence track"),
                   flag("streamable", "streamable", "not streamable"),
                   flag("externalEssence", "some essence in other files", "")});
}

void addSummary(Page& page, const Json& facts)
{
    page.line("Pattern", patternText(facts["operationalPattern"]));
    const Json& pattern = facts["operationalPattern"];
    page.line("", listed({text(pattern["label"]), text(pattern["description"])}, "  "));
    page.line("Status", "header " + text(facts["status"]) + "; " + endText(facts));
    page.line("Size", listed({text(facts["size"]) + " bytes",
                              facts["runIn"] == 0 ? "" : "header behind a run-in of " + text(facts["runIn"])}));
    page.line("Version", listed({text(facts["version"]), around("modified ", facts["lastModified"])}));
    page.line("Essence", text(facts["muxing"]));
    page.line("Duration", durationText(facts["duration"]));
    page.line("Start", startText(facts["start"]));
    const Json& marks = facts["marks"];
    page.line("Marks", listed({around("in ", marks["in"]), around("out ", marks["out"]),
                               around("counted on track ", marks["timebaseTrackId"])}));
    for (const Json& scheme : facts["descriptiveSchemes"])
        page.line("Scheme", labelText(scheme));
    if (facts["brokenReferences"] != 0)
        page.line("Damage", plural(facts["brokenReferences"].get<std::uint64_t>(), "reference") +
                                " to sets that are not there or do not fit");
}

std::string bitRateText(const Json& bitRate)
{
    return bitRate.is_null() ? "" : format("%.6g Mb/s", bitRate.get<double>() / 1e6);
}

std::string pictureText(const Json& picture, const Json& stream)
{
    return listed({orDash(picture["width"]) + "x" + orDash(picture["height"]),
                   picture["interlaced"].get<bool>() ? "interlaced" : "progressive",
                   rateText(stream["editRate"]) + "/s",
                   picture["aspectRatio"].is_null()
                       ? ""
                       : text(picture["aspectRatio"]["num"]) + ":" + text(picture["aspectRatio"]["den"]),
                   around("", picture["depth"], " bit"), text(picture["subsampling"]), bitRateText(stream["bitRate"])});
}

std::string formatText(const Json& stream)
{
    if (const Json& picture = stream["picture"]; !picture.is_null()) return pictureText(picture, stream);
    if (const Json& sound = stream["sound"]; !sound.is_null())
        return listed({around("", sound["sampleRate"], " Hz"), around("", sound["bits"], " bit"),
                       sound["channels"].is_null() ? "" : plural(sound["channels"].get<std::uint64_t>(), "channel")});
    if (const Json& data = stream["data"]; !data.is_null())
        return listed({text(data["kind"]), text(data["encoding"]), text(data["languages"])});
    return {};
}

/// What the table leaves out of one stream.
std::string streamDetails(const Json& stream)
{
    Page page;
    if (const Json& picture = stream["picture"]; !picture.is_null()) {
        const Json& stored = picture["stored"];
        const Json& displayed = picture["displayed"];
        page.line("Stored",
                  orDash(stored["width"]) + "x" + orDash(stored["height"]) + around(", ", picture["frameLayout"]) +
                      around(", field ", picture["firstField"], " first"),
                  4);
        if (!displayed["width"].is_null() && !displayed["height"].is_null())
            page.line("Displayed",
                      text(displayed["width"]) + "x" + text(displayed["height"]) + " at " + text(displayed["x"]) + "," +
                          text(displayed["y"]),
                      4);
        page.line("Pixels", text(picture["pixelLayout"]), 4);
        const Json& gop = picture["gop"];
        if (!gop["most"].is_null() || !gop["mostBPictures"].is_null())
            page.line(
                "GOP",
                listed({around("at most ", gop["most"], " pictures"), around("", gop["mostBPictures"], " B pictures"),
                        gop["closed"].get<bool>() ? "closed" : "", gop["identical"].get<bool>() ? "all alike" : ""}),
                4);
        if (!text(stream["codec"]["name"]).starts_with("MPEG")) // the name says it
            page.line("Coded", listed({around("profile ", picture["profile"]), around("level ", picture["level"])}), 4);
        page.line("Transfer", labelText(picture["colour"]["transfer"]), 4);
        page.line("Primaries", labelText(picture["colour"]["primaries"]), 4);
        page.line("Equations", labelText(picture["colour"]["equations"]), 4);
    }
    if (const Json& sound = stream["sound"]; !sound.is_null())
        page.line("Layout", labelText(sound["channelAssignment"]), 4);
    for (const Json& label : stream["channelLabels"])
        page.line("Label",
                  listed({text(label["kind"]) + around(" ", label["channel"]), text(label["symbol"]),
                          text(label["name"]), text(label["language"]), text(label["title"])}),
                  4);
    page.line("Coding", labelText(stream["codec"]["coding"]), 4);
    page.line("Container", labelText(stream["codec"]["container"]), 4);
    if (stream["startOffset"] != 0)
        page.line("Offset", text(stream["startOffset"]) + " edit units of essence before the first that is played", 4);
    if (stream["extraDataBytes"] != 0) page.line("Extra data", text(stream["extraDataBytes"]) + " bytes", 4);
    for (const Json& locator : stream["locators"])
        page.line("Locator", text(locator["text"]), 4);
    return page.take();
}

void addStreams(Page& page, const Json& streams)
{
    page.heading("Streams");
    Table table{{"STREAM", "KIND", "CODEC", "FORMAT", "WRAPPING", "TRACK", "NUMBER", "BODY SID", "INDEX SID"}};
    for (const Json& stream : streams)
        table.addRow({text(stream["index"]), text(stream["kind"]),
                      listed({text(stream["codec"]["name"]), around("(", stream["codec"]["code"], ")")}, " "),
                      formatText(stream), text(stream["wrapping"]), text(stream["trackId"]),
                      text(stream["trackNumber"]), text(stream["bodySid"]), text(stream["indexSid"])});
    page.table(table);
    for (std::size_t first = 0; first < streams.size();) { // streams alike are told of once
        const std::string details = streamDetails(streams[first]);
        std::size_t last = first;
        while (last + 1 < streams.size() && streamDetails(streams[last + 1]) == details)
            ++last;
        page.note(first == last ? "Stream " + std::to_string(first)
                                : "Streams " + std::to_string(first) + " to " + std::to_string(last));
        page.add(details);
        first = last + 1;
    }
}

void addPartitions(Page& page, const Json& partitions)
{
    const Json& entries = partitions["entries"];
    page.heading("Partitions (" + std::to_string(entries.size()) + ", by the " + text(partitions["way"]) + ")");
    Table table{
        {"KIND", "STATUS", "OFFSET", "HEADER BYTES", "INDEX BYTES", "BODY SID", "INDEX SID", "BODY OFFSET", "NOTE"}};
    const bool isShortened = entries.size() > kMostPartitions;
    const std::size_t hiddenFrom = isShortened ? kMostPartitions - kPartitionsAtTheEnd : entries.size();
    const std::size_t hiddenTo = isShortened ? entries.size() - kPartitionsAtTheEnd : entries.size();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i == hiddenFrom)
            table.addRow({"...", std::to_string(hiddenTo - hiddenFrom) + " more", "", "", "", "", "", "", ""});
        if (i >= hiddenFrom && i < hiddenTo) continue;
        const Json& entry = entries[i];
        if (entry["kind"].is_null()) {
            table.addRow({"?", "not readable", text(entry["offset"]), "", "", "", "", "", ""});
            continue;
        }
        table.addRow({text(entry["kind"]), text(entry["status"]), text(entry["offset"]), text(entry["headerBytes"]),
                      text(entry["indexBytes"]), text(entry["bodySid"]), text(entry["indexSid"]),
                      text(entry["bodyOffset"]), entry["metadata"].get<bool>() ? "metadata read" : ""});
    }
    page.table(table);
    if (!partitions["whole"].get<bool>()) page.note("There may be more: the list could not be followed to its end.");
}

void addIdentifications(Page& page, const Json& identifications)
{
    if (identifications.empty()) return;
    page.heading("Written by");
    Table table{{"COMPANY", "PRODUCT", "VERSION", "PRODUCT VERSION", "TOOLKIT", "PLATFORM", "DATE"}};
    for (const Json& one : identifications)
        table.addRow({text(one["company"]), text(one["product"]), text(one["version"]), text(one["productVersion"]),
                      text(one["toolkitVersion"]), text(one["platform"]), text(one["date"])});
    page.table(table);
}

std::string componentText(const Json& component)
{
    const std::string kind = text(component["kind"]);
    if (kind == "timecode")
        return listed(
            {component["label"].is_null() ? around("from frame ", component["start"]) : text(component["label"]),
             around("base ", component["base"]) + (component["dropFrame"] == true ? " drop-frame" : "")});
    if (kind == "clip") {
        if (component["sourceUmid"].is_null()) return "original";
        const std::string package = component["sourcePackage"].is_null()
                                        ? "of " + text(component["sourceUmid"]) + ", not in this file"
                                        : "of package " + text(component["sourcePackage"]);
        return listed({"track " + orDash(component["sourceTrackId"]) + " " + package,
                       around("from ", component["startPosition"])});
    }
    if (kind == "descriptive")
        return listed({text(component["framework"]), around("at ", component["position"]), text(component["comment"])});
    if (kind == "event") return listed({"event", around("at ", component["position"]), text(component["comment"])});
    return kind;
}

std::string componentsText(const Json& components)
{
    std::vector<std::string> parts;
    for (const Json& component : components) {
        if (parts.size() == kMostComponents) {
            parts.push_back("... " + std::to_string(components.size() - kMostComponents) + " more");
            break;
        }
        std::string part = componentText(component);
        if (components.size() > 1) part = orDash(component["duration"]) + ": " + part;
        parts.push_back(std::move(part));
    }
    return listed(parts, "; ");
}

void addValues(Page& page, const char* name, const Json& values)
{
    for (const Json& value : values)
        page.line(name, listed({text(value["name"]), text(value["value"])}, " = "));
}

void addPackage(Page& page, const Json& package)
{
    page.heading("Package " + text(package["index"]) + ": " + text(package["kind"]));
    page.line("Name", text(package["name"]));
    page.line("UMID", text(package["umid"]));
    page.line("Dates", listed({around("created ", package["created"]), around("modified ", package["modified"])}));
    page.line("Usage", labelText(package["usage"]));
    page.line("Marks", listed({around("in ", package["markIn"]), around("out ", package["markOut"])}));
    addValues(page, "Comment", package["comments"]);
    addValues(page, "Attribute", package["attributes"]);
    if (const Json& descriptor = package["descriptor"]; !descriptor.is_null()) {
        const Json& physical = descriptor["physical"];
        page.line("Descriptor",
                  listed({text(descriptor["class"]),
                          descriptor["parts"] == 0 ? "" : plural(descriptor["parts"].get<std::uint64_t>(), "part"),
                          physical.is_null() ? "" : text(physical["kind"]),
                          physical.is_null() ? "" : text(physical["manufacturer"])}));
        for (const Json& locator : descriptor["locators"])
            page.line("Locator", text(locator["text"]));
    }
    Table table{{"TRACK", "NUMBER", "NAME", "HOLDS", "EDIT RATE", "ORIGIN", "DURATION", "MARKS", "CONTENT"}};
    for (const Json& track : package["tracks"]) {
        const std::string kind = text(track["kind"]);
        table.addRow(
            {orDash(track["id"]), track["number"] == "00000000" ? "" : text(track["number"]), text(track["name"]),
             text(track["holds"]) + (kind == "timeline" ? "" : ", " + kind),
             track["editRate"].is_null() ? "" : rateText(track["editRate"]), text(track["origin"]),
             text(track["duration"]),
             listed({around("in ", track["markIn"]), around("out ", track["markOut"]),
                     around("package in ", track["packageMarkIn"]), around("package out ", track["packageMarkOut"])}),
             componentsText(track["components"])});
    }
    page.table(table);
}

void addMarkers(Page& page, const Json& markers)
{
    if (markers.empty()) return;
    page.heading("Package markers");
    for (const Json& marker : markers)
        page.note(listed({around("in ", marker["in"]), around("out ", marker["out"]),
                          around("counted on track ", marker["timebaseTrackId"]), text(marker["identifier"])}));
}

void addFrameworks(Page& page, const Json& frameworks)
{
    for (const Json& framework : frameworks) {
        page.heading("Descriptive framework: " + orDash(framework["class"]));
        page.line("Place", listed({"track " + text(framework["trackId"]) + " of a " +
                                       (framework["material"].get<bool>() ? "material" : "source") + " package",
                                   around("at ", framework["start"]), around("for ", framework["duration"])}));
        page.line("Comment", text(framework["comment"]));
        for (const Json& property : framework["properties"])
            page.line(text(property["name"]), text(property["value"]));
    }
}

} // namespace

std::string mxfInfoText(const Json& facts)
{
    Page page;
    page.add(printable(text(facts["path"])) + "\n");
    addSummary(page, facts);
    addStreams(page, facts["streams"]);
    addPartitions(page, facts["partitions"]);
    addIdentifications(page, facts["identifications"]);
    for (const Json& package : facts["packages"])
        addPackage(page, package);
    addMarkers(page, facts["markers"]);
    addFrameworks(page, facts["frameworks"]);
    return page.take();
}

} // namespace zanfcp::cli
