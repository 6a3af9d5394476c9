// Scene files on disk: written by our generator and read back, compressed, damaged, and files that are no
// scenes.
#include "standin/max_file/scene_composer.h"
#include "standin/max_file/scene_file_win32.h"
#include "standin/max_file/storage_win32.h"
#include "tests/support/child_program.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <objbase.h>

#include <random>

namespace {

using max_file::ByteBuffer;
using max_file::SceneModel;

class MaxFile : public ::testing::Test {
protected:
    void SetUp() override {
        wchar_t temporary[MAX_PATH] = {};
        ::GetTempPathW(MAX_PATH, temporary);
        folder_ = std::wstring(temporary) + L"scene_\u573A\u666F_" +
                  std::to_wstring(::GetCurrentProcessId()) + L"_" + std::to_wstring(::GetTickCount64());
        ASSERT_TRUE(::CreateDirectoryW(folder_.c_str(), nullptr));
    }
    void TearDown() override {
        // A program that has just ended may hold its output file for a moment longer.
        EXPECT_TRUE(support::eventually(
            [this] {
                for (const std::wstring& each : paths_) {
                    ::DeleteFileW(each.c_str());
                }
                return ::RemoveDirectoryW(folder_.c_str()) != 0;
            },
            5000))
            << "a file was left behind, or is still open";
    }

    std::wstring path(const std::wstring& name) {
        paths_.push_back(folder_ + L"\\" + name);
        return paths_.back();
    }
    std::wstring write_scene(const SceneModel& model, const std::wstring& name = L"scene.max") {
        const std::wstring file = path(name);
        std::wstring problem;
        EXPECT_TRUE(max_file::write_scene_file(model, file, problem));
        EXPECT_EQ(problem, L"");
        return file;
    }
    std::wstring write_bytes(const std::string& content) {
        const std::wstring file = path(L"bytes.max");
        support::write_wide(file, content);
        return file;
    }
    std::wstring write_storage(const std::vector<std::pair<const wchar_t*, ByteBuffer>>& streams);

