#include "cli/OptionReader.h"

#include "cli/Json.h"
#include "cli/OptionTable.h"
#include "cli/Suggestion.h"
#include "cli/Text.h"
#include "cli/Timecodes.h"
#include "platform/Format.h"
#include "project/Options.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace zanfcp::cli {
namespace {

Error wrong(std::string path, std::string what)
{
    return Error{.fault = Fault::malformed, .what = std::move(what), .path = std::move(path)};
}

std::string quoted(std::string_view text)
{
    constexpr std::size_t kShown = 60;
    return "\"" + printable(text.substr(0, kShown)) + (text.size() > kShown ? "…\"" : "\"");
}

std::string shown(const PELValue& value)
{
    if (const bool* flag = value.as<bool>()) return *flag ? "true" : "false";
    if (const auto* text = value.as<std::string>()) return "the text " + quoted(*text);
    if (value.isNumber()) return "the number " + value.stringValue();
    return value.as<PELArray>() != nullptr ? "a list" : "an object";
}

Error wrongValue(const OptionSpec& spec, const PELValue& value, std::string path)
{
    return wrong(std::move(path), "must be " + valueText(spec) + ", not " + shown(value));
}

std::string joinedKey(const std::string& parent, std::string_view key)
{
    return parent.empty() ? std::string(key) : parent + "." + std::string(key);
}

Error unknownKey(OptionTable table, std::string_view key, const std::string& parent)
{
    std::vector<std::string> names;
    for (const OptionSpec& spec : table)
        names.emplace_back(spec.key);
    std::string what = "there is no such key";
    if (parent == PELImportOptions) what = "the format has no such import option";
    if (const auto near = nearestName(key, names))
        what += "; did you mean " + *near + "?";
    else if (parent.empty()) // the table of a project is too long for one line
        what += "; `zanfcp build --help` lists them";
    else
        for (std::size_t i = 0; i < names.size(); ++i)
            what += (i == 0 ? ": " : ", ") + names[i];
    return wrong(joinedKey(parent, printable(key)), what);
}

std::optional<int> hexDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return std::nullopt;
}

std::optional<PELColor> colorFromHex(std::string_view text)
{
    if ((text.size() != 7 && text.size() != 9) || text.front() != '#') return std::nullopt;
    PELColor color;
    double* const parts[] = {&color.red, &color.green, &color.blue, &color.alpha};
    for (std::size_t i = 0; i * 2 + 1 < text.size(); ++i) {
        const auto high = hexDigit(text[i * 2 + 1]);
        const auto low = hexDigit(text[i * 2 + 2]);
        if (!high || !low) return std::nullopt;
        *parts[i] = (*high * 16 + *low) / 255.0;
    }
    return color;
}

std::optional<double> fraction(const PELValue& value)
{
    if (const auto* whole = value.as<std::int64_t>(); whole != nullptr && (*whole == 0 || *whole == 1))
        return static_cast<double>(*whole);
    if (const auto* number = value.as<double>(); number != nullptr && *number >= 0 && *number <= 1) return *number;
    return std::nullopt;
}

std::optional<PELColor> colorFrom(const PELValue& value)
{
    if (const auto* text = value.as<std::string>()) return colorFromHex(*text);
    const auto* list = value.as<PELArray>();
    if (list == nullptr || list->size() != 4) return std::nullopt;
    PELColor color;
    double* const parts[] = {&color.red, &color.green, &color.blue, &color.alpha};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto part = fraction((*list)[i]);
        if (!part) return std::nullopt;
        *parts[i] = *part;
    }
    return color;
}

bool isAllowedInteger(const OptionSpec& spec, NSInteger value)
{
    if (value < spec.minimum || value > spec.maximum) return false;
    return spec.choices.empty() || std::ranges::find(spec.choices, std::to_string(value)) != spec.choices.end();
}

Result<PELDictionary> readObject(const PELValue& value, OptionTable table, const std::string& path);

