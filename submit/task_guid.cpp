#include "submit/client_link.h"

#include <cstdio>

namespace tarvo {

std::string FormatGuid(const GuidParts& guid) {
    char text[37] = {};
    const std::uint8_t* tail = guid.data4;
    std::snprintf(text, sizeof text, "%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X", guid.data1,
                  guid.data2, guid.data3, tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6],
                  tail[7]);
    return text;
}

} // namespace tarvo