    std::wstring folder_;
    std::vector<std::wstring> paths_;
};

std::wstring MaxFile::write_storage(const std::vector<std::pair<const wchar_t*, ByteBuffer>>& streams) {
    constexpr DWORD kMode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
    const std::wstring file = path(L"storage.max");
    IStorage* created = nullptr;
    EXPECT_EQ(::StgCreateDocfile(file.c_str(), kMode, 0, &created), S_OK);
    const max_file::StoragePointer storage(created);
    for (const auto& each : streams) {
        IStream* opened = nullptr;
        EXPECT_EQ(storage.get()->CreateStream(each.first, kMode, 0, 0, &opened), S_OK);
        const max_file::StreamPointer stream(opened);
        if (each.second.empty()) {
            continue;
        }
        EXPECT_EQ(stream.get()->Write(each.second.data(), static_cast<ULONG>(each.second.size()), nullptr),
                  S_OK);
    }
    return file;
}

SceneModel open_good(const std::wstring& file) {
    SceneModel model;
    std::wstring problem;
    EXPECT_TRUE(max_file::open_scene_file(file, model, problem));
    EXPECT_EQ(problem, L"");
    return model;
}

// The sentence without the path in front of it.
std::wstring problem_of(const std::wstring& file) {
    SceneModel model;
    std::wstring problem;
    EXPECT_FALSE(max_file::open_scene_file(file, model, problem));
    EXPECT_EQ(problem.compare(0, file.size() + 1, file + L" "), 0);
    return problem.size() > file.size() ? problem.substr(file.size() + 1) : problem;
}

void expect_same(const SceneModel& model, const SceneModel& wanted) {
    EXPECT_EQ(model.version, wanted.version);
    EXPECT_EQ(model.app_version, wanted.app_version);
    EXPECT_EQ(model.renderer, wanted.renderer);
    EXPECT_EQ(model.cameras, wanted.cameras);
    EXPECT_EQ(model.render_cameras, wanted.render_cameras);
    EXPECT_EQ(model.summary_camera_count, wanted.summary_camera_count);
    EXPECT_EQ(model.width, wanted.width);
    EXPECT_EQ(model.height, wanted.height);
    EXPECT_EQ(model.start_frame, wanted.start_frame);
    EXPECT_EQ(model.end_frame, wanted.end_frame);
    EXPECT_EQ(model.notes, wanted.notes);
    ASSERT_EQ(model.references.size(), wanted.references.size());
    for (std::size_t index = 0; index < wanted.references.size(); ++index) {
        EXPECT_EQ(model.references[index].kind, wanted.references[index].kind);
        EXPECT_EQ(model.references[index].named, wanted.references[index].named);
        EXPECT_EQ(model.references[index].found, wanted.references[index].found);
    }
}

ByteBuffer gzip(const ByteBuffer& bytes) {
    z_stream stream = {};
    ::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
    ByteBuffer packed(::deflateBound(&stream, static_cast<uLong>(bytes.size())));
    stream.next_in = const_cast<Bytef*>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(::deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    ::deflateEnd(&stream);
    return packed;
}

TEST_F(MaxFile, SampleReadsBack) {
    const std::wstring file = write_scene(max_file::sample_model());
    const SceneModel model = open_good(file);
    EXPECT_EQ(model.path, file);
    expect_same(model, max_file::sample_model());
}

TEST_F(MaxFile, UnusualNamesAndNumbersReadBack) {
    SceneModel wanted = max_file::sample_model();
    wanted.cameras = {L"\u76F8\u673A 001", L"\xD83C\xDFA5 take", std::wstring(300, L'\u957F'), L"", L"a.",
                      L"\\/:*?\"<>|",      L"\u76F8\u673A 001"};
    wanted.render_cameras = wanted.cameras;
    wanted.summary_camera_count = 7;
    wanted.width = 30000;
    wanted.height = 1;
    wanted.start_frame = -20;
    wanted.end_frame = 100000;
    wanted.references = {{L"XRef", L"\\\\server\\share\\\u623F\u95F4.max", L""},
                         {L"Bitmap", std::wstring(300, L'p'), L""}};
    expect_same(open_good(write_scene(wanted, L"\u5BA2\u5385 \xD83C\xDFA5.max")), wanted);
}

TEST_F(MaxFile, SceneWithoutCamerasReadsBack) {
    SceneModel wanted = max_file::sample_model();
    wanted.cameras.clear();
    wanted.render_cameras.clear();
    wanted.references.clear();
    wanted.summary_camera_count = 0;
    expect_same(open_good(write_scene(wanted)), wanted);
}

TEST_F(MaxFile, LargeSceneReadsBack) {
    SceneModel wanted = max_file::sample_model();
    wanted.cameras.clear();
    for (int index = 0; index < 5000; ++index) {
        wanted.cameras.push_back(L"Camera" + std::to_wstring(index));
    }
    wanted.render_cameras = wanted.cameras;
    wanted.summary_camera_count = 5000;
    expect_same(open_good(write_scene(wanted)), wanted);
}

TEST_F(MaxFile, SameModelGivesTheSameBytes) {
    const std::string first = support::read_wide(write_scene(max_file::sample_model(), L"a.max"));
    ::Sleep(1100);
    const std::string second = support::read_wide(write_scene(max_file::sample_model(), L"b.max"));
    EXPECT_FALSE(first.empty());
    EXPECT_TRUE(first == second);
}

TEST_F(MaxFile, CompressedStreamsAreUnpacked) {
    const max_file::SceneStreams streams = max_file::compose_scene(max_file::sample_model()).streams;
    const std::wstring file =
        write_storage({{max_file::kSceneStream, gzip(streams.scene)},
                       {max_file::kClassDirectoryStream, gzip(streams.class_directory)},
                       {max_file::kReferencedFilesStream, gzip(streams.referenced_files.bytes)},
                       {max_file::kSummaryStream, streams.summary.bytes}});
    expect_same(open_good(file), max_file::sample_model());
}

TEST_F(MaxFile, DamagedCompressionIsRefused) {
    const max_file::SceneStreams streams = max_file::compose_scene(max_file::sample_model()).streams;
    const ByteBuffer packed = gzip(streams.scene);
    for (const std::size_t length : {packed.size() / 2, packed.size() - 1, std::size_t(2)}) {
        const ByteBuffer cut(packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(length));
        const std::wstring file = write_storage(
            {{max_file::kSceneStream, cut}, {max_file::kClassDirectoryStream, streams.class_directory}});
        EXPECT_EQ(problem_of(file), L"is damaged: stream Scene: its compressed bytes are cut off.");
    }
    ByteBuffer changed = packed;
    changed[changed.size() - 6] ^= 0x55; // its check sum
    EXPECT_EQ(problem_of(write_storage({{max_file::kSceneStream, changed}})),
              L"is damaged: stream Scene: its compressed bytes are damaged.");
}

// A few hundred kilobytes that claim to be far more than a class directory can be.
TEST_F(MaxFile, CompressionBombIsRefused) {
    const max_file::SceneStreams streams = max_file::compose_scene(max_file::sample_model()).streams;
    const ByteBuffer bomb = gzip(ByteBuffer(80 * 1024 * 1024));
    const std::wstring file =
        write_storage({{max_file::kSceneStream, streams.scene}, {max_file::kClassDirectoryStream, bomb}});
    EXPECT_EQ(problem_of(file), L"is damaged: stream ClassDirectory3: unpacked, it is too large.");
}

TEST_F(MaxFile, MissingEmptyAndForeignFilesAreRefused) {
    EXPECT_EQ(problem_of(path(L"nothing.max")), L"does not exist.");
    EXPECT_EQ(problem_of(folder_ + L"\\no folder\\nothing.max"), L"does not exist.");
    EXPECT_EQ(problem_of(folder_), L"is a folder.");
    EXPECT_EQ(problem_of(write_bytes("")), L"is empty.");
    const std::wstring foreign = L"is not a 3ds Max scene: it is no structured storage file.";
    EXPECT_EQ(problem_of(write_bytes("x")), foreign);
    EXPECT_EQ(problem_of(write_bytes("A text file with another file type.\r\n")), foreign);
    EXPECT_EQ(problem_of(write_bytes(std::string(100000, '\0'))), foreign);
    SceneModel model;
    std::wstring problem;
    EXPECT_FALSE(max_file::open_scene_file(L"", model, problem));
    EXPECT_EQ(problem, L"No scene file is named.");
}

TEST_F(MaxFile, RandomBytesAreRefused) {
    std::mt19937 random(99);
    for (int round = 0; round < 40; ++round) {
        std::string noise(1 + random() % 20000, '\0');
        for (char& byte : noise) {
            byte = static_cast<char>(random() & 0xFF);
        }
        if (round % 2 == 0) {
            noise.replace(0, 8, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
        }
        EXPECT_NE(problem_of(write_bytes(noise)), L"");
    }
}

TEST_F(MaxFile, OtherStoragesAreRefused) {
    EXPECT_EQ(problem_of(write_storage({})), L"is not a 3ds Max scene: it has no stream named Scene.");
    EXPECT_EQ(problem_of(write_storage({{L"WordDocument", ByteBuffer(5000, 1)}})),
              L"is not a 3ds Max scene: it has no stream named Scene.");
    EXPECT_EQ(problem_of(write_storage({{L"Scene", {}}})),
              L"is not a 3ds Max scene: it has no stream named ClassDirectory3.");
    EXPECT_EQ(problem_of(write_storage({{L"Scene", {}}, {L"ClassDirectory3", {}}})),
              L"is damaged: stream ClassDirectory3: there are no classes.");
}

TEST_F(MaxFile, FileHeldByAnotherProgramIsRefused) {
    const std::wstring file = write_scene(max_file::sample_model());
    {
        const tarvo::FileHandle held(::CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        ASSERT_TRUE(static_cast<bool>(held));
        EXPECT_EQ(problem_of(file), L"cannot be opened: another program holds it.");
    }
    open_good(file);
}

// Every cut loses a used sector: the last one is in use.
TEST_F(MaxFile, FileCutOffAnywhereIsRefused) {
    const std::string whole = support::read_wide(write_scene(max_file::sample_model()));
    ASSERT_GT(whole.size(), 4000u);
    for (std::size_t length = 1; length < whole.size(); length += length < 600 ? 7 : 61) {
        const std::wstring problem = problem_of(write_bytes(whole.substr(0, length)));
        const std::wstring expected = length < 8 ? L"is not a 3ds Max scene" : L"is cut off: ";
        ASSERT_EQ(problem.compare(0, expected.size(), expected), 0) << length;
    }
    EXPECT_EQ(problem_of(write_bytes(whole.substr(0, whole.size() - 1))).compare(0, 12, L"is cut off: "), 0);
}

TEST_F(MaxFile, RandomChangesNeverCrash) {
    const std::string whole = support::read_wide(write_scene(max_file::sample_model()));
    std::mt19937 random(20190521);
    int refused = 0;
    constexpr int kRounds = 400;
    for (int round = 0; round < kRounds; ++round) {
        std::string changed = whole;
        for (std::uint32_t change = 1 + random() % 8; change > 0; --change) {
            changed[random() % changed.size()] = static_cast<char>(random() & 0xFF);
        }
        SceneModel model;
        std::wstring problem;
        const bool good = max_file::open_scene_file(write_bytes(changed), model, problem);
        ASSERT_EQ(good, problem.empty()) << round;
        refused += good ? 0 : 1;
    }
    EXPECT_GT(refused, kRounds / 10);
    EXPECT_LT(refused, kRounds);
}

class MakeScene : public MaxFile {
protected:
    int run(const std::wstring& arguments) {
        const std::wstring output = path(L"output.txt");
        const int code = support::exit_code_of(
            support::start(support::module_folder() + L"\\make_scene.exe", arguments, output));
        printed_ = support::read_wide(output);
        return code;
    }
    std::string printed_;
};

TEST_F(MakeScene, WithoutOptionsWritesTheSample) {
    const std::wstring file = path(L"\u65E0.max");
    EXPECT_EQ(run(L"\"" + file + L"\""), 0) << printed_;
    expect_same(open_good(file), max_file::sample_model());
}

TEST_F(MakeScene, OptionsChangeTheScene) {
    const std::wstring file = path(L"options.max");
    EXPECT_EQ(run(L"--width 800 --height 600 --camera \"\u524D \u53F0\" \"" + file +
                  L"\" --camera B --start -1 --end 12 --reference C:\\a.png"),
              0)
        << printed_;
    SceneModel wanted = max_file::sample_model();
    wanted.cameras = {L"\u524D \u53F0", L"B"};
    wanted.render_cameras = wanted.cameras;
    wanted.summary_camera_count = 2;
    wanted.width = 800;
    wanted.height = 600;
    wanted.start_frame = -1;
    wanted.end_frame = 12;
    wanted.references = {{L"Bitmap", L"C:\\a.png", L"C:\\a.png"}};
    expect_same(open_good(file), wanted);
}

TEST_F(MakeScene, WrongCommandLinesReturnTwo) {
    const std::wstring file = path(L"never.max");
    for (const wchar_t* const arguments : {L"", L"--camera A", L"--width", L"a.max b.max", L"a.max --width 0",
                                           L"a.max --height 12x", L"a.max --depth 3"}) {
        EXPECT_EQ(run(arguments), 2) << printed_;
        EXPECT_FALSE(printed_.empty());
    }
    EXPECT_EQ(run(L"\"" + folder_ + L"\\no folder\\a.max\""), 1);
    EXPECT_NE(printed_.find("cannot be written"), std::string::npos);
}

} // namespace
