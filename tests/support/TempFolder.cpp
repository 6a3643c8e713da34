#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace zanfcp::test {

TempFolder::TempFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "zanfcp-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("could not make " + name);
    path_ = name;
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::write(std::string_view name, std::string_view bytes) const
{
    const std::filesystem::path place = path_ / name;
    std::filesystem::create_directories(place.parent_path());
    std::ofstream out{place, std::ios::binary};
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) throw std::runtime_error("could not write " + place.string());
    return place.string();
}

std::string readFile(const std::string& path)
{
    std::ifstream in{path, std::ios::binary};
    if (!in) throw std::runtime_error("could not read " + path);
    return {std::istreambuf_iterator<char>{in}, {}};
}

} // namespace zanfcp::test
