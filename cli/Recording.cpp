#include "cli/Recording.h"

#include "cli/Text.h"
#include "cli/Timecodes.h"
#include "media/FileTiming.h"
#include "project/Options.h"
#include "project/Sequence.h"
#include "xml/Labels.h"
#include "xml/XMLText.h"

#include <algorithm>
#include <map>
#include <optional>

namespace zanfcp::cli {
namespace {

using Warnings = std::vector<std::string>;

const InspectedFile& fileAt(const std::vector<InspectedFile>& files, const PELDictionary& options, const char* key)
{
    return files[static_cast<std::size_t>(options.integerFor(key))];
}

NSInteger startOf(const InspectedFile& file)
{
    return static_cast<NSInteger>(file.properties.timecode.frames);
}

std::string endLabel(const InspectedFile& file, PELRate rate)
{
    return labelFromFrames(startOf(file) + std::max<NSInteger>(file.properties.duration, 1) - 1, rate);
}

void warnAboutFile(const InspectedFile& file, Warnings& out)
{
    const PELMovieProperties& properties = file.properties;
    if (!properties.hasTimecode)
        out.push_back(file.path + " has no timecode: it is placed as if it began at 00:00:00:00");
    else if (fieldText(properties.timecode.string).empty())
        out.push_back(file.path + " has a timecode that cannot be read: it is placed as if it began at 00:00:00:00");
    if (cleanXmlText(file.url.lastPathComponent()).replaced != 0)
        out.push_back(file.path + " has a name that a document cannot hold: some of its characters are replaced");
    for (std::string& warning : fileWarnings(file))
        out.push_back(std::move(warning));
}

void warnAboutNames(const Recording& recording, Warnings& out)
{
    std::map<std::string, std::vector<std::string>> paths;
    for (const InspectedFile& file : recording.inspected)
        paths[cleanXmlText(file.url.lastPathComponent()).text].push_back(file.path); // as documents hold it
    for (const auto& [name, same] : paths) {
        if (same.size() < 2) continue;
        std::string list;
        for (const std::string& path : same)
            list += (list.empty() ? "" : ", ") + path;
        out.push_back("files with the same name are taken for one when they are imported: " + list);
    }
}

void warnAboutRates(const Recording& recording, Warnings& out)
{
    std::vector<PELRate> rates;
    std::string list;
    for (const InspectedFile& file : recording.inspected) {
        const PELRate rate = file.properties.timecode.rate;
        if (rate.timebase == 0 || std::ranges::find(rates, rate) != rates.end()) continue;
        rates.push_back(rate);
        list += (list.empty() ? "" : ", ") + rateText(rate);
    }
    if (rates.size() > 1)
        out.push_back("the files have different rates (" + list +
                      "): their timecodes are compared frame by frame and will not line up");
}

void warnAboutSpan(const Recording& recording, Warnings& out)
{
    if (recording.files.size() < 2 || PELGetSequenceDurationForFileElements(recording.files) > 0) return;
    const auto& files = recording.inspected;
    const auto last = std::ranges::max_element(files, {}, startOf);
    const auto first =
        std::ranges::min_element(files, {}, [](const auto& file) { return startOf(file) + file.properties.duration; });
    out.push_back("the files have no common span: " + last->path + " begins at " +
                  labelFromFrames(startOf(*last), last->properties.timecode.rate) + ", " + first->path + " ends at " +
                  endLabel(*first, first->properties.timecode.rate) +
                  "; without a length of its own, a sequence of them cannot be imported, and timecodes that pass "
                  "midnight are not joined");
}

/// Frames from the start of the common span to the start of the sequence.
NSInteger sequenceOffset(const Recording& recording, PELRate rate)
{
    const auto start = recording.options.stringFor(PELSequenceStartTimecode);
    if (!start || !recording.options.boolFor(PELSequenceCorrectFileOffsets)) return 0;
    const PELTimecode timecode = PELTimecodeMakeWithString(*start, rate);
    return Convenience::sequenceOffsetForFiles(recording.files, timecode);
}

/// Frames of the sequence, as the document will say.
NSInteger sequenceDuration(const Recording& recording, PELRate rate)
{
    const PELDictionary& options = recording.options;
    const PELArray* cuts = options.arrayFor(PELCuts);
    if (cuts != nullptr && !cuts->empty() && options.contains(PELSequenceStartTimecode) &&
        !options.boolFor(PELSequenceCorrectFileOffsets)) {
        const auto end =
            framesFromText(cuts->back().as<PELDictionary>()->stringFor(PELCutEndTimecode).value_or(""), rate);
        if (end) return *end;
    }
    return options.contains(PELSequenceDuration) ? options.integerFor(PELSequenceDuration)
                                                 : PELGetSequenceDurationForFileElements(recording.files);
}

/// One record of the cut list; nothing when its labels cannot be read.
struct Cut {
    std::size_t index = 0;
    bool isDissolve = false;
    NSInteger start = 0; ///< frames on the sequence
    NSInteger end = 0;   ///< frames on the sequence
};

std::vector<Cut> readCuts(const PELArray& records, PELRate rate)
{
    std::vector<Cut> cuts;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto* record = records[i].as<PELDictionary>();
        const auto start = framesFromText(record->stringFor(PELCutStartTimecode).value_or(""), rate);
        const auto end = framesFromText(record->stringFor(PELCutEndTimecode).value_or(""), rate);
        if (start && end) cuts.push_back({i, record->stringFor(PELCutType) == PELCutTypeDissolve, *start, *end});
    }
    return cuts;
}

std::string nameOf(const Cut& cut)
{
    return "cuts[" + std::to_string(cut.index) + "]";
}

void warnAboutOrder(const std::vector<Cut>& cuts, Warnings& out)
{
    const Cut* before = nullptr;
    std::string firstOverlap;
    std::size_t overlaps = 0;
    for (const Cut& cut : cuts) {
        if (cut.isDissolve) continue;
        if (before != nullptr && cut.start < before->end && overlaps++ == 0)
            firstOverlap = nameOf(cut) + " starts before " + nameOf(*before) + " ends";
        before = &cut;
    }
    if (overlaps != 0)
        out.push_back(firstOverlap + ": cuts are taken in the order of the list, and these cover each other" +
                      (overlaps > 1 ? " (and " + std::to_string(overlaps - 1) + " more)" : ""));
}

void warnAboutDissolves(const std::vector<Cut>& cuts, PELRate rate, Warnings& out)
{
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        const Cut& dissolve = cuts[i];
        if (!dissolve.isDissolve) continue;
        if (i == 0 || i + 1 == cuts.size() || cuts[i - 1].isDissolve || cuts[i + 1].isDissolve)
            out.push_back(nameOf(dissolve) + " is a dissolve that does not stand between two cuts");
        else if (const NSInteger meet = cuts[i - 1].end; meet < dissolve.start || meet > dissolve.end)
            out.push_back(nameOf(dissolve) + " is a dissolve away from where the cuts beside it meet, " +
                          labelFromFrames(meet, rate));
    }
}

