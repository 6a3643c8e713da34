// From elements to the text of a document: a million elements shaped like those of a real project, beside a writer that
// has no tree at all (escape and append), pugixml and libxml2. Every round runs all of them in turn, each in a process
// of its own, so that none meets the heap that another left behind; medians are shown, the first round left out.

#include "xml/PELRootElement.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>
#include <malloc.h>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

// The C library's own allocator, which the functions below stand in front of while bytes are counted.
extern "C" {
void* __libc_malloc(std::size_t size);                    // NOLINT: glibc's names
void* __libc_calloc(std::size_t count, std::size_t size); // NOLINT
void* __libc_realloc(void* block, std::size_t size);      // NOLINT
void __libc_free(void* block);                            // NOLINT
}

namespace {

bool counting = false;
std::size_t inUse = 0, highest = 0;
constexpr std::size_t kBlockHead = 8; ///< what the allocator adds to each block

void* taken(void* block)
{
    if (counting && block != nullptr) {
        inUse += malloc_usable_size(block) + kBlockHead;
        highest = std::max(highest, inUse);
    }
    return block;
}

void given(void* block)
{
    if (counting && block != nullptr) inUse -= malloc_usable_size(block) + kBlockHead;
}

} // namespace

extern "C" void* malloc(std::size_t size) noexcept
{
    return taken(__libc_malloc(size));
}
extern "C" void* calloc(std::size_t count, std::size_t size) noexcept
{
    return taken(__libc_calloc(count, size));
}
extern "C" void* realloc(void* block, std::size_t size) noexcept
{
    given(block);
    return taken(__libc_realloc(block, size));
}
extern "C" void free(void* block) noexcept
{
    given(block);
    __libc_free(block);
}

namespace {

using zanfcp::PELElement;
using zanfcp::PELRootElement;
using zanfcp::XMLFormat;

constexpr std::size_t kElements = 1'000'000;
constexpr int kRounds = 7;

/// The document as a flat list, the same for everyone.
struct Event {
    enum Kind { open, leaf, close } kind;
    std::string_view key;
    std::string_view text; ///< of a leaf; the identifier of what is opened
};

class Corpus {
public:
    Corpus()
    {
        open("project");
        leaf("name", "Konzert & Gespräch");
        open("children");
        for (int number = 0; elements_ < kElements / 2; ++number)
            masterClip(number);
        open("sequence", "multicam sequence");
        leaf("name", "multicam");
        leaf("duration", "1799820");
        rate();
        open("media");
        open("video");
        open("track");
        for (int cut = 0; elements_ < kElements; ++cut)
            clipItem(cut);
        for (int level = 0; level < 6; ++level)
            close();
    }

    const std::vector<Event>& events() const { return events_; }
    double elements() const { return static_cast<double>(elements_); }

private:
    void open(const char* key, std::string identifier = {})
    {
        events_.push_back({Event::open, key, keep(std::move(identifier))});
        stack_.emplace_back(key);
        ++elements_;
    }
    void leaf(const char* key, std::string text)
    {
        events_.push_back({Event::leaf, key, keep(std::move(text))});
        ++elements_;
    }
    void close()
    {
        events_.push_back({Event::close, stack_.back(), {}});
        stack_.pop_back();
    }
    std::string_view keep(std::string text)
    {
        return text.empty() ? std::string_view{} : std::string_view{texts_.emplace_back(std::move(text))};
    }

    static std::string named(const char* name, int number) { return std::string(name).append(std::to_string(number)); }

    void rate()
    {
        open("rate");
        leaf("ntsc", "TRUE");
        leaf("timebase", "30");
        close();
    }

    void masterClip(int number)
    {
        const std::string id = named("A", 1000 + number) + "C001_121031.mov";
        open("clip", id);
        leaf("name", id);
        leaf("duration", std::to_string(18000 + number));
        rate();
        leaf("in", "-1");
        leaf("out", "-1");
        leaf("masterclipid", id);
        leaf("ismasterclip", "TRUE");
        open("logginginfo");
        leaf("description", number % 3 == 0 ? "Bühne rechts, <nah> & halbnah" : "wide");
        leaf("scene", "12");
        leaf("shottake", "3");
        leaf("good", "TRUE");
        close();
        open("labels");
        leaf("label2", "Best Take");
        close();
        open("media");
        open("video");
        open("track");
        open("clipitem", id + " video");
        leaf("name", id);
        leaf("duration", std::to_string(18000 + number));
        rate();
        open("file", id + " file");
        leaf("name", id);
        leaf("pathurl", "file:///Volumes/RAID/Konzert%20&amp;%20Gespr%C3%A4ch/Tag%201/" + id);
        rate();
        leaf("duration", std::to_string(18000 + number));
        open("timecode");
        rate();
        leaf("frame", std::to_string(1079892 + 7 * number));
        leaf("displayformat", "DF");
        leaf("source", "source");
        open("reel");
        leaf("name", named("A", number));
        close();
        close();
        open("media");
        open("video");
        leaf("duration", std::to_string(18000 + number));
        open("samplecharacteristics");
        leaf("width", "1920");
        leaf("height", "1080");
        leaf("anamorphic", "FALSE");
        leaf("pixelaspectratio", "square");
        leaf("fielddominance", "none");
        rate();
        close();
        close();
        open("audio");
        open("samplecharacteristics");
        leaf("samplerate", "48000");
        leaf("depth", "16");
        close();
        leaf("channelcount", "2");
        close();
        close();
        close();
        close();
        close();
        close();
        close();
        close();
    }

