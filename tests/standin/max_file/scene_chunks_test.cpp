// The chunk streams of a scene file: what well-formed bytes mean, and that damaged ones are refused in every
// way in which they can be damaged.
#include "standin/max_file/byte_writer.h"
#include "standin/max_file/scene_chunks.h"

#include <gtest/gtest.h>

namespace {

using max_file::ByteBuffer;
using max_file::Bytes;
using max_file::ByteWriter;
using max_file::Chunk;
using max_file::ChunkWalk;
using max_file::SceneClass;

const std::uint16_t kAnyContainer = 0x2023;

SceneClass scene_class(std::uint32_t id_a, std::uint32_t super_class) {
    SceneClass result;
    result.id_a = id_a;
    result.super_class = super_class;
    return result;
}

// 0: node, 1: camera, 2: mesh, 3: the grid, which has the node's class id.
const std::vector<SceneClass> kClasses = {scene_class(1, 0x1), scene_class(0x1001, 0x20),
                                          scene_class(0x10, 0x10), scene_class(1, 0xFFFFFE00)};

ByteBuffer node(const std::wstring& name, const ByteBuffer& references, std::uint16_t id = 0x2034) {
    return ByteWriter().chunk(id, references).chunk(0x0962, ByteWriter().utf16(name).bytes()).bytes();
}

ByteBuffer list_of(std::uint32_t object) {
    return ByteWriter().u32(object).bytes();
}

ByteBuffer with_modifiers(std::uint32_t object) {
    return ByteWriter().chunk(0x2034, list_of(object)).bytes();
}

ByteBuffer scene_of(const ByteWriter& objects) {
    return ByteWriter().container(kAnyContainer, objects.bytes()).bytes();
}

std::vector<std::wstring> cameras_of(const ByteBuffer& scene, std::string& problem) {
    std::vector<std::wstring> cameras;
    max_file::read_cameras(scene, kClasses, cameras, problem);
    return cameras;
}

std::string problem_of(const ByteBuffer& scene) {
    std::string problem;
    cameras_of(scene, problem);
    return problem;
}

std::string walk_problem(const ByteBuffer& bytes, int expected_chunks) {
    ChunkWalk walk{Bytes(bytes)};
    Chunk chunk;
    int count = 0;
    while (walk.next(chunk)) {
        ++count;
    }
    EXPECT_EQ(count, expected_chunks);
    EXPECT_FALSE(walk.next(chunk));
    return walk.problem();
}

TEST(SceneChunks, HeaderSizesCountTheHeader) {
    // id 0x2042, size 6 + 2; then a container of one empty chunk.
    const ByteBuffer bytes = {0x42, 0x20, 8, 0, 0, 0, 'A', 0, 0x23, 0x20, 12, 0, 0, 0x80, 1, 0, 6, 0, 0, 0};
    ChunkWalk walk{Bytes(bytes)};
    Chunk chunk;
    ASSERT_TRUE(walk.next(chunk));
    EXPECT_EQ(chunk.id, 0x2042);
    EXPECT_FALSE(chunk.is_container);
    EXPECT_EQ(chunk.offset, 0u);
    ASSERT_EQ(chunk.content.size, 2u);
    EXPECT_EQ(chunk.content.data[0], 'A');
    ASSERT_TRUE(walk.next(chunk));
    EXPECT_EQ(chunk.id, 0x2023);
    EXPECT_TRUE(chunk.is_container);
    EXPECT_EQ(chunk.offset, 8u);
    EXPECT_EQ(chunk.content.size, 6u);
    EXPECT_FALSE(walk.next(chunk));
    EXPECT_EQ(walk.problem(), "");
}

TEST(SceneChunks, SizeZeroMeansALongSize) {
    const ByteBuffer bytes = {0x23, 0x20, 0, 0, 0, 0, 20, 0, 0,   0,   0,  0,
                              0,    0x80, 1, 0, 6, 0, 0,  0, 'l', 'a', 's'};
    ChunkWalk walk{Bytes(bytes)};
    Chunk chunk;
    ASSERT_TRUE(walk.next(chunk));
    EXPECT_TRUE(chunk.is_container);
    EXPECT_EQ(chunk.content.size, 6u);
    EXPECT_FALSE(walk.next(chunk));
    EXPECT_EQ(walk.problem(), "chunk at byte 20 is cut off in its header");
}

TEST(SceneChunks, ImpossibleSizesAreRefused) {
    EXPECT_EQ(walk_problem({1, 0, 7, 0, 0, 0}, 0), "chunk at byte 0 reaches past the end");
    EXPECT_EQ(walk_problem({1, 0, 6, 0, 0, 0, 1, 0, 0xFF, 0xFF, 0xFF, 0xFF}, 1),
              "chunk at byte 6 reaches past the end");
    for (std::uint8_t size = 1; size < 6; ++size) {
        EXPECT_EQ(walk_problem({1, 0, size, 0, 0, 0, 9, 9, 9, 9}, 0),
                  "chunk at byte 0 has a size smaller than its own header");
    }
    // A container of size zero: the top bit alone is no long size.
    EXPECT_EQ(walk_problem({1, 0, 0, 0, 0, 0x80}, 0),
              "chunk at byte 0 has a size smaller than its own header");
    EXPECT_EQ(walk_problem({1, 0, 0, 0, 0, 0}, 0), "chunk at byte 0 is cut off in its header");
    // Long sizes: zero, smaller than the 14 bytes of the header, as large as they go.
    EXPECT_EQ(walk_problem(ByteWriter().u16(1).u32(0).number(std::uint64_t(0)).bytes(), 0),
              "chunk at byte 0 has a size smaller than its own header");
    EXPECT_EQ(walk_problem(ByteWriter().u16(1).u32(0).number(std::uint64_t(13)).bytes(), 0),
              "chunk at byte 0 has a size smaller than its own header");
    EXPECT_EQ(walk_problem(ByteWriter().u16(1).u32(0).number(~std::uint64_t(0)).bytes(), 0),
              "chunk at byte 0 reaches past the end");
}

TEST(SceneChunks, ClassDirectoryGivesNamesAndIds) {
    ByteWriter content;
    content.chunk(0x2060, ByteWriter().u32(0xFFFFFFFE).u32(7).u32(8).u32(0x20).bytes());
    content.chunk(0x2042, ByteWriter().utf16(L"Target").bytes());
    std::vector<SceneClass> classes;
    std::string problem;
    const ByteBuffer two =
        ByteWriter().container(0x2040, content.bytes()).container(0x2040, content.bytes()).bytes();
    ASSERT_TRUE(max_file::read_class_directory(two, classes, problem)) << problem;
    ASSERT_EQ(classes.size(), 2u);
    EXPECT_EQ(classes[1].name, L"Target");
    EXPECT_EQ(classes[1].library, -2);
    EXPECT_EQ(classes[1].id_a, 7u);
    EXPECT_EQ(classes[1].id_b, 8u);
    EXPECT_EQ(classes[1].super_class, 0x20u);
    for (std::size_t length = 0; length < two.size(); ++length) {
        const bool whole = length == two.size() / 2;
        EXPECT_EQ(max_file::read_class_directory(Bytes(two.data(), length), classes, problem), whole)
            << length;
        EXPECT_EQ(problem.empty(), whole);
    }
}

TEST(SceneChunks, ClassWithoutIdsIsRefused) {
    ByteWriter content;
    content.chunk(0x2042, ByteWriter().utf16(L"Target").bytes());
    content.chunk(0x2060, ByteWriter().u32(1).u32(2).u32(3).bytes());
    std::vector<SceneClass> classes;
    std::string problem;
    EXPECT_FALSE(max_file::read_class_directory(ByteWriter().container(0x2040, content.bytes()).bytes(),
                                                classes, problem));
    EXPECT_EQ(problem, "class 0: it has no name or no ids");
}

TEST(SceneChunks, CamerasAreFoundByBothReferenceForms) {
    ByteWriter objects;
    objects.container(1, {}).container(2, {});
    objects.container(0, node(L"Listed", ByteWriter().u32(0xFFFFFFFF).u32(0).bytes()));
    objects.container(0, node(L"Mesh", list_of(1)));
    objects.container(0, node(L"Paired", ByteWriter().u32(16).u32(0).u32(1).u32(1).u32(0).bytes(), 0x2035));
    // Here 0 is a slot and no object.
    objects.container(0, node(L"Paired mesh", ByteWriter().u32(16).u32(0).u32(1).bytes(), 0x2035));
    // A grid, whose references do not make it a camera.
    objects.container(3, node(L"Grid", list_of(0)));
    std::string problem;
    EXPECT_EQ(cameras_of(scene_of(objects), problem), (std::vector<std::wstring>{L"Listed", L"Paired"}));
    EXPECT_EQ(problem, "");
}

TEST(SceneChunks, CameraUnderModifiersIsFound) {
    ByteWriter objects;
    objects.container(1, {});
    objects.container(0x2032, with_modifiers(0)).container(0x2033, with_modifiers(1));
    objects.container(0, node(L"Modified", list_of(2)));
    objects.container(0, node(L"Modified too", list_of(2)));
    std::string problem;
    EXPECT_EQ(cameras_of(scene_of(objects), problem),
              (std::vector<std::wstring>{L"Modified", L"Modified too"}));
    EXPECT_EQ(problem, "");
}

TEST(SceneChunks, NamesAreUtf16) {
    const std::wstring emoji = {static_cast<wchar_t>(0xD83C), static_cast<wchar_t>(0xDFA5)};
    const std::vector<std::wstring> names = {L"\u76F8\u673A", emoji, std::wstring(300, L'x'), L""};
    ByteWriter objects;
    objects.container(1, {});
    for (const std::wstring& name : names) {
        objects.container(0, node(name, list_of(0)));
    }
    std::string problem;
    EXPECT_EQ(cameras_of(scene_of(objects), problem), names);
}

TEST(SceneChunks, ModifierCyclesAreRefused) {
    ByteWriter circle;
    circle.container(0x2032, with_modifiers(1)).container(0x2032, with_modifiers(0));
    circle.container(0, node(L"Camera", list_of(0)));
    EXPECT_EQ(problem_of(scene_of(circle)), "object 0: modifiers lie on one another without an end");

    ByteWriter deep;
    for (std::uint32_t index = 0; index < 5000; ++index) {
        deep.container(0x2032, with_modifiers(index + 1));
    }
    deep.container(1, {}).container(0, node(L"Camera", list_of(0)));
    EXPECT_EQ(problem_of(scene_of(deep)), "object 16: modifiers lie on one another without an end");
}

// Searching every object again for each reference would take 1000 to the power of 12 steps.
TEST(SceneChunks, ManyReferencesToModifiersAreSearchedOnce) {
    ByteWriter objects;
    for (std::uint32_t index = 0; index < 12; ++index) {
        ByteWriter references;
        for (int repeat = 0; repeat < 1000; ++repeat) {
            references.u32(index + 1);
        }
        objects.container(0x2032, ByteWriter().chunk(0x2034, references.bytes()).bytes());
    }
    objects.container(2, {}).container(0, node(L"Mesh", list_of(0)));
    std::string problem;
    EXPECT_TRUE(cameras_of(scene_of(objects), problem).empty());
    EXPECT_EQ(problem, "");
}

TEST(SceneChunks, DeepNestingUsesNoStack) {
    ByteBuffer nested;
    for (int level = 0; level < 20000; ++level) {
        // From the inside out, so each level is a header in front of what is there.
        const std::uint32_t size = static_cast<std::uint32_t>(nested.size() + 6) | 0x80000000u;
        const ByteBuffer header = ByteWriter().u16(0).u32(size).bytes();
        nested.insert(nested.begin(), header.begin(), header.end());
    }
    EXPECT_EQ(problem_of(nested), "");
    ByteWriter objects;
    objects.container(1, {});
    objects.container(0, ByteWriter().raw(node(L"Camera", list_of(0))).raw(nested).bytes());
    std::string problem;
    EXPECT_EQ(cameras_of(scene_of(objects), problem), std::vector<std::wstring>{L"Camera"});
}

TEST(SceneChunks, DamagedReferencesAreRefused) {
    const struct {
        ByteBuffer object;
        const char* problem;
    } kCases[] = {
        {node(L"a", list_of(2)), "object 1: it refers to object 2 of 2"},
        {node(L"a", list_of(0xFFFFFFFE)), "object 1: it refers to object 4294967294 of 2"},
        {node(L"a", {0, 0, 0}), "object 1: its list of references ends in the middle of an entry"},
        {node(L"a", {0, 0, 0}, 0x2035), "object 1: its list of references is too short"},
        {node(L"a", ByteWriter().u32(16).u32(1).bytes(), 0x2035),
         "object 1: its list of references ends in the middle of an entry"},
        {ByteWriter().chunk(0x2034, list_of(0)).bytes(), "object 1: a camera without a readable name"},
        {ByteWriter().chunk(0x2034, list_of(0)).chunk(0x0962, {'A', 0, 'B'}).bytes(),
         "object 1: a camera without a readable name"},
        {{1, 0, 7, 0, 0, 0}, "object 1: chunk at byte 0 reaches past the end"},
    };
    for (const auto& each : kCases) {
        EXPECT_EQ(problem_of(scene_of(ByteWriter().container(1, {}).container(0, each.object))),
                  each.problem);
    }
}

TEST(SceneChunks, SceneWithoutAContainerIsRefused) {
    EXPECT_EQ(problem_of({}), "there is no container of objects");
    EXPECT_EQ(problem_of(ByteWriter().chunk(1, {1, 2, 3}).bytes()), "there is no container of objects");
}

ByteBuffer file_record(const std::wstring& kind, const std::wstring& named, const std::wstring& found) {
    ByteWriter writer;
    writer.raw(ByteBuffer(16, 0xAB));
    for (const std::wstring& text : {kind, named, found}) {
        writer.u32(static_cast<std::uint32_t>(text.size())).utf16(text).u16(0);
    }
    return writer.bytes();
}

TEST(SceneChunks, ReferencedFilesAreReadInOrder) {
    const ByteBuffer first = file_record(L"Bitmap", L"C:\\a\\\u56FE.png", L"");
    const ByteBuffer both = ByteWriter().raw(first).raw(file_record(L"XRef", L"b.max", L"D:\\b.max")).bytes();
    std::vector<max_file::ReferencedFile> files;
    std::string problem;
    ASSERT_TRUE(max_file::read_referenced_files(both, files, problem)) << problem;
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].kind, L"Bitmap");
    EXPECT_EQ(files[0].named, L"C:\\a\\\u56FE.png");
    EXPECT_EQ(files[0].found, L"");
    EXPECT_EQ(files[1].kind, L"XRef");
    EXPECT_EQ(files[1].found, L"D:\\b.max");
    for (std::size_t length = 0; length < both.size(); ++length) {
        const bool whole = length == 0 || length == first.size();
        EXPECT_EQ(max_file::read_referenced_files(Bytes(both.data(), length), files, problem), whole)
            << length;
    }
}

TEST(SceneChunks, ReferencedFileWithAFalseLengthIsRefused) {
    std::vector<max_file::ReferencedFile> files;
    std::string problem;
    for (const std::uint32_t count : {0xFFFFFFFFu, 0x80000000u, 7u}) {
        ByteWriter writer;
        writer.raw(ByteBuffer(16)).u32(count).utf16(L"Bitmap").u16(0);
        EXPECT_FALSE(max_file::read_referenced_files(writer.bytes(), files, problem));
        EXPECT_EQ(problem, "record at byte 0 is cut off or damaged");
    }
    ByteBuffer unclosed = file_record(L"Bitmap", L"a", L"b");
    unclosed.back() = 1;
    EXPECT_FALSE(max_file::read_referenced_files(unclosed, files, problem));
}

} // namespace
