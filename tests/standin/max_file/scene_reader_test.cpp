// Whole scenes from their streams: composed and read back, cut off at every byte, changed at random; and the
// layer around the streams.
#include "standin/max_file/byte_writer.h"
#include "standin/max_file/property_set.h"
#include "standin/max_file/scene_composer.h"
#include "standin/max_file/scene_text.h"
#include "standin/max_file/storage_layout.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace {

using max_file::ByteBuffer;
using max_file::ByteWriter;
using max_file::SceneModel;
using max_file::SceneStreams;

SceneModel read(const SceneStreams& streams) {
    SceneModel model;
    std::string problem;
    EXPECT_TRUE(max_file::read_scene(streams, model, problem)) << problem;
    return model;
}

std::string problem_of(const SceneStreams& streams) {
    SceneModel model;
    std::string problem;
    const bool good = max_file::read_scene(streams, model, problem);
    EXPECT_EQ(good, problem.empty());
    return problem;
}

struct Section {
    const char* heading;
    std::vector<std::string> lines;
};

// Texts exactly as long as they are, with the closing zero; filling up to four bytes follows them.
void add_text(ByteWriter& writer, const std::string& text) {
    writer.u32(static_cast<std::uint32_t>(text.size() + 1)).raw(ByteBuffer(text.begin(), text.end()));
    writer.raw(ByteBuffer(1)).align(4);
}

ByteBuffer summary_of(const std::vector<Section>& sections, std::uint32_t code_page = 65001) {
    ByteWriter headings;
    ByteWriter lines;
    std::uint32_t count = 0;
    headings.u32(0x100C).u32(static_cast<std::uint32_t>(sections.size() * 2));
    for (const Section& section : sections) {
        headings.u32(30);
        add_text(headings, section.heading);
        headings.u32(3).u32(static_cast<std::uint32_t>(section.lines.size()));
        for (const std::string& line : section.lines) {
            add_text(lines, line);
            ++count;
        }
    }
    const std::uint32_t after_headings = 40 + static_cast<std::uint32_t>(headings.size());
    ByteWriter set;
    set.u16(0xFFFE).u16(0).u32(0x2000A).raw(ByteBuffer(16)).u32(1);
    set.u32(0xD5CDD502).u16(0x2E9C).u16(0x101B).raw({0x93, 0x97, 8, 0, 0x2B, 0x2C, 0xF9, 0xAE}).u32(48);
    set.u32(0).u32(3).u32(1).u32(32).u32(12).u32(40).u32(13).u32(after_headings);
    set.u32(2).u32(code_page).raw(headings.bytes()).u32(0x101E).u32(count).raw(lines.bytes());
    return set.bytes();
}

TEST(SceneReader, SummaryLinesAreUnderTheirHeadings) {
    max_file::Summary summary;
    std::string problem;
    const ByteBuffer bytes =
        summary_of({{"General", {"one", "three"}}, {"Materials", {}}, {"Objects", {"\xE7\x9B\xB8"}}});
    ASSERT_TRUE(max_file::read_summary(bytes, summary, problem)) << problem;
    ASSERT_EQ(summary.sections.size(), 3u);
    EXPECT_EQ(summary.sections[0].lines, (std::vector<std::wstring>{L"one", L"three"}));
    EXPECT_TRUE(summary.lines_under(L"Materials").empty());
    EXPECT_EQ(summary.lines_under(L"Objects"), std::vector<std::wstring>{L"\u76F8"});
    EXPECT_TRUE(summary.lines_under(L"Nothing").empty());
    EXPECT_TRUE(summary.texts_are_exact);
    ASSERT_TRUE(max_file::read_summary(summary_of({}, 936), summary, problem));
    EXPECT_FALSE(summary.texts_are_exact);
}

TEST(SceneReader, DecimalCommaInTheVersionIsRead) {
    SceneStreams streams = max_file::compose_scene(max_file::sample_model()).streams;
    streams.summary.bytes = summary_of({{"General", {"3ds Max Version: 19,20", "Saved As Version: 18,00"}},
                                        {"Scene Totals", {"Cameras: 3"}},
                                        {"Objects", {"Render Width=1", "Cameras: 9"}},
                                        {"Render Data",
                                         {"Render Width=1920", "Render Height=1080", "Animation Start=-5",
                                          "Animation End=100", "Render Camera 00=Camera001"}}});
    const SceneModel model = read(streams);
    EXPECT_EQ(model.version, L"19.2");
    EXPECT_EQ(model.app_version, L"2017");
    EXPECT_EQ(model.width, 1920);
    EXPECT_EQ(model.height, 1080);
    EXPECT_EQ(model.start_frame, -5);
    EXPECT_EQ(model.end_frame, 100);
    EXPECT_EQ(model.summary_camera_count, 3);
    EXPECT_EQ(model.notes,
              std::vector<std::wstring>{L"The summary's render cameras are not the cameras of the scene."});
}

