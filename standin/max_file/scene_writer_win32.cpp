#include "standin/max_file/scene_writer_win32.h"

#include "standin/max_file/scene_composer.h"
#include "standin/max_file/storage_win32.h"

#include <objbase.h>

namespace max_file {

namespace {

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
    // The time of writing would make every file different.
    const FILETIME no_time = {1, 0};
    if (SUCCEEDED(result)) {
        result = storage.get()->SetElementTimes(nullptr, &no_time, &no_time, &no_time);
    }
    return SUCCEEDED(result) ? storage.get()->Commit(STGC_DEFAULT) : result;
}

std::wstring hexadecimal(HRESULT result) {
    std::wstring digits;
    for (int shift = 28; shift >= 0; shift -= 4) {
        digits.push_back(L"0123456789ABCDEF"[(static_cast<unsigned long>(result) >> shift) & 0xF]);
    }
    return digits;
}

} // namespace

bool write_scene_file(const SceneModel& model, const std::wstring& path, std::wstring& problem) {
    const HRESULT result = write_storage(compose_scene(model), path);
    problem = SUCCEEDED(result) ? std::wstring()
                                : path + L" cannot be written: error " + hexadecimal(result) + L".";
    return SUCCEEDED(result);
}

} // namespace max_file
