#include "standin/max_file/scene_composer.h"

#include "standin/base/text.h"
#include "standin/max_file/byte_writer.h"
#include "standin/max_file/property_set.h"
#include "standin/max_file/scene_chunks.h"
#include "standin/max_file/scene_text.h"

namespace max_file {

namespace {

constexpr std::uint16_t kClassContainer = 0x2040;
constexpr std::uint16_t kSceneContainer = 0x2023;
constexpr std::uint16_t kLibraryContainer = 0x2038;
constexpr std::uint16_t kLibraryDescription = 0x2039;
constexpr std::uint16_t kLibraryFile = 0x2037;
constexpr std::uint32_t kSystemWindows = 0x0002000A; // in the header of a property set

// The classes of a composed scene. The row is the class index, which is the chunk id in the stream "Scene".
enum ClassIndex : std::uint16_t {
    kTransform,
    kMesh,
    kTargetCamera,
    kFreeCamera,
    kModifier,
    kNode,
    kGrid,
    kSceneObject,
};
struct ClassRow {
    const wchar_t* name;
    std::int32_t library;
    std::uint32_t id_a;
    std::uint32_t id_b;
    std::uint32_t super_class;
};
constexpr ClassRow kClasses[] = {
    {L"Position/Rotation/Scale", -1, 0x2005, 0, 0x9008},
    {L"Box", 0, 0x10, 0, 0x10},
    {L"Target", 0, 0x1002, 0, kCameraSuperClass},
    {L"Free", 0, 0x1001, 0, kCameraSuperClass},
    {L"Camera Correction", 0, 0x4A22F1C7, 0x5B60D9E3, 0x810},
    {L"Node", -1, 1, 0, kNodeSuperClass},
    {L"Grid Reference", -1, 1, 0, 0xFFFFFE00},
    {L"Scene", -1, 0x2222, 0, 0x100},
};

ByteBuffer compose_class_directory() {
    ByteWriter directory;
    for (const ClassRow& row : kClasses) {
        ByteWriter ids;
        ids.u32(static_cast<std::uint32_t>(row.library)).u32(row.id_a).u32(row.id_b).u32(row.super_class);
        ByteWriter content;
        content.chunk(kClassIds, ids.bytes()).chunk(kClassName, ByteWriter().utf16(row.name).bytes());
        directory.container(kClassContainer, content.bytes());
    }
    return directory.bytes();
}

ByteBuffer compose_libraries() {
    ByteWriter content;
    content.chunk(kLibraryDescription, ByteWriter().utf16(L"Stand-in primitives").bytes());
    content.chunk(kLibraryFile, ByteWriter().utf16(L"prim.dlo").bytes());
    return ByteWriter().container(kLibraryContainer, content.bytes()).bytes();
}

// Objects in the order of their indices.
class ObjectList {
public:
    std::uint32_t add(std::uint16_t id, const ByteBuffer& content) {
        objects_.container(id, content);
        return count_++;
    }

    // The host writes references as a plain list or as pairs of slot and object; both appear here.
    std::uint32_t add_node(const std::wstring& name, std::uint32_t object, bool as_pairs) {
        const std::uint32_t transform = add(kTransform, ByteBuffer());
        ByteWriter content;
        if (as_pairs) {
            const ByteBuffer pairs = ByteWriter().u32(16).u32(0).u32(transform).u32(1).u32(object).bytes();
            content.chunk(kReferencePairs, pairs);
        } else {
            content.chunk(kReferenceList, ByteWriter().u32(transform).u32(object).u32(0xFFFFFFFF).bytes());
        }
        content.chunk(kNodeName, ByteWriter().utf16(name).bytes());
        return add(kNode, content.bytes());
    }

    std::uint32_t add_under_modifier(std::uint32_t object) {
        const std::uint32_t modifier = add(kModifier, ByteBuffer());
        ByteWriter content;
        content.chunk(kReferenceList, ByteWriter().u32(modifier).u32(object).bytes());
        return add(kObjectWithModifiers, content.bytes());
    }