TEST(SceneReader, UnusableSummaryLinesKeepTheDefaultsAndAddANote) {
    SceneStreams streams = max_file::compose_scene(max_file::sample_model()).streams;
    streams.summary.bytes = summary_of({{"General", {"3ds Max Version: x"}},
                                        {"Render Data", {"Render Width=0", "Render Height=99999999999"}}});
    const SceneModel model = read(streams);
    EXPECT_EQ(model.version, L"");
    EXPECT_EQ(model.width, max_file::kDefaultWidth);
    EXPECT_EQ(model.height, max_file::kDefaultHeight);
    EXPECT_EQ(model.summary_camera_count, max_file::kCameraCountUnknown);
    ASSERT_EQ(model.notes.size(), 7u);
    EXPECT_EQ(model.notes[0], L"The summary does not say which version saved the scene.");
    EXPECT_EQ(model.notes[1], L"The summary has no line 'Cameras: '.");
    EXPECT_EQ(model.notes[2], L"The summary's line 'Render Width=0' is not usable.");
    EXPECT_EQ(model.notes[3], L"The summary's line 'Render Height=99999999999' is not usable.");
}

TEST(SceneReader, ComposedSceneReadsBack) {
    SceneModel wanted = max_file::sample_model();
    wanted.cameras.push_back(std::wstring(300, L'\u76F8'));
    wanted.render_cameras = wanted.cameras;
    wanted.summary_camera_count = 4;
    wanted.start_frame = 3;
    wanted.end_frame = 250;
    wanted.version = L"20.0";
    const SceneModel model = read(max_file::compose_scene(wanted).streams);
    EXPECT_EQ(model.cameras, wanted.cameras);
    EXPECT_EQ(model.render_cameras, wanted.cameras);
    EXPECT_EQ(model.summary_camera_count, 4);
    EXPECT_EQ(model.width, 1280);
    EXPECT_EQ(model.height, 720);
    EXPECT_EQ(model.start_frame, 3);
    EXPECT_EQ(model.end_frame, 250);
    EXPECT_EQ(model.version, L"20.0");
    EXPECT_EQ(model.app_version, L"2018");
    EXPECT_EQ(model.renderer, L"Scanline Renderer");
    ASSERT_EQ(model.references.size(), 2u);
    EXPECT_EQ(model.references[1].named, L"X:\\textures\\missing_wood.jpg");
    EXPECT_EQ(model.references[1].found, L"");
    EXPECT_TRUE(model.notes.empty());
}

TEST(SceneReader, WrongCameraCountIsNoted) {
    SceneModel wanted = max_file::sample_model();
    wanted.summary_camera_count = 2;
    const SceneModel model = read(max_file::compose_scene(wanted).streams);
    EXPECT_EQ(model.cameras.size(), 3u);
    EXPECT_EQ(model.notes, std::vector<std::wstring>{L"The summary counts 2 cameras, the scene holds 3."});
}

TEST(SceneReader, MissingOptionalStreamsAreNoted) {
    SceneStreams streams = max_file::compose_scene(max_file::sample_model()).streams;
    streams.summary = max_file::OptionalStream();
    streams.referenced_files = max_file::OptionalStream();
    const SceneModel model = read(streams);
    EXPECT_EQ(model.cameras.size(), 3u);
    EXPECT_EQ(model.notes.size(), 2u);
}

