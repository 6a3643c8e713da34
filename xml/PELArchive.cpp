#include "xml/PELArchive.h"

#include "platform/ByteReader.h"
#include "platform/Log.h"
#include "xml/PELRootElement.h"
#include "xml/XMLText.h"

#include <algorithm>
#include <limits>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zanfcp {
namespace {

constexpr std::string_view kMagic = "PELA";
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kLongestLoggedName = 100; ///< bytes

enum class Kind : std::uint8_t { text = 1, children = 2 };

/// Which elements hang below which, by their numbers; the top is number 0.
class Graph {
public:
    void addElement() { begins_.push_back(children_.size()); }
    /// Below the element added last.
    void addChild(std::uint32_t child) { children_.push_back(child); }

    std::size_t size() const { return begins_.size(); }
    std::span<const std::uint32_t> childrenOf(std::size_t element) const
    {
        const std::size_t end = element + 1 < begins_.size() ? begins_[element + 1] : children_.size();
        return std::span{children_}.subspan(begins_[element], end - begins_[element]);
    }
    std::span<const std::uint32_t> allChildren() const { return children_; }

private:
    std::vector<std::size_t> begins_; ///< one per element, into children_
    std::vector<std::uint32_t> children_;
};

/// The elements in an order in which every parent comes before its children, the top first. Refuses what is no tree
/// within the limits.
Result<std::vector<std::uint32_t>> parentsFirst(const Graph& graph)
{
    std::vector<std::uint32_t> parents(graph.size()), order{0}; // parents not yet met
    std::vector<std::uint16_t> depth(graph.size());
    for (const std::uint32_t child : graph.allChildren())
        ++parents[child];
    for (std::size_t at = 0; at < order.size(); ++at) {
        const std::uint32_t element = order[at];
        for (const std::uint32_t child : graph.childrenOf(element)) {
            depth[child] = std::max<std::uint16_t>(depth[child], static_cast<std::uint16_t>(depth[element] + 1));
            if (depth[child] > kMaxElementDepth + 1) // the last for elements without children
                return Error{.fault = Fault::limit, .what = "elements nested too deep"};
            if (--parents[child] == 0) order.push_back(child);
        }
    }
    if (order.size() != graph.size() || parents[0] != 0)
        return Error{.fault = Fault::malformed, .what = "an element lies inside itself, or in no tree"};

    // A few elements that hold one another several times over can stand for a tree without end.
    std::vector<std::uint64_t> sizes(graph.size(), 1);
    for (auto element = order.rbegin(); element != order.rend(); ++element)
        for (const std::uint32_t child : graph.childrenOf(*element))
            sizes[*element] = std::min(sizes[*element] + sizes[child], kMaxArchivedElements + 1);
    if (sizes[0] > kMaxArchivedElements) return Error{.fault = Fault::limit, .what = "too many elements"};
    return order;
}

/// Collects elements, the values of each in turn. Children wait for theirs, so that no depth needs the stack.
class Archiver final : public PELCoder {
public:
    Result<std::string> archive(const PELElement& top)
    {
        numberOf(top);
        for (std::size_t at = 0; at < elements_.size(); ++at) {
            graph_.addElement();
            values_ = 0;
            putNumber(nameNumber(elements_[at]->className()));
            const std::size_t count = elementBytes_.size();
            putNumber(0);
            elements_[at]->encodeWithCoder(*this);
            setNumber(count, values_);
        }
        if (overflow_) return Error{.fault = Fault::limit, .what = "more than an archive can count"};
        if (const auto order = parentsFirst(graph_); !order) return order.error();
        return whole();
    }

    void encode(const PELElementValue& value, std::string_view key) override
    {
        if (std::holds_alternative<std::monostate>(value)) return;
        ++values_;
        putNumber(nameNumber(key));
        if (const auto* text = std::get_if<std::string>(&value)) {
            elementBytes_ += static_cast<char>(Kind::text);
            putText(*text);
            return;
        }
        const auto& children = std::get<PELElements>(value);
        elementBytes_ += static_cast<char>(Kind::children);
        putNumber(children.size());
        for (const auto& child : children) {
            kept_.push_back(child);
            const std::uint32_t number = numberOf(*child);
            graph_.addChild(number);
            putNumber(number);
        }
    }
    PELElementValue decode(std::string_view) override { return {}; }

private:
    std::uint32_t numberOf(const PELElement& element)
    {
        const auto [place, isNew] = numbers_.try_emplace(&element, static_cast<std::uint32_t>(elements_.size()));
        if (isNew) elements_.push_back(&element);
        return place->second;
    }
    std::uint32_t nameNumber(std::string_view name)
    {
        const auto [place, isNew] = nameNumbers_.try_emplace(std::string(name), nameNumbers_.size());
        if (isNew) names_.push_back(place->first);
        return static_cast<std::uint32_t>(place->second);
    }

