#include "submit/client_link.h"

#include "common/logger.h"
#include "common/text.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <iterator>

namespace tarvo {

std::wstring NewTaskGuid() {
    Logger log(kHttpChannel);
    GUID guid = {};
    if (FAILED(::CoCreateGuid(&guid))) {
        log.Write("The GUID generate failed!", kError);
        return std::wstring();
    }
    GuidParts parts = {guid.Data1, guid.Data2, guid.Data3, {}};
    std::copy(std::begin(guid.Data4), std::end(guid.Data4), std::begin(parts.data4));
    return LocaleToWide(FormatGuid(parts));
}

} // namespace tarvo
