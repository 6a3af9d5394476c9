// The document's list of referenced files: which entries are kept, and what is kept of each.
#include "common/json_text.h"
#include "submit/submit_document.h"

#include <gtest/gtest.h>

namespace {

// The document's list as the styled writer puts it; empty when the document has none.
std::string references_of(const std::string& list, const std::string& scene_path = "S") {
    Json::Value document;
    EXPECT_TRUE(tarvo::ParseJson("{\"reference_file\": " + list + "}", document));
    tarvo::SceneData scene;
    scene.scene_path = scene_path;
    EXPECT_EQ(tarvo::BuildSubmitDocument(document, scene, ""), tarvo::DocumentProblem::none);
    return document.isMember("reference_file") ? tarvo::StyledJson(document["reference_file"])
                                               : std::string();
}

std::string paths(std::initializer_list<const char*> names) {
    Json::Value list(Json::arrayValue);
    for (const char* name : names) {
        Json::Value entry(Json::objectValue);
        entry["path"] = name;
        list.append(entry);
    }
    return tarvo::StyledJson(list);
}

TEST(SubmitReferences, EntriesOfTheSceneItselfAreRemoved) {
    EXPECT_EQ(references_of(R"([{"path":"S"},{"path":"a"},{"path":"S"},{"path":"b"},{"path":"S"}])"),
              paths({"a", "b"}));
    EXPECT_EQ(references_of(R"([{"path":"a"},{"path":"b"},{"path":"S"}])"), paths({"a", "b"}));
    EXPECT_EQ(references_of(R"([{"path":"S"},{"path":"S"}])"), "");
    EXPECT_EQ(references_of("[]"), "");
}

TEST(SubmitReferences, PathsAreComparedByteForByte) {
    EXPECT_EQ(references_of(R"([{"path":"s"},{"path":"S "},{"path":""},{"path":"SS"}])"),
              paths({"s", "S ", "", "SS"}));
    EXPECT_EQ(references_of(R"([{"path":""},{"path":"a"}])", ""), paths({"a"}));
}

TEST(SubmitReferences, OnlyThePathIsKeptAndConvertedToText) {
    EXPECT_EQ(references_of(R"([{"path":"a","size":5},{"before":[1],"path":"b"},{"path":7},{"path":true},)"
                            R"({"path":null},{},null])"),
              paths({"a", "b", "7", "true", "", "", ""}));
}

TEST(SubmitReferences, AnObjectInsteadOfTheListIsRefused) {
    EXPECT_THROW(references_of(R"({"x":{"path":"S"}})"), Json::Exception);
    EXPECT_THROW(references_of(R"({"x":{"path":"a"}})"), Json::Exception);
    EXPECT_EQ(references_of("{}"), "");
}

TEST(SubmitReferences, CommentsAreDropped) {
    EXPECT_EQ(references_of("/*1*/ [ // 2\n /*3*/ {\"path\": /*4*/ \"a\" /*5*/} /*6*/, // 7\n"
                            "{\"path\":\"S\"}, // 8\n {\"size\": 1, /*9*/ \"path\":\"b\" // 10\n}\n// 11\n]"),
              paths({"a", "b"}));
}

} // namespace
