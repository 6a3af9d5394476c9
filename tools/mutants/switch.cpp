// Which mutant is on, and which ones a run came to. The latter is one byte each in the file that
// TARVO_MUTANT_REACH names, shared by all processes of a run.
#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

struct Reach {
    unsigned char* seen = nullptr;
    int count = 0;
};

#ifdef _WIN32
Reach open_reach(const char* name) {
    Reach reach;
    const HANDLE file = ::CreateFileA(name, GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    const HANDLE mapping = ::CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, 0, nullptr);
    if (mapping != nullptr) {
        reach.seen = static_cast<unsigned char*>(::MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0));
        reach.count = reach.seen != nullptr ? static_cast<int>(::GetFileSize(file, nullptr)) : 0;
        ::CloseHandle(mapping);
    }
    ::CloseHandle(file);
    return reach;
}
#else
Reach open_reach(const char* name) {
    Reach reach;
    const int file = ::open(name, O_RDWR);
    struct stat status = {};
    if (file >= 0 && ::fstat(file, &status) == 0) {
        void* const seen = ::mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ | PROT_WRITE,
                                  MAP_SHARED, file, 0);
        if (seen != MAP_FAILED) {
            reach.seen = static_cast<unsigned char*>(seen);
            reach.count = static_cast<int>(status.st_size);
        }
        ::close(file);
    }
    return reach;
}
#endif

struct State {
    int active = 0;
    Reach reach;
};

State read_environment() {
    State state;
    const char* const wanted = std::getenv("TARVO_MUTANT");
    state.active = wanted != nullptr ? std::atoi(wanted) : 0;
    const char* const name = std::getenv("TARVO_MUTANT_REACH");
    if (name != nullptr && name[0] != '\0') {
        state.reach = open_reach(name);
    }
    return state;
}

State& state() {
    static State one = read_environment();
    return one;
}

#ifdef _WIN32
// A module that is loaded two hundred times must not keep two hundred views. What ends after this object
// finds no view.
struct Unmapping {
    ~Unmapping() {
        const Reach reach = state().reach;
        state().reach = Reach();
        ::UnmapViewOfFile(reach.seen);
    }
};
const Unmapping g_unmapping;
#endif

} // namespace

bool mutant(int number) {
    const State& now = state();
    if (number < now.reach.count) {
        now.reach.seen[number] = 1;
    }
    return now.active == number;
}

void mutants_used(int first, int last) {
    const State& now = state();
    for (int number = first; number <= last && number < now.reach.count; ++number) {
        now.reach.seen[number] = 1;
    }
}

unsigned char* mutants_reached(int& count) {
    count = state().reach.count;
    return state().reach.seen;
}
