#pragma once

#include "EventCodes.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace zanfcp {

/// Why the project host does not do what an event asks for.
struct Refusal {
    OSStatus code = EventStatus::ioErr;
    std::string reason = {}; ///< for the log: a sentence without a full stop
};

/// Nothing when all went well.
using Refused = std::optional<Refusal>;

/// A value, or a refusal.
template <typename T> class [[nodiscard]] Granted {
public:
    Granted(T value) : content_{std::move(value)} {}           // NOLINT: implicit by design
    Granted(Refusal refusal) : content_{std::move(refusal)} {} // NOLINT: implicit by design

    explicit operator bool() const { return content_.index() == 0; }
    /// \pre holds a value.
    T& operator*() { return *std::get_if<T>(&content_); }
    T* operator->() { return std::get_if<T>(&content_); }
    /// \pre holds a refusal.
    const Refusal& refusal() const { return *std::get_if<Refusal>(&content_); }

private:
    std::variant<T, Refusal> content_;
};

} // namespace zanfcp
