#include "tests/fuzz/support/scene_oracle.h"

#include <cstddef>
#include <set>

namespace fuzz {

namespace {

struct Span {
    const std::uint8_t* first = nullptr;
    std::size_t size = 0;
};

struct Piece {
    unsigned id = 0;
    bool is_container = false;
    Span content;
};

std::uint64_t number(const std::uint8_t* at, int bytes) {
    std::uint64_t value = 0;
    for (int index = bytes - 1; index >= 0; --index) {
        value = value << 8 | at[index];
    }
    return value;
}

// False when the sizes do not fit together.
bool pieces_of(Span span, std::vector<Piece>& pieces) {
    for (std::size_t at = 0; at < span.size;) {
        if (span.size - at < 6) {
            return false;
        }
        std::uint64_t size = number(span.first + at + 2, 4);
        std::uint64_t mark = 0x80000000u;
        std::size_t header = 6;
        if (size == 0) {
            if (span.size - at < 14) {
                return false;
            }
            size = number(span.first + at + 6, 8);
            mark = std::uint64_t(1) << 63;
            header = 14;
        }
        Piece piece;
        piece.id = static_cast<unsigned>(number(span.first + at, 2));
        piece.is_container = (size & mark) != 0;
        size &= ~mark;
        if (size < header || size > span.size - at) {
            return false;
        }
        piece.content = {span.first + at + header, static_cast<std::size_t>(size) - header};
        pieces.push_back(piece);
        at += static_cast<std::size_t>(size);
    }
    return true;
}

std::wstring text_of(Span span) {
    std::wstring text;
    for (std::size_t at = 0; at + 1 < span.size && number(span.first + at, 2) != 0; at += 2) {
        text += static_cast<wchar_t>(number(span.first + at, 2));
    }
    return text;
}

struct Class {
    std::uint64_t id_a = 0;
    std::uint64_t id_b = 0;
    std::uint64_t super_class = 0;
};

struct Scene {
    std::vector<Class> classes;
    std::vector<Piece> objects;

    const Class* class_of(const Piece& object) const {
        return object.id < classes.size() ? &classes[object.id] : nullptr;
    }
    bool is_camera(const Piece& object) const {
        return class_of(object) != nullptr && class_of(object)->super_class == 0x20;
    }
    bool is_node(const Piece& object) const {
        const Class* its = class_of(object);
        return object.is_container && its != nullptr && its->id_a == 1 && its->id_b == 0 &&
               its->super_class == 1;
    }
    bool is_stack(const Piece& object) const {
        return object.is_container && class_of(object) == nullptr &&
               (object.id == 0x2032 || object.id == 0x2033);
    }
};

std::vector<std::size_t> references_of(const Piece& object) {
    std::vector<std::size_t> references;
    std::vector<Piece> pieces;
    pieces_of(object.content, pieces);
    for (const Piece& piece : pieces) {
        const bool pairs = piece.id == 0x2035;
        if (!pairs && piece.id != 0x2034) {
            continue;
        }
        for (std::size_t at = pairs ? 8 : 0; at + 4 <= piece.content.size; at += pairs ? 8 : 4) {
            references.push_back(static_cast<std::size_t>(number(piece.content.first + at, 4)));
        }
    }
    return references;
}

bool leads_to_camera(const Scene& scene, const Piece& node) {
    std::set<std::size_t> met;
    std::vector<std::size_t> open = references_of(node);
    while (!open.empty()) {
        const std::size_t index = open.back();
        open.pop_back();
        if (index >= scene.objects.size() || !met.insert(index).second) {
            continue;
        }
        const Piece& object = scene.objects[index];
        if (scene.is_camera(object)) {
            return true;
        }
        if (scene.is_stack(object)) {
            const std::vector<std::size_t> further = references_of(object);
            open.insert(open.end(), further.begin(), further.end());
        }
    }
    return false;
}

bool read_classes(const std::vector<std::uint8_t>& directory, std::vector<Class>& classes) {
    std::vector<Piece> pieces;
    if (!pieces_of({directory.data(), directory.size()}, pieces)) {
        return false;
    }
    for (const Piece& piece : pieces) {
        std::vector<Piece> parts;
        if (!piece.is_container || !pieces_of(piece.content, parts)) {
            continue;
        }
        classes.emplace_back();
        for (const Piece& part : parts) {
            if (part.id == 0x2060 && part.content.size >= 16) {
                classes.back() = {number(part.content.first + 4, 4), number(part.content.first + 8, 4),
                                  number(part.content.first + 12, 4)};
            }
        }
    }
    return true;
}

} // namespace

bool find_cameras(const std::vector<std::uint8_t>& class_directory, const std::vector<std::uint8_t>& stream,
                  std::vector<std::wstring>& cameras) {
    Scene scene;
    std::vector<Piece> outer;
    pieces_of({stream.data(), stream.size()}, outer);
    std::size_t first = 0;
    while (first < outer.size() && !outer[first].is_container) {
        ++first;
    }
    if (first == outer.size() || !read_classes(class_directory, scene.classes) ||
        !pieces_of(outer[first].content, scene.objects)) {
        return false;
    }
    for (const Piece& object : scene.objects) {
        if (!scene.is_node(object)) {
            continue;
        }
        for (const std::size_t index : references_of(object)) {
            if (index >= scene.objects.size() && index != 0xFFFFFFFF) {
                return false;
            }
        }
        if (!leads_to_camera(scene, object)) {
            continue;
        }
        std::vector<Piece> parts;
        pieces_of(object.content, parts);
        std::wstring name;
        for (const Piece& part : parts) {
            name = part.id == 0x0962 ? text_of(part.content) : name;
        }
        cameras.push_back(name);
    }
    return true;
}

} // namespace fuzz
