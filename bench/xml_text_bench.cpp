// From elements to the text of a document: a million elements shaped like those of a real project, beside a writer that
// has no tree at all (escape and append), pugixml and libxml2. Every round runs all of them in turn, each in a process
// of its own, so that none meets the heap that another left behind; medians are shown, the first round left out.

#include "bench/CountingHeap.h"
#include "bench/Measure.h"
#include "bench/XmlCorpus.h"
#include "platform/AtomicFile.h"
#include "xml/PELRootElement.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <deque>
#include <functional>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace bench;

using zanfcp::PELElement;
using zanfcp::PELRootElement;
using zanfcp::XMLFormat;

constexpr int kRounds = 7;

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

/// What one round of one peer took: nanoseconds per element of each step, and bytes per element.
struct Figures {
    double build = 0;
    double copy = 0;
    double write = 0;
    double destroy = 0;
    double buildAndWrite = 0;
    double peakBytes = 0; ///< building, and writing to a sink that keeps nothing
    double fileBytes = 0; ///< what writing to a file adds to that
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
    countHeap();
    steps();
    return static_cast<double>(countedPeak()) / elements;
}

void check(bool right, const char* what)
{
    if (!right) fail(what);
}

/// One of the peers, with a process of its own for all its rounds.
class Peer {
public:
    Peer(const char* name, const std::function<Figures()>& round) : name_{name}
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
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer()
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
        return bench::median(std::move(values));
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
        const auto root = buildElements(events);
        figures.fileBytes = peakPerElement(elements, [&] {
            auto file = zanfcp::AtomicFile::create("/dev/null");
            check(file && root->writeXML([&](std::string_view block) { return file->write(block).has_value(); }) &&
                      file->commit(),
                  "could not write to /dev/null");
        });
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

    std::deque<Peer> peers;
    peers.emplace_back("plain buffer writer", plainRound);
    peers.emplace_back("zanfcp", elementRound);
    peers.emplace_back("pugixml", pugiRound);
    peers.emplace_back("libxml2", libxml2Round);
    for (Peer& peer : peers)
        peer.run(); // the first round finds no memory yet
    std::vector<Peer*> order;
    for (Peer& peer : peers)
        order.push_back(&peer);
    for (int round = 0; round < kRounds; ++round) {
        std::ranges::reverse(order);
        for (Peer* peer : order)
            peer->keep(peer->run());
    }

    std::printf("In process; %.0f elements like those of a real project, %.1f MB of text; nanoseconds and peak bytes "
                "an element.\nPlain: escapes and appends the same texts, and has no tree. Peak bytes: the tree, and "
                "writing to a sink that keeps\nnothing.\n\n",
                elements, static_cast<double>(expected.size()) / 1e6);
    std::printf("%-20s %13s %21s %7s %7s %7s %7s %14s %11s\n", "", "write x plain", "build + write x plain", "build",
                "copy", "free", "write", "build + write", "peak bytes");
    const double plain = peers[0].median(&Figures::write);
    for (const Peer& c : peers)
        std::printf("%-20s %13.2f %21.2f %7.1f %7.1f %7.1f %7.1f %14.1f %11.0f\n", c.name(),
                    c.median(&Figures::write) / plain, c.median(&Figures::buildAndWrite) / plain,
                    c.median(&Figures::build), c.median(&Figures::copy), c.median(&Figures::destroy),
                    c.median(&Figures::write), c.median(&Figures::buildAndWrite), c.median(&Figures::peakBytes));
    const Peer& ours = peers[1];
    const double copyOfText = ours.median(&Figures::fileBytes) * elements / static_cast<double>(expected.size());
    atMost("text written, times the plain writer's time", 1.5, ours.median(&Figures::write) / plain);
    atMost("text built and written, times the plain writer's time", 4, ours.median(&Figures::buildAndWrite) / plain);
    atMost("memory that writing to a file takes beside the tree, of the text", 0.01, copyOfText);
}
