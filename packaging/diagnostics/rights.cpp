#include "packaging/diagnostics/rights.h"

namespace diagnostics {

namespace {

// Of an access mask. The same bit lets a file be written and a folder be added files to.
constexpr unsigned long kWriteOrAddFile = 0x2;
constexpr unsigned long kAppend = 0x4;
constexpr unsigned long kDeleteWithin = 0x40;
constexpr unsigned long kDelete = 0x10000;
constexpr unsigned long kChangeRights = 0x40000;
constexpr unsigned long kTakeOwnership = 0x80000;
constexpr unsigned long kEverything = 0x10000000;
constexpr unsigned long kWriteAnything = 0x40000000;

constexpr unsigned long kTakeOver = kDelete | kChangeRights | kTakeOwnership | kEverything | kWriteAnything;

} // namespace

std::vector<ClosedPlace> closed_places(const std::wstring& data, const std::wstring& package) {
    const std::wstring script = data + L"\\script";
    const std::wstring seven_zip = data + L"\\7-Zip";
    const std::wstring contents = package + L"\\Contents";
    return {{data, Kind::shared_folder},
            {script, Kind::shared_folder},
            {script + L"\\MaxRenderGlobalsParser.ms", Kind::file},
            {seven_zip, Kind::program_folder},
            {seven_zip + L"\\7z.exe", Kind::file},
            {seven_zip + L"\\7z.dll", Kind::file},
            {package, Kind::program_folder},
            {package + L"\\PackageContents.xml", Kind::file},
            {contents, Kind::program_folder},
            {contents + L"\\TarvoRendering.gup", Kind::file},
            {contents + L"\\PrepareAnalysisScript.ms", Kind::file}};
}

bool opens(unsigned long rights, Kind kind) {
    switch (kind) {
    case Kind::file:
        return (rights & (kTakeOver | kWriteOrAddFile | kAppend)) != 0;
    case Kind::program_folder:
        return (rights & (kTakeOver | kDeleteWithin | kWriteOrAddFile)) != 0;
    case Kind::shared_folder:
        break;
    }
    return (rights & (kTakeOver | kDeleteWithin)) != 0;
}

} // namespace diagnostics