Result<PELArray> readList(const PELValue& value, OptionTable table, const std::string& path)
{
    const auto* list = value.as<PELArray>();
    if (list == nullptr) return wrong(path, "must be a list of objects, not " + shown(value));
    PELArray out;
    for (std::size_t i = 0; i < list->size(); ++i) {
        const std::string place = path + "[" + std::to_string(i) + "]";
        auto object = readObject((*list)[i], table, place);
        if (!object) return std::move(object).error();
        for (const OptionSpec& spec : table)
            if (spec.required && !object->contains(spec.key))
                return wrong(joinedKey(place, spec.key), "is missing; it must be " + valueText(spec));
        // Only a cut shows a file; a dissolve has no angle of its own.
        const bool isCut = object->stringFor(PELCutType) == PELCutTypeCut;
        if (isCut && !object->contains(PELCutActiveAngleIndex))
            return wrong(joinedKey(place, PELCutActiveAngleIndex), "is missing; a cut shows one of the files");
        out.emplace_back(*std::move(object));
    }
    return out;
}

/// One value, as its row says.
Result<PELValue> readValue(const PELValue& value, const OptionSpec& spec, const std::string& path)
{
    const auto* text = value.as<std::string>();
    const auto* whole = value.as<std::int64_t>();
    switch (spec.type) {
    case OptionType::boolean:
        if (value.as<bool>() != nullptr) return value;
        break;
    case OptionType::importFlag:
        if (value.as<bool>() != nullptr || (text != nullptr && (*text == "TRUE" || *text == "FALSE"))) return value;
        break;
    case OptionType::integer:
        if (whole != nullptr && isAllowedInteger(spec, *whole)) return value;
        break;
    case OptionType::fileIndex:
        if (whole != nullptr && *whole >= 0) return value;
        break;
    case OptionType::text:
        if (text != nullptr && (spec.mayBeEmpty || !text->empty())) return value;
        break;
    case OptionType::timecode:
        if (text != nullptr && looksLikeTimecode(*text)) return value;
        if (whole != nullptr && looksLikeTimecode(std::to_string(*whole))) return PELValue{std::to_string(*whole)};
        break;
    case OptionType::choice:
        if (text != nullptr && std::ranges::find(spec.choices, *text) != spec.choices.end()) return value;
        break;
    case OptionType::color:
        if (const auto color = colorFrom(value)) return PELValue{*color};
        break;
    case OptionType::dictionary: {
        auto object = readObject(value, spec.table(), path);
        if (!object) return std::move(object).error();
        return PELValue{*std::move(object)};
    }
    case OptionType::list: {
        auto list = readList(value, spec.table(), path);
        if (!list) return std::move(list).error();
        return PELValue{*std::move(list)};
    }
    }
    return wrongValue(spec, value, path);
}

Result<PELDictionary> readObject(const PELValue& value, OptionTable table, const std::string& path)
{
    const auto* object = value.as<PELDictionary>();
    if (object == nullptr) return wrong(path, "must be an object, not " + shown(value));
    PELDictionary out;
    for (const auto& [key, entry] : *object) {
        const OptionSpec* spec = findOption(table, key);
        if (spec == nullptr) return unknownKey(table, key, path);
        auto read = readValue(entry, *spec, joinedKey(path, key));
        if (!read) return std::move(read).error();
        out.set(key, *std::move(read));
    }
    return out;
}

/// What `--set` was given, as the value that JSON would have had.
PELValue valueFromText(std::string_view text, const OptionSpec& spec)
{
    switch (spec.type) {
    case OptionType::boolean:
    case OptionType::importFlag:
        for (const std::string_view yes : {"true", "TRUE", "yes", "1"})
            if (text == yes) return true;
        for (const std::string_view no : {"false", "FALSE", "no", "0"})
            if (text == no) return false;
        break;
    case OptionType::integer:
    case OptionType::fileIndex: {
        std::int64_t value = 0;
        const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (fault == std::errc{} && end == text.data() + text.size()) return value;
        break;
    }
    default: break;
    }
    return std::string(text);
}

Result<PELArray> listFromJson(std::string_view text, OptionTable table, std::string_view name)
{
    const auto value = parseJson(text);
    if (!value) return value.error();
    return readList(*value, table, std::string(name));
}

/// Calls `visit` for every value of the table's rows that is there.
using Visit = std::function<Status(const OptionSpec&, const PELValue&, const std::string& path)>;
Status forEachValue(const PELDictionary& object, OptionTable table, const std::string& path, const Visit& visit)
{
    for (const OptionSpec& spec : table) {
        const PELValue* value = object.find(spec.key);
        if (value == nullptr) continue;
        const std::string place = joinedKey(path, spec.key);
        if (Status status = visit(spec, *value, place); !status) return status;
        const auto* list = value->as<PELArray>();
        for (std::size_t i = 0; list != nullptr && i < list->size(); ++i)
            if (const auto* inner = (*list)[i].as<PELDictionary>())
                if (Status status = forEachValue(*inner, spec.table(), place + "[" + std::to_string(i) + "]", visit);
                    !status)
                    return status;
        if (const auto* inner = value->as<PELDictionary>())
            if (Status status = forEachValue(*inner, spec.table(), place, visit); !status) return status;
    }
    return {};
}

} // namespace