void warnAboutCuts(const Recording& recording, const PELArray& cuts, Warnings& out)
{
    const PELRate rate = sequenceRate(recording.inspected, recording.options);
    const NSInteger common = PELGetSequenceDurationForFileElements(recording.files);
    const NSInteger offset = sequenceOffset(recording, rate);
    std::size_t outside = 0;
    std::size_t firstOutside = 0;
    const std::vector<Cut> read = readCuts(cuts, rate);
    warnAboutOrder(read, out);
    warnAboutDissolves(read, rate, out);
    for (const Cut& cut : read)
        if ((offset + cut.start < 0 || offset + cut.end > common) && outside++ == 0) firstOutside = cut.index;
    if (outside != 0 && common > 0)
        out.push_back(std::to_string(outside) + " of " + std::to_string(cuts.size()) +
                      " cuts go beyond the common span of " + std::to_string(common) + " frames (" +
                      labelFromFrames(common, rate) + "), the first is cuts[" + std::to_string(firstOutside) +
                      "]: not every file has material there");
}

/// Without cuts the sequence is one cut over its whole length.
void warnAboutWholeSequence(const Recording& recording, Warnings& out)
{
    const PELRate rate = sequenceRate(recording.inspected, recording.options);
    const NSInteger common = PELGetSequenceDurationForFileElements(recording.files);
    const NSInteger start = sequenceOffset(recording, rate);
    const NSInteger end = wrappingSum(start, sequenceDuration(recording, rate));
    if (common <= 0 || (start >= 0 && end <= common)) return;
    out.push_back("the sequence shows frames " + std::to_string(start) + " to " +
                  std::to_string(wrappingDifference(end, 1)) + " of the common span, which has " +
                  std::to_string(common) + " (" + labelFromFrames(common, rate) +
                  "): not every file has material there");
}

