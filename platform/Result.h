#pragma once

#include <cassert>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace zanfcp {

/// The kinds of failure that reading or writing can end with.
enum class Fault : std::uint8_t {
    io,          ///< the operating system refused: open, read, write, rename
    notFound,    ///< the file, track or entry asked for does not exist
    truncated,   ///< the data ends before what it announces
    malformed,   ///< the data contradicts its format or itself
    unsupported, ///< correct, but not handled
    limit,       ///< larger or deeper than the documented limits
};

/// The word for a fault in messages: "io", "notFound" and so on.
std::string_view toString(Fault fault);

/// What went wrong, where and with which value.
struct Error {
    Fault fault = Fault::io;
    std::string what = {};    ///< one sentence without a full stop, with the value met
    std::uint64_t offset = 0; ///< byte position in the file where reading stopped; 0 where none applies
    std::string path = {};    ///< place inside the format, such as "moov/trak/mdia/mdhd"; may be empty

    /// The same error seen from one level further out: `parent` is put before `path`.
    Error under(std::string_view parent) &&
    {
        path = path.empty() ? std::string(parent) : std::string(parent) + "/" + path;
        return std::move(*this);
    }
    /// One line for a person: "moov/trak/mdhd, byte 812: timescale is zero".
    std::string text() const;
};

/// Success, or an Error. Named after std::expected, so that it can be replaced by it.
class [[nodiscard]] Status {
public:
    Status() = default;
    Status(Error error)
        : error_{std::move(error)}, failed_{true} {} // NOLINT: implicit, so that `return Error{...}` reads well

    explicit operator bool() const { return !failed_; }
    bool has_value() const { return !failed_; }
    /// \pre the status is a failure.
    const Error& error() const
    {
        assert(failed_);
        return error_;
    }
    /// A failed status with `parent` put before the error's path; success stays success.
    Status under(std::string_view parent) &&
    {
        if (failed_) error_ = std::move(error_).under(parent);
        return std::move(*this);
    }

private:
    Error error_;
    bool failed_ = false;
};

/// A value, or an Error.
template <typename T> class [[nodiscard]] Result {
public:
    Result(T value) : content_{std::in_place_index<0>, std::move(value)} {}     // NOLINT: implicit by design
    Result(Error error) : content_{std::in_place_index<1>, std::move(error)} {} // NOLINT: implicit by design

    explicit operator bool() const { return has_value(); }
    bool has_value() const { return content_.index() == 0; }

    /// \pre holds a value.
    T& operator*() & { return *std::get_if<0>(&content_); }
    const T& operator*() const& { return *std::get_if<0>(&content_); }
    T&& operator*() && { return std::move(*std::get_if<0>(&content_)); }
    T* operator->() { return std::get_if<0>(&content_); }
    const T* operator->() const { return std::get_if<0>(&content_); }

    /// \pre holds an error.
    const Error& error() const& { return *std::get_if<1>(&content_); }
    Error&& error() && { return std::move(*std::get_if<1>(&content_)); }

private:
    std::variant<T, Error> content_;
};

} // namespace zanfcp
