#include "submit/client_link.h"

#include "common/message_box.h"
#include "common/text.h"
#include "common/win32_handles.h"

#include <windows.h>

#include <objbase.h>
#include <winhttp.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>

namespace tarvo {

namespace {

constexpr const wchar_t* kUserAgent = L"A WinHTTP Program For Marrowby/1.0";
constexpr wchar_t kContentType[] = L"Content-Type: application/json;charset=utf-8";
constexpr DWORD kContentTypeLength = sizeof kContentType / sizeof kContentType[0] - 1;
static_assert(kContentTypeLength == 44, "the header line is fixed");
constexpr DWORD kReplyBufferSize = 2048;

struct WinHttpHandleTraits {
    using Type = HINTERNET;
    static Type empty() { return nullptr; }
    static void close(Type handle) { ::WinHttpCloseHandle(handle); }
};
using WinHttpHandle = UniqueHandle<WinHttpHandleTraits>;

// Declared in the order of opening, so that they close in the order request, connection, session.
struct Exchange {
    WinHttpHandle session;
    WinHttpHandle connection;
    WinHttpHandle request;
};

void log_code(const char* text, DWORD code, Logger& log) {
    log.Write(text + std::to_string(code), kError);
}

void open_request(Exchange& exchange, const PluginConfig& config, Logger& log) {
    exchange.session.reset(::WinHttpOpen(kUserAgent, WINHTTP_ACCESS_TYPE_DEFAULT_PROXY, WINHTTP_NO_PROXY_NAME,
                                         WINHTTP_NO_PROXY_BYPASS, 0));
    DWORD code = ::GetLastError();
    if (!exchange.session) {
        log_code("Http hSession failed! ErrorCode: ", code, log);
    } else {
        exchange.connection.reset(::WinHttpConnect(exchange.session.get(), config.clientIp.c_str(),
                                                   static_cast<INTERNET_PORT>(config.clientPort), 0));
        code = ::GetLastError();
    }
    if (!exchange.connection) {
        log_code("Http connect error! ErrorCode: ", code, log);
        return;
    }
    exchange.request.reset(::WinHttpOpenRequest(exchange.connection.get(), L"POST", nullptr, nullptr,
                                                WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES, 0));
}

// The flags concern certificates and have no effect on plain HTTP (C-36).
void relax_security(HINTERNET request, Logger& log) {
    DWORD flags = 0;
    DWORD size = sizeof flags;
    if (::WinHttpQueryOption(request, WINHTTP_OPTION_SECURITY_FLAGS, &flags, &size) == FALSE) {
        LogLastError("WinHttpQueryOption", log);
    }
    flags |= SECURITY_FLAG_IGNORE_CERT_DATE_INVALID | SECURITY_FLAG_IGNORE_CERT_CN_INVALID |
             SECURITY_FLAG_IGNORE_CERT_WRONG_USAGE;
    if (::WinHttpSetOption(request, WINHTTP_OPTION_SECURITY_FLAGS, &flags, sizeof flags) == FALSE) {
        LogLastError("WinHttpSetOption", log);
    }
}

// What cannot be set is left out (C-72).
void send(HINTERNET request, const std::string& body, Logger& log) {
    if (::WinHttpAddRequestHeaders(request, kContentType, kContentTypeLength, WINHTTP_ADDREQ_FLAG_ADD) ==
        FALSE) {
        LogLastError("WinHttpAddRequestHeaders", log);
    }
    relax_security(request, log);
    const DWORD length = static_cast<DWORD>(body.size());
    // WinHttpSendRequest takes the body as void* but only reads it.
    void* data = const_cast<char*>(body.data());
    if (::WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, data, length, length, 0) == FALSE) {
        LogLastError("WinHttpSendRequest", log);
    }
}

void give_up(DWORD code, const std::wstring& document, Logger& log, WindowHandle owner) {
    ShowBox(owner, IDS_SEND_FAILED);
    log_code("The data failed to send, please confirm whether the client has been login, Error Code is: ",
             code, log);
    log.Write("Due to client did not land, remove the json file: " + WideToLocale(document), kInfo);
    // By the wide path: a narrow one misses the file when the folder's name is not plain ASCII.
    ::_wremove(document.c_str());
}

// One read: a reply that arrives in pieces is cut after the first (C-37).
void read_reply(HINTERNET request, Logger& log, WindowHandle owner) {
    DWORD available = 0;
    if (::WinHttpQueryDataAvailable(request, &available) == FALSE) {
        LogLastError("WinHttpQueryDataAvailable", log);
        available = 0;
    }
    char buffer[kReplyBufferSize] = {};
    DWORD read = 0;
    // The last byte stays zero and ends the text.
    if (::WinHttpReadData(request, buffer, std::min(available, kReplyBufferSize - 1), &read) == FALSE) {
        const DWORD code = ::GetLastError();
        ShowBox(owner, IDS_REPLY_NOT_READ);
        log_code("Http read data failed! ErrorCode: ", code, log);
        return;
    }
    log.Write("Http read data successfully.", kInfo);
    HandleClientReply(buffer, owner);
}

} // namespace

std::string FormatGuid(const GUID& guid) {
    char text[37] = {};
    const unsigned char* tail = guid.Data4;
    std::snprintf(text, sizeof text, "%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X", guid.Data1,
                  guid.Data2, guid.Data3, tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6],
                  tail[7]);
    return text;
}

std::wstring NewTaskGuid() {
    Logger log(kHttpChannel);
    GUID guid = {};
    if (FAILED(::CoCreateGuid(&guid))) {
        log.Write("The GUID generate failed!", kError);
        return std::wstring();
    }
    return LocaleToWide(FormatGuid(guid));
}

void LogLastError(const char* api_name, Logger& log) {
    const DWORD code = ::GetLastError();
    log.Write(api_name + ("error, code is " + std::to_string(code)), kError);
}

void PostToClient(PluginConfig config, const std::string& body, WindowHandle owner) {
    Logger log(kHttpChannel);
    Exchange exchange;
    open_request(exchange, config, log);
    if (exchange.request) {
        send(exchange.request.get(), body, log);
    }
    // Also fails without a request and after a failed send: every failed exchange ends here.
    if (::WinHttpReceiveResponse(exchange.request.get(), nullptr) == FALSE) {
        give_up(::GetLastError(), config.jsonPath, log, owner);
        return;
    }
    read_reply(exchange.request.get(), log, owner);
}

} // namespace tarvo
