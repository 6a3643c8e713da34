#include "cli/Json.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

namespace zanfcp::cli {
namespace {

/// Receives the parser's events and builds the value. Returning false stops the parser.
class Builder : public nlohmann::json_sax<nlohmann::json> {
public:
    Result<PELValue> take()
    {
        if (error_) return std::move(*error_);
        return std::move(root_);
    }

    bool null() override { return fail(Fault::malformed, "null is no value here; leave the key out instead"); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(static_cast<std::int64_t>(value)); }
    bool number_unsigned(number_unsigned_t value) override
    {
        if (std::in_range<std::int64_t>(value)) return add(static_cast<std::int64_t>(value));
        return add(static_cast<double>(value));
    }
    bool number_float(number_float_t value, const string_t&) override { return add(value); }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t&) override { return fail(Fault::malformed, "binary data is no value here"); }

    bool start_object(std::size_t) override { return open(PELDictionary{}); }
    bool start_array(std::size_t) override { return open(PELArray{}); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t& name) override
    {
        Level& level = levels_.back();
        level.key = std::move(name);
        const auto& object = std::get<PELDictionary>(level.content);
        if (object.contains(level.key)) return fail(Fault::malformed, "is given twice");
        if (object.size() >= kMaxKeysPerObject) return fail(Fault::limit, "its object has too many keys");
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception& fault) override
    {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: …"
        std::string text = fault.what();
        for (const std::string_view prefix : {"] ", "parse error at "})
            if (const std::size_t at = text.find(prefix); at != std::string::npos) text.erase(0, at + prefix.size());
        error_ = Error{.fault = Fault::malformed, .what = text};
        return false;
    }

private:
    struct Level {
        std::variant<PELDictionary, PELArray> content;
        std::string key; ///< of the entry being read, in an object
    };

    std::string place() const
    {
        std::string path;
        for (const Level& level : levels_) {
            if (const auto* list = std::get_if<PELArray>(&level.content))
                path += "[" + std::to_string(list->size()) + "]";
            else if (!level.key.empty())
                path += (path.empty() ? "" : ".") + level.key;
        }
        return path;
    }

    bool fail(Fault fault, std::string what)
    {
        error_ = Error{.fault = fault, .what = std::move(what), .path = place()};
        return false;
    }

    bool add(PELValue value)
    {
        if (levels_.empty())
            root_ = std::move(value);
        else if (auto* list = std::get_if<PELArray>(&levels_.back().content))
            list->push_back(std::move(value));
        else
            std::get<PELDictionary>(levels_.back().content).set(levels_.back().key, std::move(value));
        return true;
    }

    template <typename Content> bool open(Content content)
    {
        if (levels_.size() >= kMaxJsonDepth)
            return fail(Fault::limit, "nested deeper than " + std::to_string(kMaxJsonDepth) + " levels");
        levels_.push_back({.content = std::move(content), .key = {}});
        return true;
    }

    bool close()
    {
        Level level = std::move(levels_.back());
        levels_.pop_back();
        return std::visit([this](auto& content) { return add(std::move(content)); }, level.content);
    }

    std::vector<Level> levels_;
    PELValue root_;
    std::optional<Error> error_;
};

} // namespace

Result<PELValue> parseJson(std::string_view text)
{
    if (text.size() > kMaxJsonBytes)
        return Error{.fault = Fault::limit,
                     .what = "larger than " + std::to_string(kMaxJsonBytes >> 20) + " MiB, the most that is read"};
    Builder builder;
    // The builder keeps the first fault it met; the parser only repeats that there was one.
    (void)nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
    return builder.take();
}

} // namespace zanfcp::cli