std::string lineOf(const Error& error)
{
    return error.path.empty() ? error.what : error.path + ": " + error.what;
}

Result<PELDictionary> optionsFromJson(std::string_view text)
{
    const auto value = parseJson(text);
    if (!value) return value.error();
    return readObject(*value, projectOptions(), "");
}

Result<PELArray> cutsFromJson(std::string_view text)
{
    return listFromJson(text, cutKeys(), PELCuts);
}

Result<PELArray> markersFromJson(std::string_view text)
{
    return listFromJson(text, markerKeys(), PELMarkers);
}

Status setOption(PELDictionary& options, std::string_view assignment)
{
    const std::size_t equals = assignment.find('=');
    if (equals == std::string_view::npos) return wrong(printable(assignment), "must be KEY=VALUE");
    const std::string path{assignment.substr(0, equals)};
    const std::string_view text = assignment.substr(equals + 1);

    const std::size_t dot = path.find('.');
    const std::string outer = path.substr(0, dot);
    const OptionSpec* spec = findOption(projectOptions(), outer);
    if (spec == nullptr) return unknownKey(projectOptions(), outer, "");
    if (spec->type == OptionType::list) return wrong(outer, "is a list; give it in a file with --" + outer);
    if (spec->type != OptionType::dictionary) {
        if (dot != std::string::npos) return wrong(printable(path), outer + " has no keys inside");
        auto value = readValue(valueFromText(text, *spec), *spec, outer);
        if (!value) return std::move(value).error();
        options.set(outer, *std::move(value));
        return {};
    }
    if (dot == std::string::npos)
        return wrong(outer, "is an object; set its keys one by one, as " + outer + ".KEY=VALUE");
    const std::string key = path.substr(dot + 1);
    const OptionSpec* inner = findOption(spec->table(), key);
    if (inner == nullptr) return unknownKey(spec->table(), key, outer);
    auto value = readValue(valueFromText(text, *inner), *inner, path);
    if (!value) return std::move(value).error();
    const PELDictionary* before = options.dictionaryFor(outer);
    PELDictionary object = before == nullptr ? PELDictionary{} : *before;
    object.set(key, *std::move(value));
    options.set(outer, std::move(object));
    return {};
}

Status checkFileIndices(const PELDictionary& options, std::size_t fileCount)
{
    return forEachValue(options, projectOptions(), "",
                        [fileCount](const OptionSpec& spec, const PELValue& value, const std::string& path) -> Status {
                            if (spec.type != OptionType::fileIndex) return {};
                            const NSInteger index = value.integerValue();
                            if (std::cmp_less(index, fileCount)) return {};
                            return wrong(path, format("there is no file %lld: the files are numbered 0 to %zu",
                                                      static_cast<long long>(index), fileCount - 1));
                        });
}

Status checkTimecodes(const PELDictionary& options, PELRate rate)
{
    const Status labels =
        forEachValue(options, projectOptions(), "",
                     [rate](const OptionSpec& spec, const PELValue& value, const std::string& path) -> Status {
                         if (spec.type != OptionType::timecode) return {};
                         const auto frames = framesFromText(value.stringValue(), rate);
                         return frames ? Status{} : Status{frames.error()}.under(path);
                     });
    if (!labels) return labels;
    const PELArray* cuts = options.arrayFor(PELCuts);
    for (std::size_t i = 0; cuts != nullptr && i < cuts->size(); ++i) {
        const auto* cut = (*cuts)[i].as<PELDictionary>();
        const auto start = framesFromText(cut->stringFor(PELCutStartTimecode).value_or(""), rate);
        const auto end = framesFromText(cut->stringFor(PELCutEndTimecode).value_or(""), rate);
        if (start && end && *end <= *start)
            return wrong("cuts[" + std::to_string(i) + "]." + PELCutEndTimecode,
                         "must be later than the start, " + *cut->stringFor(PELCutStartTimecode));
    }
    return {};
}

} // namespace zanfcp::cli
