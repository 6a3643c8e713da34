#include "bench/XmlCorpus.h"

#include <utility>

namespace bench {
namespace {

constexpr std::size_t kElements = 1'000'000;

std::string named(const char* name, int number)
{
    return std::string(name).append(std::to_string(number));
}

} // namespace

Corpus::Corpus()
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

void Corpus::open(const char* key, std::string identifier)
{
    events_.push_back({Event::open, key, keep(std::move(identifier))});
    stack_.emplace_back(key);
    ++elements_;
}

void Corpus::leaf(const char* key, std::string text)
{
    events_.push_back({Event::leaf, key, keep(std::move(text))});
    ++elements_;
}

void Corpus::close()
{
    events_.push_back({Event::close, stack_.back(), {}});
    stack_.pop_back();
}

std::string_view Corpus::keep(std::string text)
{
    return text.empty() ? std::string_view{} : std::string_view{texts_.emplace_back(std::move(text))};
}

void Corpus::rate()
{
    open("rate");
    leaf("ntsc", "TRUE");
    leaf("timebase", "30");
    close();
}

void Corpus::masterClip(int number)
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

void Corpus::clipItem(int cut)
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

} // namespace bench
