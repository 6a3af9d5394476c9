#include "standin/max_file/scene_chunks.h"

#include "standin/max_file/scene_text.h"

namespace max_file {

namespace {

// Limits of memory, whatever a scene file claims.
constexpr std::size_t kMostClasses = 0x10000; // a class index is a chunk id
constexpr std::size_t kMostObjects = 4u << 20;
constexpr std::size_t kMostFiles = 1u << 20;
constexpr int kDeepestModifiers = 16;

constexpr std::uint32_t kNoObject = 0xFFFFFFFF;

std::string at_byte(const char* what, std::size_t offset) {
    return std::string(what) + " at byte " + std::to_string(offset);
}

bool read_class(Bytes content, SceneClass& result, std::string& problem) {
    ChunkWalk walk(content);
    Chunk chunk;
    bool has_name = false;
    bool has_ids = false;
    while (walk.next(chunk)) {
        if (chunk.id == kClassName) {
            result.name = wide_from_utf16(chunk.content);
            has_name = true;
        } else if (chunk.id == kClassIds) {
            ByteCursor ids(chunk.content);
            std::uint32_t library = 0;
            has_ids = ids.read(library) && ids.read(result.id_a) && ids.read(result.id_b) &&
                      ids.read(result.super_class);
            result.library = static_cast<std::int32_t>(library);
        }
    }
    problem = walk.problem();
    if (problem.empty() && !(has_name && has_ids)) {
        problem = "it has no name or no ids";
    }
    return problem.empty();
}

enum class Answer : std::uint8_t { unknown, in_progress, no, yes };

class CameraSearch {
public:
    CameraSearch(const std::vector<SceneClass>& classes, std::string& problem)
        : classes_(classes), problem_(problem) {}

    bool collect_objects(Bytes scene);
    bool find_cameras(std::vector<std::wstring>& cameras);

private:
    bool is_node(const Chunk& object) const;
    bool is_camera(std::size_t index) const;
    bool add_when_camera(std::size_t index, std::vector<std::wstring>& cameras);
    bool has_modifiers(const Chunk& object) const;
    bool leads_to_camera(std::size_t index, int depth, bool& found);
    bool any_leads_to_camera(const std::vector<std::uint32_t>& references, int depth, bool& found);
    bool parse_object(std::size_t index, std::vector<std::uint32_t>& references, Chunk* name, bool* has_name);
    bool parse_references(const Chunk& chunk, std::size_t index, std::vector<std::uint32_t>& references);
    bool fail(std::size_t index, const std::string& what);

