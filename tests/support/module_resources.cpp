#include "tests/support/module_resources.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwctype>

namespace support {

namespace {

constexpr unsigned kTextsPerBlock = 16;

BOOL CALLBACK CollectLanguage(HMODULE, LPCWSTR, LPCWSTR, WORD language, LONG_PTR result) {
    reinterpret_cast<std::vector<LANGID>*>(result)->push_back(language);
    return TRUE;
}

BOOL CALLBACK CollectName(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR result) {
    if (IS_INTRESOURCE(name)) {
        const auto number = static_cast<unsigned>(reinterpret_cast<ULONG_PTR>(name));
        reinterpret_cast<std::vector<unsigned>*>(result)->push_back(number);
    }
    return TRUE;
}

// Reads on to the end and then answers zeros; `intact` tells.
class TemplateReader {
public:
    explicit TemplateReader(ResourceBytes bytes) : bytes_(bytes) {}

    template <class Number>
    Number next() {
        Number value = 0;
        if (position_ + sizeof value > bytes_.size) {
            intact_ = false;
            return value;
        }
        std::memcpy(&value, bytes_.data + position_, sizeof value);
        position_ += sizeof value;
        return value;
    }

    std::wstring text() {
        std::wstring result;
        while (const WORD unit = next<WORD>()) {
            result.push_back(static_cast<wchar_t>(unit));
        }
        return result;
    }

    // A text, or 0xFFFF and a number, which is handed over in `ordinal`.
    std::wstring text_or_ordinal(WORD& ordinal) {
        ordinal = 0;
        const std::size_t start = position_;
        if (next<WORD>() == 0xFFFF) {
            ordinal = next<WORD>();
            return std::wstring();
        }
        position_ = start;
        return text();
    }