    ByteBuffer bytes() const { return ByteWriter().container(kSceneContainer, objects_.bytes()).bytes(); }

private:
    ByteWriter objects_;
    std::uint32_t count_ = 0;
};

ByteBuffer compose_objects(const SceneModel& model) {
    ObjectList objects;
    objects.add_node(L"Box001", objects.add(kMesh, ByteBuffer()), true);
    for (std::size_t index = 0; index < model.cameras.size(); ++index) {
        const bool is_odd = index % 2 != 0;
        std::uint32_t camera = objects.add(is_odd ? kFreeCamera : kTargetCamera, ByteBuffer());
        if (index % 3 == 2) {
            camera = objects.add_under_modifier(camera);
        }
        objects.add_node(model.cameras[index], camera, !is_odd);
    }
    ByteWriter grid;
    grid.chunk(kReferenceList, ByteWriter().u32(0).bytes());
    objects.add(kGrid, grid.bytes());
    objects.add(kSceneObject, ByteBuffer());
    return objects.bytes();
}

void add_counted_text(ByteWriter& writer, const std::wstring& text) {
    writer.u32(static_cast<std::uint32_t>(text.size())).utf16(text).u16(0);
}

// The host gives every file a random id; a hash of the path keeps the bytes reproducible.
void add_file_id(ByteWriter& writer, const std::wstring& path) {
    std::uint64_t hash = 14695981039346656037u;
    for (int half = 0; half < 2; ++half) {
        for (const wchar_t unit : path) {
            hash = (hash ^ static_cast<std::uint16_t>(unit)) * 1099511628211u;
        }
        hash ^= static_cast<std::uint64_t>(half);
        writer.number(hash);
    }
}

ByteBuffer compose_referenced_files(const SceneModel& model) {
    ByteWriter writer;
    for (const ReferencedFile& file : model.references) {
        add_file_id(writer, file.named);
        add_counted_text(writer, file.kind);
        add_counted_text(writer, file.named);
        add_counted_text(writer, file.found);
    }
    return writer.bytes();
}

void add_property_text(ByteWriter& writer, const std::wstring& text) {
    std::string utf8 = base::to_utf8(text);
    utf8.resize((utf8.size() / 4 + 1) * 4); // with its closing zero, filled up to a multiple of four
    writer.u32(static_cast<std::uint32_t>(utf8.size()));
    writer.raw(ByteBuffer(utf8.begin(), utf8.end()));
}

std::wstring two_digits(std::size_t number) {
    return (number < 10 ? L"0" : L"") + std::to_wstring(number);
}

std::vector<std::wstring> render_lines(const SceneModel& model) {
    std::vector<std::wstring> lines;
    for (std::size_t index = 0; index < model.render_cameras.size(); ++index) {
        lines.push_back(L"Render Camera " + two_digits(index) + L"=" + model.render_cameras[index]);
    }
    lines.push_back(L"Render Width=" + std::to_wstring(model.width));
    lines.push_back(L"Render Height=" + std::to_wstring(model.height));
    lines.push_back(L"Renderer Name=" + model.renderer);
    lines.push_back(L"Animation Start=" + std::to_wstring(model.start_frame));
    lines.push_back(L"Animation End=" + std::to_wstring(model.end_frame));
    return lines;
}

std::vector<SummarySection> summary_sections(const SceneModel& model) {
    std::vector<std::wstring> names = {L"Box001"};
    names.insert(names.end(), model.cameras.begin(), model.cameras.end());
    std::vector<std::wstring> files;
    for (const ReferencedFile& file : model.references) {
        files.push_back(file_name_of(file.named));
    }
    const std::wstring version = model.version + L"0";
    const std::wstring cameras = std::to_wstring(model.summary_camera_count);
    return {
        {L"General", {L"3ds Max Version: " + version, L"Uncompressed", L"Saved As Version: " + version}},
        {L"Mesh Totals", {L"Vertices: 8", L"Faces: 12"}},
        {L"Scene Totals",
         {L"Objects: 1", L"Shapes: 0", L"Lights: 0", L"Cameras: " + cameras, L"Helpers: 0", L"Space Warps: 0",
          L"Total: " + std::to_wstring(names.size())}},
        {L"External Dependencies", files},
        {L"Objects", names},
        {L"Materials", {}},
        {L"Used Plug-Ins", {L"prim.dlo"}},
        {L"Render Data", render_lines(model)},
    };
}

struct Property {
    std::uint32_t id;
    ByteBuffer value;
};

ByteBuffer compose_property_set(const std::uint8_t (&format)[16], const std::vector<Property>& properties) {
    const std::size_t directory_size = 8 + 8 * properties.size();
    ByteWriter directory;
    ByteWriter values;
    for (const Property& property : properties) {
        directory.u32(property.id).u32(static_cast<std::uint32_t>(directory_size + values.size()));
        values.raw(property.value).align(4);
    }
    constexpr std::uint32_t kSectionOffset = 48;
    ByteWriter writer;
    writer.u16(kPropertySetMark).u16(0).u32(kSystemWindows).raw(ByteBuffer(16)).u32(1);
    writer.raw(ByteBuffer(format, format + 16)).u32(kSectionOffset);
    writer.u32(static_cast<std::uint32_t>(directory_size + values.size()));
    writer.u32(static_cast<std::uint32_t>(properties.size())).raw(directory.bytes()).raw(values.bytes());
    return writer.bytes();
}

ByteBuffer code_page_value() {
    return ByteWriter().u32(kTypeInt16).u16(kCodePageUtf8).u16(0).bytes();
}

ByteBuffer compose_summary(const SceneModel& model) {
    const std::vector<SummarySection> sections = summary_sections(model);
    ByteWriter headings;
    ByteWriter lines;
    std::uint32_t line_count = 0;
    headings.u32(kTypeVector | kTypeVariant).u32(static_cast<std::uint32_t>(sections.size() * 2));
    for (const SummarySection& section : sections) {
        headings.u32(kTypeText);
        add_property_text(headings, section.heading);
        headings.u32(kTypeInt32).u32(static_cast<std::uint32_t>(section.lines.size()));
        for (const std::wstring& line : section.lines) {
            add_property_text(lines, line);
            ++line_count;
        }
    }
    const ByteBuffer titles =
        ByteWriter().u32(kTypeVector | kTypeText).u32(line_count).raw(lines.bytes()).bytes();
    return compose_property_set(kDocumentSummaryFormat, {{kCodePageProperty, code_page_value()},
                                                         {kHeadingsProperty, headings.bytes()},
                                                         {kLinesProperty, titles}});
}

ByteBuffer compose_title() {
    static const std::uint8_t kSummaryFormat[16] = {0xE0, 0x85, 0x9F, 0xF2, 0xF9, 0x4F, 0x68, 0x10,
                                                    0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9};
    constexpr std::uint32_t kTitleProperty = 2;
    ByteWriter title;
    title.u32(kTypeText);
    add_property_text(title, L"Stand-in scene");
    return compose_property_set(kSummaryFormat,
                                {{kCodePageProperty, code_page_value()}, {kTitleProperty, title.bytes()}});
}

} // namespace

SceneModel sample_model() {
    SceneModel model;
    model.version = L"21.0";
    model.app_version = L"2019";
    model.renderer = L"Scanline Renderer";
    model.cameras = {L"Camera001", L"\u76F8\u673A\u5BA2\u5385", L"Camera Living Room"};
    model.render_cameras = model.cameras;
    model.summary_camera_count = 3;
    model.width = 1280;
    model.height = 720;
    model.references = {{L"Bitmap", L"C:\\Windows\\win.ini", L"C:\\Windows\\win.ini"},
                        {L"Bitmap", L"X:\\textures\\missing_wood.jpg", L""}};
    return model;
}

ComposedScene compose_scene(const SceneModel& model) {
    ComposedScene composed;
    composed.streams.class_directory = compose_class_directory();
    composed.streams.scene = compose_objects(model);
    composed.streams.referenced_files.present = true;
    composed.streams.referenced_files.bytes = compose_referenced_files(model);
    composed.streams.summary.present = true;
    composed.streams.summary.bytes = compose_summary(model);
    composed.libraries = compose_libraries();
    composed.title = compose_title();
    return composed;
}

} // namespace max_file