void warnAboutMarkers(const Recording& recording, const PELArray& markers, Warnings& out)
{
    const PELRate rate = sequenceRate(recording.inspected, recording.options);
    const NSInteger duration = sequenceDuration(recording, rate);
    for (std::size_t i = 0; i < markers.size(); ++i) {
        const auto* marker = markers[i].as<PELDictionary>();
        const auto frame = framesFromText(marker->stringFor(PELMarkerStartFrame).value_or(""), rate);
        if (!frame || duration <= 0 || *frame < duration) continue;
        out.push_back("markers[" + std::to_string(i) + "] \"" + marker->stringFor(PELMarkerName).value_or("") +
                      "\" lies beyond the end of the sequence, " + labelFromFrames(duration, rate));
        return; // one is enough to look at the list
    }
}

/// Labels are names that users of the editing application can change.
void warnAboutLabels(const PELDictionary& options, Warnings& out)
{
    for (const char* key : {PELBinLabel, PELClipLabel, PELSequenceLabel}) {
        const std::string label = options.stringFor(key).value_or("");
        bool isKnown = label.empty();
        for (std::uint32_t index = 1; index <= 5 && !isKnown; ++index)
            isKnown = PELLabelForColor(index) == label;
        if (!isKnown)
            out.push_back(std::string(key) + " \"" + label +
                          "\" is none of the labels that `zanfcp labels` lists: it shows only where the editing "
                          "application has it");
    }
}

/// The place of the first text, such as "[3].name", that a document cannot hold as it is.
std::optional<std::string> placeOfUncleanText(const PELValue& value)
{
    if (const auto* text = value.as<std::string>())
        return cleanXmlText(*text).replaced == 0 ? std::nullopt : std::optional{std::string()};
    if (const auto* list = value.as<PELArray>())
        for (std::size_t i = 0; i < list->size(); ++i)
            if (const auto place = placeOfUncleanText((*list)[i])) return "[" + std::to_string(i) + "]" + *place;
    if (const auto* object = value.as<PELDictionary>())
        for (const auto& [key, child] : *object)
            if (const auto place = placeOfUncleanText(child)) return "." + key + *place;
    return std::nullopt;
}

void warnAboutTexts(const PELDictionary& options, Warnings& out)
{
    for (const auto& [key, value] : options)
        if (const auto place = placeOfUncleanText(value))
            out.push_back(key + *place + " has characters that a document cannot hold: they are replaced");
}

/// Options that are given and do nothing.
void warnAboutOptions(const PELDictionary& options, Warnings& out)
{
    const PELArray* cuts = options.arrayFor(PELCuts);
    const PELArray* markers = options.arrayFor(PELMarkers);
    if (!hasSequence(options) && cuts != nullptr && !cuts->empty())
        out.push_back("the cuts are not used: there is no sequence without --sequence");
    if (!hasSequence(options) && markers != nullptr && !markers->empty())
        out.push_back("the markers are not used: there is no sequence without --sequence");
    const PELDictionary* overrides = options.dictionaryFor(PELSequenceSettingsOverrides);
    if (overrides == nullptr) return;
    if (options.boolFor(PELUseFirstClipSettings))
        out.push_back("sequenceOverrides is not used together with useFirstClipSettings");
    else if (overrides->contains(PELFrameSizeWidthOverride) != overrides->contains(PELFrameSizeHeightOverride))
        out.push_back("the frame size is not changed: it needs both frameSizeWidthOverride and "
                      "frameSizeHeightOverride");
}

} // namespace