    const std::vector<SceneClass>& classes_;
    std::string& problem_;
    std::vector<Chunk> objects_;
    std::vector<Answer> answers_; // to "is there a camera under these modifiers?"
};

bool CameraSearch::fail(std::size_t index, const std::string& what) {
    problem_ = "object " + std::to_string(index) + ": " + what;
    return false;
}

bool CameraSearch::collect_objects(Bytes scene) {
    ChunkWalk outer(scene);
    Chunk container;
    while (outer.next(container) && !container.is_container) {
    }
    if (!outer.problem().empty() || !container.is_container) {
        problem_ = outer.problem().empty() ? "there is no container of objects" : outer.problem();
        return false;
    }
    ChunkWalk inner(container.content);
    Chunk object;
    while (inner.next(object)) {
        if (objects_.size() == kMostObjects) {
            problem_ = "there are more than " + std::to_string(kMostObjects) + " objects";
            return false;
        }
        objects_.push_back(object);
    }
    answers_.assign(objects_.size(), Answer::unknown);
    problem_ = inner.problem();
    return problem_.empty();
}

// The grid has the class id of a node, but another super-class.
bool CameraSearch::is_node(const Chunk& object) const {
    if (object.id >= classes_.size() || !object.is_container) {
        return false;
    }
    const SceneClass& its_class = classes_[object.id];
    return its_class.id_a == 1 && its_class.id_b == 0 && its_class.super_class == kNodeSuperClass;
}

bool CameraSearch::is_camera(std::size_t index) const {
    const std::uint16_t id = objects_[index].id;
    return id < classes_.size() && classes_[id].super_class == kCameraSuperClass;
}

bool CameraSearch::has_modifiers(const Chunk& object) const {
    return object.id >= classes_.size() && object.is_container &&
           (object.id == kObjectWithModifiers || object.id == kObjectWithWorldModifiers);
}

bool CameraSearch::find_cameras(std::vector<std::wstring>& cameras) {
    for (std::size_t index = 0; index < objects_.size(); ++index) {
        if (is_node(objects_[index]) && !add_when_camera(index, cameras)) {
            return false;
        }
    }
    return true;
}

bool CameraSearch::add_when_camera(std::size_t index, std::vector<std::wstring>& cameras) {
    std::vector<std::uint32_t> references;
    Chunk name;
    bool has_name = false;
    if (!parse_object(index, references, &name, &has_name)) {
        return false;
    }
    bool found = false;
    if (!any_leads_to_camera(references, 0, found)) {
        return false;
    }
    if (!found) {
        return true;
    }
    if (!has_name || name.content.size % 2 != 0) {
        return fail(index, "a camera without a readable name");
    }
    cameras.push_back(wide_from_utf16(name.content));
    return true;
}

// Searches each object once: otherwise a few objects with many references to one another would take
// exponential time.
bool CameraSearch::leads_to_camera(std::size_t index, int depth, bool& found) {
    if (is_camera(index)) {
        found = true;
        return true;
    }
    if (!has_modifiers(objects_[index]) || answers_[index] == Answer::no) {
        return true;
    }
    if (answers_[index] == Answer::yes) {
        found = true;
        return true;
    }
    if (answers_[index] == Answer::in_progress || depth == kDeepestModifiers) {
        return fail(index, "modifiers lie on one another without an end");
    }
    answers_[index] = Answer::in_progress;
    std::vector<std::uint32_t> references;
    if (!parse_object(index, references, nullptr, nullptr) ||
        !any_leads_to_camera(references, depth + 1, found)) {
        return false;
    }
    answers_[index] = found ? Answer::yes : Answer::no;
    return true;
}

bool CameraSearch::any_leads_to_camera(const std::vector<std::uint32_t>& references, int depth, bool& found) {
    for (const std::uint32_t reference : references) {
        if (!leads_to_camera(reference, depth, found)) {
            return false;
        }
        if (found) {
            break;
        }
    }
    return true;
}

bool CameraSearch::parse_object(std::size_t index, std::vector<std::uint32_t>& references, Chunk* name,
                                bool* has_name) {
    ChunkWalk walk(objects_[index].content);
    Chunk chunk;
    while (walk.next(chunk)) {
        if (chunk.id == kReferenceList || chunk.id == kReferencePairs) {
            if (!parse_references(chunk, index, references)) {
                return false;
            }
        } else if (chunk.id == kNodeName && name != nullptr) {
            *name = chunk;
            *has_name = true;
        }
    }
    return walk.problem().empty() ? true : fail(index, walk.problem());
}

bool CameraSearch::parse_references(const Chunk& chunk, std::size_t index,
                                    std::vector<std::uint32_t>& references) {
    ByteCursor cursor(chunk.content);
    std::uint32_t word = 0;
    const bool in_pairs = chunk.id == kReferencePairs;
    if (in_pairs && !cursor.read(word)) {
        return fail(index, "its list of references is too short");
    }
    if (cursor.left() % (in_pairs ? 8 : 4) != 0) {
        return fail(index, "its list of references ends in the middle of an entry");
    }
    while (cursor.left() > 0) {
        if ((in_pairs && !cursor.read(word)) || !cursor.read(word)) {
            return fail(index, "its list of references ends in the middle of an entry");
        }
        if (word == kNoObject) {
            continue;
        }
        if (word >= objects_.size()) {
            return fail(index, "it refers to object " + std::to_string(word) + " of " +
                                   std::to_string(objects_.size()));
        }
        references.push_back(word);
    }
    return true;
}

// A count of characters, the characters, and a closing zero that the count does not include.
bool read_counted_text(ByteCursor& cursor, std::wstring& text) {
    std::uint32_t count = 0;
    Bytes characters;
    std::uint16_t closing = 0;
    if (!cursor.read(count) || count > cursor.left() / 2 ||
        !cursor.take(static_cast<std::size_t>(count) * 2, characters) || !cursor.read(closing) ||
        closing != 0) {
        return false;
    }
    text = wide_from_utf16(characters);
    return true;
}

} // namespace

bool ChunkWalk::fail(std::size_t offset, const char* what) {
    problem_ = at_byte("chunk", offset) + " " + what;
    return false;
}

bool ChunkWalk::next(Chunk& chunk) {
    if (!problem_.empty() || cursor_.left() == 0) {
        return false;
    }
    const std::size_t offset = cursor_.position();
    std::uint16_t id = 0;
    std::uint32_t short_size = 0;
    if (!cursor_.read(id) || !cursor_.read(short_size)) {
        return fail(offset, "is cut off in its header");
    }
    std::uint64_t size = short_size & 0x7FFFFFFFu;
    bool is_container = (short_size & 0x80000000u) != 0;
    if (short_size == 0) {
        std::uint64_t long_size = 0;
        if (!cursor_.read(long_size)) {
            return fail(offset, "is cut off in its header");
        }
        size = long_size & 0x7FFFFFFFFFFFFFFFu;
        is_container = (long_size >> 63) != 0;
    }
    const std::size_t header = cursor_.position() - offset;
    if (size < header) {
        return fail(offset, "has a size smaller than its own header");
    }
    if (size - header > cursor_.left()) {
        return fail(offset, "reaches past the end");
    }
    chunk.id = id;
    chunk.is_container = is_container;
    chunk.offset = offset;
    return cursor_.take(static_cast<std::size_t>(size - header), chunk.content);
}

bool read_class_directory(Bytes stream, std::vector<SceneClass>& classes, std::string& problem) {
    classes.clear();
    ChunkWalk walk(stream);
    Chunk chunk;
    while (walk.next(chunk)) {
        if (!chunk.is_container) {
            continue;
        }
        if (classes.size() == kMostClasses) {
            problem = "there are more classes than a scene can name";
            return false;
        }
        SceneClass next;
        if (!read_class(chunk.content, next, problem)) {
            problem.insert(0, "class " + std::to_string(classes.size()) + ": ");
            return false;
        }
        classes.push_back(next);
    }
    problem = walk.problem();
    if (problem.empty() && classes.empty()) {
        problem = "there are no classes";
    }
    return problem.empty();
}

bool read_cameras(Bytes scene, const std::vector<SceneClass>& classes, std::vector<std::wstring>& cameras,
                  std::string& problem) {
    cameras.clear();
    problem.clear();
    CameraSearch search(classes, problem);
    return search.collect_objects(scene) && search.find_cameras(cameras);
}

bool read_referenced_files(Bytes stream, std::vector<ReferencedFile>& files, std::string& problem) {
    constexpr std::size_t kIdSize = 16;
    files.clear();
    problem.clear();
    ByteCursor cursor(stream);
    while (cursor.left() > 0) {
        const std::size_t offset = cursor.position();
        Bytes id;
        ReferencedFile file;
        if (!cursor.take(kIdSize, id) || !read_counted_text(cursor, file.kind) ||
            !read_counted_text(cursor, file.named) || !read_counted_text(cursor, file.found)) {
            problem = at_byte("record", offset) + " is cut off or damaged";
            return false;
        }
        if (files.size() == kMostFiles) {
            problem = "there are too many records";
            return false;
        }
        files.push_back(file);
    }
    return true;
}

} // namespace max_file