// Every stream, cut off at every byte, is refused by name. The list of files is whole after each of its
// records.
TEST(SceneReader, CutOffStreamsAreRefused) {
    const SceneStreams whole = max_file::compose_scene(max_file::sample_model()).streams;
    for (std::size_t length = 0; length < whole.scene.size(); ++length) {
        SceneStreams cut = whole;
        cut.scene.resize(length);
        ASSERT_EQ(problem_of(cut).compare(0, 26, "is damaged: stream Scene: "), 0) << length;
    }
    std::size_t read_anyway = 0;
    for (std::size_t length = 0; length < whole.referenced_files.bytes.size(); ++length) {
        SceneStreams cut = whole;
        cut.referenced_files.bytes.resize(length);
        read_anyway += problem_of(cut).empty() ? 1 : 0;
    }
    EXPECT_EQ(read_anyway, 2u);
    for (std::size_t length = 0; length < whole.summary.bytes.size(); ++length) {
        SceneStreams cut = whole;
        cut.summary.bytes.resize(length);
        ASSERT_EQ(problem_of(cut).compare(0, 47, "is damaged: stream DocumentSummaryInformation: "), 0)
            << length;
    }
}

// Whatever a byte becomes, reading ends with an answer; the sanitizers watch over how.
TEST(SceneReader, RandomChangesNeverCrash) {
    const SceneStreams whole = max_file::compose_scene(max_file::sample_model()).streams;
    std::mt19937 random(20190521);
    int refused = 0;
    for (int round = 0; round < 20000; ++round) {
        SceneStreams changed = whole;
        ByteBuffer* const buffers[] = {&changed.class_directory, &changed.scene,
                                       &changed.referenced_files.bytes, &changed.summary.bytes};
        ByteBuffer& buffer = *buffers[random() % 4];
        for (std::uint32_t change = 1 + random() % 4; change > 0; --change) {
            static const std::uint8_t kEdges[] = {0x00, 0x01, 0x7F, 0x80, 0xFF};
            const std::uint32_t choice = random() % 8;
            buffer[random() % buffer.size()] =
                choice < 5 ? kEdges[choice] : static_cast<std::uint8_t>(random() & 0xFF);
        }
        refused += problem_of(changed).empty() ? 0 : 1;
    }
    EXPECT_GT(refused, 2000);
}

TEST(SceneReader, RandomBytesAreRefused) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        ByteBuffer noise(random() % 400);
        for (std::uint8_t& byte : noise) {
            byte = static_cast<std::uint8_t>(random() & 0xFF);
        }
        max_file::Summary summary;
        std::string problem;
        EXPECT_FALSE(max_file::read_summary(noise, summary, problem));
        SceneStreams streams;
        streams.class_directory = noise;
        streams.scene = noise;
        EXPECT_NE(problem_of(streams), "");
    }
}

TEST(SceneReader, SummaryCountsAreNotTrusted) {
    const ByteBuffer good = summary_of({{"General", {"line"}}});
    for (std::size_t index = 24; index + 4 <= good.size(); index += 4) {
        for (const std::uint8_t filler : {0xFF, 0x7F, 0x10}) {
            ByteBuffer bad = good;
            std::memset(bad.data() + index, filler, 4);
            max_file::Summary summary;
            std::string problem;
            max_file::read_summary(bad, summary, problem);
            EXPECT_LE(summary.sections.size(), 1u);
        }
    }
}

void fill_sector(ByteWriter& writer) {
    while (writer.size() % 512 != 0) {
        writer.u32(0xFFFFFFFF);
    }
}

ByteBuffer entry(std::uint8_t kind, std::uint32_t child, std::uint32_t first_sector, std::uint32_t size) {
    ByteWriter writer;
    writer.raw(ByteBuffer(66)).raw({kind, 0}).u32(0xFFFFFFFF).u32(0xFFFFFFFF).u32(child).raw(ByteBuffer(36));
    return writer.u32(first_sector).u32(size).u32(0).bytes();
}

// A storage of 512-byte sectors: the header, sector 0 the table, sector 1 the directory with its root and one
// stream of 4096 bytes, sectors 2 to 9 the stream.
ByteBuffer small_storage() {
    ByteWriter writer;
    writer.raw({0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1})
        .raw(ByteBuffer(22))
        .u16(9)
        .raw(ByteBuffer(12));
    writer.u32(1).u32(1).raw(ByteBuffer(8)).u32(0xFFFFFFFE).u32(0).u32(0xFFFFFFFE).u32(0).u32(0);
    fill_sector(writer);
    writer.u32(0xFFFFFFFD).u32(0xFFFFFFFE);
    for (std::uint32_t sector = 2; sector <= 9; ++sector) {
        writer.u32(sector == 9 ? 0xFFFFFFFE : sector + 1);
    }
    fill_sector(writer);
    writer.raw(entry(5, 1, 0, 0)).raw(entry(2, 0xFFFFFFFF, 2, 4096)).raw(ByteBuffer(256));
    return writer.raw(ByteBuffer(4096)).bytes();
}

