#include "standin/max_file/scene_file_win32.h"

#include "common/win32_handles.h"
#include "standin/base/text.h"
#include "standin/max_file/gunzip.h"
#include "standin/max_file/scene_composer.h"
#include "standin/max_file/scene_text.h"
#include "standin/max_file/storage_layout.h"
#include "standin/max_file/storage_win32.h"

#include <objbase.h>

#include <algorithm>
#include <cstdio>
#include <new>

namespace max_file {

namespace {

constexpr std::size_t kMegabyte = 1024 * 1024;
constexpr std::size_t kLargestScene = 1024 * kMegabyte;
constexpr std::size_t kLargestOther = 64 * kMegabyte;
constexpr std::size_t kReadStep = 4 * kMegabyte;

std::string system_error(DWORD error) {
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME) {
        return "does not exist";
    }
    if (error == ERROR_SHARING_VIOLATION) {
        return "cannot be opened: another program holds it";
    }
    return "cannot be opened: system error " + std::to_string(error);
}

std::wstring full_path(const std::wstring& path) {
    const DWORD needed = ::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
    std::wstring full(needed, L'\0');
    const DWORD written = needed == 0 ? 0 : ::GetFullPathNameW(path.c_str(), needed, &full[0], nullptr);
    if (written == 0 || written >= needed) {
        return path;
    }
    full.resize(written);
    return full;
}

bool read_at(HANDLE file, std::uint64_t offset, std::uint8_t* buffer, std::size_t count) {
    LARGE_INTEGER position;
    position.QuadPart = static_cast<LONGLONG>(offset);
    DWORD got = 0;
    return ::SetFilePointerEx(file, position, nullptr, FILE_BEGIN) &&
           ::ReadFile(file, buffer, static_cast<DWORD>(count), &got, nullptr) && got == count;
}

std::string file_problem(const std::wstring& path, std::uint64_t& size) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return system_error(::GetLastError());
    }
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return "is a folder";
    }
    const tarvo::FileHandle file(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                               nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER length = {};
    if (!file || !::GetFileSizeEx(file.get(), &length)) {
        return system_error(::GetLastError());
    }
    size = static_cast<std::uint64_t>(length.QuadPart);
    if (size == 0) {
        return "is empty";
    }
    const HANDLE handle = file.get();
    return storage_problem([handle](std::uint64_t offset, std::uint8_t* buffer,
                                    std::size_t count) { return read_at(handle, offset, buffer, count); },
                           size);
}

// One scene file, open.
class OpenScene {
public:
    OpenScene(StoragePointer storage, std::uint64_t file_size)
        : storage_(std::move(storage)), file_size_(file_size) {}

    bool read(SceneStreams& streams, std::string& problem);

private:
    bool read_required(const wchar_t* name, std::size_t limit, ByteBuffer& bytes, std::string& problem);
    bool read_optional(const wchar_t* name, OptionalStream& stream, std::string& problem);
    bool read_stream(IStream& stream, std::size_t limit, ByteBuffer& bytes, std::string& problem);
    bool read_bytes(IStream& stream, std::size_t size, ByteBuffer& bytes);
    HRESULT open(const wchar_t* name, StreamPointer& stream);

    StoragePointer storage_;
    std::uint64_t file_size_;
};

HRESULT OpenScene::open(const wchar_t* name, StreamPointer& stream) {
    IStream* opened = nullptr;
    const HRESULT result =
        storage_.get()->OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &opened);
    stream.reset(SUCCEEDED(result) ? opened : nullptr);
    return result;
}

// In steps, so that a false size allocates no memory.
bool OpenScene::read_bytes(IStream& stream, std::size_t size, ByteBuffer& bytes) {
    bytes.clear();
    while (bytes.size() < size) {
        const std::size_t before = bytes.size();
        const std::size_t step = std::min(kReadStep, size - before);
        bytes.resize(before + step);
        ULONG got = 0;
        if (FAILED(stream.Read(bytes.data() + before, static_cast<ULONG>(step), &got)) || got != step) {
            return false;
        }
    }
    return true;
}

bool OpenScene::read_stream(IStream& stream, std::size_t limit, ByteBuffer& bytes, std::string& problem) {
    STATSTG status = {};
    if (FAILED(stream.Stat(&status, STATFLAG_NONAME))) {
        problem = "its size cannot be read";
        return false;
    }
    const std::uint64_t size = status.cbSize.QuadPart;
    if (size > file_size_) {
        problem = "it claims to be larger than the file";
        return false;
    }
    if (size > limit) {
        problem = "it is too large";
        return false;
    }
    if (!read_bytes(stream, static_cast<std::size_t>(size), bytes)) {
        problem = "it should hold " + std::to_string(size) + " bytes, which cannot all be read";
        return false;
    }
    if (is_gzip(bytes)) {
        ByteBuffer packed;
        packed.swap(bytes);
        return gunzip(packed, limit, bytes, problem);
    }
    return true;
}

