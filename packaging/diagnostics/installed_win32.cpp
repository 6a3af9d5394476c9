#include "packaging/diagnostics/installed_win32.h"

#include "common/win32_handles.h"
#include "packaging/diagnostics/files_win32.h"
#include "packaging/diagnostics/wide_text_win32.h"

#include <windows.h>

#include <algorithm>
#include <array>

#include <bcrypt.h>

namespace diagnostics {

namespace {

constexpr unsigned long kManifestBytes = 1024 * 1024;
constexpr unsigned long kModuleBytes = 64 * 1024 * 1024;
constexpr DWORD kChunk = 65536;
constexpr std::size_t kHashBytes = 32;

struct AlgorithmTraits {
    using Type = BCRYPT_ALG_HANDLE;
    static Type empty() { return nullptr; }
    static void close(Type handle) { ::BCryptCloseAlgorithmProvider(handle, 0); }
};

struct HashTraits {
    using Type = BCRYPT_HASH_HANDLE;
    static Type empty() { return nullptr; }
    static void close(Type handle) { ::BCryptDestroyHash(handle); }
};

class Sha256 {
public:
    Sha256() {
        BCRYPT_ALG_HANDLE algorithm = nullptr;
        if (::BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0) < 0) {
            return;
        }
        algorithm_.reset(algorithm);
        BCRYPT_HASH_HANDLE hash = nullptr;
        if (::BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0) >= 0) {
            hash_.reset(hash);
        }
    }

    void add(unsigned char* bytes, DWORD size) {
        if (hash_) {
            ::BCryptHashData(hash_.get(), bytes, size, 0);
        }
    }

    std::string finish() {
        std::array<unsigned char, kHashBytes> bytes = {};
        if (!hash_ ||
            ::BCryptFinishHash(hash_.get(), bytes.data(), static_cast<ULONG>(bytes.size()), 0) < 0) {
            return std::string();
        }
        std::string text;
        for (unsigned char byte : bytes) {
            text += "0123456789abcdef"[byte >> 4];
            text += "0123456789abcdef"[byte & 0xF];
        }
        return text;
    }

private:
    tarvo::UniqueHandle<AlgorithmTraits> algorithm_;
    tarvo::UniqueHandle<HashTraits> hash_;
};

FoundFile found_file(const std::wstring& path) {
    FoundFile found;
    const FileFact fact = file_fact(path);
    found.exists = fact.exists;
    found.size = fact.size;
    const tarvo::FileHandle file(::CreateFileW(path.c_str(), GENERIC_READ,
                                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                               nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) {
        return found;
    }
    Sha256 hash;
    std::array<unsigned char, kChunk> chunk;
    DWORD read = 0;
    while ((found.readable = ::ReadFile(file.get(), chunk.data(), kChunk, &read, nullptr) != FALSE) &&
           read != 0) {
        hash.add(chunk.data(), read);
    }
    found.sha256 = hash.finish();
    return found;
}

std::wstring installed_path(const std::wstring& program_data, const std::string& listed) {
    std::wstring path = program_data + L"/" + from_utf8(listed);
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

} // namespace

InstalledFiles installed_files(const std::wstring& program_data, const std::wstring& manifest) {
    InstalledFiles installed;
    installed.manifest_path = to_utf8(manifest);
    if (!file_fact(manifest).exists) {
        return installed;
    }
    std::vector<ListedFile> listed;
    installed.manifest = read_manifest(file_tail(manifest, kManifestBytes), listed) ? ManifestState::read
                                                                                    : ManifestState::damaged;
    installed.count = listed.size();
    for (const ListedFile& file : listed) {
        const std::wstring path = installed_path(program_data, file.path);
        const FoundFile found = found_file(path);
        const FileState state = compare(file, found);
        if (state != FileState::whole) {
            installed.damaged.push_back({to_utf8(path), state, found.size, file.size});
        }
    }
    return installed;
}

ModuleImage module_image(const std::wstring& path) {
    return read_image(file_tail(path, kModuleBytes));
}

} // namespace diagnostics