bool hasSequence(const PELDictionary& options)
{
    return options.boolFor(PELProjectAddSequence);
}

const InspectedFile& templateFile(const std::vector<InspectedFile>& files, const PELDictionary& options)
{
    return fileAt(files, options, PELSequenceTemplateFileIndex);
}

const InspectedFile& mainFile(const std::vector<InspectedFile>& files, const PELDictionary& options)
{
    return fileAt(files, options, PELMulticlipMainFileIndex);
}

PELRate sequenceRate(const std::vector<InspectedFile>& files, const PELDictionary& options)
{
    PELRate rate = templateFile(files, options).properties.timecode.rate;
    const PELDictionary* overrides = options.dictionaryFor(PELSequenceSettingsOverrides);
    if (overrides != nullptr && !options.boolFor(PELUseFirstClipSettings) &&
        overrides->contains(PELEditingTimebaseOverride))
        rate.timebase = overrides->integerFor(PELEditingTimebaseOverride);
    return rate;
}

std::string recordingTable(const Recording& recording)
{
    Table table{{"FILE", "SIZE", "RATE", "START", "LENGTH", "OFFSET"}};
    for (std::size_t i = 0; i < recording.inspected.size(); ++i) {
        const InspectedFile& file = recording.inspected[i];
        table.addRow({file.url.lastPathComponent(), file.properties.hasVideo ? sizeText(file.properties) : "no picture",
                      rateText(file.properties.timecode.rate), startText(file.properties),
                      file.properties.duration > 0 ? lengthText(file.properties) : "none",
                      std::to_string(recording.files[i]->offset())});
    }
    std::string text = table.text();
    const NSInteger span = PELGetSequenceDurationForFileElements(recording.files);
    if (span <= 0) return text + "common span: none\n";
    const PELTimecode first = PELGetFirstCommonTimecodeOfFileElements(recording.files);
    const auto start = static_cast<NSInteger>(first.frames);
    text += "common span: " + labelFromFrames(start, first.rate) + " to " +
            labelFromFrames(start + span - 1, first.rate) + ", " + std::to_string(span) + " frames (" +
            labelFromFrames(span, first.rate) + ")\n";
    return text;
}

std::vector<std::string> recordingWarnings(const Recording& recording)
{
    Warnings out;
    warnAboutSpan(recording, out);
    warnAboutRates(recording, out);
    warnAboutNames(recording, out);
    for (const InspectedFile& file : recording.inspected)
        warnAboutFile(file, out);
    const PELDictionary& options = recording.options;
    const bool multiclip = hasSequence(options) || options.boolFor(PELProjectAddMulticlip);
    const InspectedFile& main = mainFile(recording.inspected, options);
    if (multiclip && !main.properties.hasVideo)
        out.push_back(main.path + " has no picture, but is the main angle of the multiclip; choose another with "
                                  "--set multiclipMainFileIndex=N");
    const PELArray* cuts = options.arrayFor(PELCuts);
    if (hasSequence(options) && cuts != nullptr && !cuts->empty())
        warnAboutCuts(recording, *cuts, out);
    else if (hasSequence(options))
        warnAboutWholeSequence(recording, out);
    const PELArray* markers = options.arrayFor(PELMarkers);
    if (hasSequence(options) && markers != nullptr) warnAboutMarkers(recording, *markers, out);
    warnAboutLabels(options, out);
    warnAboutTexts(options, out);
    warnAboutOptions(options, out);
    return out;
}

} // namespace zanfcp::cli