    void clipItem(int cut)
    {
        const int at = cut * 97;
        const std::string id = named("multicam item ", cut);
        open("clipitem", id);
        leaf("name", "multicam");
        leaf("duration", "1799820");
        rate();
        leaf("in", std::to_string(at));
        leaf("out", std::to_string(at + 97));
        leaf("start", std::to_string(at));
        leaf("end", std::to_string(at + 97));
        leaf("masterclipid", "multicam");
        leaf("enabled", "TRUE");
        open("multiclip", "multicam");
        close();
        open("link");
        leaf("linkclipref", id);
        close();
        open("sourcetrack");
        leaf("mediatype", "video");
        close();
        close();
    }

    std::vector<Event> events_;
    std::vector<const char*> stack_;
    std::deque<std::string> texts_;
    std::size_t elements_ = 0;
};

/// A writer without a tree: what has to be done at the least to make the text.
class PlainWriter {
public:
    explicit PlainWriter(std::string& out) : out_{out} {}

    void write(const std::vector<Event>& events)
    {
        out_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE xmeml>\n<xmeml version=\"5\">\n";
        std::size_t level = 1;
        for (auto event = events.begin(); event != events.end(); ++event) {
            if (event->kind == Event::close) {
                out_.append(2 * --level, ' ').append("</").append(event->key).append(">\n");
                continue;
            }
            out_.append(2 * level, ' ').append("<").append(event->key);
            if (event->kind == Event::leaf) {
                out_ += '>';
                escape(event->text);
                out_.append("</").append(event->key).append(">\n");
                continue;
            }
            if (!event->text.empty()) {
                out_.append(" id=\"");
                escape(event->text);
                out_ += '"';
            }
            if (event[1].kind == Event::close) {
                out_.append("/>\n");
                ++event;
            } else {
                out_.append(">\n");
                ++level;
            }
        }
        out_ += "</xmeml>\n";
    }

private:
    void escape(std::string_view text)
    {
        std::size_t from = 0;
        for (std::size_t at = 0; at < text.size(); ++at) {
            const char* entity = nullptr;
            switch (text[at]) {
            case '&': entity = "&amp;"; break;
            case '<': entity = "&lt;"; break;
            case '>': entity = "&gt;"; break;
            case '\r': entity = "&#13;"; break;
            default: continue;
            }
            out_.append(text, from, at - from).append(entity);
            from = at + 1;
        }
        out_.append(text, from);
    }