    void putNumber(std::size_t number)
    {
        elementBytes_.append(4, '\0');
        setNumber(elementBytes_.size() - 4, number);
    }
    void setNumber(std::size_t at, std::size_t number)
    {
        if (number > std::numeric_limits<std::uint32_t>::max()) overflow_ = true;
        for (std::size_t byte = 0; byte < 4; ++byte)
            elementBytes_[at + byte] = static_cast<char>(number >> (24 - 8 * byte));
    }
    void putText(std::string_view text)
    {
        putNumber(text.size());
        elementBytes_ += text;
    }

    std::string whole()
    {
        const std::string elements = std::exchange(elementBytes_, std::string(kMagic));
        putNumber(kVersion);
        putNumber(names_.size());
        for (const std::string_view name : names_)
            putText(name);
        putNumber(elements_.size());
        return std::move(elementBytes_) + elements;
    }

    std::vector<const PELElement*> elements_; ///< by number
    std::unordered_map<const PELElement*, std::uint32_t> numbers_;
    PELElements kept_; ///< a class may encode children that it made for the purpose
    std::map<std::string, std::size_t> nameNumbers_;
    std::vector<std::string_view> names_; ///< by number; views of the keys of nameNumbers_
    Graph graph_;
    std::string elementBytes_;
    std::uint32_t values_ = 0; ///< of the element at hand
    bool overflow_ = false;
};

/// One value of an element in the bytes of an archive.
struct StoredValue {
    std::uint32_t key = 0; ///< number of its name
    Kind kind = Kind::text;
    std::string_view text = {};
    std::size_t firstChild = 0; ///< of a list, among all children of its element
    std::uint32_t childCount = 0;
};

struct StoredElement {
    std::uint32_t className = 0; ///< number of its name
    std::uint32_t valueCount = 0;
    std::size_t firstValue = 0;
};

/// Reads all bytes first, and makes elements only when everything fits together.
class Unarchiver final : public PELCoder {
public:
    Unarchiver(std::string_view bytes, std::span<const PELArchiveClass> classes)
        : reader_{std::as_bytes(std::span{bytes})}, classes_{classes}
    {}

    Result<std::shared_ptr<PELElement>> unarchive()
    {
        if (Status s = readNames(); !s) return s.error();
        if (Status s = readElements(); !s) return s.error();
        const auto order = parentsFirst(graph_);
        if (!order) return order.error();

        made_.resize(elements_.size());
        for (auto number = order->rbegin(); number != order->rend(); ++number) { // children first
            current_ = *number;
            made_[current_] = makerOf(elements_[current_].className)(*this);
        }
        return made_[0];
    }

    void encode(const PELElementValue&, std::string_view) override {}

    PELElementValue decode(std::string_view key) override
    {
        const StoredElement& element = elements_[current_];
        for (const StoredValue& value : std::span{values_}.subspan(element.firstValue, element.valueCount)) {
            if (names_[value.key] != key) continue;
            if (value.kind == Kind::text) return std::string(value.text);
            PELElements children;
            children.reserve(value.childCount);
            for (const std::uint32_t child : graph_.childrenOf(current_).subspan(value.firstChild, value.childCount))
                children.push_back(made_[child]);
            return children;
        }
        return {};
    }

private:
    using Maker = decltype(PELArchiveClass::make);

    Status readNames()
    {
        const auto magic = reader_.take(kMagic.size());
        if (!std::ranges::equal(magic, std::as_bytes(std::span{kMagic})))
            return fault(Fault::malformed, "this is no archive of elements");
        if (const auto version = reader_.read<std::uint32_t>(); reader_.ok() && version != kVersion)
            return fault(Fault::unsupported, "version " + std::to_string(version));
        const std::uint32_t count = reader_.readCount(sizeof(std::uint32_t));
        names_.reserve(count);
        for (std::uint32_t i = 0; i < count && reader_.ok(); ++i)
            names_.push_back(readText());
        return {};
    }

