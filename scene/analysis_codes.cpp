#include "scene/analysis_reader.h"

namespace tarvo {

namespace {

struct Meaning {
    int code;
    const char* words;
};

// scripts/MaxRenderGlobalsParser.ms prints the same words in the listener.
constexpr Meaning kMeanings[] = {
    {kIncompleteAnalysis, "not everything of this scene could be read"},
    {1000, "the analysis failed as a whole; nothing is known of the scene"},
    {1001, "the path of the scene could not be read"},
    {1002, "the version of the host could not be read"},
    {1003, "a camera, or the list of cameras, could not be read"},
    {1004, "the size of the picture could not be read"},
    {1005, "the output file could not be read"},
    {1006, "the frames could not be read"},
    {1007, "the text of the frames to pick up could not be understood"},
    {1008, "the kind of rendering could not be read"},
    {1009, "the output gamma could not be read"},
    {1010, "the renderer could not be read"},
    {1011, "a setting of V-Ray could not be read"},
    {1012, "a setting of Corona could not be read"},
    {1013, "the tracked files could not be read; the asset manager was asked instead"},
    {1014, "the assets could not be read; outputs may be listed as references"},
    {1015, "the references of the scene could not be read"},
    {1016, "a referenced file could not be looked for"},
    {1017, "the files of an XRef'ed scene could not be read"},
};

} // namespace

std::string AnalysisCodeLine(int code) {
    const char* words = "not known to this version";
    for (const Meaning& meaning : kMeanings) {
        words = meaning.code == code ? meaning.words : words;
    }
    return "Analysis code " + std::to_string(code) + ": " + words;
}

} // namespace tarvo
