// A host program: media files in, a validated Final Cut Pro 7 project out.
//   build_project show.xml CAM_A.mov CAM_B.mov SOUND.mov
#include <zanfcp/zanfcp.h>

#include <cstdio>
#include <fstream>

int main(int argc, char** argv)
{
    using namespace zanfcp;
    std::vector<FileURL> urls;
    for (int i = 2; i < argc; ++i)
        urls.push_back(FileURL::fileURLWithPath(argv[i]));
    const PELDictionary options{{"projectName", "My show"}, {"addSequence", true}, {"measureSoundFiles", true}};

    const PELFileElements files = PELFileElement::fileElementsWithURLs(urls, options);
    std::shared_ptr<PELRootElement> root;
    if (const int status = Convenience::rootElementForProject(&root, files, options); status != 0) {
        std::fprintf(stderr, "no project: status %d\n", status);
        return 1;
    }
    ValidationError error;
    if (!root->validateAndReturnError(&error)) {
        std::fprintf(stderr, "not valid: %s\n", error.localizedDescription.c_str());
        return 1;
    }
    std::ofstream{argv[1]} << root->XMLDescription();
}