std::string storage_problem(const ByteBuffer& file) {
    return max_file::storage_problem(
        [&file](std::uint64_t offset, std::uint8_t* buffer, std::size_t count) {
            if (offset > file.size() || count > file.size() - offset) {
                return false;
            }
            std::memcpy(buffer, file.data() + offset, count);
            return true;
        },
        file.size());
}

TEST(SceneReader, CutOffStorageLayoutIsRefused) {
    const ByteBuffer good = small_storage();
    EXPECT_EQ(storage_problem(good), "");
    for (std::size_t length = 1; length < good.size(); ++length) {
        const ByteBuffer cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
        const std::string expected = length < 8 ? "is not a 3ds Max scene" : "is cut off: ";
        ASSERT_EQ(storage_problem(cut).compare(0, expected.size(), expected), 0) << length;
    }
    const std::string text = "just a text file with another ending";
    EXPECT_EQ(storage_problem(ByteBuffer(text.begin(), text.end())),
              "is not a 3ds Max scene: it is no structured storage file");
}

constexpr std::size_t kTable = 512;
constexpr std::size_t kRoot = 1024;
constexpr std::size_t kStream = kRoot + 128;
const std::string kBadTable = "is damaged: its table of sectors contradicts itself";
const std::string kBadDirectory = "is damaged: its directory contradicts itself";
const std::string kCutOff = "is cut off: it has 5632 bytes and should have at least ";

struct StorageDamage {
    std::size_t offset;
    std::uint32_t word;
    std::string problem;
};
const StorageDamage kStorageDamage[] = {
    {28, 0x00200000, "is damaged: its header names an impossible sector size"},
    {44, 0, "is damaged: its header names no table of sectors"},
    {44, 2, "is damaged: its table of sectors is incomplete"},
    {44, 0xFFFFFFFF, kCutOff + "2199023255552"},
    {48, 0x00FFFFFF, kBadTable},
    {48, 2, kBadDirectory}, // the sectors of the stream
    {60, 0x00FFFFFF, kBadTable},
    {76, 0x00FFFFFF, kCutOff + "8589935104"},
    {kTable + 12, 2, kBadTable},          // a sector with two predecessors
    {kTable + 36, 2, kBadTable},          // a cycle
    {kTable + 12, 0x00FFFFFF, kBadTable}, // out of the table
    {kTable + 12, 0xFFFFFFFE, kBadDirectory},
    {kTable + 508, 0xFFFFFFFE, kCutOff + "66048"},
    {kRoot + 64, 0x00020000, kBadDirectory}, // the root is a stream
    {kRoot + 76, 7, kBadDirectory},
    {kRoot + 120, 4096, kBadTable},
    {kStream + 64, 0, kBadDirectory}, // of no kind
    {kStream + 68, 1, kBadDirectory}, // its own sibling
    {kStream + 72, 0, kBadDirectory},
    {kStream + 116, 0x00FFFFFF, kBadTable},
    {kStream + 120, 4097, kBadDirectory},
    {kStream + 120, 100, kBadDirectory}, // short, and there are no small sectors
};

TEST(SceneReader, DamagedStorageLayoutIsRefused) {
    for (const auto& each : kStorageDamage) {
        ByteBuffer bad = small_storage();
        for (std::size_t byte = 0; byte < 4; ++byte) {
            bad[each.offset + byte] = static_cast<std::uint8_t>(each.word >> (8 * byte));
        }
        EXPECT_EQ(storage_problem(bad), each.problem) << each.offset << " " << each.word;
    }
}

TEST(SceneReader, CheckOfRandomStorageChangesEnds) {
    const ByteBuffer good = small_storage();
    std::mt19937 random(20190521);
    int refused = 0;
    for (int round = 0; round < 20000; ++round) {
        ByteBuffer changed = good;
        for (std::uint32_t change = 1 + random() % 6; change > 0; --change) {
            changed[random() % 1536] = static_cast<std::uint8_t>(random() % 12);
        }
        refused += storage_problem(changed).empty() ? 0 : 1;
    }
    EXPECT_GT(refused, 1000);
    EXPECT_LT(refused, 20000);
}

} // namespace
