#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// The document as a flat list, the same for everyone.
struct Event {
    enum Kind { open, leaf, close } kind;
    std::string_view key;
    std::string_view text; ///< of a leaf; the identifier of what is opened
};

/// A million elements shaped like those of a real project: half of them in master clips, half in the cuts of a
/// sequence.
class Corpus {
public:
    Corpus();

    const std::vector<Event>& events() const { return events_; }
    double elements() const { return static_cast<double>(elements_); }

private:
    void open(const char* key, std::string identifier = {});
    void leaf(const char* key, std::string text);
    void close();
    std::string_view keep(std::string text);
    void rate();
    void masterClip(int number);
    void clipItem(int cut);

    std::vector<Event> events_;
    std::vector<const char*> stack_;
    std::deque<std::string> texts_;
    std::size_t elements_ = 0;
};

} // namespace bench