    std::string& out_;
};

std::shared_ptr<PELRootElement> buildElements(const std::vector<Event>& events)
{
    auto root = std::make_shared<PELRootElement>();
    std::vector<PELElement*> open{root.get()};
    for (const Event& event : events) {
        if (event.kind == Event::leaf)
            open.back()->addChild(PELElement::elementWithKeyStringValue(event.key, event.text));
        else if (event.kind == Event::open)
            open.push_back(open.back()->addChild(PELElement::elementWithKeyIdentifier(event.key, event.text)).get());
        else
            open.pop_back();
    }
    return root;
}

std::unique_ptr<pugi::xml_document> buildPugi(const std::vector<Event>& events)
{
    // pugixml takes texts that end in a zero; those of the corpus do, being whole strings.
    auto document = std::make_unique<pugi::xml_document>();
    document->append_child(pugi::node_doctype).set_value("xmeml");
    pugi::xml_node at = document->append_child("xmeml");
    at.append_attribute("version").set_value("5");
    for (const Event& event : events) {
        if (event.kind == Event::close) {
            at = at.parent();
            continue;
        }
        pugi::xml_node made = at.append_child(event.key.data());
        if (event.kind == Event::leaf) {
            made.append_child(pugi::node_pcdata).set_value(event.text.data());
            continue;
        }
        if (!event.text.empty()) made.append_attribute("id").set_value(event.text.data());
        at = made;
    }
    return document;
}

const xmlChar* toXml(std::string_view text)
{
    return reinterpret_cast<const xmlChar*>(text.data());
}

struct FreeDocument {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

Document buildLibxml2(const std::vector<Event>& events)
{
    Document document{xmlNewDoc(toXml("1.0"))};
    document->encoding = xmlStrdup(toXml("UTF-8"));
    xmlCreateIntSubset(document.get(), toXml("xmeml"), nullptr, nullptr);
    xmlNode* at = xmlNewDocNode(document.get(), nullptr, toXml("xmeml"), nullptr);
    xmlDocSetRootElement(document.get(), at);
    xmlNewProp(at, toXml("version"), toXml("5"));
    for (const Event& event : events) {
        if (event.kind == Event::close) {
            at = at->parent;
            continue;
        }
        xmlNode* const made = xmlNewDocNode(document.get(), nullptr, toXml(event.key), nullptr);
        xmlAddChild(at, made);
        if (event.kind == Event::leaf) {
            xmlAddChild(made, xmlNewDocText(document.get(), toXml(event.text)));
            continue;
        }
        if (!event.text.empty()) xmlNewProp(made, toXml("id"), toXml(event.text));
        at = made;
    }
    return document;
}

/// All trees hand their text to the same string, which keeps its memory between the rounds.
int appendTo(void* out, const char* bytes, int count)
{
    static_cast<std::string*>(out)->append(bytes, static_cast<std::size_t>(count));
    return count;
}

struct PugiSink : pugi::xml_writer {
    explicit PugiSink(std::string& text) : out{text} {}
    void write(const void* bytes, std::size_t count) override { out.append(static_cast<const char*>(bytes), count); }
    std::string& out;
};

using Clock = std::chrono::steady_clock;

/// What one round of one contestant took: nanoseconds per element of each step, and bytes per element.
struct Figures {
    double build = 0;
    double copy = 0;
    double write = 0;
    double destroy = 0;
    double buildAndWrite = 0;
    double peakBytes = 0; ///< building, and writing to a sink that keeps nothing
};

class Stopwatch {
public:
    explicit Stopwatch(double elements) : elements_{elements} {}
    /// Nanoseconds per element since the last lap.
    double lap()
    {
        const auto now = Clock::now();
        return std::chrono::duration<double, std::nano>(now - std::exchange(start_, now)).count() / elements_;
    }

private:
    using Clock = std::chrono::steady_clock;
    double elements_;
    Clock::time_point start_ = Clock::now();
};

/// Runs the steps of a tree and takes their times.
template <typename Build, typename Copy, typename Write>
Figures measure(double elements, Build build, Copy copy, Write write)
{
    Figures figures;
    Stopwatch watch{elements};
    auto tree = build();
    figures.build = watch.lap();
    write(*tree);
    figures.write = watch.lap();
    figures.buildAndWrite = figures.build + figures.write;
    const auto copied = copy(*tree);
    figures.copy = watch.lap();
    tree.reset();
    figures.destroy = watch.lap();
    return figures;
}

template <typename Steps> double peakPerElement(double elements, Steps steps)
{
    inUse = highest = 0;
    counting = true;
    steps();
    counting = false;
    return static_cast<double>(highest) / elements;
}

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "bench_xml_text: %s\n", what);
    std::exit(1);
}

void check(bool right, const char* what)
{
    if (!right) fail(what);
}

/// One of the peers, with a process of its own for all its rounds.
class Contestant {
public:
    Contestant(const char* name, const std::function<Figures()>& round) : name_{name}
    {
        int orders[2], results[2];
        check(::pipe(orders) == 0 && ::pipe(results) == 0, "no pipe");
        child_ = ::fork();
        check(child_ >= 0, "no child process");
        if (child_ == 0) {
            ::close(orders[1]);
            for (char order = 0; ::read(orders[0], &order, 1) == 1 && order == kRun;) {
                const Figures figures = round();
                check(::write(results[1], &figures, sizeof figures) == sizeof figures, "nobody reads the result");
            }
            ::_exit(0);
        }
        ::close(orders[0]);
        ::close(results[1]);
        orders_ = orders[1];
        results_ = results[0];
    }
    Contestant(const Contestant&) = delete;
    Contestant& operator=(const Contestant&) = delete;
    ~Contestant()
    {
        check(::write(orders_, &kEnd, 1) == 1, "a child process ended early");
        ::waitpid(child_, nullptr, 0);
    }

    const char* name() const { return name_; }

    Figures run() const
    {
        Figures figures;
        check(::write(orders_, &kRun, 1) == 1 && ::read(results_, &figures, sizeof figures) == sizeof figures,
              "a round ended without a result");
        return figures;
    }
    void keep(const Figures& figures) { rounds_.push_back(figures); }