bool OpenScene::read_required(const wchar_t* name, std::size_t limit, ByteBuffer& bytes,
                              std::string& problem) {
    StreamPointer stream;
    if (FAILED(open(name, stream))) {
        problem = "is not a 3ds Max scene: it has no stream named " + shown_name(name);
        return false;
    }
    return read_stream(*stream.get(), limit, bytes, problem) || fail_stream(name, problem);
}

bool OpenScene::read_optional(const wchar_t* name, OptionalStream& stream, std::string& problem) {
    StreamPointer opened;
    const HRESULT result = open(name, opened);
    if (result == STG_E_FILENOTFOUND) {
        return true;
    }
    stream.present = true;
    if (FAILED(result)) {
        problem = "it cannot be opened";
    } else if (read_stream(*opened.get(), kLargestOther, stream.bytes, problem)) {
        return true;
    }
    return fail_stream(name, problem);
}

bool OpenScene::read(SceneStreams& streams, std::string& problem) {
    return read_required(kSceneStream, kLargestScene, streams.scene, problem) &&
           read_required(kClassDirectoryStream, kLargestOther, streams.class_directory, problem) &&
           read_optional(kReferencedFilesStream, streams.referenced_files, problem) &&
           read_optional(kSummaryStream, streams.summary, problem);
}

bool open_scene(const std::wstring& path, SceneModel& model, std::string& problem) {
    std::uint64_t file_size = 0;
    problem = file_problem(path, file_size);
    if (!problem.empty()) {
        return false;
    }
    IStorage* opened = nullptr;
    const HRESULT result =
        ::StgOpenStorage(path.c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0, &opened);
    if (FAILED(result)) {
        problem = result == STG_E_SHAREVIOLATION ? "cannot be opened: another program holds it"
                                                 : "is damaged: the system cannot open its storage";
        return false;
    }
    OpenScene scene(StoragePointer(opened), file_size);
    SceneStreams streams;
    model.path = path;
    return scene.read(streams, problem) && read_scene(streams, model, problem);
}

constexpr DWORD kWriteMode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

HRESULT write_stream(IStorage& storage, const wchar_t* name, const ByteBuffer& bytes) {
    IStream* created = nullptr;
    HRESULT result = storage.CreateStream(name, kWriteMode, 0, 0, &created);
    if (FAILED(result)) {
        return result;
    }
    const StreamPointer stream(created);
    ULONG written = 0;
    if (!bytes.empty()) {
        result = stream.get()->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written);
    }
    if (SUCCEEDED(result) && written != bytes.size()) {
        result = STG_E_MEDIUMFULL;
    }
    return result;
}

HRESULT write_streams(IStorage& storage, const ComposedScene& scene) {
    const struct {
        const wchar_t* name;
        const ByteBuffer& bytes;
    } streams[] = {
        {kLibrariesStream, scene.libraries},
        {kClassDirectoryStream, scene.streams.class_directory},
        {kSceneStream, scene.streams.scene},
        {kReferencedFilesStream, scene.streams.referenced_files.bytes},
        {kSummaryStream, scene.streams.summary.bytes},
        {kTitleStream, scene.title},
    };
    for (const auto& stream : streams) {
        const HRESULT result = write_stream(storage, stream.name, stream.bytes);
        if (FAILED(result)) {
            return result;
        }
    }
    return S_OK;
}

HRESULT write_storage(const ComposedScene& scene, const std::wstring& path) {
    IStorage* created = nullptr;
    HRESULT result = ::StgCreateDocfile(path.c_str(), kWriteMode, 0, &created);
    if (FAILED(result)) {
        return result;
    }
    const StoragePointer storage(created);
    result = write_streams(*storage.get(), scene);
    // A fixed time: the same model gives the same bytes.
    const FILETIME no_time = {1, 0};
    if (SUCCEEDED(result)) {
        result = storage.get()->SetElementTimes(nullptr, &no_time, &no_time, &no_time);
    }
    return SUCCEEDED(result) ? storage.get()->Commit(STGC_DEFAULT) : result;
}

} // namespace

bool open_scene_file(const std::wstring& path, SceneModel& model, std::wstring& problem) {
    if (path.empty()) {
        problem = L"No scene file is named.";
        return false;
    }
    std::string what;
    const std::wstring full = full_path(path);
    bool good = false;
    try {
        good = open_scene(full, model, what);
    } catch (const std::bad_alloc&) {
        what = "is too large for the memory";
    }
    problem = good ? std::wstring() : full + L" " + base::to_wide(what) + L".";
    return good;
}

bool write_scene_file(const SceneModel& model, const std::wstring& path, std::wstring& problem) {
    const HRESULT result = write_storage(compose_scene(model), path);
    char code[9];
    std::snprintf(code, sizeof(code), "%08lX", static_cast<unsigned long>(result));
    problem = SUCCEEDED(result) ? std::wstring()
                                : path + L" cannot be written: error " + base::to_wide(code) + L".";
    return SUCCEEDED(result);
}

} // namespace max_file