    void align() { position_ = (position_ + 3) & ~static_cast<std::size_t>(3); }
    void skip(std::size_t count) { position_ += count; }
    bool intact() const { return intact_; }

private:
    ResourceBytes bytes_;
    std::size_t position_ = 0;
    bool intact_ = true;
};

std::wstring ClassOfOrdinal(WORD ordinal) {
    static const wchar_t* const kClasses[] = {L"button",  L"edit",      L"static",
                                              L"listbox", L"scrollbar", L"combobox"};
    constexpr WORD kFirst = 0x80;
    const std::size_t index = static_cast<std::size_t>(ordinal) - kFirst;
    return index < sizeof kClasses / sizeof kClasses[0] ? kClasses[index] : L"?";
}

TemplateItem ReadItem(TemplateReader& reader) {
    TemplateItem item;
    reader.align();
    reader.next<DWORD>(); // help id
    item.ex_style = reader.next<DWORD>();
    item.style = reader.next<DWORD>();
    item.x = reader.next<short>();
    item.y = reader.next<short>();
    item.width = reader.next<short>();
    item.height = reader.next<short>();
    item.id = reader.next<DWORD>();
    WORD ordinal = 0;
    item.kind = reader.text_or_ordinal(ordinal);
    if (ordinal != 0) {
        item.kind = ClassOfOrdinal(ordinal);
    }
    std::transform(item.kind.begin(), item.kind.end(), item.kind.begin(), &std::towlower);
    item.text = reader.text_or_ordinal(ordinal);
    reader.skip(reader.next<WORD>());
    return item;
}

void ReadFont(TemplateReader& reader, DialogTemplate& dialog) {
    dialog.point_size = reader.next<WORD>();
    reader.next<WORD>(); // weight
    reader.next<WORD>(); // italic, character set
    dialog.font = reader.text();
}

void ReadTexts(ResourceBytes bytes, unsigned first, std::map<unsigned, std::wstring>& texts) {
    TemplateReader reader(bytes);
    for (unsigned i = 0; i < kTextsPerBlock; ++i) {
        std::wstring text(reader.next<WORD>(), L'\0');
        for (wchar_t& unit : text) {
            unit = static_cast<wchar_t>(reader.next<WORD>());
        }
        if (!text.empty()) {
            texts[first + i] = text;
        }
    }
}

} // namespace

std::vector<LANGID> ResourceLanguages(const wchar_t* type, unsigned name) {
    std::vector<LANGID> languages;
    ::EnumResourceLanguagesW(::GetModuleHandleW(nullptr), type, MAKEINTRESOURCEW(name), &CollectLanguage,
                             reinterpret_cast<LONG_PTR>(&languages));
    std::sort(languages.begin(), languages.end());
    return languages;
}

ResourceBytes FindResourceBytes(const wchar_t* type, unsigned name, LANGID language) {
    // FindResourceExW would answer with another language where this one is missing.
    const std::vector<LANGID> languages = ResourceLanguages(type, name);
    ResourceBytes bytes;
    if (std::find(languages.begin(), languages.end(), language) == languages.end()) {
        return bytes;
    }
    const HMODULE module = ::GetModuleHandleW(nullptr);
    const HRSRC resource = ::FindResourceExW(module, type, MAKEINTRESOURCEW(name), language);
    const HGLOBAL loaded = resource != nullptr ? ::LoadResource(module, resource) : nullptr;
    if (loaded != nullptr) {
        bytes.data = static_cast<const unsigned char*>(::LockResource(loaded));
        bytes.size = ::SizeofResource(module, resource);
    }
    return bytes;
}

std::map<unsigned, std::wstring> StringTable(LANGID language) {
    std::vector<unsigned> blocks;
    ::EnumResourceNamesW(::GetModuleHandleW(nullptr), RT_STRING, &CollectName,
                         reinterpret_cast<LONG_PTR>(&blocks));
    std::map<unsigned, std::wstring> texts;
    for (const unsigned block : blocks) {
        const ResourceBytes bytes = FindResourceBytes(RT_STRING, block, language);
        if (bytes.data != nullptr) {
            ReadTexts(bytes, (block - 1) * kTextsPerBlock, texts);
        }
    }
    return texts;
}

DWORD ButtonType(const TemplateItem& item) {
    return item.kind == L"button" ? item.style & BS_TYPEMASK : static_cast<DWORD>(BS_TYPEMASK);
}

std::string Describe(const TemplateItem& item) {
    std::string result = "control " + std::to_string(static_cast<int>(item.id)) + " at " +
                         std::to_string(item.x) + "," + std::to_string(item.y) + " '";
    for (const wchar_t unit : item.text) {
        result.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    }
    return result + "'";
}

const TemplateItem* DialogTemplate::find(DWORD id) const {
    for (const TemplateItem& item : items) {
        if (item.id == id) {
            return &item;
        }
    }
    return nullptr;
}

DialogTemplate ReadDialogTemplate(unsigned name, LANGID language) {
    const ResourceBytes bytes = FindResourceBytes(RT_DIALOG, name, language);
    TemplateReader reader(bytes);
    const bool extended = reader.next<WORD>() == 1 && reader.next<WORD>() == 0xFFFF;
    if (!extended) {
        return DialogTemplate();
    }
    DialogTemplate dialog;
    reader.next<DWORD>(); // help id
    reader.next<DWORD>(); // extended style
    dialog.style = reader.next<DWORD>();
    const WORD count = reader.next<WORD>();
    reader.next<DWORD>(); // place
    dialog.width = reader.next<short>();
    dialog.height = reader.next<short>();
    WORD ordinal = 0;
    reader.text_or_ordinal(ordinal); // menu
    reader.text_or_ordinal(ordinal); // class
    dialog.caption = reader.text();
    if ((dialog.style & DS_SETFONT) != 0) {
        ReadFont(reader, dialog);
    }
    for (WORD i = 0; i < count; ++i) {
        dialog.items.push_back(ReadItem(reader));
    }
    return reader.intact() ? dialog : DialogTemplate();
}

std::wstring PlainText(const std::wstring& text) {
    std::wstring plain;
    bool in_tag = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'<' || text[i] == L'>') {
            in_tag = text[i] == L'<';
        } else if (text[i] == L'&' && i + 1 < text.size() && text[i + 1] == L'&') {
            plain.push_back(text[i++]);
        } else if (text[i] != L'&' && !in_tag) {
            plain.push_back(text[i]);
        }
    }
    return plain;
}

wchar_t AccessKey(const std::wstring& text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != L'&') {
            continue;
        }
        if (text[i + 1] != L'&') {
            return static_cast<wchar_t>(std::towupper(text[i + 1]));
        }
        ++i;
    }
    return 0;
}

} // namespace support