    double median(double Figures::*figure) const
    {
        std::vector<double> values;
        for (const Figures& one : rounds_)
            values.push_back(one.*figure);
        std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
        return values[values.size() / 2];
    }

private:
    static constexpr char kRun = 'r', kEnd = 'e';

    const char* name_;
    pid_t child_ = 0;
    int orders_ = -1;
    int results_ = -1;
    std::vector<Figures> rounds_;
};

} // namespace

int main()
{
    const Corpus corpus;
    const std::vector<Event>& events = corpus.events();
    const double elements = corpus.elements();
    std::string expected, out;
    PlainWriter{expected}.write(events);
    const auto touchOut = [&] {
        out.assign(expected.size() + expected.size() / 4, ' ');
        out.clear();
    };

    const auto plainRound = [&] {
        touchOut();
        Stopwatch watch{elements};
        PlainWriter{out}.write(events);
        const double time = watch.lap();
        check(out == expected, "the plain writer is not steady");
        return Figures{.write = time, .buildAndWrite = time};
    };
    const auto elementRound = [&] {
        touchOut();
        Figures figures = measure(
            elements, [&] { return buildElements(events); }, [](const PELRootElement& root) { return root.copy(); },
            [&](const PELRootElement& root) {
                root.writeXML([&out](std::string_view block) {
                    out += block;
                    return true;
                });
            });
        check(out == expected, "zanfcp wrote another text than the plain writer");
        figures.peakBytes =
            peakPerElement(elements, [&] { buildElements(events)->writeXML([](std::string_view) { return true; }); });
        return figures;
    };
    const auto pugiRound = [&] {
        touchOut();
        Figures figures = measure(
            elements, [&] { return buildPugi(events); },
            [](const pugi::xml_document& document) {
                auto copied = std::make_unique<pugi::xml_document>();
                copied->reset(document);
                return copied;
            },
            [&](const pugi::xml_document& document) {
                PugiSink sink{out};
                document.save(sink, "  ", pugi::format_indent, pugi::encoding_utf8);
            });
        check(out.size() > expected.size() * 9 / 10, "pugixml wrote too little");
        figures.peakBytes = peakPerElement(elements, [&] {
            struct : pugi::xml_writer {
                void write(const void*, std::size_t) override {}
            } sink;
            buildPugi(events)->save(sink);
        });
        return figures;
    };
    const auto libxml2Round = [&] {
        touchOut();
        const auto save = [](xmlDoc& document, xmlOutputWriteCallback sink, void* to) {
            xmlSaveCtxt* const context = xmlSaveToIO(sink, nullptr, to, "UTF-8", XML_SAVE_FORMAT);
            xmlSaveDoc(context, &document);
            xmlSaveClose(context);
        };
        Figures figures = measure(
            elements, [&] { return buildLibxml2(events); },
            [](xmlDoc& document) { return Document{xmlCopyDoc(&document, 1)}; },
            [&](xmlDoc& document) { save(document, appendTo, &out); });
        check(out == expected, "libxml2 wrote another text than the plain writer");
        figures.peakBytes = peakPerElement(elements, [&] {
            save(
                *buildLibxml2(events), [](void*, const char*, int count) { return count; }, nullptr);
        });
        return figures;
    };

    std::deque<Contestant> contestants;
    contestants.emplace_back("plain buffer writer", plainRound);
    contestants.emplace_back("zanfcp", elementRound);
    contestants.emplace_back("pugixml", pugiRound);
    contestants.emplace_back("libxml2", libxml2Round);
    for (Contestant& contestant : contestants)
        contestant.run(); // the first round finds no memory yet
    for (int round = 0; round < kRounds; ++round)
        for (Contestant& contestant : contestants)
            contestant.keep(contestant.run());

    std::printf("%.0f elements, %.1f MB of text; medians of %d rounds, nanoseconds and peak bytes per element\n\n",
                elements, static_cast<double>(expected.size()) / 1e6, kRounds);
    std::printf("%-20s %6s %6s %6s %6s %12s %6s %15s %19s\n", "", "build", "copy", "free", "write", "build+write",
                "bytes", "write x plain", "build+write x plain");
    const double plain = contestants[0].median(&Figures::write);
    for (const Contestant& c : contestants)
        std::printf("%-20s %6.1f %6.1f %6.1f %6.1f %12.1f %6.0f %15.2f %19.2f\n", c.name(), c.median(&Figures::build),
                    c.median(&Figures::copy), c.median(&Figures::destroy), c.median(&Figures::write),
                    c.median(&Figures::buildAndWrite), c.median(&Figures::peakBytes), c.median(&Figures::write) / plain,
                    c.median(&Figures::buildAndWrite) / plain);
}
