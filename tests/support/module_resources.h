// The running module's own resources as they lie in the file, language by language and whatever the language
// of the process. What is not there comes back empty.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

namespace support {

constexpr LANGID kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr LANGID kChinese = MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED);

// In ascending order.
std::vector<LANGID> ResourceLanguages(const wchar_t* type, unsigned name);

struct ResourceBytes {
    const unsigned char* data = nullptr;
    std::size_t size = 0;
};
ResourceBytes FindResourceBytes(const wchar_t* type, unsigned name, LANGID language);

// All texts of one language by number.
std::map<unsigned, std::wstring> StringTable(LANGID language);

// One control of a dialog template; places and sizes in dialog units.
struct TemplateItem {
    DWORD id = 0;
    std::wstring kind; // the window class in lower case: resource compilers differ in it
    std::wstring text;
    DWORD style = 0;
    DWORD ex_style = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool has(DWORD bits) const { return (style & bits) == bits; }
};

// BS_PUSHBUTTON and so on; BS_TYPEMASK for what is no button.
DWORD ButtonType(const TemplateItem& item);

// For messages of failing tests: number, place and text, in ASCII.
std::string Describe(const TemplateItem& item);

struct DialogTemplate {
    DWORD style = 0;
    int width = 0;
    int height = 0;
    std::wstring caption;
    std::wstring font;
    int point_size = 0;
    std::vector<TemplateItem> items; // in tab order

    // Null when there is none.
    const TemplateItem* find(DWORD id) const;
};

// Reads a DIALOGEX template; without items when it is missing or cut short.
DialogTemplate ReadDialogTemplate(unsigned name, LANGID language);

// The text without its access key and its mark-up, and the key itself in upper case (0: none).
std::wstring PlainText(const std::wstring& text);
wchar_t AccessKey(const std::wstring& text);

} // namespace support