    Status readElements()
    {
        constexpr std::size_t kShortest = 8; // class and number of values
        const std::uint32_t count = reader_.readCount(kShortest);
        if (reader_.ok() && count == 0) return fault(Fault::malformed, "there is no element");
        elements_.reserve(count);
        for (std::uint32_t i = 0; i < count && reader_.ok(); ++i)
            if (Status s = readElement(count); !s) return s;
        if (!reader_.ok()) return fault(Fault::truncated, "the archive ends too early");
        if (reader_.remaining() > 0) return fault(Fault::malformed, "bytes are left over");
        return {};
    }

    Status readElement(std::uint32_t elementCount)
    {
        constexpr std::size_t kShortestValue = 9; // key, kind and count or length
        StoredElement element{.firstValue = values_.size()};
        element.className = reader_.read<std::uint32_t>();
        element.valueCount = reader_.readCount(kShortestValue);
        if (reader_.ok() && element.className >= names_.size()) return fault(Fault::malformed, "no such class name");
        graph_.addElement();
        elements_.push_back(element);
        for (std::uint32_t i = 0; i < element.valueCount && reader_.ok(); ++i)
            if (Status s = readValue(elementCount); !s) return s;
        return {};
    }

    Status readValue(std::uint32_t elementCount)
    {
        StoredValue value;
        value.key = reader_.read<std::uint32_t>();
        value.kind = static_cast<Kind>(reader_.read<std::uint8_t>());
        if (!reader_.ok()) return {};
        if (value.key >= names_.size()) return fault(Fault::malformed, "no such key");
        if (value.kind == Kind::text) {
            value.text = readText();
        } else if (value.kind == Kind::children) {
            value.firstChild = graph_.childrenOf(graph_.size() - 1).size();
            value.childCount = reader_.readCount(sizeof(std::uint32_t));
            for (std::uint32_t i = 0; i < value.childCount; ++i) {
                const auto child = reader_.read<std::uint32_t>();
                if (child >= elementCount) return fault(Fault::malformed, "no such element");
                graph_.addChild(child);
            }
        } else {
            return fault(Fault::malformed, "no such kind of value");
        }
        values_.push_back(value);
        return {};
    }

    std::string_view readText()
    {
        const auto bytes = reader_.take(reader_.readCount(1));
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }

    Error fault(Fault kind, std::string what) const
    {
        return {.fault = kind, .what = std::move(what), .offset = reader_.offset()};
    }

    /// What makes elements of the class with this number, found once.
    Maker makerOf(std::uint32_t className)
    {
        const auto [place, isNew] = makers_.try_emplace(className, nullptr);
        if (isNew) place->second = findMaker(names_[className]);
        return place->second;
    }
    Maker findMaker(std::string_view className) const
    {
        for (const PELArchiveClass& known : classes_)
            if (known.name == className) return known.make;
        const auto plain = PELArchiveClass::of<PELElement>("PELElement");
        const auto root = PELArchiveClass::of<PELRootElement>("PELRootElement");
        if (className == root.name) return root.make;
        if (className != plain.name)
            ZAN_LOG_DEFAULT("PELElement: Archive holds an unknown class, read as PELElement: %s",
                            printableXmlText(className.substr(0, kLongestLoggedName)).c_str());
        return plain.make;
    }

    ByteReader reader_;
    std::span<const PELArchiveClass> classes_;
    std::vector<std::string_view> names_; ///< by number
    std::vector<StoredElement> elements_; ///< by number
    std::vector<StoredValue> values_;
    Graph graph_;
    std::unordered_map<std::uint32_t, Maker> makers_; ///< by the number of a class's name
    PELElements made_;                                ///< by number; null until its turn
    std::uint32_t current_ = 0;                       ///< the element that is being made
};

} // namespace

Result<std::string> archiveElement(const PELElement& top)
{
    return Archiver{}.archive(top);
}

Result<std::shared_ptr<PELElement>> unarchiveElement(std::string_view bytes, std::span<const PELArchiveClass> classes)
{
    return Unarchiver{bytes, classes}.unarchive();
}

} // namespace zanfcp
